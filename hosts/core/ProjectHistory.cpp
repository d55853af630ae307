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
  if (isGoing) return true;
  seen = inspector.GetChangeCount();
  std::vector<FileText> now = ReadProjectFiles(inspector);
  const bool isSame = FindChanges(present, now).empty();
  present = std::move(now);
  return isSame;
}

void ProjectHistory::Clear() {
  past.clear();
  future.clear();
}

bool ProjectHistory::Note() {
  if (isGoing || isBusy()) return false;
  const std::int32_t now = inspector.GetChangeCount();
  if (now == seen) return false;
  seen = now;
  std::vector<FileText> files = ReadProjectFiles(inspector);
  FileChanges changes = FindChanges(present, files);
  if (changes.empty()) return false;
  present = std::move(files);
  Add(std::move(changes));
  return true;
}

void ProjectHistory::Add(FileChanges changes) {
  std::string label = DescribeChanges(changes);
  past.push_back({std::move(label), std::move(changes)});
  future.clear();
  while (past.size() > kMostSteps || (past.size() > 1 && SizeOf(past) > kMostBytes)) {
    past.pop_front();
  }
}

Status ProjectHistory::Change(const FileChanges& changes) {
  Note();
  if (isGoing || isBusy()) return kBusy;
  isGoing = true;
  Status done = apply(changes);
  isGoing = false;
  Note();
  return done;
}

Status ProjectHistory::Go(Steps& from, Steps& to, bool isBack) {
  Note();
  if (isGoing || isBusy()) return kBusy;
  if (from.empty()) return {};
  const FileChanges& changes = from.back().changes;
  isGoing = true;
  Status done = apply(isBack ? Reverse(changes) : changes);
  isGoing = false;
  Refresh();
  if (!done) return done;
  to.push_back(std::move(from.back()));
  from.pop_back();
  return {};
}

}  // namespace tarn::host
