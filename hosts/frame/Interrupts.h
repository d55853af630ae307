#pragma once

#include <functional>
#include <thread>

namespace tarn::host {

// While it lives, the first interrupt (Ctrl-C, a request to end, a closed terminal) calls a
// function on a thread of its own; the second ends the process at once. At most one at a time.
class Interrupts {
 public:
  // Of a process that the second one ends.
  static constexpr int kExitCode = 130;

  explicit Interrupts(std::function<void()> onInterrupt);
  Interrupts(const Interrupts&) = delete;
  Interrupts& operator=(const Interrupts&) = delete;
  ~Interrupts();

 private:
  std::thread watcher;
};

}  // namespace tarn::host
