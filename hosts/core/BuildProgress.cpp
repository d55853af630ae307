#include "hosts/core/BuildProgress.h"

#include <algorithm>
#include <utility>

namespace tarn::host {

BuildProgress::BuildProgress(Estimator estimateWork, bool watchesRuns)
    : askWork_(std::move(estimateWork)), watchesRuns_(watchesRuns) {}

void BuildProgress::OnToolStarted(const ToolStart& start) {
  ++number_;
  FetchWork();
  subject_ = SubjectOf(start);
}

// The work is requested only if there is any.
void BuildProgress::FetchWork() {
  if (std::optional<WorkEstimate> work = askWork_ ? askWork_() : std::nullopt) {
    askWork_ = {};
    work_ = std::move(*work);
    for (const std::string& output : endedBefore_) work_.durations.erase(output);
    isCounted_ = true;
  }
  if (isCounted_) work_.count = std::max(work_.count, number_);
}

void BuildProgress::OnToolEnded(bool, const std::vector<LogEntry>& messages) {
  retired_ = number_;
  for (const LogEntry& entry : messages) {
    errors_ += entry.kind == LogKind::Error ? entry.count : 0;
    warnings_ += entry.kind == LogKind::Warning ? entry.count : 0;
  }
}

void BuildProgress::OnRunEvent(const RunEvent& event) {
  if (event.kind == RunEvent::Kind::Started) {
    running_[event.run] = {event.start, event.time};
    return;
  }
  if (event.kind == RunEvent::Kind::Output) {
    if (onOutput) onOutput(event.text);
    return;
  }
  const auto found = running_.find(event.run);
  if (found == running_.end()) return;
  if (event.isDone && askWork_) endedBefore_.push_back(found->second.start.output);
  if (event.isDone) work_.durations.erase(found->second.start.output);
  running_.erase(found);
}

std::vector<BuildProgress::Running> BuildProgress::GetRunning() const {
  std::vector<Running> list;
  for (const auto& [number, each] : running_) list.push_back(each);
  return list;
}

// The jobs share what is left, but no tool is divided, and the tools that use the outputs of others
// run one after the other at the end.
std::optional<BuildProgress::Milliseconds> BuildProgress::GetRemaining(
    Clock::time_point now) const {
  std::unordered_map<std::string, Milliseconds> elapsed;
  for (const auto& [number, each] : running_) {
    elapsed[each.start.output] = std::chrono::duration_cast<Milliseconds>(now - each.started);
  }
  Milliseconds work{0}, longest{0}, last{0};
  for (const auto& [output, duration] : work_.durations) {
    const auto started = elapsed.find(output);
    const Milliseconds done = started == elapsed.end() ? Milliseconds(0) : started->second;
    const Milliseconds left = std::max(duration.time - done, Milliseconds(0));
    (duration.isLast ? last : work) += left;
    if (!duration.isLast) longest = std::max(longest, left);
  }
  const Milliseconds remaining = std::max(work / work_.jobs, longest) + last;
  if (remaining.count() == 0) return std::nullopt;
  return remaining;
}

std::chrono::milliseconds BuildProgress::GetElapsed() const {
  return std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - started_);
}

}  // namespace tarn::host
