#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "hosts/core/LogEntry.h"
#include "platform/files/FileSystem.h"

namespace tarn::host {

// Reads a log beside a project again and again while builds write it.
class LogFollower {
 public:
  LogFollower(FileSystem& fileSystem, std::string logPath);

  struct News {
    bool isOtherLog = false;  // another build's: its entries begin here
    std::vector<LogEntry> entries;
    bool hasMore = false;  // of what was read, which the next call takes
  };
  // What has come since the last call. A file that isn't there, or is not whole at the moment, has
  // no news. `now` is the time in seconds since 1970: a file that is older by more than a second
  // is only read when it has changed. A long log comes in pieces of about `most` bytes, so that who
  // has other things to do as well can do them in between.
  News Take(std::int64_t now, std::size_t most = std::string::npos);

 private:
  // Whether the file is another build's now.
  bool Read(std::int64_t now);
  bool IsSame(const FileStatus& status) const;

  FileSystem& files;
  std::string path;
  std::string seen;                 // what was read, without the closing tag
  std::size_t taken = 0;            // so much of it has been given
  std::optional<FileStatus> state;  // of the file then
  bool isSettled = false;           // it could not change any more without another time
};

}  // namespace tarn::host
