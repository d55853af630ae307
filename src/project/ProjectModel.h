#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include "builder/BuildRecords.h"
#include "builder/FileTimes.h"
#include "builder/OutputIndex.h"
#include "builder/RecordCheck.h"
#include "builder/Staleness.h"
#include "builder/ToolCommands.h"
#include "drivers/PropertyManagerDriver.h"
#include "drivers/ToolManagerDriver.h"
#include "output/BuildOutput.h"
#include "platform/files/FileSystem.h"
#include "platform/files/FileTexts.h"
#include "platform/process/Process.h"
#include "project/FileDamage.h"
#include "project/FileGuard.h"
#include "project/FileSaver.h"
#include "project/NodeTypes.h"
#include "project/ProjectLock.h"
#include "project/ProjectTrust.h"
#include "project/ProjectViews.h"
#include "project/PublishCursor.h"
#include "project/RepeatedReads.h"
#include "project/ReplacedFiles.h"
#include "widgets/Dialogs.h"
#include "widgets/HostMessages.h"
#include "widgets/MessageLoop.h"
#include "xml/XmlNode.h"

namespace tarn {

class BuildWalk;
class RecordRestore;
struct WorkerControl;

// States of the build's state machine. The numeric values are internal.
enum BuildState : std::int32_t {
  StateIdle = 0,
  StateBuilding = 2,
  StateStopRequested = 3,
  StateFailed = 4,
  StateSucceeded = 5,
};

// What a build does with each node.
enum BuildMode : std::int32_t {
  ModeBuild = 1,    // skip what is up to date
  ModeRebuild = 2,  // run every tool
  ModeClean = 3,    // delete products
};

// Commands for the worker in addition to the modes on the current node and the ids of dynamic
// commands.
enum WorkerCommand : std::int32_t {
  kWorkerBuildAll = 4,
  kWorkerRebuildAll = 5,
  kWorkerCleanAll = 6,
  kWorkerTranslate = 7,
};

// The project document: the files of a project, the tree in memory with its options and derived
// attributes, and the build that traverses it. One per manager; projects are opened and closed in
// it.
//
// Threads: everything runs on the main thread (the one that created the model), except where the
// build worker is mentioned; see BuildWorker.cpp.
//
// Errors: operations return 1 if done and 0 if not, and report most failures to the log only.
//
// Reentrancy: messages to the host are synchronous, and a handler may call any operation. Therefore
// an operation must not use a node after sending a message unless `treeEpoch` or `projectEpoch`
// shows that the tree has not changed in the meantime.
class CProjectModel {
 public:
  // `disk` is borrowed for the lifetime of the model.
  explicit CProjectModel(FileSystem& disk);
  // Requests a running worker to stop, runs its posted tasks until it has ended, then frees
  // everything.
  virtual ~CProjectModel();
  CProjectModel(const CProjectModel&) = delete;
  CProjectModel& operator=(const CProjectModel&) = delete;

  // Set by the owner before the first operation. All pointers are borrowed.
  CBuildOutput* output = nullptr;
  CPropertyManagerDriver* propertyManager = nullptr;
  CToolManagerDriver* toolManager = nullptr;
  ProjectViews views;
  WindowHandle mainframeHandle = 0;
  std::string configFolder;  // ends with a separator
  std::string configFilePath;
  std::string examplesFolder;  // ends with a separator
  std::string applicationPath;
  std::string dataPath;
  NodeTypes types;
  // Conversion of projects in the old format: launcher of the script, its interpreter (empty:
  // Perl), and the time limit.
  ProcessLauncher* launcher = &ProcessLauncher::Native();
  std::string importProgram;
  int importSeconds = 600;

