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

// What the build is doing; the numbers travel to nobody, the names are the states of the machine.
enum BuildState : std::int32_t {
  StateIdle = 0,
  StateBuilding = 2,
  StateStopRequested = 3,
  StateFailed = 4,
  StateSucceeded = 5,
};

enum BuildMode : std::int32_t {
  ModeBuild = 1,    // skip what is up to date
  ModeRebuild = 2,  // run every tool
  ModeClean = 3,    // delete products
};

// What a worker is to do, beyond the modes on the current node and the ids of dynamic commands.
enum WorkerCommand : std::int32_t {
  kWorkerBuildAll = 4,
  kWorkerRebuildAll = 5,
  kWorkerCleanAll = 6,
  kWorkerTranslate = 7,
};

inline constexpr std::int32_t kFirstDynamicCommand = 0x8122;
inline constexpr std::int32_t kLastDynamicCommand = 0x8136;
inline constexpr std::int32_t kToolCommandBase = 0x8123;  // id of the first entry of the list

inline constexpr std::int32_t kCommandOptionsLoaded = 0x811E;
inline constexpr std::int32_t kCommandAutoDebug = 0x82C3;

// The project document: the files of a project, the tree in memory with its options and derived
// attributes, and the build that walks it. One per manager; the project comes and goes.
//
// Threads: everything runs on the thread that made the model, except where the build's worker is
// named (see BuildWorker.cpp). Operations give 1 for done and 0 for not done, and say most failures
// nowhere but in the log.
//
// Host messages are synchronous and their handlers may call back into anything. An operation
// therefore holds no node across a message unless it notices by `treeEpoch` or `projectEpoch` that
// the tree changed meanwhile.
class CProjectModel {
 public:
  // `disk` is borrowed for the model's life.
  explicit CProjectModel(FileSystem& disk);
  // Asks a living worker to stop, serves it until it has ended, then frees everything.
  virtual ~CProjectModel();
  CProjectModel(const CProjectModel&) = delete;
  CProjectModel& operator=(const CProjectModel&) = delete;

  // Set by the owner before the first operation; all borrowed.
  CBuildOutput* output = nullptr;
  CPropertyManagerDriver* propertyManager = nullptr;
  CToolManagerDriver* toolManager = nullptr;
  ProjectViews views;
  WindowHandle mainframeHandle = 0;
  std::string configFolder;  // with a separator at its end
  std::string configFilePath;
  std::string examplesFolder;  // with a separator at its end
  std::string applicationPath;
  std::string dataPath;
  NodeTypes types;
  // The conversion of older projects: who starts the script, what runs it (empty: Perl), and how
  // long that may take.
  ProcessLauncher* launcher = &ProcessLauncher::Native();
  std::string importProgram;
  int importSeconds = 600;

