#pragma once

#include <chrono>
#include <cstddef>
#include <optional>
#include <string>

#include "platform/Result.h"
#include "platform/files/FileSystem.h"
#include "widgets/MessageLoop.h"

namespace tarn::host {

// Keeps the log beside a project: a copy of the server's log file, made fit for everybody's tools,
// which whoever likes may read while the build goes on. The server's file grows with each tool.
class LogKeeper {
 public:
  // `window` is whose timers it goes by.
  LogKeeper(FileSystem& fileSystem, WindowHandle window);
  LogKeeper(const LogKeeper&) = delete;
  LogKeeper& operator=(const LogKeeper&) = delete;
  ~LogKeeper();

  // Copies `log` to `kept` now, and again whenever it has changed, until Keep or Forget. Failures
  // are silent. Nothing while it follows one already.
  void Follow(const std::string& log, const std::string& kept);
  // The server's log has this name now. No-op while none is followed.
  void Renew(const std::string& log);
  // Copies what was followed last as it is by now; does nothing if there is nothing, or if it is
  // gone after it was copied. Fails if one of the two files can't be read or written, also if the
  // first never came: the server, which writes it, says nothing of a full disk.
  Status Keep();
  // Nothing was followed.
  void Forget();

 private:
  Status Copy();
  void OnTick();
  void SetTimer(std::chrono::milliseconds period);
  void StopTimer();

  FileSystem& files;
  WindowHandle window;
  std::string source;  // empty: none
  std::string target;
  std::optional<std::size_t> copied;  // hash of what was copied last
};

}  // namespace tarn::host