  // Identity and state of the open project.
  const std::string& GetProjectPath() const { return projectPath; }
  const std::string& GetProjectFolder() const { return projectFolder; }
  const std::string& GetLastBrowseFolder() const { return lastBrowseFolder; }
  // Returns the absolute path of the project file that a path passed by a caller refers to.
  std::string FullProjectPath(const std::string& path) const;
  // Returns true if a project is open and `path` refers to it.
  bool IsOpenAs(const std::string& path) const;
  // Returns true between a successful open and the next close.
  bool IsOpen() const { return isOpen; }
  bool IsDefaultProject() const { return isDefaultProject != 0; }
  bool IsModified() const { return modified != 0; }
  // Returns true if a save would have anything to write.
  bool HasUnsaved() const { return isOpen && (modified != 0 || shapeChanged); }
  // Marks the project as unmodified: a close writes nothing until the next change.
  void DropChanges() {
    modified = 0;
    shapeChanged = false;
  }
  // Records that siblings were reordered.
  void NoteReordered() {
    NoteModified();
    NoteUnpublished();
  }
  bool IsPublishingSuspended() const { return publishingSuspended; }
  void SetPublishingSuspended(bool suspended) {
    publishingSuspended = suspended;
    publishingStopped = true;
  }
  // Returns true if the user stopped background publishing for this project.
  bool IsPublishingStopped() const { return publishingStopped; }
  CXmlNode& GetProjectRoot() { return *projectRoot; }
  CXmlNode* GetActiveApplication() { return activeApplication; }
  CXmlNode* GetOwnCurrentNode() { return currentNode; }
  CXmlNode* GetDynamicCommandTree() { return dynamicCommands.get(); }
  // Generation number of the tree. It changes whenever nodes are freed; node pointers obtained at
  // an earlier value are invalid.
  std::uint64_t GetTreeEpoch() const { return treeEpoch; }
  // Records a change of the tree that does not set `modified`. The next load or save determines
  // whether the files are affected.
  void NoteShapeChanged() {
    shapeChanged = true;
    ++changeCount;
  }
  // Content lost when the files of the open project were read.
  const std::vector<FileDamage>& GetDamage() const { return damage; }
  // Same, for the last project that could not be opened; valid until the next open.
  const std::vector<FileDamage>& GetFailedDamage() const { return failedDamage; }
  // Sets whether a damaged project is protected: nothing builds or cleans it, and no save or close
  // writes it. Off by default, so that only hosts able to ask their users turn it on.
  void SetDamageProtection(bool isProtected) { protectsDamage = isProtected; }
  bool IsDamageProtected() const { return protectsDamage; }
  bool IsDamageHeld() const { return protectsDamage && !damage.empty(); }
  // Changes whenever anything that a save would write has changed, and occasionally without need.
  std::uint64_t GetChangeCount() const { return changeCount; }
  // The right to change the files of a project (see ProjectLock). A host may acquire it before
  // opening the project; otherwise a save acquires it.
  bool TryTakeEdits(const std::string& path) { return editLock.TryTake(FullProjectPath(path)); }
  void ReleaseEdits() { editLock.Release(); }
  const std::string& GetEditor() const { return editLock.GetHolder(); }
  const std::string& GetEditProblem() const { return editLock.GetProblem(); }
  // Reports of the last save or close. Only files with something to report are listed.
  const std::vector<SavedFile>& GetSavedFiles() const { return savedFiles; }
  // Records that the user agrees to writing files outside the project's folder.
  void AllowOutside(bool isAllowed) { writesOutside = isAllowed; }
  bool MayWriteOutside() const { return writesOutside; }
  ProjectTrust& GetTrust() { return trust; }
  // Folder in which hosts store per-user state. Builds must not write there. Empty if unknown.
  void SetStateFolder(const std::string& folder) { stateFolder = folder; }
  const std::string& GetStateFolder() const { return stateFolder; }
  // Makes saves atomic: all files of the project are written, or none. By default a save writes as
  // many as it can.
  void SaveAllOrNone(bool isWanted) { savesWhole = isWanted; }
  // Projects are opened for reading only: no log lines are written about read-only files.
  void OpenForReading(bool isWanted) { onlyReads = isWanted; }

  // Contents of the files when they were last read or written.
  std::vector<FileText> GetBaseTexts() const;
  // The next project is opened from `texts` instead of its files, as unsaved changes: a later save
  // merges them with the files as they are by then. `bases` are the contents on which the changes
  // were made; a new file has none.
  void StageFiles(const std::vector<FileText>& texts, const std::vector<FileText>& bases);

