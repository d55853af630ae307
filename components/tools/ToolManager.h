#pragma once

#include <tarn/automation.h>

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <vector>

#include "components/tools/HelperFinder.h"
#include "components/tools/RunningTools.h"
#include "components/tools/ToolMessage.h"
#include "components/tools/ToolSet.h"
#include "components/tools/ToolWorld.h"
#include "platform/automation/DispatchTable.h"
#include "widgets/MessageLoop.h"

namespace tarn::tools {

// Messages to the frame window that InitTools got. Sent from the thread that runs the tool, with no
// lock held; the texts live only during the call.
enum ToolFrameMessage : std::uint32_t {
  kMsgToolStarted = TARN_MSG_TOOL_STARTED,
  kMsgToolEnded = TARN_MSG_TOOL_ENDED,
};

// The automation object TarnToolManager.ToolManager: finds tools in definition files and runs them.
// All operations may be called from any thread; RunTool blocks until its tool has ended.
class ToolManager : public DispatchObject<ToolManager> {
 public:
  explicit ToolManager(ToolWorld machine) : world(std::move(machine)) {}

  static const DispatchTable<ToolManager>& Table();

  // Reads the definitions in config/tools below the application path, an empty one being that of
  // the installation, in place of earlier ones.
  // Tools that run go on with theirs. Always 1; GetDefinitionErrors tells what was wrong.
  std::int32_t InitTools(const char* applicationPath, const char* dataPath, std::int32_t frame);
  // Reads the definitions again if their files changed since they were read; 1 if so.
  std::int32_t RefreshTools();
  // 1 when the tool succeeded. `tool` is a name, or the path of a program. `files` is a list of
  // quoted paths with commas between them, `options` the values text of the node. The messages go
  // to `messageFile`, complete before the call returns; null: nowhere.
  std::int32_t RunTool(const char* tool, const char* files, const char* options,
                       const char* messageFile);
  // An element with one child for each tool that serves the extension (with its dot).
  std::string GetToolsForExtension(const char* extension);

  // What RunTool would start, without starting it.
  std::string GetCommandLines(const char* tool, const char* files, const char* options);
  // Why it would start nothing, a line for each reason; empty if it would.
  std::string GetCommandProblems(const char* tool, const char* files, const char* options);
  // A hash of what it would start, launchers left out; empty if there is no such tool.
  std::string GetCommandHash(const char* tool, const char* files, const char* options);
  // Changes with the tool's definition and with where its programs are found; empty if there is no
  // such tool. For telling cheaply that command hashes can't have changed.
  std::string GetToolFingerprint(const char* tool);
  // Those of the candidates, a list of files as well, that the run would read, as such a list.
  std::string GetUsedFiles(const char* tool, const char* files, const char* options,
                           const char* candidates);
  // The further files that the run would make, as such a list.
  std::string GetProducts(const char* tool, const char* files, const char* options);
  // What the run would reach for because of the options, as RunAccess.h describes it.
  std::string GetAccess(const char* tool, const char* files, const char* options);
  // The records of the runs that succeeded since the last call, as a text for SetBuildInfo; empty
  // when there are none.
  std::string TakeBuildInformation();
  // Stops everything that runs; new runs fail until ResumeTools. Returns at once.
  void StopTools();
  void ResumeTools();
  // The first program of the tool's steps that isn't there; empty when all are.
  std::string MissingProgram(const char* tool);
  std::string ListTools();
  // One line for each thing that was wrong with the definitions.
  std::string GetDefinitionErrors();
  // Why tools may be missing; empty if there is no reason.
  std::string GetDefinitionProblem();
  // 1 if the tool is defined, or is the path of a program.
  std::int32_t HasTool(const char* tool);

 private:
  std::shared_ptr<const ToolSet> Tools();
  // The tool of that name; else, when a program lies at that path, a tool made from it. Null when
  // there is neither. What it points to lives as long as the result.
  std::shared_ptr<const ToolDefinition> FindTool(const std::string& name);
  bool Execute(const std::string& toolName, const char* files, const char* options,
               ToolMessages& messages);
  // Returns why some of these outputs must not be linked, and replaces the others by the names of
  // their sources where they are known; clears the sources.
  std::vector<std::string> TakeConflicts(std::vector<std::string>& repeated);
  // How many messages the next run may retain (see MessageLog).
  std::size_t MostMessages();
  void CountMessages(std::size_t retained);
  void TellFrame(std::uint32_t message, const std::string& text, std::intptr_t lParam);

  const ToolWorld world;
  RunningTools running;
  HelperFinder helpers;

  std::mutex lock;  // guards what follows; never held across a call out
  std::shared_ptr<const ToolSet> tools = std::make_shared<ToolSet>();
  std::string folder;  // of the definitions; empty before InitTools
  WindowHandle frame = 0;
  std::string records;
  std::size_t messagesOfBuild = 0;  // since RefreshTools, which goes ahead of each build
  // By output: the sources that were translated into it since the last link.
  std::map<std::string, std::set<std::string>> sources;
};

}  // namespace tarn::tools
