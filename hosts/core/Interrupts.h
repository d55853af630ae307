#pragma once

#include <functional>
#include <thread>
#include <utility>

namespace tarn::host {

// From now on a write that fails because its reader is gone, or because the file would become too
// large, is an error of that write and doesn't end the process.
void KeepRunningOnFailedWrites();

// While it lives, the first interrupt (Ctrl-C, a request to end, a closed terminal) calls a
// function on a thread of its own; the second ends the process immediately. At most one at a time.
class Interrupts {
 public:
  // Of a process that the second one ends.
  static constexpr int kExitCode = 130;

  // Throws std::system_error if there is no thread or descriptor for it.
  explicit Interrupts(std::function<void()> onInterrupt) : Interrupts(std::move(onInterrupt), -1) {}
  // Like the other, and the end of the reader of `output`, a pipe or socket, is an interrupt too.
  // Other kinds of files have no such end.
  Interrupts(std::function<void()> onInterrupt, int output);
  Interrupts(const Interrupts&) = delete;
  Interrupts& operator=(const Interrupts&) = delete;
  ~Interrupts();

 private:
  std::thread watcher;
};

}  // namespace tarn::host
