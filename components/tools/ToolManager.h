#pragma once

#include <tarn/automation.h>

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <vector>

#include "components/tools/EarlyRuns.h"
#include "components/tools/HelperFinder.h"
#include "components/tools/JobPermits.h"
#include "components/tools/PlannedRun.h"
#include "components/tools/RunEvents.h"
#include "components/tools/RunningToolSet.h"
#include "components/tools/ToolEnvironment.h"
#include "components/tools/ToolMessage.h"
#include "components/tools/ToolSet.h"
#include "platform/automation/DispatchTable.h"
#include "widgets/MessageLoop.h"

namespace tarn::tools {

// Messages to the frame window passed to InitTools. Sent from the thread that runs the tool,
// without holding a lock; the strings are valid during the call only.
enum ToolFrameMessage : std::uint32_t {
  kMsgToolStarted = TARN_MSG_TOOL_STARTED,
  kMsgToolEnded = TARN_MSG_TOOL_ENDED,
};

// The automation object TarnToolManager.ToolManager: loads tool definitions and runs tools.
// Thread-safe; RunTool blocks until its tool has ended.
class ToolManager : public DispatchObject<ToolManager> {
 public:
  explicit ToolManager(ToolEnvironment machine);

  static const DispatchTable<ToolManager>& Table();

  // Loads the definitions in config/tools below the application path (if empty, that of the
  // installation), replacing earlier ones. Running tools continue with theirs. Always returns 1;
  // see GetDefinitionErrors.
  std::int32_t InitTools(const char* applicationPath, const char* dataPath, std::int32_t frame);
  // Sets further folders with definitions, one per line, which extend and override those of the
  // installation, and loads them. Returns 1 if the definitions have changed.
  std::int32_t SetDefinitionFolders(const char* folders);
  // Reloads the definitions if their files have changed; returns 1 if so.
  std::int32_t RefreshTools();
  // Runs a tool and returns 1 if it succeeded. `tool` is a name or the path of a program, `files` a
  // comma-separated list of quoted paths, and `options` the values text of the node. The messages
  // are written to `messageFile` before the call returns; null discards them.
  std::int32_t RunTool(const char* tool, const char* files, const char* options,
                       const char* messageFile);
  // Early runs: the caller announces runs in the order in which it will request them, and they run
  // at the same time, in advance. RunTool then returns the result of such a run, with its messages
  // and notifications, as if it had run at that time.
  //
  // Sets the number of tools that may run at the same time; 1, the default, disables early runs.
  // Always returns 1.
  std::int32_t SetJobs(std::int32_t count);
  std::int32_t GetJobs() { return early_.GetJobs(); }
  // If MAKEFLAGS describes a jobserver of make, takes one of its tokens for each tool beyond the
  // first. The number of jobs is then `count` or, if that is 0, the number that MAKEFLAGS has.
  // Returns the reason if the jobserver can't be used; nothing changes then. Without it, and after
  // SetJobs with more than 1, tools find a jobserver with the free jobs in their MAKEFLAGS.
  std::string JoinJobserver(std::int32_t count);
  // Limits for starting a run early while other tools run: from `load` hundredths of the load
  // average on none is started, nor with less than `megabytes`, or `percent` of the total memory,
  // available. Negative values mean no limit, the default. Always returns 1.
  std::int32_t SetStartLimits(std::int32_t load, std::int32_t megabytes, std::int32_t percent);
  // Starts a run early. Returns 0 if it can't: its result could depend on when it runs, or another
  // early run writes the same file. Returns immediately.
  std::int32_t PrepareTool(const char* tool, const char* files, const char* options);
  // Notifies the frame of the start of the early run with these arguments, and waits for its end.
  // Returns 1 if RunTool will return its result, which may be a failure. Otherwise, because its
  // inputs have changed since or are unknown, removes what it wrote, and RunTool runs the tool.
  // Returns 0 also if there is no such run.
  std::int32_t AwaitTool(const char* tool, const char* files, const char* options);
  // Stops the early runs that were not requested, and removes what they wrote. Always returns 1.
  std::int32_t DropTools();
  // Starts (1) or ends (0) the recording of events of tool runs. Always returns 1.
  std::int32_t WatchRuns(std::int32_t isWatched);
  // Returns the events since the last call, see RunEvents; empty if there are none.
  std::string TakeRunEvents() { return events_.Take(); }

  // Returns an element with one child per tool for the extension (including its dot).
  std::string GetToolsForExtension(const char* extension);

  // Returns an element with one child per action for the extension: its name and title, the tool
  // that performs it with these options, why it would start nothing, and a program that is missing.
  std::string GetActions(const char* extension, const char* files, const char* options);