  // What the project is.
  const std::string& GetProjectPath() const { return projectPath; }
  const std::string& GetProjectFolder() const { return projectFolder; }
  const std::string& GetLastBrowseFolder() const { return lastBrowseFolder; }
  // The project file that a path given by a caller means.
  std::string FullProjectPath(const std::string& path) const;
  // A project is open, and this path means it.
  bool IsOpenAs(const std::string& path) const;
  // A project was opened and not closed since.
  bool IsOpen() const { return isOpen; }
  bool IsDefaultProject() const { return isDefaultProject != 0; }
  bool IsModified() const { return modified != 0; }
  // Returns whether a save has anything to write.
  bool HasUnsaved() const { return isOpen && (modified != 0 || shapeChanged); }
  // A close has nothing to write until the next change.
  void DropChanges() {
    modified = 0;
    shapeChanged = false;
  }
  // Siblings changed places.
  void NoteReordered() {
    NoteModified();
    NoteUnpublished();
  }
  bool IsPublishingSuspended() const { return publishingSuspended; }
  void SetPublishingSuspended(bool suspended) {
    publishingSuspended = suspended;
    publishingStopped = true;
  }
  // The user stopped background publishing of this project.
  bool IsPublishingStopped() const { return publishingStopped; }
  CXmlNode& GetProjectRoot() { return *projectRoot; }
  CXmlNode* GetActiveApplication() { return activeApplication; }
  CXmlNode* GetOwnCurrentNode() { return currentNode; }
  CXmlNode* GetDynamicCommandTree() { return dynamicCommands.get(); }
  // Changes whenever nodes were freed: a node pointer from before holds no more.
  std::uint64_t GetTreeEpoch() const { return treeEpoch; }
  // The next load or save finds out whether this was needed; for changes of the tree that leave
  // `modified` alone.
  void NoteShapeChanged() {
    shapeChanged = true;
    ++changeCount;
  }
  // What was lost when the files of the open project were read.
  const std::vector<FileDamage>& GetDamage() const { return damage; }
  // The same of the project that could not be opened, until the next one is.
  const std::vector<FileDamage>& GetFailedDamage() const { return failedDamage; }
  // Whether a project with damage is to be left alone: nothing builds or cleans it, and no save or
  // close writes it. Off at first, so that only hosts that can ask their users turn it on.
  void SetDamageProtection(bool isProtected) { protectsDamage = isProtected; }
  bool IsDamageProtected() const { return protectsDamage; }
  bool IsDamageHeld() const { return protectsDamage && !damage.empty(); }
  // Changes with all that a save would write, and now and then without need.
  std::uint64_t GetChangeCount() const { return changeCount; }
  // The right to change the files of a project, which a host may take before it opens it. A save
  // takes it for itself if the host has not.
  bool TryTakeEdits(const std::string& path) { return editLock.TryTake(FullProjectPath(path)); }
  void ReleaseEdits() { editLock.Release(); }
  const std::string& GetEditor() const { return editLock.GetHolder(); }
  const std::string& GetEditProblem() const { return editLock.GetProblem(); }
  const std::vector<SavedFile>& GetSavedFiles() const { return savedFiles; }
  // The user agrees to files outside the project's folder being written.
  void AllowOutside(bool isAllowed) { writesOutside = isAllowed; }
  bool MayWriteOutside() const { return writesOutside; }
  ProjectTrust& GetTrust() { return trust; }
  // Where hosts store what they remember for the user: no build may write there. Empty if unknown.
  void SetStateFolder(const std::string& folder) { stateFolder = folder; }
  const std::string& GetStateFolder() const { return stateFolder; }
  // A save writes all of the project's files or none, instead of as many as it can.
  void SaveAllOrNone(bool isWanted) { savesWhole = isWanted; }
  // Projects are opened to be looked at: the log needs no line on files that can't be written.
  void OpenForReading(bool isWanted) { onlyReads = isWanted; }

  // What the files held when they were read or written last.
  std::vector<FileText> GetBaseTexts() const;
  // The next project that is opened takes these texts instead of what its files hold, as changes
  // that are not saved: a save of them merges with what the files hold by then. `bases` is what the
  // files held when the changes were made; none for a new file.
  void StageFiles(const std::vector<FileText>& texts, const std::vector<FileText>& bases);

  // Lifecycle (Lifecycle.cpp).
  std::int32_t OpenProject(const char* path, std::int32_t isDefault);
  std::int32_t CloseProject();
  std::int32_t SaveProject();
  std::int32_t NewProject(const char* path);
  std::int32_t CreateProjectFile(const std::string& path, std::int32_t askOverwrite);

  // The program that the import of older projects needs and this machine hasn't got; empty when it
  // has it (Import.cpp).
  std::string MissingImportProgram() const;

  // Files and paths (TreeFile.cpp).
  std::int32_t LoadTreeFile(CXmlNode& node, const std::string& fileName);
  std::int32_t SaveTreeFile(CXmlNode& node, const std::string& fileName);
  void StripForSave(CXmlNode& node, bool dropDependencies);
  // The files as a save would write them now, by their absolute paths; changes nothing.
  std::vector<FileText> MakeFileTexts();
  // Makes a change of these files to the open project, in memory alone (ApplyChange.cpp); see
  // CProjectInspector. Returns why it can't be made; empty if it was.
  std::vector<std::string> ApplyChange(const std::vector<FileText>& before,
                                       const std::vector<FileText>& after);
  // 0 for an empty path, `result` then stays. A null base stands for the project's folder.
  std::int32_t MakeAbsolutePath(const std::string& path, std::string& result,
                                const char* baseFolder) const;
  // The form that files hold; a path without a relative form, or a relative one, stays.
  std::int32_t MakeRelativePath(const std::string& path, std::string& result,
                                const char* baseFolder) const;
  // The folder that the node's path is relative to; empty stands for the project's folder.
  std::string PathBaseOf(const CXmlNode& node) const;
  void FindEnclosingApplication(CXmlNode* node, CXmlNode*& found) const;
  const CXmlNode* GetNodeType(const CXmlNode& node) const { return types.GetNodeType(node); }
  bool HasTypeFlag(const CXmlNode& node, std::string_view key) const {
    return types.HasTypeFlag(node, key);
  }
  // The application's globals file for the configuration in force; empty without a path.
  std::string GlobalsFileOf(const CXmlNode& application) const;

