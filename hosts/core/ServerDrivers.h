#pragma once

#include <tarn/commands.h>
#include <tarn/methods.h>

#include <cstdint>
#include <string>

#include "platform/automation/DispatchDriver.h"
#include "widgets/MessageLoop.h"

// Typed wrappers for the dispatch calls of a host, by method id. All calls are late bound: a call
// on a missing object returns 0 or an empty string.
namespace tarn::host {

class ProjectManagerDriver : public COleDispatchDriver {
 public:
  // Opens a project in place of the current one; returns 0 on failure, and if it is already open.
  std::int32_t ProjectOpen(const std::string& path) {
    return InvokeLong(TARN_PM_PROJECT_OPEN, {path});
  }
  std::int32_t ProjectClose() { return InvokeLong(TARN_PM_PROJECT_CLOSE, {}); }
  // Closes the project and asks the user for a new one; returns 0 if none was created.
  std::int32_t ProjectNew() { return InvokeLong(TARN_PM_PROJECT_NEW, {NullableText()}); }
  std::int32_t ProjectSave() { return InvokeLong(TARN_PM_PROJECT_SAVE, {}); }
  // Both announce their windows to the frame first and return the handle of one of them.
  std::int32_t GetProjectWindow() { return InvokeLong(TARN_PM_GET_PROJECT_WINDOW, {}); }
  std::int32_t GetOutputWindow() { return InvokeLong(TARN_PM_GET_OUTPUT_WINDOW, {}); }
  // Executes a command. Returns 2 if it continues in the background; the end is reported by a
  // message of the worker.
  std::int32_t Command(std::uint32_t id) { return InvokeLong(TARN_PM_COMMAND, {AsNumber(id)}); }
  // Must be the first call. `application` is the folder of the installed data, `data` that of the
  // user, `frame` receives the messages.
  std::int32_t Init(const std::string& application, const std::string& data, WindowHandle frame) {
    return InvokeLong(TARN_PM_INIT, {application, data, frame});
  }
  // Returns an option value of the current node.
  std::string GetPropertyValue(const std::string& set, const std::string& section,
                               const std::string& property) {
    return InvokeText(TARN_PM_GET_PROPERTY_VALUE, {set, section, property});
  }
  // Returns 0 if the command is currently disabled.
  std::int32_t EnableCommand(std::uint32_t id) {
    return InvokeLong(TARN_PM_ENABLE_COMMAND, {AsNumber(id)});
  }
  // Sets the tool manager, to which no reference is taken.
  void InitToolManager(IDispatch* tools) {
    InvokeHelper(TARN_PM_INIT_TOOL_MANAGER, {DispatchPtr(tools)});
  }
  // Every background command is enclosed in these: PrologCommand asks the host for permission and
  // clears the log (0: refused), EpilogCommand follows its end (0: the manager has posted another
  // command).
  std::int32_t EpilogCommand(std::uint32_t id) {
    return InvokeLong(TARN_PM_EPILOG_COMMAND, {AsNumber(id)});
  }
  std::int32_t PrologCommand(std::uint32_t id) {
    return InvokeLong(TARN_PM_PROLOG_COMMAND, {AsNumber(id)});
  }
  void Clean() { InvokeHelper(TARN_PM_CLEAN, {}); }
  std::string GetSelectedApplication() { return InvokeText(TARN_PM_GET_SELECTED_APPLICATION, {}); }
  // Adds a file. Without a type, it is derived from the extension.
  std::int32_t AddExistingItem(const std::string& path, const NullableText& type = {}) {
    return InvokeLong(TARN_PM_ADD_EXISTING_ITEM, {path, type});
  }
  // Adds the item specified in the wizard.
  std::int32_t AddNewItem() {
    return InvokeLong(TARN_PM_ADD_NEW_ITEM, {NullableText(), NullableText()});
  }
  // Stores records returned by ToolManagerDriver::TakeBuildInformation in the project.
  std::int32_t SetBuildInfo(const std::string& xml) {
    return InvokeLong(TARN_PM_SET_BUILD_INFO, {"", xml});
  }
  // Returns the tools that accept the current node, each with its command number, as XML.
  std::string GetToolCommands() {
    return InvokeText(TARN_PM_GET_DYNAMIC_COMMANDS, {AsNumber(TARN_CMD_LIST_TOOLS)});
  }
  // Adds a line to the log.
  void ReportMessage(const std::string& text) { InvokeHelper(TARN_PM_REPORT_MESSAGE, {text}); }
  // Reads the file and sends its content to the host in a message, which runs the script.
  std::int32_t ExecuteScript(const std::string& path) {
    return InvokeLong(TARN_PM_EXECUTE_SCRIPT, {path});
  }
  // Change an option of the current node and store it in the project.
  std::int32_t SavePropertyValue(const std::string& set, const std::string& section,
                                 const std::string& property, const std::string& value) {
    return InvokeLong(TARN_PM_SAVE_PROPERTY_VALUE, {set, section, property, value});
  }
  std::int32_t ResetPropertyValue(const std::string& set, const std::string& section,
                                  const std::string& property) {
    return InvokeLong(TARN_PM_RESET_PROPERTY_VALUE, {set, section, property});
  }

