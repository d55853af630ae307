#include "builder/RunSnapshot.h"

#include <cstdlib>

#include "platform/text/Hash.h"

namespace tarn {

namespace {

constexpr std::int64_t kClockTolerance = 1'000'000'000;  // nanoseconds

bool IsUntouched(const FileStatus& before, const FileStatus& after) {
  return IsSameVersion(before, after) && before.changed == after.changed;
}

}  // namespace

std::uint64_t HashFile(FileSystem& files, const std::string& path) {
  const Result<std::string> bytes = files.ReadWholeFile(path);
  if (!bytes) return 0;
  const std::uint64_t hash = HashBytes(*bytes);
  return hash == 0 ? 1 : hash;
}

std::uint64_t HashVersion(FileSystem& files, const std::string& path, const FileStatus& status) {
  const std::uint64_t hash = HashFile(files, path);
  const std::optional<FileStatus> after = files.Examine(path);
  return after && IsUntouched(status, *after) ? hash : 0;
}

// Returns null if the path is empty or was added before.
RunSnapshot::Input* RunSnapshot::Add(std::string_view path) {
  if (path.empty()) return nullptr;
  const auto [place, isNew] = places_.try_emplace(std::string(path), inputs_.size());
  if (!isNew) return nullptr;
  paths_.push_back(&place->first);
  return &inputs_.emplace_back();
}

void RunSnapshot::AddInput(std::string_view path, bool isDoubtful) {
  if (Input* const added = Add(path)) added->isDoubtful = isDoubtful;
}

void RunSnapshot::AddProduced(std::string_view path, std::uint64_t hash) {
  if (Input* const added = Add(path)) added->hashBefore = hash;
}

std::vector<std::optional<FileStatus>> RunSnapshot::ExamineInputs(FileSystem& files) const {
  std::vector<const char*> names;
  names.reserve(paths_.size());
  for (const std::string* path : paths_) names.push_back(path->c_str());
  return files.ExamineMany(names, std::chrono::steady_clock::time_point::max());
}

void RunSnapshot::TakeBefore(FileSystem& files) {
  // Reads the clock first: later changes have the same timestamp or a later one.
  start_ = files.Clock();
  steadyStart_ = std::chrono::steady_clock::now();
  // Tools report names as spelled on disk.
  const auto named = ExamineInputs(files);
  for (std::size_t i = 0; i < named.size(); ++i) {
    if (!named[i] || !named[i]->otherSpelling) continue;
    AddInput(files.NameOnDisk(*paths_[i]), inputs_[i].isDoubtful);
  }
  const bool isComplete = inputs_.size() == named.size();
  const auto found = isComplete ? named : ExamineInputs(files);
  for (std::size_t i = 0; i < inputs_.size(); ++i) {
    Input& input = inputs_[i];
    input.before = found[i];
    if (!input.before) continue;
    const bool isRecent = start_ != 0 && input.before->changed >= start_;
    const bool isWanted = input.hashBefore == 0 && (input.isDoubtful || isRecent);
    if (isWanted) input.hashBefore = HashFile(files, *paths_[i]);
  }
}

void RunSnapshot::TakeAfter(FileSystem& files) {
  const auto found = ExamineInputs(files);
  for (std::size_t i = 0; i < inputs_.size(); ++i) inputs_[i].after = found[i];
  if (!output_.empty()) outputStatus_ = files.Examine(output_);
  if (outputStatus_) outputHash_ = HashVersion(files, output_, *outputStatus_);
  const std::int64_t end = files.Clock();
  const std::chrono::nanoseconds passed = std::chrono::steady_clock::now() - steadyStart_;
  isClockMoved_ = start_ != 0 && std::llabs(end - start_ - passed.count()) > kClockTolerance;
}

// There is no upper bound: timestamps may be ahead of the clock, by a few ticks or because they
// were set by another computer.
bool RunSnapshot::MayHaveChanged(std::int64_t changed) const {
  if (changed == 0 || start_ == 0) return false;  // one of them is unknown
  return isClockMoved_ || changed >= start_;
}

PathChanges RunSnapshot::WatchPaths(FileSystem& files, std::vector<std::string> roots) const {
  return {files, std::move(roots), output_,
          [this](std::int64_t changed) { return MayHaveChanged(changed); }};
}

RunSnapshot::Settled RunSnapshot::Settle(FileSystem& files, const std::string& path,
                                         PathChanges& changes) const {
  const auto place = places_.find(path);
  const Input* const input = place == places_.end() ? nullptr : &inputs_[place->second];
  const std::optional<FileStatus> after = input != nullptr ? input->after : files.Examine(path);
  if (!after) return {};
  Settled settled{.status = *after, .exists = true};
  if (input == nullptr) {
    const bool isOlder = !MayHaveChanged(after->changed);
    settled.isSettled = isOlder && !changes.MayHaveChanged(path);
    settled.isOlder = isOlder && !settled.isSettled;
    return settled;
  }
  if (!input->before) return settled;  // created during the run
  settled.isSettled = IsUntouched(*input->before, *after) && !MayHaveChanged(after->changed);
  if (settled.isSettled || input->hashBefore == 0) return settled;
  settled.hash = HashFile(files, path);
  settled.isSettled = settled.hash == input->hashBefore;
  return settled;
}

}  // namespace tarn