  // Tree operations (TreeOperations.cpp).
  CXmlNode* GetCurrentNode();
  std::int32_t SetActiveApplication(CXmlNode* application);
  // Whether the types allow `child`, a node or a type record, below `parent`.
  bool CanContain(const CXmlNode* parent, const CXmlNode* child) const;
  // The item becomes null in every place that points into it, then is freed with all below it. No
  // file is deleted. A null name stands for the current node.
  std::int32_t RemoveItem(const char* itemname);
  // A null node stands for the current one; so does a null target.
  std::int32_t CopyNode(CXmlNode* node);
  std::int32_t PasteNode(CXmlNode* target);
  // Copies, pastes and removes; a node is never moved into itself.
  void MoveNode(CXmlNode* node, CXmlNode* target);
  void ClearDefaultApplicationItems();

  // New items (AddItems.cpp, NewItem.cpp). An empty path asks the user for files; a null type is
  // found by the file's extension. The type "DebugSrcFiles" makes `itempath` a list of lines.
  std::int32_t AddExistingItem(const char* itempath, const char* itemtype);
  std::int32_t BrowseAndAddFiles();
  // A folder for the type "Group", else an application as the user describes it.
  std::int32_t AddNewItem(const char* itempath, const char* itemtype);
  // Returns why AddNewItem would not make this application, as a sentence for the user; empty if
  // nothing is known that is in its way.
  std::string FindApplicationProblem(const NewApplication& wanted);

  // Options and publishing (Publishing.cpp, StoredOptions.cpp, Configurations.cpp).
  std::string GetCurrentConfigName() const;
  void SetCurrentNode(CXmlNode* node);
  // Forgets which node the property manager holds, so that the next SetCurrentNode loads anew.
  void ForgetCurrentNode() { currentNode = nullptr; }
  CXmlNode* LoadNodeOptions(CXmlNode* node, bool force);
  CXmlNode* PublishNode(CXmlNode* node, bool force);
  std::int32_t PublishNextNode(CXmlNode* node);
  // Publishes the node and all below it; the next SetCurrentNode loads whatever it is given.
  void PublishSubtree(CXmlNode& node);
  std::int32_t PublishTick();
  bool HasUnpublished();
  // Publishes the children of `parent` that are not yet published, and restores the current node.
  // Returns whether there were any; false as well for nullptr, and while a build runs.
  bool PublishChildren(CXmlNode* parent);
  // Publishes all that is not yet, and restores the current node.
  void PublishAll() { PublishFor(std::chrono::hours(24)); }
  // The same until the time is over; false when something is left for another call.
  bool PublishFor(std::chrono::milliseconds time);
  void CollectOptionChain(std::vector<CXmlNode*>& list, CXmlNode* node) const;
  void ResetNodeCache(CXmlNode& node, bool ownOnly);
  // Notes how the options window looks for this node.
  void RenewPropState(CXmlNode& node);
  void RestorePropState(const CXmlNode& node);
  std::int32_t StoreChangedProperty(const std::string& key);
  std::int32_t ResetStoredProperty(const std::string& key);
  std::int32_t ResetNodeOptions(CXmlNode* node);
  std::int32_t AddConfiguration();
  // See CProjectInspector.
  std::int32_t CopyConfiguration(const std::string& from, const std::string& to);
  // Definitions of options and tools are read again if their files changed; 1 if so. Everything is
  // published again and counts as not built then.
  std::int32_t RefreshDefinitions();
  std::int32_t SelectConfiguration(const std::string& name);
  // The type whose extensions hold that of `path`; the last one that does, or null.
  const CXmlNode* FindTypeByFileExtension(std::string_view path);
  // Definitions may have changed: extensions of types are asked for anew.
  void ForgetExtensions() { typesByExtensionKnown = false; }

