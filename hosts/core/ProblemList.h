#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "hosts/core/LogEntry.h"
#include "hosts/core/LogTail.h"
#include "platform/files/FileSystem.h"

namespace tarn::host {

// The errors and warnings of a project's last build that name a file, with a cursor that wraps
// around. Reads the log next to the project, which grows during a build; when a new build begins,
// the list starts again from empty.
class ProblemList {
 public:
  explicit ProblemList(FileSystem& fileSystem) : files_(fileSystem) {}

  // Sets the project; an empty path means none.
  void SetProject(const std::string& projectPath);

  struct Place {
    LogEntry problem;
    std::size_t number = 0;  // from 1
    std::size_t count = 0;
  };
  // Return the next or the previous problem; nullopt if there are none. `now` is the time in
  // seconds since 1970.
  std::optional<Place> Next(std::int64_t now) { return Step(true, now); }
  std::optional<Place> Previous(std::int64_t now) { return Step(false, now); }
  // Sets the cursor to a position that the user has moved to: Next() then returns the problem after
  // it.
  void GoTo(const std::string& file, int line, std::int64_t now);

  // Chunk of the log in bytes that takes a few milliseconds to process.
  static constexpr std::size_t kPiece = 32 * 1024;
  // Reads new entries of the log, about `most` bytes of it. Returns true if there are more.
  bool Follow(std::int64_t now, std::size_t most = std::string::npos);
  // The problems read so far. The list only grows until the log number changes.
  const std::vector<LogEntry>& GetAll() const { return problems_; }
  int GetLogNumber() const { return logNumber_; }

 private:
  std::optional<Place> Step(bool isForward, std::int64_t now);
  void Clear();

  FileSystem& files_;
  std::optional<LogTail> log_;
  std::vector<LogEntry> problems_;
  int logNumber_ = 0;
  std::optional<std::size_t> current_;  // nullopt before the first step
};

}  // namespace tarn::host
