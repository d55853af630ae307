#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "components/tools/BuildRecord.h"
#include "components/tools/GlobalSymbol.h"
#include "components/tools/HelperFinder.h"
#include "components/tools/LargestSymbols.h"
#include "components/tools/MessageLog.h"
#include "components/tools/MessageReader.h"
#include "components/tools/PlannedRun.h"
#include "components/tools/RunningToolSet.h"
#include "components/tools/ToolEnvironment.h"

namespace tarn::tools {

// One run of a planned tool, up to its messages and its record. Used by the thread that runs it
// only. Borrows its arguments, which must outlive it.
class ToolRun {
 public:
  ToolRun(const ToolEnvironment& machine, RunningToolSet& runningTools, HelperFinder& helperFinder,
          const PlannedRun& planned, std::size_t mostMessages);

  const ToolPlan& Plan() const { return plan_; }

  // Runs the steps in order until one fails, and processes their results. Returns false if the tool
  // failed; the messages then say why.
  bool Run();

  // Passes the output of the programs to `onOutput` as it arrives, in addition to the messages.
  using OutputHandler = std::function<void(std::string_view text)>;
  void SetOutputHandler(OutputHandler onOutput) { onOutput_ = std::move(onOutput); }

  // Messages of the run so far.
  const MessageLog& GetLog() const { return log_; }
  ToolMessages TakeMessages() { return log_.Take(); }
  // The record of a successful run with an output; nullopt otherwise.
  const std::optional<BuildRecord>& Record() const { return record_; }
  // Also determines the inputs of a run that fails. Call this before Run.
  void ListInputsOnError() { listsInputsOnError_ = true; }
  // What decides about the result of the run: dependencies, search folders and missing files of the
  // record, also if the tool has failed because of errors in these files. nullptr if that is
  // unknown.
  const BuildRecord* GetInputs() const {
    return record_ ? &*record_ : failedInputs_ ? &*failedInputs_ : nullptr;
  }
  // Time at which the run started, on the file system's clock; 0 if it didn't start.
  std::int64_t GetStartTime() const { return startTime_; }
  // Exit code of the last process; 0 if none was started.
  int GetExitCode() const { return exitCode_; }
  // Removes the files that the run has written, for a run whose result is not used.
  void RemoveResults();

 private:
  bool Prepare();
  bool RemoveEarlier();
  void ExamineEarlier();
  bool HasWritten(const std::string& path) const;
  bool RefusesNames();
  bool RefusesOwnOutput();
  bool RunCommand(const ToolCommand& command);
  bool WriteResponseFile(const ToolCommand& command, ProcessRequest& request,
                         std::string& response);
  bool MoveResults(const ToolCommand& command, bool isDone);
  bool RunProcess(const ToolCommand& command, const ProcessRequest& request);
  void ReadOutput(const ToolCommand& command, Process& process, ProcessExit& exit);
  bool Judge(const ToolCommand& command, const ProcessExit& exit);
  void ReportLastLines();
  bool Fail(const ToolCommand& command, const std::string& reason);
  void LogStartFailure(const ToolCommand& command, const Error& error);
  bool CollectRecord();
  std::int64_t MillisecondsSince(std::int64_t start) const;
  bool FailAfterEnd(const std::string& fault);
  std::int64_t BringForward(const BuildRecord& made, const FileStatus& output);
  void CollectFailedInputs();
  // Return why the dependencies can't be determined, as the rest of a sentence about the rules; an
  // empty string if they can.
  std::string ReadDependencies(BuildRecord& found);
  std::string ReadRules(const std::vector<std::string>& search, std::vector<std::string>& names);
  const std::string& RulesFolder() const;
  void ReadFurtherRules(BuildRecord& found, std::vector<std::string>& names);
  void AddEarlier(const std::string& path, BuildRecord& found) const;
  void AddAssembledFiles(BuildRecord& found, std::vector<std::string>& names) const;
  bool MayMissAssembledFile(const BuildRecord& found) const;
  bool FailRules(const std::string& problem);
  std::map<std::string, std::uint64_t> ReadProgramSizes() const;
  bool IsOutputCut() const;
  bool CheckLimits(const std::map<std::string, std::uint64_t>& sizes);
  // Adds what the messages of a failed step don't say.
  void ExplainFailure(const ToolCommand& command);
  void ReportLargest(const std::string& heading, const std::vector<LargeSymbol>& symbols);
  LinkFiles FilesOfLink() const;
  bool SettleRandomNames();
  void WriteGlobals(const std::vector<std::string>& libraries);
  std::string CdbPath() const;
  GlobalSymbols ReadCdb() const;
  GlobalSymbols ReadDwarf(const std::vector<std::string>& libraries) const;
  std::vector<std::string> FindProducts() const;
  std::vector<std::string> FindByProducts() const;
  void RemoveLeft() const;
  void AddLine(const ToolCommand& command, MessageReader& reader, std::string_view line,
               bool isErrorStream);

  const ToolEnvironment& world_;
  RunningToolSet& running_;
  HelperFinder& helpers_;
  const ToolDefinition& tool_;
  const ToolInvocation& job_;
  const ToolPlan& plan_;
  MessageLog log_;
  OutputHandler onOutput_;
  std::string captured_;
  std::int64_t startTime_ = 0;  // on the file system's clock
  // Files that the run may write, and that exist before its first step, by path.
  std::map<std::string, FileStatus> earlier_;
  bool isPrepared_ = false;  // the run may have written files
  int exitCode_ = 0;
  // State before the current or last step.
  std::size_t errorsBefore_ = 0;
  bool hasStatedError_ = false;  // the step printed an error that fails it
  bool hasPlacedError_ = false;  // the step printed an error in a file, and ended by itself
  std::size_t stepStart_ = 0;    // its position in `log`
  std::size_t capturedBefore_ = 0;
  std::vector<sizes::RegionOverflow> overflows_;  // that the linker has reported
  std::optional<BuildRecord> record_;
  bool listsInputsOnError_ = false;
  std::optional<BuildRecord> failedInputs_;
};

}  // namespace tarn::tools
