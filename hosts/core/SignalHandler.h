#pragma once

#include <functional>
#include <thread>
#include <utility>

namespace tarn::host {

// Ignores SIGPIPE and SIGXFSZ, so that a write fails with an error instead of ending the process if
// its reader is gone or the file would become too large.
void IgnoreFailedWriteSignals();

// Output whose reader may disappear.
enum class WatchedOutput { None, Standard };

// Handler for interrupts of the user (here: signals, with a self-pipe), supplied by the port.
// During the lifetime of the object, the first interrupt (Ctrl-C, a request to terminate, a closed
// terminal) calls a function on a separate thread; the second one ends the process immediately. At
// most one instance at a time.
class SignalHandler {
 public:
  // Exit code of a process that was ended by the second interrupt.
  static constexpr int kExitCode = 130;

  // Throws std::system_error if no thread or descriptor is available.
  explicit SignalHandler(std::function<void()> onInterrupt)
      : SignalHandler(std::move(onInterrupt), WatchedOutput::None) {}
  // Like the first constructor, but also treats a closed reading end of the output (a pipe or
  // socket) as an interrupt. Other kinds of files never trigger this.
  SignalHandler(std::function<void()> onInterrupt, WatchedOutput watched);
  SignalHandler(const SignalHandler&) = delete;
  SignalHandler& operator=(const SignalHandler&) = delete;
  ~SignalHandler();

 private:
  std::thread watcher_;
};

}  // namespace tarn::host