  // Build (build/*.cpp).
  virtual std::int32_t BuildNode(CXmlNode* node, std::int32_t mode);
  virtual std::int32_t TranslateNode(CXmlNode* node);
  virtual std::int32_t RunToolOnNode(CXmlNode* node, const std::string& tool);
  virtual bool IsNodeUpToDate(CXmlNode* node);
  // Why `node` itself needs work, its children aside; the reason is None when it needs none.
  // Answers from the file times at hand: see ForgetFileTimes.
  StaleVerdict ExamineNode(CXmlNode& node);
  // Files, and the definitions of tools, are examined again from now on.
  void ForgetFileTimes();
  void CollectLinkFiles(std::string& list, const CXmlNode* node, bool useOutput,
                        const CXmlNode* root, const std::string& separator) const;
  void CollectDebugFiles(std::string& list, const CXmlNode* node, const CXmlNode* root,
                         const std::string& separator) const;
  // Tool and file list that a translation of the node would hand over; false without a tool.
  FileSystem& GetFiles() const { return files; }
  bool GetToolInput(const CXmlNode& node, std::string& tool, std::string& files) const;

  std::int32_t StartBuildThread(std::int32_t command);
  std::int32_t CanStartOperation();
  void RequestStop();
  std::int32_t GetBuildState();
  bool IsWorkerAlive() const;
  // The calling code runs inside a step of the worker, which waits for its end.
  bool IsInWorkerStep() const;
  // Returns whether the worker cannot end before the calling code has returned: that runs inside a
  // step of the worker, or in a host's answer to a message that a tool sends while it runs.
  bool IsWorkerWaiting() const;
  // Runs the step that a worker waits for, if there is one and none is running.
  void ServeWorker();
  // The host hears nothing more.
  void ForgetHost();
  // Asks a living worker to stop and serves its steps until it has ended; the host hears nothing
  // more of it.
  void StopAndWait();
  // Runs `work` on the host's thread once the living worker has sent its last message.
  void RunAfterWorker(std::function<void()> work);
  // Builds the current node on the calling thread; 0 also while a worker lives.
  std::int32_t BuildHere();

  // What tools report (build/BuildInformation.cpp).
  std::int32_t SetBuildInfo(const char* filepath, const char* xmlinfo);
  // Build records (build/BuildState.cpp): what each output was made from. With a journal they
  // outlive the process.
  BuildRecords& GetBuildRecords() { return buildRecords; }
  // Reads the journal at `path`, and appends to it from now on until the project is closed.
  StateVerdict OpenBuildState(const std::string& path);
  // Hands the records that still hold to the published nodes for about this long; false if some
  // are left for another call.
  bool RestoreFor(std::chrono::milliseconds time);
  // One node of that.
  void RestoreRecord(CXmlNode& node, const std::string& owner);
  // The nodes of the application have other outputs now, some of which may have been built before.
  void RestoreRecords(CXmlNode& application);
  // What is left to write after a build. Returns why it could not be; empty if it could.
  std::string FinishBuildState(bool mayShrink);
  // The node that a report about this output reaches, or null.
  CXmlNode* FindNodeByOutput(CXmlNode& application, const char* outputFile);
  // Nodes of a published application that are built into one output.
  std::vector<SharedOutput> FindSharedOutputs(CXmlNode& application);
  // Returns whether several nodes of the project are built into this listing.
  bool IsSharedListing(const std::string& path);
  // Nodes whose source is listed again further on, where it is built.
  std::unordered_set<const CXmlNode*> FindRepeatedNodes(CXmlNode& application);
  std::int32_t RecordBuildInfo(CXmlNode* node, const char* infos, const char* date);
  std::string GetDynamicCommands(std::uint32_t commandId);
  std::string GetSymbolInfo(const char* symbolName);
  void ReportMessage(const char* text);

  // A message to the host; its answer, and 1 without a host: nobody there is agreement.
  std::intptr_t SendHost(HostMessage message, std::intptr_t wParam, std::intptr_t lParam);
  std::intptr_t SendHost(HostMessage message, const std::string& wText, std::intptr_t lParam);
  std::intptr_t SendHost(HostMessage message, const std::string& wText, const std::string& lText);
  void PostHostCommand(std::int32_t command);
  // Adds a line that is no row of the message table to the log, and tells it to the host.
  void AddLogLine(const std::string& text);
  // The same for an error, which the build report shows, too.
  void AddLogError(const std::string& text);
  // What a build found about the project itself, for the log, the report and, until they are taken,
  // for hosts that show a build as it goes.
  void AddBuildNotice(LineKind kind, const std::string& text);
  struct BuildNotice {
    LineKind kind;
    std::string text;
  };
  // Takes the notices since the last call. One of them is the reason why the log is not written.
  std::vector<BuildNotice> TakeBuildNotices();

 private:
  friend class BuildWalk;

