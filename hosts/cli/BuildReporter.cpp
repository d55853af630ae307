#include "hosts/cli/BuildReporter.h"

#include "hosts/cli/DisplayText.h"
#include "platform/paths/Paths.h"

namespace tarn::host {

namespace {

constexpr std::int32_t kProgressTimer = 1;
constexpr std::chrono::milliseconds kProgressPeriod(200);
// A remaining time is shown in full seconds and ends at 0:01.
constexpr std::chrono::milliseconds kRoundedUp(999);
// Maximum number of lines shown of a failed tool; more would hide what matters.
constexpr std::size_t kMostLines = 100;

bool IsProblem(const LogEntry& entry) {
  return entry.kind == LogKind::Error || entry.kind == LogKind::Warning;
}

// Returns true if the line belongs to a problem: a note with a position, or an excerpt of the
// source as printed by compilers.
bool IsContext(const LogEntry& entry) {
  return !entry.file.empty() || entry.text.starts_with(" ");
}

}  // namespace

ReportDetail DetailOf(const Invocation& asked) {
  if (asked.json) return ReportDetail::Nothing;
  if (asked.quiet) return ReportDetail::Diagnostics;
  return asked.verbose ? ReportDetail::Everything : ReportDetail::Progress;
}

BuildReporter::BuildReporter(Console& output, std::string startFolder, ReportDetail reportDetail,
                             BuildProgress::Estimator estimateWork)
    : console_(output),
      folder_(std::move(startFolder)),
      detail_(reportDetail),
      progress_(std::move(estimateWork),
                output.Redraws() && reportDetail == ReportDetail::Progress) {}

void BuildReporter::OnToolStarted(const ToolStart& start) {
  progress_.OnToolStarted(start);
  current_ = Printable(DisplayPath(progress_.GetSubject(), folder_));
  if (detail_ < ReportDetail::Progress) return;
  if (console_.Redraws() && detail_ == ReportDetail::Progress) {
    OnTick();
  } else {
    console_.PrintLine("[" + std::to_string(progress_.GetNumber()) + "/" +
                       std::to_string(progress_.GetTotal()) + "] " + current_);
  }
}

void BuildReporter::OnToolEnded(bool success, const std::vector<LogEntry>& messages) {
  progress_.OnToolEnded(success, messages);
  std::size_t skipped = 0;
  for (std::size_t i = 0; i < messages.size(); ++i) {
    const LogEntry& entry = messages[i];
    if (IsProblem(entry)) diagnostics_.push_back(entry);
    const bool isLate = messages.size() - i <= kMostLines;
    if (IsWanted(entry, i == 0, !success && isLate)) {
      PrintSkipped(skipped);
      console_.PrintLine(DisplayEntry(entry, folder_, console_));
    } else if (!success && i > 0) {
      ++skipped;
    }
  }
}

// Prints a hint in place of the omitted lines of a failed tool.
void BuildReporter::PrintSkipped(std::size_t& count) {
  if (count == 0 || detail_ == ReportDetail::Nothing) return;
  console_.PrintLine("(" + CountText(static_cast<int>(count), "line") +
                     " omitted, see `tarn log`)");
  count = 0;
}

// Decides whether a line of a tool is shown. Plain lines are shown if they belong to a problem: its
// context, and the last lines of a failed tool. The first line is the command.
bool BuildReporter::IsWanted(const LogEntry& entry, bool isFirst, bool isEndOfFailed) const {
  if (detail_ == ReportDetail::Nothing) return false;
  if (detail_ == ReportDetail::Everything || entry.kind != LogKind::Plain) return true;
  if (isFirst) return false;
  return isEndOfFailed || IsContext(entry);
}

void BuildReporter::OnRunEvent(const RunEvent& event) {
  progress_.OnRunEvent(event);
  for (const RunObserver& each : runObservers_) each(event);
}

BuildOutcome BuildReporter::Watch(BuildSession& session, const BuildRequest& request) {
  if (WatchesRuns()) {
    session.SetTicker(kProgressTimer, kProgressPeriod, [this, &session] {
      session.PollRuns();
      OnTick();
    });
  }
  const BuildOutcome outcome = session.Run(request, this);
  session.ClearTicker(kProgressTimer);
  if (!outcome.problem.empty()) {
    OnToolEnded(false, {{LogKind::Error, outcome.problem, outcome.problem, {}, 0}});
  }
  return outcome;
}

void BuildReporter::OnTick() {
  if (progress_.GetNumber() == 0 || detail_ != ReportDetail::Progress) return;
  console_.ShowProgress(ProgressText());
}

// "[12/300] 4 running  src/slow.c 3.1s  0:25 left"; the file is that of the longest running tool.
std::string BuildReporter::ProgressText() const {
  const BuildProgress::Clock::time_point now = BuildProgress::Clock::now();
  std::string text = "[" + std::to_string(progress_.GetRetired()) + "/" +
                     std::to_string(progress_.GetTotal()) + "] ";
  const std::vector<BuildProgress::Running> running = progress_.GetRunning();
  if (running.empty()) return text + current_;
  const BuildProgress::Running& longest = running.front();
  text += std::to_string(running.size()) + " running  ";
  text += Printable(DisplayPath(SubjectOf(longest.start), folder_)) + " ";
  text += SecondsText(std::chrono::duration_cast<std::chrono::milliseconds>(now - longest.started));
  const auto remaining = progress_.GetRemaining(now);
  if (remaining) text += "  " + ClockText(*remaining + kRoundedUp) + " left";
  return text;
}

void PrintSuccess(Console& console, const std::string& result, std::chrono::milliseconds elapsed) {
  console.PrintLine(console.Dye(Paint::Green, result) + " (" + DurationText(elapsed) + ")");
}

void BuildReporter::Finish(const BuildOutcome& outcome, BuildWork work,
                           const std::vector<ApplicationSummary>& summaries) {
  console_.ClearProgress();
  if (detail_ < ReportDetail::Progress) return;
  if (outcome.end != BuildEnd::Succeeded) {
    console_.PrintLine(console_.Dye(Paint::Red, FailureText(outcome, work)) + " (" +
                       DurationText(GetElapsed()) + ")");
    return;
  }
  for (const ApplicationSummary& each : summaries) {
    if (!each.infos.empty()) {
      console_.PrintLine(console_.Dye(Paint::Bold, each.label) + "  " + Printable(each.infos));
    }
  }
  const bool hasApplication = outcome.gaps.applications > 0 || outcome.toolsRun > 0;
  std::string text = kNothingToDo;
  if (!hasApplication) text += ": no application to build";
  if (work == BuildWork::Clean) text = "Cleaned";
  if (outcome.toolsRun > 0) text = "Built " + CountText(outcome.toolsRun, "file");
  if (GetWarnings() > 0) text += ", " + CountText(GetWarnings(), "warning");
  PrintSuccess(console_, text, GetElapsed());
}

std::string BuildReporter::FailureText(const BuildOutcome& outcome, BuildWork work) const {
  if (outcome.end == BuildEnd::Refused) return "The build was refused";
  std::string text = outcome.end == BuildEnd::Stopped ? "Interrupted" : "Failed";
  if (work == BuildWork::Clean) return text;
  std::vector<std::string> parts;
  if (GetErrors() > 0) parts.push_back(CountText(GetErrors(), "error"));
  if (GetWarnings() > 0) parts.push_back(CountText(GetWarnings(), "warning"));
  if (progress_.GetTotal() > 0) {
    parts.push_back(std::to_string(outcome.toolsRun) + " of " +
                    CountText(progress_.GetTotal(), "file") + " built");
  }
  for (std::size_t i = 0; i < parts.size(); ++i) text += (i == 0 ? ": " : ", ") + parts[i];
  return text;
}

}  // namespace tarn::host
