#include "hosts/core/ProblemList.h"

#include "hosts/core/ProjectFile.h"

namespace tarn::host {

void ProblemList::SetProject(const std::string& projectPath) {
  Clear();
  log.reset();
  if (!projectPath.empty()) log.emplace(files, LogPathOf(projectPath));
}

void ProblemList::GoTo(const std::string& file, int line, std::int64_t now) {
  Follow(now);
  for (std::size_t i = 0; i < problems.size(); ++i) {
    if (problems[i].file == file && problems[i].line == line) {
      current = i;
      return;
    }
  }
}

std::optional<ProblemList::Place> ProblemList::Step(bool isForward, std::int64_t now) {
  Follow(now);
  const std::size_t count = problems.size();
  if (count == 0) return std::nullopt;
  if (isForward) {
    current = current ? (*current + 1) % count : 0;
  } else {
    current = (current.value_or(0) + count - 1) % count;
  }
  return Place{problems[*current], *current + 1, count};
}

bool ProblemList::Follow(std::int64_t now, std::size_t most) {
  if (!log) return false;
  LogFollower::News news = log->Take(now, most);
  if (news.isOtherLog) Clear();
  for (LogEntry& entry : news.entries) {
    const bool isProblem = entry.kind == LogKind::Error || entry.kind == LogKind::Warning;
    if (isProblem && !entry.file.empty()) problems.push_back(std::move(entry));
  }
  return news.hasMore;
}

void ProblemList::Clear() {
  problems.clear();
  current.reset();
  ++logNumber;
}

}  // namespace tarn::host