  // Returns the command lines that RunTool would start.
  std::string GetCommandLines(const char* tool, const char* files, const char* options);
  // Returns the reasons why RunTool would start nothing, one per line; empty if there are none.
  std::string GetCommandProblems(const char* tool, const char* files, const char* options);
  // Returns a hash of the command lines without launchers; empty if the tool does not exist.
  std::string GetCommandHash(const char* tool, const char* files, const char* options);
  // Returns a value that changes with the tool's definition and the locations of its programs;
  // empty if the tool does not exist. A cheap test that command hashes can't have changed.
  std::string GetToolFingerprint(const char* tool);
  // Returns the candidates, a file list, that the run would read, as a file list.
  std::string GetUsedFiles(const char* tool, const char* files, const char* options,
                           const char* candidates);
  // Returns the accesses of the run that its options cause, see RunAccess.h. The next RunTool or
  // PrepareTool with these arguments runs the same commands, unless definitions are loaded or
  // refreshed before.
  std::string GetAccess(const char* tool, const char* files, const char* options);
  // Same without the code and the programs, for a project that may run anything.
  std::string GetRunFiles(const char* tool, const char* files, const char* options);
  // Returns the records of successful runs since the last call, as a text for SetBuildInfo; empty
  // if there are none.
  std::string TakeBuildInformation();
  // Stops all running tools; new runs fail until ResumeTools. Returns immediately.
  void StopTools();
  // Allows runs again.
  void ResumeTools();
  // Returns the first missing program of the tool's steps; empty if none is missing.
  std::string MissingProgram(const char* tool);
  // Returns the element that describes all tools.
  std::string ListTools();
  // Returns one line for each error in the definitions.
  std::string GetDefinitionErrors();
  // Returns why tools may be missing; empty if there is no known reason.
  std::string GetDefinitionProblem();
  // Returns the positions of the symbols of a program; see SymbolPositionsText.
  std::string ListSymbolPositions(const char* program, const char* folder);
  // Returns 1 if the tool is defined or is the path of a program.
  std::int32_t HasTool(const char* tool);

 private:
  std::shared_ptr<const ToolSet> Tools();
  // Returns 1 if the definitions have changed.
  std::int32_t Reload();
  // Looks for the folder of a toolchain in its environment variable, then in the user's settings.
  ToolchainLocator Locator() const;
  // Returns the tool of this name or, if it is the path of a program, a definition made for it;
  // otherwise nullptr. Shares ownership of everything it refers to.
  std::shared_ptr<const ToolDefinition> FindTool(const std::string& name);
  // Same, but if the name is that of an action, returns the tool that performs it.
  std::shared_ptr<const ToolDefinition> FindTool(const std::string& name,
                                                 const ToolInvocation& job);
  // Returns why FindTool returns nullptr.
  std::string DescribeMissing(const std::string& tool, const ToolInvocation& job);
  // Plans a run of the tool, without a definition if there is no such tool.
  std::unique_ptr<PlannedRun> Plan(const char* tool, const char* files, const char* options);
  // Keeps the planned run for the next request of it.
  std::string FindAccess(const char* tool, const char* files, const char* options,
                         const RunAccess& (PlannedRun::*find)());
  // Returns the run of this key that FindAccess has kept, or else plans it.
  std::unique_ptr<PlannedRun> TakePlanned(const std::string& key, const char* tool,
                                          const char* files, const char* options);
  using Events = std::unique_ptr<RunEvents::Run>;

  // Runs the tool and appends its messages, including errors in the plan. Returns true on success.
  // `events` receives the object that reports the end of the run; null if no host watches.
  bool Execute(const std::string& toolName, const char* files, const char* options,
               ToolMessages& messages, Events& events);
  // Same for a run that has already ended.
  bool Deliver(EarlyRun& ended, const std::string& toolName, const char* files,
               ToolMessages& messages);
  // Returns the element that describes the start of a run.
  std::string DescribeStart(const std::string& toolName, const char* files,
                            const ToolInvocation& job, const ToolPlan& plan);
  // Notifies the frame of the start of a run, unless that was done when it was awaited.
  void NotifyStart(const std::string& toolName, const char* files, const std::string& key,
                   const ToolInvocation& job, const ToolPlan& plan);
  void Keep(const ToolRun& run, const ToolInvocation& job);
  // Returns why some of these outputs must not be linked, and replaces the others with the names of
  // their sources if these are known. Clears the recorded sources.
  std::vector<std::string> TakeConflicts(std::vector<std::string>& repeated);
  // Number of messages that the next run may retain (see MessageLog).
  std::size_t MostMessages();
  void CountMessages(std::size_t retained);
  void NotifyHost(std::uint32_t message, const std::string& text, std::intptr_t lParam);

  JobPermits permits_;
  JobserverLauncher launcher_;
  const ToolEnvironment world_;
  RunningToolSet running_;
  HelperFinder helpers_;
  RunEvents events_;
  EarlyRuns early_;

  std::mutex lock_;  // guards the members below; not held while calling out
  std::shared_ptr<const ToolSet> tools_ = std::make_shared<ToolSet>();
  std::string folder_;  // folder of the definitions; empty before InitTools
  std::vector<std::string> furtherFolders_;
  WindowHandle frame_ = 0;
  PlannedRuns planned_;
  std::string records_;
  std::size_t messagesOfBuild_ = 0;  // since RefreshTools, which is called before each build
  std::string notifiedKey_;          // key of the early run of whose start the frame was notified
  // Sources translated to each output since the last link.
  std::map<std::string, std::set<std::string>> sources_;
};

}  // namespace tarn::tools
