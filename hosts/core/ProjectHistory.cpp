#include "hosts/core/ProjectHistory.h"

#include <utility>

#include "hosts/core/ChangeLabel.h"

namespace tarn::host {

namespace {

const Error kBusy{ErrorCode::Busy, "the project can't be changed now", {}};

constexpr std::size_t kMostSteps = 100;
constexpr std::size_t kMostBytes = 64 << 20;

std::size_t SizeOf(const std::deque<ProjectStep>& steps) {
  std::size_t bytes = 0;
  for (const ProjectStep& step : steps) {
    for (const FileChange& each : step.changes) {
      for (const auto* text : {&each.before, &each.after}) bytes += *text ? (*text)->size() : 0;
    }
  }
  return bytes;
}

}  // namespace

bool ProjectHistory::Refresh() {
  if (isGoing_) return true;
  seen_ = inspector_.GetChangeCount();
  std::vector<FileText> now = ReadProjectFiles(inspector_);
  const bool isSame = FindChanges(present_, now).empty();
  present_ = std::move(now);
  return isSame;
}

void ProjectHistory::Clear() {
  past_.clear();
  future_.clear();
}

bool ProjectHistory::Note() {
  if (isGoing_ || isBusy_()) return false;
  const std::int32_t now = inspector_.GetChangeCount();
  if (now == seen_) return false;
  seen_ = now;
  std::vector<FileText> files = ReadProjectFiles(inspector_);
  FileChanges changes = FindChanges(present_, files);
  if (changes.empty()) return false;
  present_ = std::move(files);
  Add(std::move(changes));
  return true;
}

void ProjectHistory::Add(FileChanges changes) {
  std::string label = DescribeChanges(changes);
  past_.push_back({std::move(label), std::move(changes)});
  future_.clear();
  while (past_.size() > kMostSteps || (past_.size() > 1 && SizeOf(past_) > kMostBytes)) {
    past_.pop_front();
  }
}

Status ProjectHistory::Change(const FileChanges& changes) {
  Note();
  if (isGoing_ || isBusy_()) return kBusy;
  isGoing_ = true;
  Status done = apply_(changes);
  isGoing_ = false;
  Note();
  return done;
}

Status ProjectHistory::Go(Steps& from, Steps& to, bool isBack) {
  Note();
  if (isGoing_ || isBusy_()) return kBusy;
  if (from.empty()) return {};
  const FileChanges& changes = from.back().changes;
  isGoing_ = true;
  Status done = apply_(isBack ? Reverse(changes) : changes);
  isGoing_ = false;
  Refresh();
  if (!done) return done;
  to.push_back(std::move(from.back()));
  from.pop_back();
  return {};
}

}  // namespace tarn::host