  // --- Lifecycle (Lifecycle.cpp) ---
  //
  // Opens a project after closing the current one. A null `path` asks the user; a file that is not
  // a *.tprj is imported. A nonzero `isDefault` opens the placeholder project. Returns 0 if a
  // close, a build or the user prevents the open, if the file can't be read, and if a handler
  // opened or closed a project in the meantime.
  std::int32_t OpenProject(const char* path, std::int32_t isDefault);
  // Asks the host, saves a modified project unless damage protects it, and frees the tree. Returns
  // 0 if the host refuses, if a build is running, and if not even a copy of a file could be
  // written, which reopens the project. Saved copies don't prevent the close; see GetSavedFiles.
  std::int32_t CloseProject();
  // Saves the project by closing and reopening it. If some files could not be written, reopens it
  // with their content as unsaved changes and returns 0.
  std::int32_t SaveProject();
  // Creates a project file at `path`, asking before it overwrites one; a null `path` runs the
  // wizard for a new application.
  std::int32_t NewProject(const char* path);
  // Writes an empty project file without opening it. Backs up a file that it replaces.
  std::int32_t CreateProjectFile(const std::string& path, std::int32_t askOverwrite);

  // Returns the name of the program that importing an old project needs, or an empty string if it
  // is installed (Import.cpp).
  std::string MissingImportProgram() const;

  // --- Files and paths (TreeFile.cpp) ---
  //
  // Reads a project or application file into `node`, and then the files of its parts. Returns 0 if
  // a file is missing or can't be opened, or if a handler changed the tree. A file with a read
  // error is treated as damaged.
  std::int32_t LoadTreeFile(CXmlNode& node, const std::string& fileName);
  // Writes the file of `node` and those of its parts. Failures are recorded per file, see
  // GetSavedFiles.
  std::int32_t SaveTreeFile(CXmlNode& node, const std::string& fileName);
  // Removes everything derived from the subtree and makes its paths relative.
  void StripForSave(CXmlNode& node, bool dropDependencies);
  // Returns the files, by absolute path, exactly as a save would write them now. Changes nothing.
  std::vector<FileText> MakeFileTexts();
  // Applies a change of these files to the open project, in memory only (ApplyChange.cpp); see
  // CProjectInspector. Returns the reasons for a failure; empty on success.
  std::vector<std::string> ApplyChange(const std::vector<FileText>& before,
                                       const std::vector<FileText>& after);
  // Makes `path` absolute. Returns 0 for an empty path and leaves `result` unchanged. A null base
  // means the project's folder.
  std::int32_t MakeAbsolutePath(const std::string& path, std::string& result,
                                const char* baseFolder) const;
  // Makes `path` relative, as stored in files. A path that is relative already, or that has no
  // relative form, is returned unchanged.
  std::int32_t MakeRelativePath(const std::string& path, std::string& result,
                                const char* baseFolder) const;
  // Returns the folder that the node's path is relative to; empty means the project's folder.
  std::string PathBaseOf(const CXmlNode& node) const;
  // Finds the application at or above `node`; leaves `found` unchanged if there is none.
  void FindEnclosingApplication(CXmlNode* node, CXmlNode*& found) const;
  const CXmlNode* GetNodeType(const CXmlNode& node) const { return types.GetNodeType(node); }
  bool HasTypeFlag(const CXmlNode& node, std::string_view key) const {
    return types.HasTypeFlag(node, key);
  }
  // Returns the path of the application's globals file in the active configuration; empty if there
  // is none.
  std::string GlobalsFileOf(const CXmlNode& application) const;

  // --- Tree operations (TreeOperations.cpp) ---
  //
  // Returns the node that commands apply to: the one selected in the window, else the one that was
  // current before a running build, else the current node, the active application or the root.
  // Never null.
  CXmlNode* GetCurrentNode();
  // Makes the application the project's default one and highlights it. Returns 0 for other nodes.
  std::int32_t SetActiveApplication(CXmlNode* application);
  // Returns true if the node types allow `child`, a node or a type record, below `parent`.
  bool CanContain(const CXmlNode* parent, const CXmlNode* child) const;
  // Clears every pointer to the item's subtree, then frees it. Deletes no files. A null name means
  // the current node.
  std::int32_t RemoveItem(const char* itemname);
  // A null node or target means the current node.
  std::int32_t CopyNode(CXmlNode* node);
  std::int32_t PasteNode(CXmlNode* target);
  // Copies, pastes and removes the node. A node is never moved into itself.
  void MoveNode(CXmlNode* node, CXmlNode* target);
  // Removes the nodes of the placeholder project's application.
  void ClearDefaultApplicationItems();

