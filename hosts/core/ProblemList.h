#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "hosts/core/LogEntry.h"
#include "hosts/core/LogFollower.h"
#include "platform/files/FileSystem.h"

namespace tarn::host {

// The errors and warnings of a project's last build that name a file, and a place among them that
// goes round. Reads the log beside the project, which grows while a build runs; what another build
// reports begins anew.
class ProblemList {
 public:
  explicit ProblemList(FileSystem& fileSystem) : files(fileSystem) {}

  // Whose problems it is from now on; an empty path is nobody's.
  void SetProject(const std::string& projectPath);

  struct Place {
    LogEntry problem;
    std::size_t number = 0;  // from 1
    std::size_t count = 0;
  };
  // The next problem, or the one before; nothing when there are none. `now` is the time in seconds
  // since 1970.
  std::optional<Place> Next(std::int64_t now) { return Step(true, now); }
  std::optional<Place> Previous(std::int64_t now) { return Step(false, now); }
  // The user has gone to this place by himself: the next problem is the one behind it.
  void GoTo(const std::string& file, int line, std::int64_t now);

  // Of a log, in bytes: a few milliseconds of work.
  static constexpr std::size_t kPiece = 32 * 1024;
  // Looks for news in the log, of which it takes about `most` bytes. Whether there are more.
  bool Follow(std::int64_t now, std::size_t most = std::string::npos);
  // As far as the log has been followed. The list only grows until the number of the log is
  // another one.
  const std::vector<LogEntry>& GetAll() const { return problems; }
  int GetLogNumber() const { return logNumber; }

 private:
  std::optional<Place> Step(bool isForward, std::int64_t now);
  void Clear();

  FileSystem& files;
  std::optional<LogFollower> log;
  std::vector<LogEntry> problems;
  int logNumber = 0;
  std::optional<std::size_t> current;  // none ahead of the first step
};

}  // namespace tarn::host
