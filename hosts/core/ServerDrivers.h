#pragma once

#include <cstdint>
#include <string>

#include "platform/automation/DispatchDriver.h"
#include "widgets/MessageLoop.h"

// Typed wrappers for the dispatch calls of a host, by method id. All calls are late bound: a call
// on a missing object returns 0 or an empty string.
namespace tarn::host {

// Commands of the project manager that hosts send.
enum ManagerCommand : std::uint32_t {
  kCmdApplyOption = 0x8105,
  kCmdInvalidateNode = 0x8106,
  kCmdShowNodeOptions = 0x810B,
  kCmdAddFiles = 0x8108,
  kCmdNewItem = 0x8109,  // the wizard for a new application
  kCmdNewGroup = 0x810C,
  kCmdRebuildAll = 0x8111,
  kCmdBuildAll = 0x8112,
  kCmdCleanAll = 0x8113,
  kCmdRebuildNode = 0x8114,
  kCmdBuildNode = 0x8115,
  kCmdCleanNode = 0x8116,
  kCmdTranslateNode = 0x8117,
  kCmdSetActiveApplication = 0x8118,
  kCmdSelectConfiguration = 0x8119,
  kCmdResetOption = 0x811A,
  kCmdResetNodeOptions = 0x811B,
  kCmdStop = 0x811C,
  kCmdOptionsLoaded = 0x811E,  // sent to the host and passed back: all options are known
  kCmdBuildApplication = 0x811F,
  kCmdShowApplicationOptions = 0x8121,
  // The tools that accept the current node's file; kCmdToolList queries their list.
  kCmdToolList = 0x8122,
  kCmdFirstTool = 0x8123,
  kCmdLastTool = 0x8136,
  kCmdAddConfiguration = 0x8138,
  kCmdRemoveNode = 0xE120,
  kCmdClearLog = 0xE121,  // this and the next two also go to the log window
  kCmdCopyNode = 0xE122,
  kCmdCutLog = 0xE123,
  kCmdPasteNode = 0xE125,
};

class ProjectManagerDriver : public COleDispatchDriver {
 public:
  // Opens a project in place of the current one; returns 0 on failure, and if it is already open.
  std::int32_t ProjectOpen(const std::string& path) { return InvokeLong(1, {path}); }
  std::int32_t ProjectClose() { return InvokeLong(2, {}); }
  // Closes the project and asks the user for a new one; returns 0 if none was created.
  std::int32_t ProjectNew() { return InvokeLong(32, {NullableText()}); }
  std::int32_t ProjectSave() { return InvokeLong(3, {}); }
  // Both announce their windows to the frame first and return the handle of one of them.
  std::int32_t GetProjectWindow() { return InvokeLong(4, {}); }
  std::int32_t GetOutputWindow() { return InvokeLong(6, {}); }
  // Executes a command. Returns 2 if it continues in the background; the end is reported by a
  // message of the worker.
  std::int32_t Command(std::uint32_t id) { return InvokeLong(7, {AsNumber(id)}); }
  // Must be the first call. `application` is the folder of the installed data, `data` that of the
  // user, `frame` receives the messages.
  std::int32_t Init(const std::string& application, const std::string& data, WindowHandle frame) {
    return InvokeLong(8, {application, data, frame});
  }
  // Returns an option value of the current node.
  std::string GetPropertyValue(const std::string& set, const std::string& section,
                               const std::string& property) {
    return InvokeText(11, {set, section, property});
  }
  // Returns 0 if the command is currently disabled.
  std::int32_t EnableCommand(std::uint32_t id) { return InvokeLong(31, {AsNumber(id)}); }
  // Sets the tool manager, to which no reference is taken.
  void InitToolManager(IDispatch* tools) { InvokeHelper(17, {DispatchPtr(tools)}); }
  // Every background command is enclosed in these: PrologCommand asks the host for permission and
  // clears the log (0: refused), EpilogCommand follows its end (0: the manager has posted another
  // command).
  std::int32_t EpilogCommand(std::uint32_t id) { return InvokeLong(18, {AsNumber(id)}); }
  std::int32_t PrologCommand(std::uint32_t id) { return InvokeLong(19, {AsNumber(id)}); }
  void Clean() { InvokeHelper(21, {}); }
  std::string GetSelectedApplication() { return InvokeText(26, {}); }
  // Adds a file; its type is derived from the extension.
  std::int32_t AddExistingItem(const std::string& path) {
    return InvokeLong(27, {path, NullableText()});
  }
  // Adds the item specified in the wizard.
  std::int32_t AddNewItem() { return InvokeLong(28, {NullableText(), NullableText()}); }
  // Stores records returned by ToolManagerDriver::TakeBuildInformation in the project.
  std::int32_t SetBuildInfo(const std::string& xml) { return InvokeLong(33, {"", xml}); }
  // Returns the tools that accept the current node, each with its command number, as XML.
  std::string GetToolCommands() { return InvokeText(35, {AsNumber(kCmdToolList)}); }
  // Adds a line to the log.
  void ReportMessage(const std::string& text) { InvokeHelper(37, {text}); }
  // Reads the file and sends its content to the host in a message, which runs the script.
  std::int32_t ExecuteScript(const std::string& path) { return InvokeLong(44, {path}); }
  // Change an option of the current node and store it in the project.
  std::int32_t SavePropertyValue(const std::string& set, const std::string& section,
                                 const std::string& property, const std::string& value) {
    return InvokeLong(34, {set, section, property, value});
  }
  std::int32_t ResetPropertyValue(const std::string& set, const std::string& section,
                                  const std::string& property) {
    return InvokeLong(39, {set, section, property});
  }