  // Who owns the paths of a node: the nearest proper ancestor that is an application or project.
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
  // Replaces what is known of the file.
  void SetDamageOf(const std::string& absolute, std::vector<FileDamage> found);
  void AddDamage(FileDamage found);
  void CheckActiveApplication();
  void SetReference(CXmlNode& node, const std::string& fileName);
  std::int32_t LoadExternChildren(CXmlNode& node, std::uint64_t epoch);
  // A file that a save is about to write.
  struct PendingFile {
    std::string absolute;                  // as the tree names it
    std::string text;                      // in the form for the disk
    std::vector<std::size_t> parts;        // files of its own children
    std::vector<PartChange> changedParts;  // see FileSaver::Prepare
    SavePlan plan;                         // for another file if it was moved
    bool isPlanned = false;                // `plan` follows from the file that names this one
    bool isOutside = false;                // the user does not want it to be written there
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
  // `place` is the file that is the reason, empty if none is.
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
  // Copies a file that is to be replaced, unless it holds what was written last. False, with a
  // message, if that fails: the file must stay.
  bool PutAsideReplaced(const std::string& path);

  CXmlNode* FindItem(const char* itemname);
  CXmlNode* Paste(CXmlNode* target);
  enum class Opens { No, Yes };  // whether the parent is shown with what is in it
  // The node as the last element of the tree below `parent`, or in front of another one; `modified`
  // is left to the caller. Null when the views' answer to it changed the tree again.
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
  // 1 also when the open of what the conversion left failed.
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
  // Stored options or configurations, or the tree itself, changed: texts kept of them are stale.
  void ForgetKeptTexts();
  // Nodes were freed or came in: no pointer into the tree holds, nor anything kept about it.
  void NoteTreeChange();
  // Nodes lost their cached values or derived attributes.
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
  // A tool's report as the list of dependencies of its node.
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

  std::uint64_t changeCount = 0;  // counts changes of what belongs into files, and opens

  bool isOpen = false;
  bool shapeChanged = false;
  bool isClosing = false;  // the question is with the host, or the files are being written
  std::string openedBy;    // the path as the caller of the open gave it
  bool inPublishTick = false;
  RepeatedReads repeatedReads;              // of the outermost file that is being loaded
  std::uint64_t projectEpoch = 0;           // counts opens and closes
  std::uint64_t treeEpoch = 0;              // counts what frees nodes
  std::uint64_t publishEpoch = 0;           // counts that, and what takes published marks away
  std::uint64_t outputEpoch = 0;            // counts that, and changes of output files
  std::vector<std::string> loadingFiles;    // the chain of files being read
  std::unique_ptr<ReplacedFiles> staged;    // for the next open
  const ReplacedFiles* replaced = nullptr;  // of the project that is being read
  std::vector<SavedFile> savedFiles;       // of the last save or close, if there is anything to say
  std::set<std::string> mayWriteOutside;   // files outside the project's folder
  bool isSaving = false;                   // a close belongs to a save, and the project stays open
  std::unique_ptr<ReplacedFiles> unsaved;  // of such a close; null if all was saved

  PublishCursor publishCursor;
  std::unordered_map<const CXmlNode*, std::string> optionTexts;
  std::unordered_map<std::string, const CXmlNode*> typesByExtension;
  bool typesByExtensionKnown = false;
  std::pair<std::string, const CXmlNode*> lastExtension;

  std::mutex buildLock;  // guards buildState and nothing else
  std::int32_t buildState = StateIdle;
  std::int32_t buildCommand = 0;
  std::shared_ptr<MessageLoop> loop;  // of the host's thread
  std::shared_ptr<WorkerControl> worker;
  CXmlNode* notedHere = nullptr;  // current when a walk on the host's thread began
  int walksHere = 0;              // walks on the host's thread that are under way
  std::unique_ptr<BuildWalk> workerWalk;
  CXmlNode* walkApplication = nullptr;  // the application whose walk is running
  FileTimes fileTimes;
  BuildRecords buildRecords;
  ToolCommands toolCommands;
  RecordCheck recordCheck;
  std::unique_ptr<RecordRestore> recordRestore;  // while one is under way

  std::unordered_map<const CXmlNode*, OutputIndex> outputIndexes;  // by application
  // Numbers of nodes by the listing that they have; nullopt until they are needed.
  std::optional<std::unordered_map<std::string, int>> listings;
  std::unordered_set<const CXmlNode*> withoutShared;  // applications in which no nodes share one
  std::uint64_t outputIndexEpoch = 0;                 // of all three
};

}  // namespace tarn
