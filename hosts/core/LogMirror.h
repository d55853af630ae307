#pragma once

#include <chrono>
#include <cstddef>
#include <optional>
#include <string>

#include "platform/Result.h"
#include "platform/files/FileSystem.h"
#include "widgets/MessageLoop.h"

namespace tarn::host {

// Maintains the log next to a project: a copy of the server's log file in conforming XML, which
// other programs may read while the build is running. The server's file grows with each tool run.
class LogMirror {
 public:
  // `window` is the window whose timers are used.
  LogMirror(FileSystem& fileSystem, WindowHandle window);
  LogMirror(const LogMirror&) = delete;
  LogMirror& operator=(const LogMirror&) = delete;
  ~LogMirror();

  // Copies `log` to `kept` now, and again each time it has changed, until Sync or Stop. Errors
  // are ignored. No-op if a log is being followed already.
  void Follow(const std::string& log, const std::string& kept);
  // Sets a new path of the server's log. No-op if no log is being followed.
  void Renew(const std::string& log);
  // Makes a final copy of the log followed last. Does nothing if there was none, or if the log is
  // gone after it was copied. Fails if the log can't be read or the copy can't be written. A log
  // that never appeared is also a failure, because the server does not report a full disk.
  Status Sync();
  // Stops following without a copy.
  void Stop();

 private:
  Status Copy();
  void OnTick();
  void SetTimer(std::chrono::milliseconds period);
  void StopTimer();

  FileSystem& files_;
  WindowHandle window_;
  std::string source_;  // empty: none
  std::string target_;
  std::optional<std::size_t> copied_;  // hash of the last copy
};

}  // namespace tarn::host
