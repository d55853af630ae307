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

// Status of the files involved in a tool run, before and after it, and from that the version of
// each file that the tool must have read.
//
// A file written during the run may have been read before or after the change. Its version is
// settled only if it provably did not change: its status is the same and its last change is older
// than the start of the run, or its content is the same after the run as before. This relies on the
// kernel's change time, which programs can't set back, compared with the clock that produces these
// timestamps. A file not checked before the run is settled only if the folders and links leading to
// it did not change either: a different file may have had its name.
//
// Calling sequence: AddInput, AddProduced and SetOutput, TakeBefore, the run, TakeAfter, Settle.
// TakeBefore and TakeAfter may be called on a different thread from the others.
class RunSnapshot {
 public:
  RunSnapshot() = default;
  RunSnapshot(RunSnapshot&&) = default;
  RunSnapshot& operator=(RunSnapshot&&) = default;

  // Version of a file as the tool must have read it.
  struct Settled {
    FileStatus status;
    bool exists = false;
    bool isSettled = false;
    // Not settled only because a different file may have had its name before: it was not checked
    // before the run, in which a folder that leads to it changed.
    bool isOlder = false;
    std::uint64_t hash = 0;  // of the content; 0 if it was not read
  };

  // Prepares for about this number of files.
  void Reserve(std::size_t count) { places_.reserve(count); }
  // Adds a file that the tool is known to read. A doubtful one also changed during the previous
  // run, so only its content can settle it.
  void AddInput(std::string_view path, bool isDoubtful);
  // Adds a file that an earlier run has just produced with content of this hash. Otherwise a run
  // that starts in the clock tick in which its inputs were produced would not be settled.
  void AddProduced(std::string_view path, std::uint64_t hash);
  void SetOutput(std::string path) { output_ = std::move(path); }

  // Record the state of all added files immediately before and after the run.
  void TakeBefore(FileSystem& files);
  void TakeAfter(FileSystem& files);

  // For the calls of Settle, after TakeAfter: tracks the folders within `roots` that lead to a
  // file.
  PathChanges WatchPaths(FileSystem& files, std::vector<std::string> roots) const;
  // Returns the version of the file that the tool read. Reads the content only if nothing else
  // decides. `path` need not have been added.
  Settled Settle(FileSystem& files, const std::string& path, PathChanges& changes) const;
  // nullopt if the tool produced no output.
  const std::optional<FileStatus>& GetOutputStatus() const { return outputStatus_; }
  // Hash of the output's content; 0 if it could not be read.
  std::uint64_t GetOutputHash() const { return outputHash_; }

 private:
  struct Input {
    bool isDoubtful = false;
    std::optional<FileStatus> before, after;
    std::uint64_t hashBefore = 0;  // 0 if unknown
  };

  Input* Add(std::string_view path);
  bool MayHaveChanged(std::int64_t changed) const;
  std::vector<std::optional<FileStatus>> ExamineInputs(FileSystem& files) const;

  std::unordered_map<std::string, std::size_t> places_;  // indices into the two lists
  std::vector<const std::string*> paths_;                // the keys of `places_`
  std::vector<Input> inputs_;
  std::string output_;
  std::optional<FileStatus> outputStatus_;
  std::uint64_t outputHash_ = 0;
  std::int64_t start_ = 0;  // FileSystem::Clock
  std::chrono::steady_clock::time_point steadyStart_;
  bool isClockMoved_ = false;  // the clock was set during the run
};

// Returns a hash of the file's content, never 0, or 0 if it can't be read.
std::uint64_t HashFile(FileSystem& files, const std::string& path);
// Same, but returns 0 unless the file has this status both before and after it is read.
std::uint64_t HashVersion(FileSystem& files, const std::string& path, const FileStatus& status);

}  // namespace tarn
