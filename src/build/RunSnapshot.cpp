#include "build/RunSnapshot.h"

#include <cstdlib>

#include "platform/text/Hash.h"

namespace tarn {

namespace {

constexpr std::int64_t kClockTolerance = 1'000'000'000;  // nanoseconds
// How far a stamp may be ahead of the clock: some kernels stamp finer than its ticks.
constexpr std::int64_t kTick = 20'000'000;  // nanoseconds

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

void RunSnapshot::AddInput(std::string_view path, bool isDoubtful) {
  if (path.empty()) return;
  const auto [place, isNew] = places_.try_emplace(std::string(path), inputs_.size());
  if (!isNew) return;
  paths_.push_back(&place->first);
  inputs_.emplace_back().isDoubtful = isDoubtful;
}

std::vector<std::optional<FileStatus>> RunSnapshot::ExamineInputs(FileSystem& files) const {
  std::vector<const char*> names;
  names.reserve(paths_.size());
  for (const std::string* path : paths_) names.push_back(path->c_str());
  return files.ExamineMany(names, std::chrono::steady_clock::time_point::max());
}

void RunSnapshot::TakeBefore(FileSystem& files) {
  // The clock first: what changes after this moment has a later stamp, or the same.
  start_ = files.Clock();
  steadyStart_ = std::chrono::steady_clock::now();
  // Tools report names as the disk spells them.
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
    if (input.isDoubtful || isRecent) input.hashBefore = HashFile(files, *paths_[i]);
  }
}

void RunSnapshot::TakeAfter(FileSystem& files) {
  const auto found = ExamineInputs(files);
  for (std::size_t i = 0; i < inputs_.size(); ++i) inputs_[i].after = found[i];
  if (!output_.empty()) outputStatus_ = files.Examine(output_);
  end_ = files.Clock();
  const std::chrono::nanoseconds passed = std::chrono::steady_clock::now() - steadyStart_;
  isClockMoved_ = start_ != 0 && std::llabs(end_ - start_ - passed.count()) > kClockTolerance;
}

// A stamp from the future was made before the clock was set back, or by a change before the run.
bool RunSnapshot::MayHaveChanged(const FileStatus& status, std::int64_t now) const {
  if (status.changed == 0 || start_ == 0) return false;  // nothing is known of either
  return isClockMoved_ || (status.changed >= start_ && status.changed <= now + kTick);
}

RunSnapshot::Settled RunSnapshot::Settle(FileSystem& files, const std::string& path) const {
  const auto place = places_.find(path);
  const Input* const input = place == places_.end() ? nullptr : &inputs_[place->second];
  const std::optional<FileStatus> after = input != nullptr ? input->after : files.Examine(path);
  if (!after) return {};
  Settled settled{*after, true, true, 0};
  if (input == nullptr || !input->before) {
    settled.isSettled = !MayHaveChanged(*after, input == nullptr ? files.Clock() : end_);
    if (!settled.isSettled) settled.hash = HashFile(files, path);
    return settled;
  }
  if (IsUntouched(*input->before, *after) && !MayHaveChanged(*after, end_)) return settled;
  settled.hash = HashFile(files, path);
  settled.isSettled = input->hashBefore != 0 && settled.hash == input->hashBefore;
  return settled;
}

}  // namespace tarn