 private:
  static std::int32_t AsNumber(std::uint32_t id) { return static_cast<std::int32_t>(id); }
};

// The companion object of the project manager, for queries.
class InspectorDriver : public COleDispatchDriver {
 public:
  // Connects to the manager; must be the first call.
  std::int32_t Attach(IDispatch* manager) {
    return InvokeLong(TARN_INS_ATTACH, {DispatchPtr(manager)});
  }
  std::int32_t PublishAll() { return InvokeLong(TARN_INS_PUBLISH_ALL, {}); }
  // Returns 0 if another call is needed to finish.
  std::int32_t PublishFor(std::int32_t milliseconds) {
    return InvokeLong(TARN_INS_PUBLISH_FOR, {milliseconds});
  }
  // Continues the publishing in the background. Returns 0 if another call is needed to finish, and
  // 2 if it was stopped before.
  std::int32_t ContinuePublishing(std::int32_t milliseconds) {
    return InvokeLong(TARN_INS_CONTINUE_PUBLISHING, {milliseconds});
  }
  std::string GetTree() { return InvokeText(TARN_INS_GET_TREE, {}); }
  // Like GetTree(), but only the project and its applications.
  std::string GetApplications() { return InvokeText(TARN_INS_GET_APPLICATIONS, {}); }
  // Returns the outdated nodes with their reasons as XML; see ParseStatus.
  std::string GetStatus() { return InvokeText(TARN_INS_GET_STATUS, {}); }
  // Returns an empty string if another call, without `begins`, is needed to finish.
  std::string GetStatusFor(std::int32_t milliseconds, std::int32_t begins) {
    return InvokeText(TARN_INS_GET_STATUS_FOR, {milliseconds, begins});
  }
  // Returns the outputs of each application in build order; see ParseBuildInputs.
  std::string GetBuildInputs() { return InvokeText(TARN_INS_GET_BUILD_INPUTS, {}); }
  // Returns the same with the durations of the last runs; see ParseBuildTimes.
  std::string GetBuildTimes() { return InvokeText(TARN_INS_GET_BUILD_TIMES, {}); }
  // Returns the input of the tool that produces an output.
  std::string GetToolInput(const std::string& application, const std::string& output) {
    return InvokeText(TARN_INS_GET_TOOL_INPUT, {application, output});
  }
  DispatchPtr GetPropertyManager();
  // Returns a line for every two sources with the same output.
  std::string GetSharedOutputs(const std::string& application) {
    return InvokeText(TARN_INS_GET_SHARED_OUTPUTS, {application});
  }
  // Returns the number of matching nodes; the node becomes current only if it is unique.
  std::int32_t SelectNodeByKey(const std::string& key, const std::string& application = {}) {
    return InvokeLong(TARN_INS_SELECT_NODE_BY_KEY, {key, application});
  }
  // Makes the application with this path the current node. Returns false if there is none.
  bool SelectApplication(const std::string& path) { return SelectNodeByKey("", path) == 1; }
  // Selects a node by its path of child indices in GetTree, starting at the project; returns 0 if
  // there is no such node.
  std::int32_t SelectNodeByPlace(const std::string& place) {
    return InvokeLong(TARN_INS_SELECT_NODE_BY_PLACE, {place});
  }
  // Returns the target of the manager's last selection, in double quotes, if it was not found; else
  // an empty string.
  std::string GetMissedSelection() { return InvokeText(TARN_INS_GET_MISSED_SELECTION, {}); }
  // Saves the current node.
  std::int32_t NoteCurrentNode() { return InvokeLong(TARN_INS_NOTE_CURRENT_NODE, {}); }
  // Makes the saved node current again; returns 0 if it may have been deleted.
  std::int32_t SelectNotedNode() { return InvokeLong(TARN_INS_SELECT_NOTED_NODE, {}); }
  // Reloads changed option and tool definitions; returns a nonzero value if there were any. Build
  // records must be restored again afterwards.
  std::int32_t RefreshDefinitions() { return InvokeLong(TARN_INS_REFRESH_DEFINITIONS, {}); }
  // Copies the active application's options stored for configuration `from` (empty: none) to
  // configuration `to`; returns 0 if the project can't be changed.
  std::int32_t CopyConfiguration(const std::string& from, const std::string& to) {
    return InvokeLong(TARN_INS_COPY_CONFIGURATION, {from, to});
  }
  // Returns a counter that changes each time the output of a save would change.
  std::int32_t GetChangeCount() { return InvokeLong(TARN_INS_GET_CHANGE_COUNT, {}); }
  // Returns the project's files as a save would write them, each as a line
  // "<bytes> <path>" followed by the content.
  std::string GetFileTexts() { return InvokeText(TARN_INS_GET_FILE_TEXTS, {}); }
  // Returns the content of these files when they were last read or written, in the same format.
  std::string GetBaseTexts() { return InvokeText(TARN_INS_GET_BASE_TEXTS, {}); }
  // The next project that is opened takes these texts as unsaved changes to the content in `bases`.
  void StageFileTexts(const std::string& texts, const std::string& bases) {
    InvokeHelper(TARN_INS_STAGE_FILE_TEXTS, {texts, bases});
  }
  // Returns a nonzero value if a save has anything to write.
  std::int32_t IsModified() { return InvokeLong(TARN_INS_IS_MODIFIED, {}); }
  // Discards changes: a close doesn't write the files unless there is a later change.
  std::int32_t DropChanges() { return InvokeLong(TARN_INS_DROP_CHANGES, {}); }
  // Returns what builds found about the project itself since the last call, as XML.
  std::string TakeBuildNotices() { return InvokeText(TARN_INS_TAKE_BUILD_NOTICES, {}); }
  // Returns what was lost when the project's files were read, as XML.
  std::string GetDamage() { return InvokeText(TARN_INS_GET_DAMAGE, {}); }
  std::string GetFailedDamage() { return InvokeText(TARN_INS_GET_FAILED_DAMAGE, {}); }
  // Takes the edit lock of the project's files; returns the process that holds it, or an empty
  // string on success.
  std::string TryLockProject(const std::string& path) {
    return InvokeText(TARN_INS_TRY_LOCK_PROJECT, {path});
  }
  std::int32_t UnlockProject() { return InvokeLong(TARN_INS_UNLOCK_PROJECT, {}); }
  // Returns the result of the last save as XML; see ParseSaveReport.
  std::string GetSaveReport() { return InvokeText(TARN_INS_GET_SAVE_REPORT, {}); }
  // Applies a change of the project's files in memory, with both versions in the format of
  // GetFileTexts. Returns the reasons for a failure, one per line, or an empty string.
  std::string ApplyChange(const std::string& before, const std::string& after) {
    return InvokeText(TARN_INS_APPLY_CHANGE, {before, after});
  }
  // Merges two versions of a file; see ProjectInspector.h for the result.
  std::string MergeTexts(const std::string& base, const std::string& theirs,
                         const std::string& ours) {
    return InvokeText(TARN_INS_MERGE_TEXTS, {base, theirs, ours});
  }
  // Sets the folder proposed for a new project; only while no project is open.
  std::int32_t SetNewProjectFolder(const std::string& folder) {
    return InvokeLong(TARN_INS_SET_NEW_PROJECT_FOLDER, {folder});
  }
  // Files that can't be written are not reported when projects are opened.
  std::int32_t OpenForReading(bool wanted) {
    return InvokeLong(TARN_INS_OPEN_FOR_READING, {std::int32_t{wanted}});
  }
  // A save writes all files or none, instead of as many as possible.
  std::int32_t SaveAllOrNone(bool wanted) {
    return InvokeLong(TARN_INS_SAVE_ALL_OR_NONE, {std::int32_t{wanted}});
  }
  // Builds end after this number of failures; 0 for no limit.
  std::int32_t SetFailureLimit(std::int32_t limit) {
    return InvokeLong(TARN_INS_SET_FAILURE_LIMIT, {limit});
  }
  // Permits a save to write outside the project's folder without asking the user.
  std::int32_t AllowOutside(bool allow) {
    return InvokeLong(TARN_INS_ALLOW_OUTSIDE, {std::int32_t{allow}});
  }
  // Restricts trust to projects below these folders, one per line.
  std::int32_t SetTrustedFolders(const std::string& lines) {
    return InvokeLong(TARN_INS_SET_TRUSTED_FOLDERS, {lines});
  }
  // Protects the folders of the host's own state and settings, one per line, from being used for
  // outputs.
  std::int32_t SetStateFolder(const std::string& lines) {
    return InvokeLong(TARN_INS_SET_STATE_FOLDER, {lines});
  }
  // Sets folders with definitions, one per line, and the name of one in the project's folder.
  std::int32_t SetDefinitionFolders(const std::string& lines, const std::string& inProject) {
    return InvokeLong(TARN_INS_SET_DEFINITION_FOLDERS, {lines, inProject});
  }
  // Returns the definition files of an untrusted project that are ignored, one per line.
  std::string GetIgnoredDefinitions() { return InvokeText(TARN_INS_GET_IGNORED_DEFINITIONS, {}); }
  // Returns the operations refused for lack of trust since the last call, one per line.
  std::string TakeRefusedWishes() { return InvokeText(TARN_INS_TAKE_REFUSED_WISHES, {}); }
  // Returns why the script is not trusted to run; an empty string if it may run.
  std::string CheckScript(const std::string& path) {
    return InvokeText(TARN_INS_CHECK_SCRIPT, {path});
  }
  // Returns why the run of a tool is not trusted; an empty string if it may run.
  std::string CheckTool(const std::string& tool, const std::string& files,
                        const std::string& options) {
    return InvokeText(TARN_INS_CHECK_TOOL, {tool, files, options});
  }
  // Sets whether the server refuses to build or save a damaged project.
  std::int32_t ProtectDamaged(bool protect) {
    return InvokeLong(TARN_INS_PROTECT_DAMAGED, {protect ? 1 : 0});
  }
  // Returns the values stored for an option, outermost level first; see ReadStoredValues.
  std::string ExplainOption(const std::string& set, const std::string& section,
                            const std::string& property) {
    return InvokeText(TARN_INS_EXPLAIN_OPTION, {set, section, property});
  }
  // Returns the program required for imports if it is not installed; else an empty string.
  std::string MissingImportProgram() { return InvokeText(TARN_INS_MISSING_IMPORT_PROGRAM, {}); }
  // Returns the available targets as XML; see ReadTargets.
  std::string GetTargets() { return InvokeText(TARN_INS_GET_TARGETS, {}); }
  // Returns the path of the log of the current or last build.
  std::string GetLogFile() { return InvokeText(TARN_INS_GET_LOG_FILE, {}); }
  // These return rows of reports as XML.
  std::string GetGlobals(const std::string& application, const std::string& column) {
    return InvokeText(TARN_INS_GET_GLOBALS, {application, column});
  }
  std::string GetReport(const std::string& log) { return InvokeText(TARN_INS_GET_REPORT, {log}); }
  // Returns how usable the file is, as a keyword; see BuildStateManager::GetVerdict.
  std::string OpenBuildState(const std::string& path) {
    return InvokeText(TARN_INS_OPEN_BUILD_STATE, {path});
  }
  std::string GetBuildStateProblem() { return InvokeText(TARN_INS_GET_BUILD_STATE_PROBLEM, {}); }
  // Returns false if another process has written the state file since.
  bool IsBuildStateCurrent(const std::string& path) {
    return InvokeLong(TARN_INS_IS_BUILD_STATE_CURRENT, {path}) != 0;
  }
  // Returns 0 if another call is needed to finish.
  std::int32_t RestoreFor(std::int32_t milliseconds) {
    return InvokeLong(TARN_INS_RESTORE_FOR, {milliseconds});
  }
  // Returns why the state could not be written; an empty string if it could.
  std::string FinishBuildState(bool mayShrink) {
    return InvokeText(TARN_INS_FINISH_BUILD_STATE, {mayShrink ? 1 : 0});
  }
  // Returns the tool's summary of an output; an empty string if there is none.
  std::string GetBuildInfos(const std::string& application, const std::string& output) {
    return InvokeText(TARN_INS_GET_BUILD_INFOS, {application, output});
  }
  // Returns what a build would leave out as XML; see ParseBuildGaps.
  std::string GetBuildGaps() { return InvokeText(TARN_INS_GET_BUILD_GAPS, {}); }
  // Returns "place: reason"; an empty string if there is no problem.
  std::string GetInstallationProblem() { return InvokeText(TARN_INS_GET_INSTALLATION_PROBLEM, {}); }
};

class ToolManagerDriver : public COleDispatchDriver {
 public:
  // Loads the tool definitions.
  std::int32_t InitTools(const std::string& application, const std::string& data,
                         WindowHandle frame) {
    return InvokeLong(TARN_TOOL_INIT_TOOLS, {application, data, frame});
  }
  std::string ListTools() { return InvokeText(TARN_TOOL_LIST_TOOLS, {}); }
  // Returns 1 if the tool is defined, or is the path of a program.
  std::int32_t HasTool(const std::string& tool) { return InvokeLong(TARN_TOOL_HAS_TOOL, {tool}); }
  // Returns the command lines that a run of the tool would start; see ParseCommands.
  std::string GetCommandLines(const std::string& tool, const std::string& files,
                              const std::string& options) {
    return InvokeText(TARN_TOOL_GET_COMMAND_LINES, {tool, files, options});
  }
  // Returns why a run of the tool would start nothing, one reason per line.
  std::string GetCommandProblems(const std::string& tool, const std::string& files,
                                 const std::string& options) {
    return InvokeText(TARN_TOOL_GET_COMMAND_PROBLEMS, {tool, files, options});
  }
  // Returns the records of successful runs since the last call, for SetBuildInfo.
  std::string TakeBuildInformation() { return InvokeText(TARN_TOOL_TAKE_BUILD_INFORMATION, {}); }
  // Returns lines "ADDRESS LINE FILE" for the functions and variables of a program with debug
  // information, in whose sources names are relative to the folder.
  std::string ListSymbolPositions(const std::string& program, const std::string& folder) {
    return InvokeText(TARN_TOOL_LIST_SYMBOL_POSITIONS, {program, folder});
  }
  // Stops all running tools without waiting; new runs fail until ResumeTools.
  void StopTools() { InvokeHelper(TARN_TOOL_STOP_TOOLS, {}); }
  void ResumeTools() { InvokeHelper(TARN_TOOL_RESUME_TOOLS, {}); }
  // Sets the number of tools that may run at the same time.
  std::int32_t GetJobs() { return InvokeLong(TARN_TOOL_GET_JOBS, {}); }
  // Starts or ends the recording of events of tool runs.
  void WatchRuns(bool isWatched) { InvokeHelper(TARN_TOOL_WATCH_RUNS, {isWatched ? 1 : 0}); }
  // Returns the events since the last call; see ParseRunEvents.
  std::string TakeRunEvents() { return InvokeText(TARN_TOOL_TAKE_RUN_EVENTS, {}); }
  void SetJobs(std::int32_t count) { InvokeHelper(TARN_TOOL_SET_JOBS, {count}); }
  // Takes tokens of the jobserver that has started this process, if there is one, for up to `count`
  // jobs; 0: for as many as it has. If it can't be used, returns why; then the number of jobs is
  // `count`, or 1. Without one, it is no more than that of the make that has started this process.
  std::string JoinJobserver(std::int32_t count) {
    return InvokeText(TARN_TOOL_JOIN_JOBSERVER, {count});
  }
  // Limits for starting a tool while others run; negative for none.
  void SetStartLimits(std::int32_t loadHundredths, std::int32_t megabytes, std::int32_t percent) {
    InvokeHelper(TARN_TOOL_SET_START_LIMITS, {loadHundredths, megabytes, percent});
  }
  // Returns the tool's first program that is not installed; an empty string if there is none.
  std::string MissingProgram(const std::string& tool) {
    return InvokeText(TARN_TOOL_MISSING_PROGRAM, {tool});
  }
  std::string GetDefinitionErrors() { return InvokeText(TARN_TOOL_GET_DEFINITION_ERRORS, {}); }
  // Returns the actions for nodes with this extension; see ParseActions.
  std::string GetActions(const std::string& extension, const std::string& files,
                         const std::string& options) {
    return InvokeText(TARN_TOOL_GET_ACTIONS, {extension, files, options});
  }
};

// Methods of the options component that the project manager doesn't forward.
class OptionsDriver : public COleDispatchDriver {
 public:
  // Between BeginUpdate and EndUpdate the values are locked and windows are not updated.
  void BeginUpdate() { InvokeHelper(TARN_OPT_BEGIN_UPDATE, {}); }
  void EndUpdate() { InvokeHelper(TARN_OPT_END_UPDATE, {}); }
  std::string GetValuesAsText() { return InvokeText(TARN_OPT_GET_VALUES_AS_TEXT, {"", "", ""}); }
  // Starts a level of values with the defaults of a set.
  void ReadDefsFromFile(const std::string& set, const std::string& configurationFile) {
    InvokeHelper(TARN_OPT_READ_DEFS_FROM_FILE, {set, configurationFile});
  }
  // Overrides the current values by those of an element Config or Options.
  void ReadValuesFromText(const std::string& text) {
    InvokeHelper(TARN_OPT_READ_VALUES_FROM_TEXT, {text});
  }
  std::string GetPropertyStringValue(const std::string& set, const std::string& section,
                                     const std::string& property) {
    return InvokeText(TARN_OPT_GET_PROPERTY_STRING_VALUE, {set, section, property});
  }
  // State of the options window, which the server stores per node.
  std::string GetPropState() { return InvokeText(TARN_OPT_GET_PROP_STATE, {}); }
  void SetPropState(const std::string& state) { InvokeHelper(TARN_OPT_SET_PROP_STATE, {state}); }
  // Returns the definitions of the options of a set as XML, of all sets if it is empty; see
  // OptionTable.
  std::string ListProperties(const std::string& set) {
    return InvokeText(TARN_OPT_LIST_PROPERTIES, {set});
  }
  // Returns why a value is invalid; an empty string if it is valid.
  std::string CheckValue(const std::string& set, const std::string& section,
                         const std::string& property, const std::string& value) {
    return InvokeText(TARN_OPT_CHECK_VALUE, {set, section, property, value});
  }
  std::string GetDefinitionErrors() { return InvokeText(TARN_OPT_GET_DEFINITION_ERRORS, {}); }
  // Both return the key of the changed option; an empty string if nothing was changed.
  std::string Undo() { return InvokeText(TARN_OPT_UNDO, {}); }
  std::string Redo() { return InvokeText(TARN_OPT_REDO, {}); }
  // Returns 0 if values are locked.
  std::int32_t SetChangedProperty(const std::string& set, const std::string& section,
                                  const std::string& property, const std::string& value) {
    return InvokeLong(TARN_OPT_SET_CHANGED_PROPERTY, {set, section, property, value});
  }
  // Sets the name for the next command that adds or selects a configuration.
  void SetNewConfigName(const std::string& name) {
    InvokeHelper(TARN_OPT_SET_NEW_CONFIG_NAME, {name});
  }
  // Returns where the value comes from: "own", "inherited", "definition" or "none".
  std::string GetOrigin(const std::string& set, const std::string& section,
                        const std::string& property) {
    return InvokeText(TARN_OPT_GET_ORIGIN, {set, section, property});
  }
  // Returns the configurations, one per line.
  std::string ListConfigurations() { return InvokeText(TARN_OPT_LIST_CONFIGURATIONS, {}); }
  // Returns 0 if values are locked.
  std::int32_t ResetChangedProperty(const std::string& set, const std::string& section,
                                    const std::string& property) {
    return InvokeLong(TARN_OPT_RESET_CHANGED_PROPERTY, {set, section, property});
  }
  std::string GetUndoProperty() { return InvokeText(TARN_OPT_GET_UNDO_PROPERTY, {}); }
  std::string GetRedoProperty() { return InvokeText(TARN_OPT_GET_REDO_PROPERTY, {}); }
  // Returns how often options were hidden, shown, disabled or enabled by the methods for that.
  std::int32_t GetSwitchCount() { return InvokeLong(TARN_OPT_GET_SWITCH_COUNT, {}); }
};

}  // namespace tarn::host
