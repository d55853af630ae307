#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/Result.h"
#include "platform/files/FileSystem.h"
#include "widgets/MessageLoop.h"

namespace tarn::host {

// Maintains the log next to a project: a copy of the server's log file in conforming XML, which
// other programs may read while the build is running. The server's file grows with each tool run:
// its closing tag is overwritten in place by what is new. As long as that is so, only the new part
// is read and appended to the copy, so all copies of a build together take time linear in the size
// of its log. Any other change replaces the copy.
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
  // State of both files after a copy. "Kept" is what stays if the log grows.
  struct Copied {
    std::string log;            // path
    FileStatus logStatus;       // of which the identity counts
    std::uint64_t kept = 0;     // bytes of the log
    std::string seam;           // last bytes of these
    std::string end;            // bytes of the log after these
    std::uint64_t written = 0;  // bytes of the copy that are kept
    FileStatus copyStatus;
  };

  Status Copy();
  // Copies what is new. Returns false, with the copy unchanged, if that isn't possible.
  bool CopyNews();
  Status CopyWhole();
  void Record(const FileStatus& log, std::uint64_t begin, std::string_view text,
              std::uint64_t written, const FileStatus& copy);
  void OnTick();
  void SetTimer(std::chrono::milliseconds period);
  void StopTimer();

  FileSystem& files_;
  WindowHandle window_;
  std::string source_;  // empty: none
  std::string target_;
  bool hasCopied_ = false;
  std::optional<Copied> last_;  // nullopt if the next copy must be whole
};

}  // namespace tarn::host
