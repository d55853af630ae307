#pragma once

#include <cstddef>
#include <deque>
#include <memory>
#include <optional>
#include <string>

#include "components/tools/CommandBuilder.h"
#include "components/tools/OwnedJob.h"
#include "components/tools/RunAccess.h"
#include "components/tools/ToolSet.h"

namespace tarn::tools {

// What the arguments of RunTool ask for: the tool, its job and the plan, together with everything
// that the plan points to.
class PlannedRun {
 public:
  PlannedRun(const ToolEnvironment& world, std::shared_ptr<const ToolSet> toolSet, const char* tool,
             const char* files, const char* options);

  // Returns what the run accesses, which is determined by the first call. The tool must exist.
  const RunAccess& FindAccess();
  // Same without code and programs, see FindRunFiles().
  const RunAccess& FindFiles();

  // Identifies the tool, the files and the options of a run.
  static std::string KeyOf(const char* tool, const char* files, const char* options);

  const std::string key;
  const std::shared_ptr<const ToolSet> tools;  // where the tool was looked up
  OwnedJob owned;
  std::shared_ptr<const ToolDefinition> definition;  // null if there is no such tool
  ToolPlan plan;                                     // of the definition

 private:
  const ToolEnvironment& world_;
  std::optional<RunAccess> access_;
  std::optional<RunAccess> files_;
};

// Runs that were planned when a host asked what they access, and which it is going to request: the
// run then is the one that was checked, and its plan is made once. Not thread-safe.
class PlannedRuns {
 public:
  void Add(std::unique_ptr<PlannedRun> run);
  // Removes and returns the run with these arguments; null if there is none that was planned with
  // the same definitions.
  std::unique_ptr<PlannedRun> Take(const std::string& key, const ToolSet& tools);
  void Clear() { runs_.clear(); }

 private:
  // More than a build plans before it requests the first of them (see RunsAhead).
  static constexpr std::size_t kMost = 320;

  std::deque<std::unique_ptr<PlannedRun>> runs_;  // in the order of Add
};

}  // namespace tarn::tools