  // New items (AddItems.cpp, NewItem.cpp). An empty path asks the user for files; if the type is
  // null, it is determined by the file extension. For the type "DebugSrcFiles", `itempath` is a
  // list of lines.
  std::int32_t AddExistingItem(const char* itempath, const char* itemtype);
  // Lets the user select files and adds them.
  std::int32_t BrowseAndAddFiles();
  // Adds a folder for the type "Group", else an application that the user specifies in a dialog.
  std::int32_t AddNewItem(const char* itempath, const char* itemtype);
  // Returns a sentence for the user that says why AddNewItem would refuse this application; empty
  // if no obstacle is known.
  std::string FindApplicationProblem(const NewApplication& wanted);

  // --- Options and publishing (Publishing.cpp, StoredOptions.cpp, Configurations.cpp) ---
  //
  // Returns the configuration of the active application, or "Standard".
  std::string GetCurrentConfigName() const;
  // Makes the node current: saves the state of the options window in the previous node, loads the
  // node's options, notifies the host, and selects the node in the window.
  void SetCurrentNode(CXmlNode* node);
  // Clears the record of which node is loaded in the property manager, so that the next
  // SetCurrentNode reloads it.
  void ForgetCurrentNode() { currentNode = nullptr; }
  // Loads the node's options into the property manager and makes it and its application current.
  // Returns the cached values, or nullptr if a handler changed the tree. Unless `force` is set,
  // does nothing for the current node.
  CXmlNode* LoadNodeOptions(CXmlNode* node, bool force);
  // Computes the node's option values, caches them in the node and writes the derived attributes.
  // Publishes its ancestors first. If it is published already, only loads the cached values into
  // the property manager, unless `force` is set.
  CXmlNode* PublishNode(CXmlNode* node, bool force);
  // Publishes one unpublished node of the subtree, and makes it current. Returns 0 if there is
  // none.
  std::int32_t PublishNextNode(CXmlNode* node);
  // Publishes the node and everything below it; the next SetCurrentNode reloads its node in any
  // case.
  void PublishSubtree(CXmlNode& node);
  // Publishes a few nodes in the background and restores the current node. Returns 1 if there are
  // more; stops the timer and notifies the host after the last one.
  std::int32_t PublishTick();
  // Returns true if the project has unpublished nodes.
  bool HasUnpublished();
  // Publishes the unpublished children of `parent` and restores the current node. Returns true if
  // there were any; false also for nullptr and while a build runs.
  bool PublishChildren(CXmlNode* parent);
  // Publishes every unpublished node and restores the current node.
  void PublishAll() { PublishFor(std::chrono::hours(24)); }
  // Same, within a time limit. Returns false if nodes are left for another call.
  bool PublishFor(std::chrono::milliseconds time);
  // Appends the nodes whose stored options apply to `node`, from its application down to the node.
  void CollectOptionChain(std::vector<CXmlNode*>& list, CXmlNode* node) const;
  // Unpublishes the subtree. If `ownOnly`, keeps the derived attributes and the absolute paths.
  void ResetNodeCache(CXmlNode& node, bool ownOnly);
  // Saves the state of the options window in this node.
  void RenewPropState(CXmlNode& node);
  // Restores the state of the options window from this node.
  void RestorePropState(const CXmlNode& node);
  // Stores a value changed in the property manager in the current node. An empty key means the last
  // change in the options window. A change of type or label changes the node itself.
  std::int32_t StoreChangedProperty(const std::string& key);
  // Removes a stored value, or all values of a section, from the current node.
  std::int32_t ResetStoredProperty(const std::string& key);
  // Removes all stored options of the node.
  std::int32_t ResetNodeOptions(CXmlNode* node);
  // Adds the configuration named in the options window to the active application.
  std::int32_t AddConfiguration();
  // See CProjectInspector::CopyConfiguration.
  std::int32_t CopyConfiguration(const std::string& from, const std::string& to);
  // Reloads the definitions of options and tools if their files have changed; returns 1 if so.
  // Everything is then published again and treated as not built.
  std::int32_t RefreshDefinitions();
  // Makes a configuration of the active application the current one and republishes its nodes.
  std::int32_t SelectConfiguration(const std::string& name);
  // Returns the type whose extensions include that of `path`, the last one if there are several, or
  // nullptr.
  const CXmlNode* FindTypeByFileExtension(std::string_view path);
  // Invalidates the extension index; call it when type definitions may have changed.
  void ForgetExtensions() { typesByExtensionKnown = false; }

