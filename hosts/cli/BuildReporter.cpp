#include "hosts/cli/BuildReporter.h"

#include "hosts/cli/DisplayText.h"
#include "platform/paths/Paths.h"

namespace tarn::host {

namespace {

constexpr std::int32_t kProgressTimer = 1;
constexpr std::chrono::milliseconds kProgressPeriod(200);

}  // namespace

ReportDetail DetailOf(const Invocation& asked) {
  if (asked.json) return ReportDetail::Nothing;
  if (asked.quiet) return ReportDetail::Diagnostics;
  return asked.verbose ? ReportDetail::Everything : ReportDetail::Progress;
}

BuildReporter::BuildReporter(Console& output, std::string startFolder, ReportDetail reportDetail,
                             std::function<int()> countWork)
    : console(output),
      folder(std::move(startFolder)),
      detail(reportDetail),
      progress(std::move(countWork)) {}

void BuildReporter::OnToolStarted(const ToolStart& start) {
  progress.OnToolStarted(start);
  current = Printable(DisplayPath(progress.GetSubject(), folder));
  if (detail < ReportDetail::Progress) return;
  if (console.Redraws() && detail == ReportDetail::Progress) {
    OnTick();
  } else {
    console.PrintLine("[" + std::to_string(progress.GetNumber()) + "/" +
                      std::to_string(progress.GetTotal()) + "] " + current);
  }
}

void BuildReporter::OnToolEnded(bool success, const std::vector<LogEntry>& messages) {
  progress.OnToolEnded(success, messages);
  bool isFirst = true;
  for (const LogEntry& entry : messages) {
    const bool isDiagnostic = entry.kind == LogKind::Error || entry.kind == LogKind::Warning;
    if (isDiagnostic) diagnostics.push_back(entry);
    if (IsWanted(entry, success, isFirst)) {
      console.PrintLine(DisplayEntry(entry, folder, console));
    }
    isFirst = false;
  }
}

// A tool's own lines count where they belong to something that went wrong: notes with a place, the
// source lines that a compiler shows below its message, and everything of a tool that failed. The
// first line is the command.
bool BuildReporter::IsWanted(const LogEntry& entry, bool success, bool isFirst) const {
  if (detail == ReportDetail::Nothing) return false;
  if (detail == ReportDetail::Everything || entry.kind != LogKind::Plain) return true;
  if (isFirst) return false;
  return !success || !entry.file.empty() || entry.text.starts_with(" ");
}

BuildOutcome BuildReporter::Watch(BuildSession& session, const BuildRequest& request) {
  if (console.Redraws()) session.SetTicker(kProgressTimer, kProgressPeriod, [this] { OnTick(); });
  const BuildOutcome outcome = session.Run(request, this);
  session.ClearTicker(kProgressTimer);
  if (!outcome.problem.empty()) {
    OnToolEnded(false, {{LogKind::Error, outcome.problem, outcome.problem, {}, 0}});
  }
  return outcome;
}

void BuildReporter::OnTick() {
  if (progress.GetNumber() == 0 || detail != ReportDetail::Progress) return;
  std::string count = std::to_string(progress.GetNumber());
  const std::string all = std::to_string(progress.GetTotal());
  count.insert(0, all.size() - count.size(), ' ');
  console.ShowProgress("[" + count + "/" + all + "] " + current + "  " + ClockText(GetElapsed()));
}

void BuildReporter::Finish(const BuildOutcome& outcome, BuildWork work,
                           const std::vector<ApplicationSummary>& summaries) {
  console.ClearProgress();
  if (detail < ReportDetail::Progress) return;
  const std::string time = DurationText(GetElapsed());
  if (outcome.end != BuildEnd::Succeeded) {
    console.PrintLine(console.Dye(Paint::Red, FailureText(outcome, work)) + " (" + time + ")");
    return;
  }
  for (const ApplicationSummary& each : summaries) {
    if (!each.infos.empty()) {
      console.PrintLine(console.Dye(Paint::Bold, each.label) + "  " + Printable(each.infos));
    }
  }
  std::string text = "Nothing to do";
  if (work == BuildWork::Clean) text = "Cleaned";
  if (outcome.toolsRun > 0) text = "Built " + CountText(outcome.toolsRun, "file");
  if (GetWarnings() > 0) text += ", " + CountText(GetWarnings(), "warning");
  console.PrintLine(console.Dye(Paint::Green, text) + " (" + time + ")");
}

std::string BuildReporter::FailureText(const BuildOutcome& outcome, BuildWork work) const {
  if (outcome.end == BuildEnd::Refused) return "The build was refused";
  std::string text = outcome.end == BuildEnd::Stopped ? "Interrupted" : "Failed";
  if (work == BuildWork::Clean) return text;
  std::vector<std::string> parts;
  if (GetErrors() > 0) parts.push_back(CountText(GetErrors(), "error"));
  if (GetWarnings() > 0) parts.push_back(CountText(GetWarnings(), "warning"));
  if (progress.GetTotal() > 0) {
    parts.push_back(std::to_string(outcome.toolsRun) + " of " +
                    CountText(progress.GetTotal(), "file") + " built");
  }
  for (std::size_t i = 0; i < parts.size(); ++i) text += (i == 0 ? ": " : ", ") + parts[i];
  return text;
}

}  // namespace tarn::host
