#pragma once

#include <chrono>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "hosts/core/BuildSession.h"

namespace tarn::host {

// Progress of a build, computed from the notifications of its observer interface. Elapsed time
// counts from construction. Main thread only.
class BuildProgress : public BuildObserver {
 public:
  using Clock = std::chrono::steady_clock;
  using Milliseconds = std::chrono::milliseconds;

  // A tool that runs now.
  struct Running {
    ToolStart start;
    Clock::time_point started;
  };

  // Returns the tools to run, or nullopt if it has to be called again.
  using Estimator = std::function<std::optional<WorkEstimate>()>;

  // `estimateWork` is called whenever a tool starts, and by Poll, until it returns the tools to
  // run. Pass an empty function if they are unknown. `watchesRuns`: shows which tools run at the
  // same time.
  explicit BuildProgress(Estimator estimateWork, bool watchesRuns = false);

  void OnToolStarted(const ToolStart& start) override;
  void OnToolEnded(bool success, const std::vector<LogEntry>& messages) override;
  bool WatchesRuns() const override { return watchesRuns_; }
  void OnRunEvent(const RunEvent& event) override;
  // Continues to count the tools if there is any work. To be called periodically.
  void Poll() {
    if (number_ > 0) FetchWork();
  }

  // Number of the tool whose turn it is, counted from 1; 0 before the first one.
  int GetNumber() const { return number_; }
  // Number of tools whose results were delivered.
  int GetRetired() const { return retired_; }
  // Total number of tools, never less than GetNumber(); 0 if unknown.
  int GetTotal() const { return work_.count; }
  // The file that identifies the tool whose turn it is, or the tool's name if there is none.
  const std::string& GetSubject() const { return subject_; }
  // The tools that run now, those that run longest first.
  std::vector<Running> GetRunning() const;
  // Time that the rest of the build is going to take according to the last runs of its tools;
  // nullopt if one of these is unknown, or if all took longer this time.
  std::optional<Milliseconds> GetRemaining(Clock::time_point now) const;
  int GetErrors() const { return errors_; }
  int GetWarnings() const { return warnings_; }
  std::chrono::milliseconds GetElapsed() const;
  Clock::time_point GetStart() const { return started_; }

  // Receives what a tool that performs an action prints, as it arrives; may be empty.
  std::function<void(const std::string& text)> onOutput;

 private:
  void FetchWork();

  Estimator askWork_;
  const bool watchesRuns_;
  const Clock::time_point started_ = Clock::now();
  WorkEstimate work_;                     // without the durations of tools that have ended
  std::vector<std::string> endedBefore_;  // outputs of tools that ended before the work was known
  bool isCounted_ = false;
  int number_ = 0;
  int retired_ = 0;
  std::map<int, Running> running_;  // by number of the run, which grows with its start
  std::string subject_;
  int errors_ = 0;
  int warnings_ = 0;
};

}  // namespace tarn::host
