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

#include "drivers/PropertyManagerDriver.h"
#include "drivers/ToolManagerDriver.h"
#include "output/BuildOutput.h"
#include "platform/files/FileSystem.h"
#include "platform/files/FileTexts.h"
#include "platform/process/Process.h"
#include "project/FileDamage.h"
#include "project/FileGuard.h"
#include "project/FileSaver.h"
#include "project/HostLink.h"
#include "project/NodeTypes.h"
#include "project/ProjectLock.h"
#include "project/ProjectPaths.h"
#include "project/ProjectServices.h"
#include "project/ProjectState.h"
#include "project/ProjectTrust.h"
#include "project/ProjectViews.h"
#include "project/PublishCursor.h"
#include "project/RepeatedReads.h"
#include "project/ReplacedFiles.h"
#include "project/ToolCommandIds.h"
#include "project/TypesByExtension.h"
#include "widgets/Dialogs.h"
#include "widgets/HostMessages.h"
#include "widgets/MessageLoop.h"
#include "xml/XmlNode.h"

namespace tarn {

inline constexpr std::int32_t kCommandOptionsLoaded = 0x811E;
inline constexpr std::int32_t kCommandAutoDebug = 0x82C3;

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
  // A builder must have been destroyed before.
  ~CProjectModel();
  CProjectModel(const CProjectModel&) = delete;
  CProjectModel& operator=(const CProjectModel&) = delete;

  // What the parts use; set by the owner before the first operation.
  ProjectServices& Services() { return services; }
  const ProjectServices& Services() const { return services; }
  const NodeTypes& Types() const { return services.types; }
  FileSystem& GetFiles() const { return files; }
  // Parts.
  ProjectState& State() { return state; }
  const ProjectState& State() const { return state; }
  ProjectPaths& Paths() { return paths; }
  const ProjectPaths& Paths() const { return paths; }
  HostLink& Host() { return host; }
  TypesByExtension& Extensions() { return extensions; }

  // Identity and state of the open project.
  const std::string& GetProjectPath() const { return state.projectPath; }
  const std::string& GetProjectFolder() const { return state.projectFolder; }
  // Returns true between a successful open and the next close.
  bool IsOpen() const { return state.isOpen; }
  bool IsDefaultProject() const { return state.IsDefaultProject(); }
  bool IsModified() const { return state.modified != 0; }
  bool IsPublishingSuspended() const { return publishingSuspended; }
  void SetPublishingSuspended(bool suspended) {
    publishingSuspended = suspended;
    publishingStopped = true;
  }
  // Returns true if the user stopped background publishing for this project.
  bool IsPublishingStopped() const { return publishingStopped; }
  CXmlNode& GetProjectRoot() { return *state.projectRoot; }
  CXmlNode* GetActiveApplication() { return state.activeApplication; }
  CXmlNode* GetOwnCurrentNode() { return state.currentNode; }
  // Generation number of the tree. It changes whenever nodes are freed; node pointers obtained at
  // an earlier value are invalid.
  std::uint64_t GetTreeEpoch() const { return state.treeEpoch; }
  // Content lost when the files of the open project were read.
  const std::vector<FileDamage>& GetDamage() const { return damage; }
  // Same, for the last project that could not be opened; valid until the next open.
  const std::vector<FileDamage>& GetFailedDamage() const { return failedDamage; }
  // Sets whether a damaged project is protected: nothing builds or cleans it, and no save or close
  // writes it. Off by default, so that only hosts able to ask their users turn it on.
  void SetDamageProtection(bool isProtected) { protectsDamage = isProtected; }
  bool IsDamageProtected() const { return protectsDamage; }
  bool IsDamageHeld() const { return protectsDamage && !damage.empty(); }
  // The right to change the files of a project (see ProjectLock). A host may acquire it before
  // opening the project; otherwise a save acquires it.
  bool TryTakeEdits(const std::string& path) {
    return editLock.TryTake(paths.FullProjectPath(path));
  }
  void ReleaseEdits() { editLock.Release(); }
  const std::string& GetEditor() const { return editLock.GetHolder(); }
  const std::string& GetEditProblem() const { return editLock.GetProblem(); }
  // Reports of the last save or close. Only files with something to report are listed.
  const std::vector<SavedFile>& GetSavedFiles() const { return savedFiles; }
  // Records that the user agrees to writing files outside the project's folder.
  void AllowOutside(bool isAllowed) { writesOutside = isAllowed; }
  bool MayWriteOutside() const { return writesOutside; }
  ProjectTrust& GetTrust() { return trust; }
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
  // Asks the host for consent, saves a modified project unless it is protected because of damage,
  // and frees the tree. Returns 0 if the host refuses or a build is running. Files that could not
  // be saved do not prevent the close; see GetSavedFiles.
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

  // --- Tree operations (TreeOperations.cpp) ---
  //
  CXmlNode* GetCurrentNode() { return state.GetCurrentNode(); }
  // Makes the application the project's default one and highlights it. Returns 0 for other nodes.
  std::int32_t SetActiveApplication(CXmlNode* application);
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
  // Loads `node` into the property manager again after other nodes were published.
  void RestoreCurrent(CXmlNode* application, CXmlNode* node);
  // Returns the tools available for the current node as XML; empty if there are none.
  std::string GetDynamicCommands(std::uint32_t commandId);
  // Same as a tree; nullptr if no node was current.
  const CXmlNode* GetDynamicCommandTree() const { return dynamicCommands.get(); }
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

 private:
  void MakeAttributeRelative(CXmlNode& node, const char* name);
  void StripSubtree(CXmlNode& node, bool dropDependencies);

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
  bool CanPublishAside() const;
  void PublishAside(const std::function<bool()>& publish);
  void RunAutoDebugStep();
  void SendActiveApplication();
  const std::string& TextOfOptions(const CXmlNode& owner);
  bool CanBecome(const CXmlNode& node, const std::string& typeName) const;
  std::int32_t ChangeNodeIdentity(CXmlNode& node, const std::string& property,
                                  const std::string& value);

  ProjectServices services;
  FileSystem& files;
  NodeTypes& types;
  ProjectViews& views;
  ProjectState state;
  ProjectPaths paths;
  HostLink host;
  TypesByExtension extensions;
  FileGuard guard;
  ProjectTrust trust;
  ProjectLock editLock;
  std::vector<FileDamage> damage;
  std::vector<FileDamage> failedDamage;
  bool protectsDamage = false;
  bool savesWhole = false;
  bool onlyReads = false;
  bool writesOutside = false;

  std::unique_ptr<CXmlNode> clipboardNode;
  std::unique_ptr<CXmlNode> dynamicCommands;
  bool publishingSuspended = false;
  bool publishingStopped = false;

  bool inPublishTick = false;
  RepeatedReads repeatedReads;              // of the outermost file being loaded
  std::vector<std::string> loadingFiles;    // files being read, outermost first
  std::unique_ptr<ReplacedFiles> staged;    // for the next open
  const ReplacedFiles* replaced = nullptr;  // of the project being read
  std::vector<SavedFile> savedFiles;        // of the last save or close
  std::set<std::string> mayWriteOutside;    // files outside the project's folder
  bool isSaving = false;                    // the close is part of a save; the project stays open
  std::unique_ptr<ReplacedFiles> unsaved;   // set by such a close if something was not saved

  PublishCursor publishCursor;
};

}  // namespace tarn
