#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "automation/ProjectManager.h"

namespace tarn {

class StatusSurvey;

// Inspection interface next to the manager, for hosts such as command-line tools: the tree as XML,
// what is out of date and why, the input of a tool, the origin of an option's value. It doesn't
// change the project, except in CopyConfiguration() and ApplyChange(); it selects and publishes
// nodes, like clicks of the user would.
//
// Belongs to the manager's thread and keeps the manager alive. Calling sequence: Attach() first;
// until then every call returns 0 or an empty string.
class ProjectInspector : public DispatchObject<ProjectInspector> {
 public:
  static constexpr const char* kProgId = "TarnProjectManager.ProjectInspector";

  static const DispatchTable<ProjectInspector>& Table();

  ProjectInspector();
  ~ProjectInspector() override;

  // Attaches the manager. Returns 0 if the object isn't a manager of this library.
  std::int32_t Attach(IDispatch* managerObject);
  // Publishes all nodes: determines their option values and derived attributes.
  std::int32_t PublishAll();
  // Like PublishAll(), but stops after about that many milliseconds. Returns 0 if there is more to
  // do in another call.
  std::int32_t PublishFor(std::int32_t milliseconds);
  // Continues the publishing in the background, which starts when a project is opened, for about
  // that many milliseconds. Returns 0 if there is more to do in another call, 1 if all nodes are
  // published, and 2 if it was stopped before.
  std::int32_t ContinuePublishing(std::int32_t milliseconds);
  // Returns the tree as XML, without data that exists only in memory for options.
  std::string GetTree();
  // Like GetTree(), but limited to the project and its applications, each with its `Configs`.
  std::string GetApplications();
  // Returns for each application, in build order, the applications that it uses and the nodes that
  // are out of date, each with its reason. The top element has the attribute "Problem" if the
  // applications can't be ordered.
  std::string GetStatus();
  // Like GetStatus(), but stops after about that many milliseconds; returns an empty string if
  // there is more to do in another call. Starts with the first node if `begins` is 1, or if nodes
  // have been removed from the tree since the last call; otherwise continues.
  std::string GetStatusFor(std::int32_t milliseconds, std::int32_t begins);
  // Returns lines: "A <path of the application>", then "N <output file>" for each node with a tool,
  // in build order.
  std::string GetBuildInputs();
  // Like GetBuildInputs(), but each node has the lines "N <milliseconds> <output file>", with the
  // duration of the last recorded run, 0 if unknown, and "P <path of the node>".
  std::string GetBuildTimes();
  // Returns the input of the node's tool; an empty string if there is no such node.
  std::string GetToolInput(const char* application, const char* outputFile);
  // Returns a line for every two sources that would be built into the same output, of the
  // application with this label or path, or of all applications if `application` is empty. Returns
  // an empty string if there are none.
  std::string GetSharedOutputs(const char* application);
  DispatchPtr GetPropertyManager();
  // Makes the node current that `key` denotes: by path (absolute, or relative to the current folder
  // or the project's folder), else by label, in the application with this label or path, or in the
  // whole project if `application` is empty. If there is none, "LABEL/KEY" denotes the node KEY
  // below the group or application LABEL, and "KEY#N" the Nth of several nodes, starting at 1. An
  // empty key denotes the application itself. Returns the number of matches; if there is more than
  // one, no node is made current.
  std::int32_t SelectNodeByKey(const char* key, const char* application);
  // Makes the node at a position in GetTree() current. The position is the list of child indexes on
  // the path from the project, starting at 0, separated by slashes; empty for the project. Returns
  // 0 if there is no such node, or if it couldn't be made current.
  std::int32_t SelectNodeByPlace(const char* place);
  // Returns the last argument of the manager's SelectNode or SelectApplication, in double quotes,
  // if no node was found and the node that was current before still is; otherwise returns an empty
  // string. Those two return 1 in either case.
  std::string GetMissedSelection();
  // Saves the current node for SelectNotedNode().
  std::int32_t NoteCurrentNode();
  // Makes the saved node current again. Returns 0 if nodes have been removed from the tree since,
  // or if no node was made current.
  std::int32_t SelectNotedNode();
  // Returns a number that changes as soon as a save would write something different.
  std::int32_t GetChangeCount();
  // Returns the project's files as a save would write them now: for each, its size in bytes, a
  // space, its path and a line feed, then the contents. Empty for the default project.
  std::string GetFileTexts();
  // Returns the contents of these files when they were last read or written, in the same format.
  std::string GetBaseTexts();
  // Makes the next project that is opened use these contents, in the format of GetFileTexts(),
  // instead of those on disk, as unsaved changes. `bases` has the contents on disk when the changes
  // were made, in the same format; a save merges the changes with the contents on disk at that
  // time. Returns 0 before Attach(), and if a list is malformed.
  std::int32_t StageFileTexts(const char* texts, const char* bases);
  // Returns 1 if a save has something to write.
  std::int32_t IsModified();
  // Discards unsaved changes: closing the project then leaves its files unchanged.
  std::int32_t DropChanges();
  // Returns what builds detected in the project itself since the last call: an element "Notices"
  // with an element "Notice" for each, with "Kind" ("error", "warning") and "Text".
  std::string TakeBuildNotices();
  // Returns what was lost when the project's files were read: an element `Damage` with an element
  // `Place` for each position, with the attributes `File`, `Line` (0 for the whole file) and
  // `Text`.
  std::string GetDamage();
  // Like GetDamage(), but for the last project that couldn't be opened; an empty list if the last
  // open succeeded.
  std::string GetFailedDamage();
  // Acquires the lock on the files of the project at `path`, for a host that opens, changes and
  // saves it without interference by another process. This manager holds the lock until the call
  // for another project, or UnlockProject(). Returns an empty string, or the process that holds the
  // lock; or, if something other than a lock file has its name, a sentence about that, which is
  // also sent to the host as kMsgLogLine. A save acquires the lock for its duration.
  std::string TryLockProject(const char* path);
  std::int32_t UnlockProject();
  // Returns what the last save or close did with files that another process had changed or removed,
  // that were damaged, or that couldn't be written: `Save` with `File` (`Path`, `Problem`, `Copy`,
  // `CopyReason`: "damaged" or "changed", `Outside` ("Yes": not written because it is outside the
  // project's folder), `Merged`, `Missing`), and in it `Line` (`Text`), for the user, and
  // `Conflict` (`Place`, `Text`).
  std::string GetSaveReport();
  // Applies a change of the project's files to the open project. `before` and `after` are the
  // results of GetFileTexts() before and after the change, or only the files that differ;
  // exchanged, they undo the change. Other changes since then are preserved by a three-way merge.
  // Nothing is written until the next save. The host receives the same notifications as for a save:
  // the project is closed and opened again. Returns an empty string on success, else a line for
  // each reason, for example a node that has changed since; the project is unchanged then.
  std::string ApplyChange(const char* before, const char* after);
  // Merges two versions of a project or application file, given the contents that both were made
  // from. Returns a list of strings (JoinFileTexts): "text" with the merged content, in the
  // formatting of `ours`, then for each conflict its place and what has changed; `ours` is kept
  // there. Returns only "damaged" with "base", "theirs" or "ours" if that one can't be read
  // completely. Needs no project.
  std::string MergeTexts(const char* base, const char* theirs, const char* ours);
  // If 1, the next projects are opened for reading: files that can't be written are expected and
  // not logged. Returns 0 before Attach().
  std::int32_t OpenForReading(std::int32_t wanted);
  // Sets the folder that is proposed for a new project if none is open; an empty string changes
  // nothing. Returns 0 before Attach().
  std::int32_t SetNewProjectFolder(const char* folder);
  // Sets the number of failures after which builds end; 0 for no limit. Until then they go on with
  // what doesn't need the missing outputs. 1 by default. Returns 0 before Attach(), and if `limit`
  // is negative.
  std::int32_t SetFailureLimit(std::int32_t limit);
  // If 1, files outside the project's folder are written without asking the user.
  std::int32_t AllowOutside(std::int32_t allow);
  // Limits trust to projects in these folders, one per line: only these may run their own programs
  // and scripts and write outside their folders. Without this call there is no limit. The paths
  // must be absolute and without symbolic links. Returns 0 before Attach().
  std::int32_t SetTrustedFolders(const char* folders);
  // Sets the folders where the host stores its data for the user, such as the trusted folders, one
  // per line. An output of a project in them is refused, even if the project is trusted. The paths
  // must be absolute; empty for no folder. Returns 0 before Attach().
  std::int32_t SetStateFolder(const char* folders);
  // Sets folders with definitions in addition to those of the installation, before a project is
  // opened: `folders` are absolute paths, one per line, and `inProject` is the name of a folder in
  // the project's folder, which is used if the project is trusted. Both may be empty. Returns 0
  // before Attach().
  std::int32_t SetDefinitionFolders(const char* folders, const char* inProject);
  // Returns the definition files of the open project that are ignored because it isn't trusted, one
  // per line.
  std::string GetIgnoredDefinitions();
  // Returns the actions of the project that were refused for lack of trust since the last call, one
  // per line; see `TrustRequest.h`.
  std::string TakeRefusedWishes();
  // Returns the reason why the script at this path isn't trusted to run; an empty string if it may
  // run.
  std::string CheckScript(const char* path);
  // Returns the reason why the run of a tool with this input (see GetToolInput) isn't trusted; an
  // empty string if it may run. For hosts that run the tool's commands themselves.
  std::string CheckTool(const char* tool, const char* files, const char* options);
  // If 1, a save writes either all of the project's files or none, for a host whose user can repeat
  // a failed operation; if 0, it writes as many as possible.
  std::int32_t SaveAllOrNone(std::int32_t wanted);
  // If 1, a damaged project is neither built nor cleaned, and no save or close writes it, until the
  // call with 0. Also applies to projects that are opened later. Returns 0 before Attach().
  std::int32_t ProtectDamaged(std::int32_t protect);
  // Returns the stored values of one option from the outermost level down to the current node.
  std::string ExplainOption(const char* set, const char* section, const char* property);
  // Reloads the definitions of options and tools if their files have changed, for a host that runs
  // for a long time. Returns 1 if they were reloaded; everything is treated as not built then until
  // the build records are restored.
  std::int32_t RefreshDefinitions();
  // Copies the options stored for the configuration `from` to the configuration `to`, at every node
  // of the active application, replacing those stored for `to`; an empty `from` only removes them.
  // At nodes outside applications only options that `to` doesn't have are copied. Neither the
  // active configuration nor build records change. Returns 0 if there is no active application, if
  // `to` is empty or active, or if the project can't be changed now.
  std::int32_t CopyConfiguration(const char* from, const char* to);
  // Returns the program that is required for importing older projects, if it isn't installed, else
  // an empty string.
  std::string MissingImportProgram();
  // Returns the targets for which an application can be created; for the format see
  // `DescribeTargets()`.
  std::string GetTargets();
  // Returns the log file of the current or the last build. The file grows while a build runs.
  std::string GetLogFile();
  // Returns the parts of the project that a build leaves out; for the format see `ListBuildGaps()`.
  // Checks no files, and leaves out unpublished nodes.
  std::string GetBuildGaps();
  // Returns the reason why this installation can't build anything, or builds something other than
  // requested, as "location: reason": missing or damaged node types or definitions of options or
  // tools. Returns an empty string if there is none. Requires that the tool manager is attached.
  std::string GetInstallationProblem();
  // Returns the first reason why an application of the project can't be built although a build of
  // it succeeds, see `ListBuildGaps()`; an empty string if there is none.
  std::string GetBuildProblem();

