#include "hosts/core/BuildProgress.h"

#include <algorithm>

namespace tarn::host {

namespace {

std::string SubjectOf(const ToolStart& start) {
  if (!start.subject.empty()) return start.subject;
  // A tool with many inputs is identified by its single output.
  const bool isSingle = start.files.size() == 1;
  if (!isSingle && !start.output.empty()) return start.output;
  return start.files.empty() ? start.tool : start.files.front();
}

}  // namespace

BuildProgress::BuildProgress(std::function<int()> countWork) : queryCount_(std::move(countWork)) {}

void BuildProgress::OnToolStarted(const ToolStart& start) {
  if (++number_ == 1 && queryCount_) total_ = queryCount_();
  if (queryCount_) total_ = std::max(total_, number_);
  subject_ = SubjectOf(start);
}

void BuildProgress::OnToolEnded(bool, const std::vector<LogEntry>& messages) {
  for (const LogEntry& entry : messages) {
    errors_ += entry.kind == LogKind::Error ? entry.count : 0;
    warnings_ += entry.kind == LogKind::Warning ? entry.count : 0;
  }
}

std::chrono::milliseconds BuildProgress::GetElapsed() const {
  return std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - started_);
}

}  // namespace tarn::host
