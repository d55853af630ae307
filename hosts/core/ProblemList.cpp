#include "hosts/core/ProblemList.h"

#include "hosts/core/ProjectFile.h"

namespace tarn::host {

void ProblemList::SetProject(const std::string& projectPath) {
  Clear();
  log_.reset();
  if (!projectPath.empty()) log_.emplace(files_, LogPathOf(projectPath));
}

void ProblemList::GoTo(const std::string& file, int line, std::int64_t now) {
  Follow(now);
  for (std::size_t i = 0; i < problems_.size(); ++i) {
    if (problems_[i].file == file && problems_[i].line == line) {
      current_ = i;
      return;
    }
  }
}

std::optional<ProblemList::Place> ProblemList::Step(bool isForward, std::int64_t now) {
  Follow(now);
  const std::size_t count = problems_.size();
  if (count == 0) return std::nullopt;
  if (isForward) {
    current_ = current_ ? (*current_ + 1) % count : 0;
  } else {
    current_ = (current_.value_or(0) + count - 1) % count;
  }
  return Place{problems_[*current_], *current_ + 1, count};
}

bool ProblemList::Follow(std::int64_t now, std::size_t most) {
  if (!log_) return false;
  LogTail::Update update = log_->Take(now, most);
  if (update.isOtherLog) Clear();
  for (LogEntry& entry : update.entries) {
    const bool isProblem = entry.kind == LogKind::Error || entry.kind == LogKind::Warning;
    if (isProblem && !entry.file.empty()) problems_.push_back(std::move(entry));
  }
  return update.hasMore;
}

void ProblemList::Clear() {
  problems_.clear();
  current_.reset();
  ++logNumber_;
}

}  // namespace tarn::host