  // --- Build (src/builder) ---
  //
  // Run on the calling thread until done, and return 1 on success. A null node means the current
  // one.
  virtual std::int32_t BuildNode(CXmlNode* node, std::int32_t mode);
  virtual std::int32_t TranslateNode(CXmlNode* node);
  virtual std::int32_t RunToolOnNode(CXmlNode* node, const std::string& tool);
  // Returns true if the node and its descendants are up to date. Checks the files again unless a
  // build is running.
  virtual bool IsNodeUpToDate(CXmlNode* node);
  // Returns why `node` itself, regardless of its children, is out of date; the reason is None if it
  // is up to date. Uses cached file times; see ForgetFileTimes.
  StaleVerdict ExamineNode(CXmlNode& node);
  // Invalidates cached file times and tool definitions, so that both are checked again.
  void ForgetFileTimes();
  // Append the quoted files that the application at `root` passes to its linker, or to its
  // debugger.
  void CollectLinkFiles(std::string& list, const CXmlNode* node, bool useOutput,
                        const CXmlNode* root, const std::string& separator) const;
  void CollectDebugFiles(std::string& list, const CXmlNode* node, const CXmlNode* root,
                         const std::string& separator) const;
  FileSystem& GetFiles() const { return files; }
  // Returns the tool and the file list that translating the node would use; false if it has no
  // tool.
  bool GetToolInput(const CXmlNode& node, std::string& tool, std::string& files) const;

  // Starts a worker for a BuildMode, a WorkerCommand or a dynamic command. Returns 0 if another
  // operation is running, the project is protected because of damage, or no thread can be created.
  // The host is notified of the end with kMsgWorkerEnded.
  std::int32_t StartBuildThread(std::int32_t command);
  // Returns 1 if no build is running. Returns 0 during a synchronous build. While a worker is
  // running, asks the user whether to stop it, and returns 0 in any case.
  std::int32_t CanStartOperation();
  // Requests the running build to stop. Thread-safe, like GetBuildState.
  void RequestStop();
  std::int32_t GetBuildState();
  bool IsWorkerAlive() const;
  // Returns true if called from a task of the worker, which is blocked until the task returns.
  bool IsInWorkerStep() const;
  // Returns true if the worker can't end before the caller returns: the caller runs inside a task
  // of the worker, or inside a host's handler of a message sent by a running tool.
  bool IsWorkerWaiting() const;
  // Runs the task that a worker has posted, if there is one and none is running.
  void ServeWorker();
  // Sends no more messages to the host.
  void ForgetHost();
  // Requests a running worker to stop and runs its tasks until it has ended. The host receives no
  // more messages from it.
  void StopAndWait();
  // Runs `work` on the main thread after the running worker has sent its last message.
  void RunAfterWorker(std::function<void()> work);
  // Builds the current node synchronously on the calling thread. Returns 0 also while a worker is
  // running.
  std::int32_t BuildHere();

  // --- Reports from tools (BuildInformation.cpp) ---
  //
  // Processes a report about outputs. Returns 0 if no application is active.
  std::int32_t SetBuildInfo(const char* filepath, const char* xmlinfo);
  // Build records (BuildState.cpp): what each output was made from. A journal makes them
  // persistent.
  BuildRecords& GetBuildRecords() { return buildRecords; }
  // Reads the journal at `path` and appends to it until the project is closed.
  StateVerdict OpenBuildState(const std::string& path);
  // Attaches valid records to the published nodes for roughly this long. Returns false if some are
  // left for another call.
  bool RestoreFor(std::chrono::milliseconds time);
  // Does the same for one node.
  void RestoreRecord(CXmlNode& node, const std::string& owner);
  // Restores records of an application whose nodes now have different outputs, some of which may
  // have been built before.
  void RestoreRecords(CXmlNode& application);
  // Writes the remaining records after a build. Returns the error, or an empty string.
  std::string FinishBuildState(bool mayShrink);
  // Returns the node that a report about this output is attributed to, or nullptr.
  CXmlNode* FindNodeByOutput(CXmlNode& application, const char* outputFile);
  // Returns the nodes of a published application that are built into the same output.
  std::vector<SharedOutput> FindSharedOutputs(CXmlNode& application);
  // Returns true if several nodes of the project produce this listing file.
  bool IsSharedListing(const std::string& path);
  // Returns the nodes whose source appears again later in the tree, where it is built.
  std::unordered_set<const CXmlNode*> FindRepeatedNodes(CXmlNode& application);
  // Writes the result of a build to the node's attributes; null `infos` marks it as not built.
  std::int32_t RecordBuildInfo(CXmlNode* node, const char* infos, const char* date);
  // Returns the tools available for the current node as XML; empty if there are none.
  std::string GetDynamicCommands(std::uint32_t commandId);
  // Returns the loaded global symbol of this name as XML; empty if it is unknown.
  std::string GetSymbolInfo(const char* symbolName);
  void ReportMessage(const char* text);