 private:
  static std::int32_t AsNumber(std::uint32_t id) { return static_cast<std::int32_t>(id); }
};

// The companion object of the project manager, for queries.
class InspectorDriver : public COleDispatchDriver {
 public:
  // Connects to the manager; must be the first call.
  std::int32_t Attach(IDispatch* manager) { return InvokeLong(1, {DispatchPtr(manager)}); }
  std::int32_t PublishAll() { return InvokeLong(2, {}); }
  // Returns 0 if another call is needed to finish.
  std::int32_t PublishFor(std::int32_t milliseconds) { return InvokeLong(18, {milliseconds}); }
  std::string GetTree() { return InvokeText(3, {}); }
  // Like GetTree(), but only the project and its applications.
  std::string GetApplications() { return InvokeText(73, {}); }
  // Returns the outdated nodes with their reasons as XML; see ParseStatus.
  std::string GetStatus() { return InvokeText(4, {}); }
  // Returns the outputs of each application in build order; see ParseBuildInputs.
  std::string GetBuildInputs() { return InvokeText(5, {}); }
  // Returns the input of the tool that produces an output.
  std::string GetToolInput(const std::string& application, const std::string& output) {
    return InvokeText(6, {application, output});
  }
  DispatchPtr GetPropertyManager();
  // Returns a line for every two sources with the same output.
  std::string GetSharedOutputs(const std::string& application) {
    return InvokeText(50, {application});
  }
  // Returns the number of matching nodes; the node becomes current only if it is unique.
  std::int32_t SelectNodeByKey(const std::string& key, const std::string& application = {}) {
    return InvokeLong(8, {key, application});
  }
  // Makes the application with this path the current node. Returns false if there is none.
  bool SelectApplication(const std::string& path) { return SelectNodeByKey("", path) == 1; }
  // Selects a node by its path of child indices in GetTree, starting at the project; returns 0 if
  // there is no such node.
  std::int32_t SelectNodeByPlace(const std::string& place) { return InvokeLong(15, {place}); }
  // Returns the target of the manager's last selection, in double quotes, if it was not found; else
  // an empty string.
  std::string GetMissedSelection() { return InvokeText(26, {}); }
  // Saves the current node.
  std::int32_t NoteCurrentNode() { return InvokeLong(19, {}); }
  // Makes the saved node current again; returns 0 if it may have been deleted.
  std::int32_t SelectNotedNode() { return InvokeLong(20, {}); }
  // Reloads changed option and tool definitions; returns a nonzero value if there were any. Build
  // records must be restored again afterwards.
  std::int32_t RefreshDefinitions() { return InvokeLong(24, {}); }
  // Copies the active application's options stored for configuration `from` (empty: none) to
  // configuration `to`; returns 0 if the project can't be changed.
  std::int32_t CopyConfiguration(const std::string& from, const std::string& to) {
    return InvokeLong(23, {from, to});
  }
  // Returns a counter that changes each time the output of a save would change.
  std::int32_t GetChangeCount() { return InvokeLong(16, {}); }
  // Returns the project's files as a save would write them, each as a line
  // "<bytes> <path>" followed by the content.
  std::string GetFileTexts() { return InvokeText(17, {}); }
  // Returns the content of these files when they were last read or written, in the same format.
  std::string GetBaseTexts() { return InvokeText(67, {}); }
  // The next project that is opened takes these texts as unsaved changes to the content in `bases`.
  void StageFileTexts(const std::string& texts, const std::string& bases) {
    InvokeHelper(68, {texts, bases});
  }
  // Returns a nonzero value if a save has anything to write.
  std::int32_t IsModified() { return InvokeLong(69, {}); }
  // Discards changes: a close doesn't write the files unless there is a later change.
  std::int32_t DropChanges() { return InvokeLong(75, {}); }
  // Returns what builds found about the project itself since the last call, as XML.
  std::string TakeBuildNotices() { return InvokeText(65, {}); }
  // Returns what was lost when the project's files were read, as XML.
  std::string GetDamage() { return InvokeText(21, {}); }
  std::string GetFailedDamage() { return InvokeText(25, {}); }
  // Takes the edit lock of the project's files; returns the process that holds it, or an empty
  // string on success.
  std::string TryLockProject(const std::string& path) { return InvokeText(60, {path}); }
  std::int32_t UnlockProject() { return InvokeLong(61, {}); }
  // Returns the result of the last save as XML; see ParseSaveReport.
  std::string GetSaveReport() { return InvokeText(62, {}); }
  // Applies a change of the project's files in memory, with both versions in the format of
  // GetFileTexts. Returns the reasons for a failure, one per line, or an empty string.
  std::string ApplyChange(const std::string& before, const std::string& after) {
    return InvokeText(64, {before, after});
  }
  // Sets the folder proposed for a new project; only while no project is open.
  std::int32_t SetNewProjectFolder(const std::string& folder) { return InvokeLong(80, {folder}); }
  // Files that can't be written are not reported when projects are opened.
  std::int32_t OpenForReading(bool wanted) { return InvokeLong(83, {std::int32_t{wanted}}); }
  // A save writes all files or none, instead of as many as possible.
  std::int32_t SaveAllOrNone(bool wanted) { return InvokeLong(70, {std::int32_t{wanted}}); }
  // Permits a save to write outside the project's folder without asking the user.
  std::int32_t AllowOutside(bool allow) { return InvokeLong(63, {std::int32_t{allow}}); }
  // Restricts trust to projects below these folders, one per line.
  std::int32_t SetTrustedFolders(const std::string& lines) { return InvokeLong(66, {lines}); }
  // Protects the folder of the host's own state from being used for outputs.
  std::int32_t SetStateFolder(const std::string& folder) { return InvokeLong(84, {folder}); }
  // Returns the operations refused for lack of trust since the last call, one per line.
  std::string TakeRefusedWishes() { return InvokeText(71, {}); }
  // Returns why the script is not trusted to run; an empty string if it may run.
  std::string CheckScript(const std::string& path) { return InvokeText(72, {path}); }
  // Sets whether the server refuses to build or save a damaged project.
  std::int32_t ProtectDamaged(bool protect) { return InvokeLong(22, {protect ? 1 : 0}); }
  // Returns the values stored for an option, outermost level first; see ReadStoredValues.
  std::string ExplainOption(const std::string& set, const std::string& section,
                            const std::string& property) {
    return InvokeText(9, {set, section, property});
  }
  // Returns the program required for imports if it is not installed; else an empty string.
  std::string MissingImportProgram() { return InvokeText(10, {}); }
  // Returns the available targets as XML; see ReadTargets.
  std::string GetTargets() { return InvokeText(11, {}); }
  // Returns the path of the log of the current or last build.
  std::string GetLogFile() { return InvokeText(12, {}); }
  // These return rows of reports as XML.
  std::string GetGlobals(const std::string& application, const std::string& column) {
    return InvokeText(13, {application, column});
  }
  std::string GetReport(const std::string& log) { return InvokeText(14, {log}); }
  // Returns how usable the file is, as a keyword; see StateKeeper::GetVerdict.
  std::string OpenBuildState(const std::string& path) { return InvokeText(40, {path}); }
  std::string GetBuildStateProblem() { return InvokeText(82, {}); }
  // Returns false if another process has written the state file since.
  bool IsBuildStateCurrent(const std::string& path) { return InvokeLong(41, {path}) != 0; }
  // Returns 0 if another call is needed to finish.
  std::int32_t RestoreFor(std::int32_t milliseconds) { return InvokeLong(42, {milliseconds}); }
  // Returns why the state could not be written; an empty string if it could.
  std::string FinishBuildState(bool mayShrink) { return InvokeText(43, {mayShrink ? 1 : 0}); }
  // Returns the tool's summary of an output; an empty string if there is none.
  std::string GetBuildInfos(const std::string& application, const std::string& output) {
    return InvokeText(44, {application, output});
  }
  // Returns what a build would leave out as XML; see ParseBuildGaps.
  std::string GetBuildGaps() { return InvokeText(30, {}); }
  // Returns "place: reason"; an empty string if there is no problem.
  std::string GetInstallationProblem() { return InvokeText(31, {}); }
};

class ToolManagerDriver : public COleDispatchDriver {
 public:
  // Loads the tool definitions.
  std::int32_t InitTools(const std::string& application, const std::string& data,
                         WindowHandle frame) {
    return InvokeLong(3, {application, data, frame});
  }
  std::string ListTools() { return InvokeText(105, {}); }
  // Returns the command lines that a run of the tool would start; see ParseCommands.
  std::string GetCommandLines(const std::string& tool, const std::string& files,
                              const std::string& options) {
    return InvokeText(100, {tool, files, options});
  }
  // Returns why a run of the tool would start nothing, one reason per line.
  std::string GetCommandProblems(const std::string& tool, const std::string& files,
                                 const std::string& options) {
    return InvokeText(112, {tool, files, options});
  }
  // Returns the records of successful runs since the last call, for SetBuildInfo.
  std::string TakeBuildInformation() { return InvokeText(101, {}); }
  // Stops all running tools without waiting; new runs fail until ResumeTools.
  void StopTools() { InvokeHelper(102, {}); }
  void ResumeTools() { InvokeHelper(103, {}); }
  // Returns the tool's first program that is not installed; an empty string if there is none.
  std::string MissingProgram(const std::string& tool) { return InvokeText(104, {tool}); }
  std::string GetDefinitionErrors() { return InvokeText(106, {}); }
};

// Methods of the options component that the project manager doesn't forward.
class OptionsDriver : public COleDispatchDriver {
 public:
  // Between BeginUpdate and EndUpdate the values are locked and windows are not updated.
  void BeginUpdate() { InvokeHelper(20, {}); }
  void EndUpdate() { InvokeHelper(21, {}); }
  std::string GetValuesAsText() { return InvokeText(22, {"", "", ""}); }
  std::string GetPropertyStringValue(const std::string& set, const std::string& section,
                                     const std::string& property) {
    return InvokeText(27, {set, section, property});
  }
  // State of the options window, which the server stores per node.
  std::string GetPropState() { return InvokeText(28, {}); }
  void SetPropState(const std::string& state) { InvokeHelper(29, {state}); }
  // Returns the definitions of the options of a set as XML, of all sets if it is empty; see
  // OptionTable.
  std::string ListProperties(const std::string& set) { return InvokeText(100, {set}); }
  // Returns why a value is invalid; an empty string if it is valid.
  std::string CheckValue(const std::string& set, const std::string& section,
                         const std::string& property, const std::string& value) {
    return InvokeText(101, {set, section, property, value});
  }
  std::string GetDefinitionErrors() { return InvokeText(102, {}); }
  // Both return the key of the changed option; an empty string if nothing was changed.
  std::string Undo() { return InvokeText(103, {}); }
  std::string Redo() { return InvokeText(104, {}); }
  // Returns 0 if values are locked.
  std::int32_t SetChangedProperty(const std::string& set, const std::string& section,
                                  const std::string& property, const std::string& value) {
    return InvokeLong(105, {set, section, property, value});
  }
  // Sets the name for the next command that adds or selects a configuration.
  void SetNewConfigName(const std::string& name) { InvokeHelper(106, {name}); }
  // Returns where the value comes from: "own", "inherited", "definition" or "none".
  std::string GetOrigin(const std::string& set, const std::string& section,
                        const std::string& property) {
    return InvokeText(107, {set, section, property});
  }
  // Returns the configurations, one per line.
  std::string ListConfigurations() { return InvokeText(108, {}); }
  // Returns 0 if values are locked.
  std::int32_t ResetChangedProperty(const std::string& set, const std::string& section,
                                    const std::string& property) {
    return InvokeLong(109, {set, section, property});
  }
  std::string GetUndoProperty() { return InvokeText(110, {}); }
  std::string GetRedoProperty() { return InvokeText(111, {}); }
  // Returns how often options were hidden, shown, disabled or enabled by the methods for that.
  std::int32_t GetSwitchCount() { return InvokeLong(112, {}); }
};

}  // namespace tarn::host
