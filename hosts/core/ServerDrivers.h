#pragma once

#include <cstdint>
#include <string>

#include "platform/automation/DispatchDriver.h"
#include "widgets/MessageLoop.h"

// Callers of the objects that a host works with, by the numbers of their methods. All of them are
// late bound: a call to an object that isn't there gives 0 or an empty text.
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
  kCmdOptionsLoaded = 0x811E,  // sent to the host and given back: all options are known
  kCmdBuildApplication = 0x811F,
  kCmdShowApplicationOptions = 0x8121,
  // The tools that fit the current node's file; the first number stands for their list.
  kCmdToolList = 0x8122,
  kCmdFirstTool = 0x8123,
  kCmdLastTool = 0x8136,
  kCmdAddConfiguration = 0x8138,
  kCmdRemoveNode = 0xE120,
  kCmdClearLog = 0xE121,  // this and the next two also to the window of the log
  kCmdCopyNode = 0xE122,
  kCmdCutLog = 0xE123,
  kCmdPasteNode = 0xE125,
};

class ProjectManagerDriver : public COleDispatchDriver {
 public:
  std::int32_t ProjectOpen(const std::string& path) { return InvokeLong(1, {path}); }
  std::int32_t ProjectClose() { return InvokeLong(2, {}); }
  // Closes the project and asks the user for another one; 0 when none was made.
  std::int32_t ProjectNew() { return InvokeLong(32, {NullableText()}); }
  std::int32_t ProjectSave() { return InvokeLong(3, {}); }
  // Each announces its windows to the frame first and gives the handle of one of them.
  std::int32_t GetProjectWindow() { return InvokeLong(4, {}); }
  std::int32_t GetOutputWindow() { return InvokeLong(6, {}); }
  std::int32_t Command(std::uint32_t id) { return InvokeLong(7, {AsNumber(id)}); }
  std::int32_t Init(const std::string& application, const std::string& data, WindowHandle frame) {
    return InvokeLong(8, {application, data, frame});
  }
  std::string GetPropertyValue(const std::string& set, const std::string& section,
                               const std::string& property) {
    return InvokeText(11, {set, section, property});
  }
  // 0 when the command can't be given now.
  std::int32_t EnableCommand(std::uint32_t id) { return InvokeLong(31, {AsNumber(id)}); }
  void InitToolManager(IDispatch* tools) { InvokeHelper(17, {DispatchPtr(tools)}); }
  std::int32_t EpilogCommand(std::uint32_t id) { return InvokeLong(18, {AsNumber(id)}); }
  std::int32_t PrologCommand(std::uint32_t id) { return InvokeLong(19, {AsNumber(id)}); }
  void Clean() { InvokeHelper(21, {}); }
  std::string GetSelectedApplication() { return InvokeText(26, {}); }
  // The type follows from the file's extension.
  std::int32_t AddExistingItem(const std::string& path) {
    return InvokeLong(27, {path, NullableText()});
  }
  // What the wizard is filled in with.
  std::int32_t AddNewItem() { return InvokeLong(28, {NullableText(), NullableText()}); }
  std::int32_t SetBuildInfo(const std::string& xml) { return InvokeLong(33, {"", xml}); }
  // The tools that fit the current node, each with the number of its command, as XML.
  std::string GetToolCommands() { return InvokeText(35, {AsNumber(kCmdToolList)}); }
  void ReportMessage(const std::string& text) { InvokeHelper(37, {text}); }
  std::int32_t ExecuteScript(const std::string& path) { return InvokeLong(44, {path}); }
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

// The companion of the project manager.
class InspectorDriver : public COleDispatchDriver {
 public:
  std::int32_t Attach(IDispatch* manager) { return InvokeLong(1, {DispatchPtr(manager)}); }
  std::int32_t PublishAll() { return InvokeLong(2, {}); }
  // 0 when something is left for another call.
  std::int32_t PublishFor(std::int32_t milliseconds) { return InvokeLong(18, {milliseconds}); }
  std::string GetTree() { return InvokeText(3, {}); }
  std::string GetApplications() { return InvokeText(73, {}); }
  std::string GetStatus() { return InvokeText(4, {}); }
  std::string GetBuildInputs() { return InvokeText(5, {}); }
  std::string GetToolInput(const std::string& application, const std::string& output) {
    return InvokeText(6, {application, output});
  }
  DispatchPtr GetPropertyManager();
  std::string GetSharedOutputs(const std::string& application) {
    return InvokeText(50, {application});
  }
  // How many nodes could be meant; only one of its kind is made current.
  std::int32_t SelectNodeByKey(const std::string& key, const std::string& application = {}) {
    return InvokeLong(8, {key, application});
  }
  // Makes the application with this path the current node. False if there is none.
  bool SelectApplication(const std::string& path) { return SelectNodeByKey("", path) == 1; }
  // The numbers of the children on the way from the project, in GetTree; 0 when there is none.
  std::int32_t SelectNodeByPlace(const std::string& place) { return InvokeLong(15, {place}); }
  // What the manager was to select last if it found nothing, in double quotes; empty otherwise.
  std::string GetMissedSelection() { return InvokeText(26, {}); }
  // Remembers the current node.
  std::int32_t NoteCurrentNode() { return InvokeLong(19, {}); }
  // Makes it current again; 0 when it may be gone.
  std::int32_t SelectNotedNode() { return InvokeLong(20, {}); }
  // Reads changed definitions of options and tools again; not 0 if there were any. Build records
  // have to be handed over again then.
  std::int32_t RefreshDefinitions() { return InvokeLong(24, {}); }
  // Gives the active application's second configuration the options stored for the first, which
  // may be empty for none; 0 if the project can't be changed.
  std::int32_t CopyConfiguration(const std::string& from, const std::string& to) {
    return InvokeLong(23, {from, to});
  }
  // Another number whenever a save would write something else.
  std::int32_t GetChangeCount() { return InvokeLong(16, {}); }
  // The project's files as a save would write them: "<bytes> <path>\n" and the bytes, of each.
  std::string GetFileTexts() { return InvokeText(17, {}); }
  // What these files held when they were read or written last, in the same form.
  std::string GetBaseTexts() { return InvokeText(67, {}); }
  // The next project that is opened takes these texts as changes that are not saved, made of what
  // the files held as `bases`.
  void StageFileTexts(const std::string& texts, const std::string& bases) {
    InvokeHelper(68, {texts, bases});
  }
  // Not 0 if a save has anything to write.
  std::int32_t IsModified() { return InvokeLong(69, {}); }
  // A close leaves the files alone until the next change.
  std::int32_t DropChanges() { return InvokeLong(75, {}); }
  std::string TakeBuildNotices() { return InvokeText(65, {}); }
  // What was lost when the project's files were read, as XML.
  std::string GetDamage() { return InvokeText(21, {}); }
  std::string GetFailedDamage() { return InvokeText(25, {}); }
  // Takes the right to change the files of the project; the process that has it, or an empty text.
  std::string TryLockProject(const std::string& path) { return InvokeText(60, {path}); }
  std::int32_t UnlockProject() { return InvokeLong(61, {}); }
  std::string GetSaveReport() { return InvokeText(62, {}); }
  // Makes a change of the project's files in memory, each version as GetFileTexts returns it; why
  // not, one reason a line, or an empty text.
  std::string ApplyChange(const std::string& before, const std::string& after) {
    return InvokeText(64, {before, after});
  }
  // Proposed for a new project while none is open.
  std::int32_t SetNewProjectFolder(const std::string& folder) { return InvokeLong(80, {folder}); }
  std::int32_t OpenForReading(bool wanted) { return InvokeLong(83, {std::int32_t{wanted}}); }
  std::int32_t SaveAllOrNone(bool wanted) { return InvokeLong(70, {std::int32_t{wanted}}); }
  std::int32_t AllowOutside(bool allow) { return InvokeLong(63, {std::int32_t{allow}}); }
  std::int32_t SetTrustedFolders(const std::string& lines) { return InvokeLong(66, {lines}); }
  std::int32_t SetStateFolder(const std::string& folder) { return InvokeLong(84, {folder}); }
  std::string TakeRefusedWishes() { return InvokeText(71, {}); }
  std::string CheckScript(const std::string& path) { return InvokeText(72, {path}); }
  // Whether the server neither builds nor saves a project with damage.
  std::int32_t ProtectDamaged(bool protect) { return InvokeLong(22, {protect ? 1 : 0}); }
  std::string ExplainOption(const std::string& set, const std::string& section,
                            const std::string& property) {
    return InvokeText(9, {set, section, property});
  }
  std::string MissingImportProgram() { return InvokeText(10, {}); }
  std::string GetTargets() { return InvokeText(11, {}); }
  std::string GetLogFile() { return InvokeText(12, {}); }
  // Rows of the reports as XML.
  std::string GetGlobals(const std::string& application, const std::string& column) {
    return InvokeText(13, {application, column});
  }
  std::string GetReport(const std::string& log) { return InvokeText(14, {log}); }
  // How usable the file is, in a word.
  std::string OpenBuildState(const std::string& path) { return InvokeText(40, {path}); }
  std::string GetBuildStateProblem() { return InvokeText(82, {}); }
  bool IsBuildStateCurrent(const std::string& path) { return InvokeLong(41, {path}) != 0; }
  // 0 if something is left for another call.
  std::int32_t RestoreFor(std::int32_t milliseconds) { return InvokeLong(42, {milliseconds}); }
  // Why the state could not be written; empty if it could.
  std::string FinishBuildState(bool mayShrink) { return InvokeText(43, {mayShrink ? 1 : 0}); }
  std::string GetBuildInfos(const std::string& application, const std::string& output) {
    return InvokeText(44, {application, output});
  }
  std::string GetBuildGaps() { return InvokeText(30, {}); }
  // "place: reason"; empty if there is none.
  std::string GetInstallationProblem() { return InvokeText(31, {}); }
};

class ToolManagerDriver : public COleDispatchDriver {
 public:
  std::int32_t InitTools(const std::string& application, const std::string& data,
                         WindowHandle frame) {
    return InvokeLong(3, {application, data, frame});
  }
  std::string ListTools() { return InvokeText(105, {}); }
  std::string GetCommandLines(const std::string& tool, const std::string& files,
                              const std::string& options) {
    return InvokeText(100, {tool, files, options});
  }
  std::string GetCommandProblems(const std::string& tool, const std::string& files,
                                 const std::string& options) {
    return InvokeText(112, {tool, files, options});
  }
  std::string TakeBuildInformation() { return InvokeText(101, {}); }
  void StopTools() { InvokeHelper(102, {}); }
  void ResumeTools() { InvokeHelper(103, {}); }
  std::string MissingProgram(const std::string& tool) { return InvokeText(104, {tool}); }
  std::string GetDefinitionErrors() { return InvokeText(106, {}); }
};

// The methods of the options component that the project manager doesn't pass through.
class OptionsDriver : public COleDispatchDriver {
 public:
  void BeginUpdate() { InvokeHelper(20, {}); }
  void EndUpdate() { InvokeHelper(21, {}); }
  std::string GetValuesAsText() { return InvokeText(22, {"", "", ""}); }
  std::string GetPropertyStringValue(const std::string& set, const std::string& section,
                                     const std::string& property) {
    return InvokeText(27, {set, section, property});
  }
  std::string GetPropState() { return InvokeText(28, {}); }
  void SetPropState(const std::string& state) { InvokeHelper(29, {state}); }
  std::string ListProperties(const std::string& set) { return InvokeText(100, {set}); }
  std::string CheckValue(const std::string& set, const std::string& section,
                         const std::string& property, const std::string& value) {
    return InvokeText(101, {set, section, property, value});
  }
  std::string GetDefinitionErrors() { return InvokeText(102, {}); }
  // The key of what was changed; empty for nothing.
  std::string Undo() { return InvokeText(103, {}); }
  std::string Redo() { return InvokeText(104, {}); }
  // 0 while the values are held.
  std::int32_t SetChangedProperty(const std::string& set, const std::string& section,
                                  const std::string& property, const std::string& value) {
    return InvokeLong(105, {set, section, property, value});
  }
  void SetNewConfigName(const std::string& name) { InvokeHelper(106, {name}); }
  std::string GetOrigin(const std::string& set, const std::string& section,
                        const std::string& property) {
    return InvokeText(107, {set, section, property});
  }
  // One a line.
  std::string ListConfigurations() { return InvokeText(108, {}); }
  // 0 while the values are held.
  std::int32_t ResetChangedProperty(const std::string& set, const std::string& section,
                                    const std::string& property) {
    return InvokeLong(109, {set, section, property});
  }
  std::string GetUndoProperty() { return InvokeText(110, {}); }
  std::string GetRedoProperty() { return InvokeText(111, {}); }
  // How often options were hidden, shown, ruled out or allowed by the methods for that.
  std::int32_t GetSwitchCount() { return InvokeLong(112, {}); }
};

}  // namespace tarn::host
