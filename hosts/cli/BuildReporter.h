#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "hosts/cli/Console.h"
#include "hosts/cli/Invocation.h"
#include "hosts/core/BuildProgress.h"
#include "hosts/core/BuildSession.h"

namespace tarn::host {

// How much of a build is told while it runs.
enum class ReportDetail { Nothing, Diagnostics, Progress, Everything };
// As -v, -q and --json want it.
ReportDetail DetailOf(const Invocation& asked);

// Tells a build on a console: a progress line where lines can be taken back, else one line for
// each tool, and what the tools say as they end.
class BuildReporter : public BuildObserver {
 public:
  // `countWork` tells how many tools there are to run; asked once, when the first one starts.
  BuildReporter(Console& output, std::string startFolder, ReportDetail reportDetail,
                std::function<int()> countWork);

  void OnToolStarted(const ToolStart& start) override;
  void OnToolEnded(bool success, const std::vector<LogEntry>& messages) override;
  // Draws the running clock anew.
  void OnTick();

  // Runs the build and tells of it; on a terminal also the time that goes by.
  BuildOutcome Watch(BuildSession& session, const BuildRequest& request);
  // Takes the progress line away and tells how it ended.
  void Finish(const BuildOutcome& outcome, BuildWork work,
              const std::vector<ApplicationSummary>& summaries);

  int GetErrors() const { return progress.GetErrors(); }
  int GetWarnings() const { return progress.GetWarnings(); }
  const std::vector<LogEntry>& GetDiagnostics() const { return diagnostics; }
  std::chrono::milliseconds GetElapsed() const { return progress.GetElapsed(); }

 private:
  bool IsWanted(const LogEntry& entry, bool isFirst, bool isEndOfFailed) const;
  void PrintSkipped(std::size_t& count);
  std::string FailureText(const BuildOutcome& outcome, BuildWork work) const;

  Console& console;
  const std::string folder;
  const ReportDetail detail;
  BuildProgress progress;
  std::string current;  // file or tool, as it is shown
  std::vector<LogEntry> diagnostics;
};

}  // namespace tarn::host
