#pragma once

#include <QObject>
#include <functional>

namespace tarn::host {

// While it lives, a request of the system to end (a desktop that is left, a terminal that is
// closed, Ctrl-C in it) calls a function in the thread's loop; the second of its kind ends the
// process at once. At most one at a time.
class QuitSignals : public QObject {
 public:
  explicit QuitSignals(std::function<void()> onQuit);
  ~QuitSignals() override;

 private:
  int ends[2] = {-1, -1};  // of a pipe
};

}  // namespace tarn::host
