#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "components/tools/BuildRecord.h"
#include "components/tools/CommandBuilder.h"
#include "components/tools/HelperFinder.h"
#include "components/tools/MessageLog.h"
#include "components/tools/MessageReader.h"
#include "components/tools/RunningTools.h"
#include "components/tools/ToolWorld.h"

namespace tarn::tools {

// One run of a tool, from its plan to its messages and its record. Belongs to the thread that runs
// it; the borrowed parts outlive it.
class ToolRun {
 public:
  ToolRun(const ToolWorld& machine, RunningTools& runningTools, HelperFinder& helperFinder,
          const ToolDefinition& definition, const ToolJob& toolJob, std::size_t mostMessages);

  const ToolPlan& Plan() const { return plan; }

  // Runs the steps in order up to the first that fails, and takes in what they left. False when
  // the tool failed; the messages then say why.
  bool Run();

  const MessageLog& GetLog() const { return log; }
  ToolMessages TakeMessages() { return log.Take(); }
  // Only after a run that succeeded and left an output.
  const std::optional<BuildRecord>& Record() const { return record; }

 private:
  bool Prepare();
  bool RemoveEarlier();
  bool RefusesNames();
  bool RunCommand(const ToolCommand& command);
  bool WriteResponseFile(const ToolCommand& command, ProcessRequest& request,
                         std::string& response);
  bool MoveResults(const ToolCommand& command, bool isDone);
  bool RunProcess(const ToolCommand& command, const ProcessRequest& request);
  void ReadOutput(const ToolCommand& command, Process& process, ProcessExit& exit);
  bool Judge(const ToolCommand& command, const ProcessExit& exit);
  void ReportLastLines();
  bool Fail(const ToolCommand& command, const std::string& reason);
  void TellStartFailure(const ToolCommand& command, const Error& error);
  bool CollectRecord();
  bool FailWithoutOutput(const std::string& reason);
  std::int64_t BringForward(const BuildRecord& made, const FileStatus& output);
  // False, with an error in the messages, if they are not known.
  bool ReadDependencies(BuildRecord& found);
  const std::string& RulesFolder() const;
  bool ReadRules(const std::vector<std::string>& search, std::vector<std::string>& names);
  void ReadFurtherRules(BuildRecord& found, std::vector<std::string>& names);
  void AddEarlier(const std::string& path, BuildRecord& found) const;
  void AddAssembledFiles(BuildRecord& found, std::vector<std::string>& names) const;
  bool FailRules(const std::string& problem);
  std::string ReadInfos();
  bool SettleRandomNames();
  void WriteGlobals();
  std::vector<std::string> FindProducts() const;
  std::vector<std::string> FindByProducts() const;
  void AddLine(const ToolCommand& command, MessageReader& reader, std::string_view line,
               bool isErrorStream);

  const ToolWorld& world;
  RunningTools& running;
  HelperFinder& helpers;
  const ToolDefinition& tool;
  const ToolJob& job;
  ToolPlan plan;
  MessageLog log;
  std::string captured;
  std::int64_t startTime = 0;  // by the disk's clock
  // As they were before the step that runs, or ran last.
  std::size_t errorsBefore = 0;
  bool hasStatedError = false;  // the step printed an error that fails it
  std::size_t stepStart = 0;    // its place in `log`
  std::size_t capturedBefore = 0;
  std::optional<BuildRecord> record;
};

}  // namespace tarn::tools