  // Sends a message to the host and returns its reply; 1, which means agreement, if there is no
  // host.
  std::intptr_t SendHost(HostMessage message, std::intptr_t wParam, std::intptr_t lParam);
  std::intptr_t SendHost(HostMessage message, const std::string& wText, std::intptr_t lParam);
  std::intptr_t SendHost(HostMessage message, const std::string& wText, const std::string& lText);
  // Posts a command to the host without waiting for it.
  void PostHostCommand(std::int32_t command);
  // Adds a line that is not in the message table to the log and reports it to the host.
  void AddLogLine(const std::string& text);
  // Same for an error, which also appears in the build report.
  void AddLogError(const std::string& text);
  // Adds a finding of a build about the project itself to the log and the report, and queues it for
  // hosts that show a build's progress.
  void AddBuildNotice(LineKind kind, const std::string& text);
  struct BuildNotice {
    LineKind kind;
    std::string text;
  };
  // Returns and clears the queued notices. One of them may say why the log file is not written.
  std::vector<BuildNotice> TakeBuildNotices();

 private:
  friend class BuildWalk;

  // Returns the owner of a node's paths: its nearest proper ancestor that is an application or
  // project.
  CXmlNode* FindPathOwner(const CXmlNode& node) const;
  std::string PathBaseBelow(const CXmlNode& parent) const;
  std::string FolderOfOwner(const CXmlNode* owner) const;
  void MakeAttributeRelative(CXmlNode& node, const char* name);
  void StripSubtree(CXmlNode& node, bool dropDependencies);

  void NoteModified() {
    modified = 1;
    ++changeCount;
  }
  std::int32_t LoadTreeText(CXmlNode& node, const std::string& absolute);
  std::vector<std::string> MergeChange(const std::vector<FileText>& before,
                                       const std::vector<FileText>& after, ReplacedFiles& result);
  bool Reload(const std::string& path, const ReplacedFiles& texts);
  bool HoldsWhatIsSaved();
  // Replaces the recorded damage of the file.
  void SetDamageOf(const std::string& absolute, std::vector<FileDamage> found);
  void AddDamage(FileDamage found);
  void CheckActiveApplication();
  void SetReference(CXmlNode& node, const std::string& fileName);
  std::int32_t LoadExternChildren(CXmlNode& node, std::uint64_t epoch);
  // A file that a save is about to write.
  struct PendingFile {
    std::string absolute;                  // as the tree names it
    std::string text;                      // as it would be stored
    std::vector<std::size_t> parts;        // indices of the files of its children
    std::vector<PartChange> changedParts;  // see FileSaver::Prepare
    SavePlan plan;                         // for a different path if the file was moved
    bool isPlanned = false;                // `plan` follows from the file that references this one
    bool isOutside = false;                // outside the folder, and the user did not agree
    bool isSaved = true;
  };
  std::size_t CollectTreeFiles(CXmlNode& node, const std::string& absolute,
                               std::vector<PendingFile>& pending);
  void FollowParts(std::vector<PendingFile>& pending);
  std::string FindRenamedPart(const std::string& absolute, std::vector<std::string>& added);
  void FollowPart(PendingFile& owner, PendingFile& part, const PartChange& change,
                  const std::string& target);
  void SaveAllPending(std::vector<PendingFile>& pending);
  void SavePendingFile(PendingFile& file, const std::vector<PendingFile>& pending);
  std::string PlanFiles(std::vector<PendingFile>& pending);
  void PrepareFiles(std::vector<PendingFile>& pending);
  std::string DescribeOutside(const SavePlan& plan) const;
  Status WriteTreeFile(const SavePlan& plan);
  void ReportUnneeded(const SavePlan& plan, std::vector<SavedFile>& reports);
  void KeepElsewhere(PendingFile& file, const std::string& reason);
  void LoseNothing(PendingFile& file, const std::string& reason);
  void KeepUnsaved(const std::vector<PendingFile>& pending);
  static constexpr const char* kSharedFile = "it is the file of two applications";
  // `place` is the file that caused the refusal; empty if none did.
  void RefuseFiles(std::vector<PendingFile>& pending, const std::string& reason,
                   const std::string& place = {});
  void ReportSave();

