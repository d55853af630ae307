#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "hosts/frame/LogEntry.h"
#include "platform/files/FileSystem.h"

namespace tarn::host {

// Reads a log beside a project again and again while builds write it.
class LogFollower {
 public:
  LogFollower(FileSystem& fileSystem, std::string logPath);

  struct News {
    bool isOtherLog = false;  // another build's: its entries begin here
    std::vector<LogEntry> entries;
  };
  // What has come since the last call. A file that isn't there, or is not whole at the moment, has
  // no news. `now` is the time in seconds since 1970: a file that is older by more than a second
  // is only read when it has changed.
  News Take(std::int64_t now);

 private:
  bool IsSame(const FileStatus& status) const;

  FileSystem& files;
  std::string path;
  std::string seen;                 // what was read, without the closing tag
  std::optional<FileStatus> state;  // of the file then
  bool isSettled = false;           // it could not change any more without another time
};

}  // namespace tarn::host
