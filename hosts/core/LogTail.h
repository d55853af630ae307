#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "hosts/core/LogEntry.h"
#include "platform/files/FileSystem.h"

namespace tarn::host {

// Reads the log stored next to a project incrementally while builds write it.
class LogTail {
 public:
  LogTail(FileSystem& fileSystem, std::string logPath);

  struct Update {
    bool isOtherLog = false;  // the log of a different build: its entries begin here
    std::vector<LogEntry> entries;
    bool hasMore = false;  // more entries are available from the next call
  };
  // Returns the entries added since the last call; none if the file is missing or incomplete at the
  // moment. `now` is the time in seconds since 1970: a file older than one second is read again
  // only if its status has changed. A long log is returned in chunks of about `most` bytes, so that
  // the caller can do other work in between.
  Update Take(std::int64_t now, std::size_t most = std::string::npos);

 private:
  // Returns true if the file is the log of a different build now.
  bool Read(std::int64_t now);
  bool IsSame(const FileStatus& status) const;

  FileSystem& files_;
  std::string path_;
  std::string seen_;                 // content read so far, without the closing tag
  std::size_t taken_ = 0;            // bytes of it that were returned
  std::optional<FileStatus> state_;  // status of the file at that time
  bool isSettled_ = false;           // any later change would alter the modification time
};

}  // namespace tarn::host