  std::int32_t LoadProject(std::uint64_t opened);
  void DiscardTree();
  void RemoveAllChildren(CXmlNode& node);
  void RemoveContentChildren(CXmlNode& node);
  // Clears every pointer into the subtree, then frees it.
  void FreeSubtree(CXmlNode& parent, CXmlNode* node);
  void ForgetPointersInto(const CXmlNode& node);
  std::string AskForProject();
  bool MayOverwrite(const std::string& path) const;
  // Backs up a file that is to be replaced unless it has the content written last. On error reports
  // a message and returns false, and the file must not be replaced.
  bool PutAsideReplaced(const std::string& path);

  CXmlNode* FindItem(const char* itemname);
  CXmlNode* Paste(CXmlNode* target);
  enum class Opens { No, Yes };  // whether the parent is expanded
  // Attaches the node as the last child of `parent`, or before a sibling. Leaves `modified` to the
  // caller. Returns nullptr if the views changed the tree again while being notified.
  CXmlNode* AttachNode(CXmlNode& parent, std::unique_ptr<CXmlNode> node, Opens opens,
                       const CXmlNode* before = nullptr);
  void MakePathsAbsolute(CXmlNode& node, const std::string& base) const;
  CXmlNode* LoadAddTarget();
  const CXmlNode* TypeOfItem(const std::string& path, const char* itemtype);
  std::int32_t AddItem(const std::string& itempath, const char* itemtype, bool isJustMade);
  std::int32_t PlaceItem(CXmlNode& target, std::unique_ptr<CXmlNode> node);
  void FillItem(CXmlNode& node, const std::string& path);
  void WriteItemPaths(CXmlNode& node, const std::string& path) const;
  bool HoldsApplicationOf(const std::string& path) const;
  std::int32_t ReplaceSourceList(const std::string& lines);
  std::int32_t AddGroup();
  const CXmlNode* ProposeApplication(const std::string& itempath, const char* itemtype,
                                     NewApplication& wanted) const;
  std::int32_t PlaceInProject(std::unique_ptr<CXmlNode> node);
  std::int32_t PlaceInNewProject(const CXmlNode& node, const std::string& applicationFile,
                                 const std::string& projectFile);
  void SetUpApplication(const NewApplication& wanted);
  std::int32_t RunCobbler(const std::string& wizardPath);
  // Returns 1 even if the converted project could not be opened.
  std::int32_t ImportOldProject(const std::string& path);
  std::int32_t RunConversion(const std::string& oldFile, std::string& blamed);
  std::string FindImportProgram() const;
  bool AnnounceApplications(std::uint64_t opened);
  bool MakeOptionsReady(std::uint64_t opened);
  void WriteAndEmpty();

  void PublishFromParent(CXmlNode& node, bool force);
  void PublishPath(CXmlNode& node);
  void ApplyStoredOptions(CXmlNode& node, const std::string& config);
  void WriteMarker(CXmlNode& node, const std::string& config) const;
  void WriteDerivedAttributes(CXmlNode& node);
  void MakeActivePathAbsolute();
  void ReadConfigurations();
  void LoadToolCommands(const CXmlNode& node);
  void RestoreCurrent(CXmlNode* application, CXmlNode* node);
  bool CanPublishAside() const;
  void PublishAside(const std::function<bool()>& publish);
  void RunAutoDebugStep();
  void SendActiveApplication();
  const std::string& TextOfOptions(const CXmlNode& owner);
  // Invalidates the cached serialized options; call it when stored options, configurations or the
  // tree itself changed.
  void ForgetKeptTexts();
  // Invalidates every pointer into the tree and everything cached about it; call it after nodes
  // were freed or added.
  void NoteTreeChange();
  // Records that nodes lost their cached values or derived attributes.
  void NoteUnpublished();
  bool CanBecome(const CXmlNode& node, const std::string& typeName) const;
  std::int32_t ChangeNodeIdentity(CXmlNode& node, const std::string& property,
                                  const std::string& value);

