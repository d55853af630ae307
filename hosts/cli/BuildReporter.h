#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "hosts/cli/Console.h"
#include "hosts/cli/Invocation.h"
#include "hosts/core/BuildProgress.h"
#include "hosts/core/BuildSession.h"

namespace tarn::host {

// How much of a build is shown while it runs.
enum class ReportDetail { Nothing, Diagnostics, Progress, Everything };
// The detail requested with -v, -q and --json.
ReportDetail DetailOf(const Invocation& asked);

inline constexpr const char* kNothingToDo = "Nothing to do";
// Prints the result of a build that succeeded.
void PrintSuccess(Console& console, const std::string& result, std::chrono::milliseconds elapsed);

// Shows a build on a console: a progress line if the output is a terminal that can redraw lines,
// else one line per tool, and the tools' messages as they end.
class BuildReporter : public BuildObserver {
 public:
  // `estimateWork` returns the tools to run; it is called once, when the first one starts.
  BuildReporter(Console& output, std::string startFolder, ReportDetail reportDetail,
                BuildProgress::Estimator estimateWork);

  // Also passes the events of tool runs to `observer`. Call this before Watch.
  using RunObserver = std::function<void(const RunEvent& event)>;
  void AddRunObserver(RunObserver observer) { runObservers_.push_back(std::move(observer)); }

  void OnToolStarted(const ToolStart& start) override;
  void OnToolEnded(bool success, const std::vector<LogEntry>& messages) override;
  bool WatchesRuns() const override { return !runObservers_.empty() || progress_.WatchesRuns(); }
  void OnRunEvent(const RunEvent& event) override;
  // Redraws the progress line.
  void OnTick();

  // Runs the build and shows its events; on a terminal also the elapsed time.
  BuildOutcome Watch(BuildSession& session, const BuildRequest& request);
  // Removes the progress line and shows the result.
  void Finish(const BuildOutcome& outcome, BuildWork work,
              const std::vector<ApplicationSummary>& summaries);

  const BuildProgress& GetProgress() const { return progress_; }
  int GetErrors() const { return progress_.GetErrors(); }
  int GetWarnings() const { return progress_.GetWarnings(); }
  const std::vector<LogEntry>& GetDiagnostics() const { return diagnostics_; }
  std::chrono::milliseconds GetElapsed() const { return progress_.GetElapsed(); }

 private:
  bool IsWanted(const LogEntry& entry, bool isFirst, bool isEndOfFailed) const;
  void PrintSkipped(std::size_t& count);
  std::string ProgressText() const;
  std::string FailureText(const BuildOutcome& outcome, BuildWork work) const;

  Console& console_;
  const std::string folder_;
  const ReportDetail detail_;
  BuildProgress progress_;
  std::vector<RunObserver> runObservers_;
  std::string current_;  // displayed file or tool
  std::vector<LogEntry> diagnostics_;
};

}  // namespace tarn::host
