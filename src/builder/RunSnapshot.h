#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "builder/PathChanges.h"
#include "platform/files/FileSystem.h"

namespace tarn {

// The files around one run of a tool, as the disk shows them before and after it, and from that the
// version of each file that the tool must have read.
//
// A file that was written while the tool ran may have been read before or after the change. It is
// settled if it provably didn't change: its status stayed the same and its last change is older
// than the start, or its content is the same after the run as before. The kernel's time of the last
// change decides, which no program sets back, by the clock that stamps files. A file that was not
// examined before the run is settled only if the folders and links that lead to it didn't change
// either: another file may have had its name.
//
// The calls come in this order: AddInput and SetOutput, TakeBefore, the run, TakeAfter, Settle.
// TakeBefore and TakeAfter may be called on another thread than the others.
class RunSnapshot {
 public:
  RunSnapshot() = default;
  RunSnapshot(RunSnapshot&&) = default;
  RunSnapshot& operator=(RunSnapshot&&) = default;

  struct Settled {
    FileStatus status;
    bool exists = false;
    bool isSettled = false;
    std::uint64_t hash = 0;  // of the content, if it had to be read; 0: not read
  };

  // A file that the tool is known to read. A doubtful one changed during its last run as well, so
  // that only its content can settle it.
  void AddInput(std::string_view path, bool isDoubtful);
  void SetOutput(std::string path) { output_ = std::move(path); }

  void TakeBefore(FileSystem& files);
  void TakeAfter(FileSystem& files);

  // After TakeAfter, for the calls of Settle: within `roots` the folders count that lead to a file.
  PathChanges WatchPaths(FileSystem& files, std::vector<std::string> roots) const;
  // Reads the content only if nothing else decides. `path` may be one that was not added.
  Settled Settle(FileSystem& files, const std::string& path, PathChanges& changes) const;
  // nullopt if the tool left none.
  const std::optional<FileStatus>& GetOutputStatus() const { return outputStatus_; }
  // Of the output's content; 0 if it couldn't be read.
  std::uint64_t GetOutputHash() const { return outputHash_; }

 private:
  struct Input {
    bool isDoubtful = false;
    std::optional<FileStatus> before, after;
    std::uint64_t hashBefore = 0;  // 0: not read
  };

  bool MayHaveChanged(std::int64_t changed) const;
  std::vector<std::optional<FileStatus>> ExamineInputs(FileSystem& files) const;

  std::unordered_map<std::string, std::size_t> places_;  // positions in the two lists
  std::vector<const std::string*> paths_;                // the keys of `places_`
  std::vector<Input> inputs_;
  std::string output_;
  std::optional<FileStatus> outputStatus_;
  std::uint64_t outputHash_ = 0;
  std::int64_t start_ = 0;  // FileSystem::Clock
  std::chrono::steady_clock::time_point steadyStart_;
  bool isClockMoved_ = false;  // set to another time during the run
};

// A hash of the file's content, never 0; 0 if it can't be read.
std::uint64_t HashFile(FileSystem& files, const std::string& path);
// The same for a file that has this status; 0 if it hasn't, also after it was read.
std::uint64_t HashVersion(FileSystem& files, const std::string& path, const FileStatus& status);

}  // namespace tarn