  std::string OperationText(std::int32_t mode) const;
  void RestoreAfterWalk(CXmlNode* application, CXmlNode* node, std::uint64_t epoch);
  std::int32_t RunWalkHere(BuildWalk& walk);
  void EndUnstartedWorker(const std::string& reason);
  static void BuildThreadMain(std::shared_ptr<WorkerControl> control);
  bool EndWorker();
  bool TakeBuildRecords(const std::string& xmlinfo);
  const OutputIndex& IndexOutputs(CXmlNode& application);
  void ForgetOldOutputs();
  // Converts a tool's report to the dependency list of its node.
  std::unique_ptr<CXmlNode> TakeDependencies(std::unique_ptr<CXmlNode> record);
  void ReplaceDependencies(CXmlNode& node, std::unique_ptr<CXmlNode> list);

  FileSystem& files;
  FileGuard guard;
  ProjectTrust trust;
  ProjectLock editLock;
  std::vector<FileDamage> damage;
  std::vector<FileDamage> failedDamage;
  bool protectsDamage = false;
  bool savesWhole = false;
  bool onlyReads = false;
  bool writesOutside = false;
  std::string stateFolder;
  std::vector<BuildNotice> buildNotices;

  std::string projectPath;
  std::string projectFolder;
  std::string lastBrowseFolder;
  std::unique_ptr<CXmlNode> projectRoot;
  CXmlNode* activeApplication = nullptr;
  CXmlNode* currentNode = nullptr;
  std::unique_ptr<CXmlNode> clipboardNode;
  std::unique_ptr<CXmlNode> dynamicCommands;
  std::int32_t isDefaultProject = 1;
  bool publishingSuspended = false;
  bool publishingStopped = false;
  std::int32_t modified = 1;
  std::int32_t creatingProject = 0;

  std::uint64_t changeCount = 0;  // counts changes to file contents, and opens

  bool isOpen = false;
  bool shapeChanged = false;
  bool isClosing = false;  // waiting for the host's consent, or writing files
  std::string openedBy;    // path as passed by the caller that opened the project
  bool inPublishTick = false;
  RepeatedReads repeatedReads;              // of the outermost file being loaded
  std::uint64_t projectEpoch = 0;           // counts opens and closes
  std::uint64_t treeEpoch = 0;              // counts events that free nodes
  std::uint64_t publishEpoch = 0;           // counts those, and losses of published values
  std::uint64_t outputEpoch = 0;            // counts those, and changes of output files
  std::vector<std::string> loadingFiles;    // files being read, outermost first
  std::unique_ptr<ReplacedFiles> staged;    // for the next open
  const ReplacedFiles* replaced = nullptr;  // of the project being read
  std::vector<SavedFile> savedFiles;        // of the last save or close
  std::set<std::string> mayWriteOutside;    // files outside the project's folder
  bool isSaving = false;                    // the close is part of a save; the project stays open
  std::unique_ptr<ReplacedFiles> unsaved;   // set by such a close if something was not saved

  PublishCursor publishCursor;
  std::unordered_map<const CXmlNode*, std::string> optionTexts;
  std::unordered_map<std::string, const CXmlNode*> typesByExtension;
  bool typesByExtensionKnown = false;
  std::pair<std::string, const CXmlNode*> lastExtension;

  std::mutex buildLock;  // guards buildState only
  std::int32_t buildState = StateIdle;
  std::int32_t buildCommand = 0;
  std::shared_ptr<MessageLoop> loop;  // of the main thread
  std::shared_ptr<WorkerControl> worker;
  CXmlNode* notedHere = nullptr;  // current node at the start of a synchronous build
  int walksHere = 0;              // number of nested synchronous builds
  std::unique_ptr<BuildWalk> workerWalk;
  CXmlNode* walkApplication = nullptr;  // application being built
  FileTimes fileTimes;
  BuildRecords buildRecords;
  ToolCommands toolCommands;
  RecordCheck recordCheck;
  std::unique_ptr<RecordRestore> recordRestore;  // non-null while one is running

  std::unordered_map<const CXmlNode*, OutputIndex> outputIndexes;  // by application
  // Number of nodes per listing path; nullopt until needed.
  std::optional<std::unordered_map<std::string, int>> listings;
  std::unordered_set<const CXmlNode*> withoutShared;  // applications without shared outputs
  std::uint64_t outputIndexEpoch = 0;                 // of the three caches above
};

}  // namespace tarn