  // InspectorState.cpp: persistent build records.

  // Loads the build state of the open project from this file, and appends to it whenever a tool
  // finishes, until the project is closed. Returns "good" (also if there is no file yet), "cut"
  // (valid up to some position), "damaged", "other-version", "foreign" or "unreadable"; in the last
  // four cases the state is treated as empty and the file is replaced, unless it is a symbolic
  // link. Returns an empty string if no project is open.
  std::string OpenBuildState(const char* path);
  // Returns the reason why the build state that was opened last is unreadable; an empty string if
  // it isn't.
  std::string GetBuildStateProblem();
  // Returns 1 if that file is open and no other process has written it since.
  std::int32_t IsBuildStateCurrent(const char* path);
  // Restores the records that are still valid into the published nodes, for about that many
  // milliseconds. Returns 0 if there is more to do in another call.
  std::int32_t RestoreFor(std::int32_t milliseconds);
  // Writes pending build records. If `mayShrink`, which only the holder of the build lock should
  // set, the file is compacted if much of it is unused. Returns the reason if a write failed; an
  // empty string on success.
  std::string FinishBuildState(std::int32_t mayShrink);
  // Returns what the tool reported about an output, in readable form; an empty string if there is
  // nothing.
  std::string GetBuildInfos(const char* application, const char* outputFile);

  // InspectorReports.cpp: rows of the reports as XML, as the windows would show them.

  // Returns the globals of the application with this label or path, or of the active one if
  // `application` is empty; sorted by the column with this caption, or in file order if there is
  // none. The top element has the path of the file and the reason if it couldn't be read.
  std::string GetGlobals(const char* application, const char* column);
  // Returns the build report of a log, given as the contents of the log file.
  std::string GetReport(const char* log);

 private:
  std::string CopyOfTree(void (*fill)(const CXmlNode& root, CXmlNode& copy));
  // Both return nullptr before Init() of the manager.
  CProjectModel* Model() const;
  Builder* GetBuilder() const;

  const ServerLock lock_;
  DispatchPtr manager_;
  CXmlNode* savedNode_ = nullptr;
  std::uint64_t savedGeneration_ = 0;     // generation of the tree at that time
  std::unique_ptr<StatusSurvey> survey_;  // unfinished one of GetStatusFor()
};

}  // namespace tarn
