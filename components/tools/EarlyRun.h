#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "components/tools/PlannedRun.h"
#include "components/tools/RunEvents.h"
#include "components/tools/RunningToolSet.h"
#include "components/tools/ToolRun.h"

namespace tarn::tools {

// A tool run together with everything that it borrows, for a run that starts before its turn. It
// may be executed on any thread, by one at a time.
class EarlyRun {
 public:
  // `machine` and `helpers` are borrowed. `run` must have a definition.
  EarlyRun(const ToolEnvironment& machine, HelperFinder& helpers, std::unique_ptr<PlannedRun> run,
           std::size_t mostMessages);
  EarlyRun(const EarlyRun&) = delete;
  EarlyRun& operator=(const EarlyRun&) = delete;

  const std::string& Key() const { return planned_->key; }

  // Returns true if the run's result can't depend on when it runs, apart from changes that IsValid
  // detects: the definition permits early runs of the tool, its inputs are reported, and it writes
  // only files that the plan names.
  bool MayRunEarly() const;
  // Files that the run writes, and the common beginning of their names.
  const std::vector<std::string>& Claims() const { return claims_; }

  // Reports the run's events from now on; null reports none. Call this before Execute.
  void Report(std::unique_ptr<RunEvents::Run> events) { events_ = std::move(events); }
  // Passes the reporting of its events on to the caller.
  std::unique_ptr<RunEvents::Run> TakeEvents() { return std::move(events_); }

  void Execute();
  // Thread-safe.
  void Stop() { running_.Stop(); }
  // Returns true if none of the files that the run read, or would have read if they existed, has
  // changed since it started. Returns false if these files are unknown, as for most failed runs.
  bool IsValid(std::size_t mostMessages);
  // Removes the files that the run has written.
  void RemoveResults() { run_.RemoveResults(); }

  bool HasSucceeded() const { return hasSucceeded_; }
  const ToolInvocation& Job() const { return planned_->owned.job; }
  ToolRun& Run() { return run_; }
  // Constant, also while the run is executed.
  const ToolPlan& Plan() const { return planned_->plan; }

 private:
  bool IsUnchanged(const std::string& path) const;
  bool IsShadowed(const std::vector<std::string>& read) const;

  const ToolEnvironment& world_;
  const std::unique_ptr<PlannedRun> planned_;
  RunningToolSet running_;
  ToolRun run_;
  const std::size_t most_;
  std::vector<std::string> claims_;
  bool hasSucceeded_ = false;
  std::unique_ptr<RunEvents::Run> events_;
};

}  // namespace tarn::tools
