#pragma once

#include <cstdint>
#include <string>

#include "automation/ProjectManager.h"

namespace tarn {

// A companion of the manager, for hosts that explain: the tree as text, what is out of date and
// why, what a tool would be given, where an option's value comes from. It changes nothing in a
// project except in CopyConfiguration; it selects and publishes nodes, as a user's clicks would.
//
// Lives on the manager's thread and keeps the manager alive. Before Attach every call gives 0 or an
// empty text.
class CProjectInspector : public DispatchObject<CProjectInspector> {
 public:
  static constexpr const char* kProgId = "TarnProjectManager.ProjectInspector";

  static const DispatchTable<CProjectInspector>& Table();

  // 0 when it is no manager of this library.
  std::int32_t Attach(IDispatch* managerObject);
  // Every node gets its option values and derived attributes now.
  std::int32_t PublishAll();
  // The same for about so many milliseconds; 0 when something is left for another call.
  std::int32_t PublishFor(std::int32_t milliseconds);
  // The tree as XML text, without what is only kept in memory for options.
  std::string GetTree();
  // The same of the project and its applications alone, each with its `Configs`.
  std::string GetApplications();
  // Per application, in build order, the applications that it uses and the nodes that have work to
  // do, each with its reason. The top element has a Problem if the applications have no order.
  std::string GetStatus();
  // Lines: "A <path of the application>", then "N <output file>" for each node with a tool, in
  // build order.
  std::string GetBuildInputs();
  // What the node's tool would be given; empty when there is no such node.
  std::string GetToolInput(const char* application, const char* outputFile);
  // A line for each two sources of the application with this label or path, of all for an empty
  // one, that would be built into one output; empty if there are none.
  std::string GetSharedOutputs(const char* application);
  DispatchPtr GetPropertyManager();
  // Makes the node current that has this path (absolute, or relative to the current folder or the
  // project's), else the one with this label: of the application with this label or path, of the
  // whole project for an empty one. If there is none, "LABEL/KEY" means the node KEY below the
  // group or application LABEL, and "KEY#N" the Nth of several nodes, from 1 on. Returns how many
  // there are; of several none is made current.
  // An empty key means the application itself.
  std::int32_t SelectNodeByKey(const char* key, const char* application);
  // Makes the node at a place of GetTree current: the numbers of the children on the way from the
  // project, from 0 on, with slashes between; empty for the project. 0 when there is none, or none
  // was made current.
  std::int32_t SelectNodeByPlace(const char* place);
  // Returns what SelectNode or SelectApplication of the manager looked for last, in double quotes,
  // if it found nothing and the node that was current before still is; otherwise an empty string.
  // Those two return 1 in any case.
  std::string GetMissedSelection();
  // Remembers the current node.
  std::int32_t NoteCurrentNode();
  // Makes that node current again; 0 when nodes were taken out of the tree since, or none was made
  // current.
  std::int32_t SelectNotedNode();
  // A number that is another one as soon as a save would write something else.
  std::int32_t GetChangeCount();
  // The project's files as a save would write them now: of each the count of its bytes, a blank,
  // its path and a line feed, then the bytes. Empty for the default project.
  std::string GetFileTexts();
  // What these files held when they were read or written last, in the same form.
  std::string GetBaseTexts();
  // The next project that is opened takes these texts, in the form of GetFileTexts, instead of what
  // its files hold: as changes that are not saved. `bases` is what the files held when the changes
  // were made, in the same form; a save merges them with what the files hold by then. 0 before
  // Attach, and if a list is damaged.
  std::int32_t StageFileTexts(const char* texts, const char* bases);
  // 1 if a save has anything to write.
  std::int32_t IsModified();
  // The changes that are not saved are not wanted: closing the project now leaves its files alone.
  std::int32_t DropChanges();
  // What builds found about the project itself since the last call: an element "Notices" with an
  // element "Notice" for each, "Kind" ("error", "warning") and "Text".
  std::string TakeBuildNotices();
  // What was lost when the project's files were read: an element `Damage` with an element `Place`
  // for each position, with the attributes `File`, `Line` (0 for the file as a whole) and `Text`.
  std::string GetDamage();
  // The same of the last project that could not be opened; an empty list once one was.
  std::string GetFailedDamage();
  // Takes the right to change the files of the project at `path`, for a host that opens, changes
  // and saves it without another program in between; it stays with this manager until the call for
  // another project, or UnlockProject. Returns an empty text, or the process that has it. A save
  // takes it for as long as it lasts.
  std::string TryLockProject(const char* path);
  std::int32_t UnlockProject();
  // What the last save or close did with files that another program had changed or removed, that
  // were damaged, or that could not be written: `Save` with `File` (`Path`, `Problem`, `Copy`,
  // `CopyReason`: "damaged" or "changed", `Outside` ("Yes": not written since it is outside the
  // project's folder), `Merged`, `Missing`), and in it `Line` (`Text`) for people and `Conflict`
  // (`Place`, `Text`).
  std::string GetSaveReport();
  // Makes a change of the project's files to the open project: what two calls of GetFileTexts
  // returned before and after it, or of each only the files that differ. Exchanged, they take the
  // change back. Nothing is written; a save does that. What else has changed since stays, by a
  // three-way merge. The host is notified as by a save: the project closes and opens again. Returns
  // an empty string if it was done, else a line for each reason why not, such as a node that has
  // changed since; the project stays as it was then.
  std::string ApplyChange(const char* before, const char* after);
  // With 1, the next projects are opened to be looked at: files that can't be written are no news
  // then, and the log has no line on each. Returns 0 before Attach.
  std::int32_t OpenForReading(std::int32_t wanted);
  // The folder that is proposed for a new project while none is open; empty leaves it as it is.
  // Returns 0 before Attach.
  std::int32_t SetNewProjectFolder(const char* folder);
  // With 1, files outside the project's folder are written without asking the user.
  std::int32_t AllowOutside(std::int32_t allow);
  // From now on only projects in these folders, one a line, are trusted to run programs and scripts
  // of their own and to write outside their folders; others are refused. Without the call there is
  // no limit. Absolute paths without symbolic links. Returns 0 before Attach.
  std::int32_t SetTrustedFolders(const char* folders);
  // The folder in which the host stores what it remembers for the user, such as which folders are
  // trusted: an output that a project names there is refused, also if the project is trusted.
  // Absolute; empty for none. Returns 0 before Attach.
  std::int32_t SetStateFolder(const char* folder);
  // What the project wanted since the last call and was refused for lack of trust, one wish a line:
  // "write /x/y".
  std::string TakeRefusedWishes();
  // Returns why the script at this path may not run for lack of trust; empty if it may.
  std::string CheckScript(const char* path);
  // With 1, a save writes all of the project's files or none, for a host whose user can do again
  // what failed; with 0 as many as it can.
  std::int32_t SaveAllOrNone(std::int32_t wanted);
  // With 1, a project with damage is neither built nor cleaned, and no save or close writes it,
  // until the call with 0. Stays for the projects that are opened later. Returns 0 before Attach.
  std::int32_t ProtectDamaged(std::int32_t protect);
  // The stored values of one option from the outermost level to the current node.
  std::string ExplainOption(const char* set, const char* section, const char* property);
  // Reads the definitions of options and tools again if their files changed, for a host that runs
  // for long; 1 if so. Nothing counts as built then until its records are handed over again.
  std::int32_t RefreshDefinitions();
  // Copies the options that are stored for the configuration `from` to `to`, at every node of the
  // active application, in place of what is stored for `to`; an empty `from` stores none. At nodes
  // outside of applications `to` only receives what it doesn't have. Neither the configuration in
  // force nor build records change. 0 if there is no active application, `to` is empty or in force,
  // or the project can't be changed now.
  std::int32_t CopyConfiguration(const char* from, const char* to);
  // The program that the import of older projects needs and this machine hasn't got, or empty.
  std::string MissingImportProgram();
  // The targets that an application can be made for; see DescribeTargets.
  std::string GetTargets();
  // The log file of the running or the last build; it grows while a build runs.
  std::string GetLogFile();
  // What a build leaves out of the project, see ListBuildGaps. Examines no file, and leaves out
  // nodes that are not published.
  std::string GetBuildGaps();
  // Returns why an installation like this builds nothing, or something else than was asked for, as
  // "place: reason": node types, or definitions of options or tools, that are missing or damaged.
  // Empty if there is no reason. For hosts, once the tool manager is attached.
  std::string GetInstallationProblem();
  // Returns the first reason why an application of the project can't be built although a build of
  // it succeeds, see ListBuildGaps; empty if there is none.
  std::string GetBuildProblem();

  // InspectorState.cpp: build records that outlive the process.

  // Reads the build state of the open project from this file, and appends to it as each tool ends,
  // until the project is closed. Returns "good" (also if there is no such file yet), "cut" (good up
  // to a place), "damaged", "other-version", "foreign" or "unreadable"; the last four count as
  // empty and are replaced, except for a symbolic link. An empty string if no project is open.
  std::string OpenBuildState(const char* path);
  // Why the build state that was opened last is unreadable; an empty string if it isn't.
  std::string GetBuildStateProblem();
  // 1 if that file is open and no other process has written it since.
  std::int32_t IsBuildStateCurrent(const char* path);
  // Hands the records that still hold to the published nodes for about this long; 0 if some are
  // left for another call.
  std::int32_t RestoreFor(std::int32_t milliseconds);
  // Writes what a build leaves to write. With `mayShrink`, which only the holder of the build lock
  // should pass, the file is made smaller if much of it is not in use. Returns why a write failed;
  // an empty string if none did.
  std::string FinishBuildState(std::int32_t mayShrink);
  // What the tool reported about an output, for people; an empty string if nothing is known.
  std::string GetBuildInfos(const char* application, const char* outputFile);

  // InspectorReports.cpp: rows of the reports as XML text, as the windows would show them.

  // The globals of the application with this label or path, of the active one for an empty key;
  // sorted by the column with this caption, in the file's order for none. The top element tells the
  // file and whether it could be read.
  std::string GetGlobals(const char* application, const char* column);
  // The build report of a log, given as the text of its file.
  std::string GetReport(const char* log);

 private:
  std::string CopyOfTree(void (*fill)(const CXmlNode& root, CXmlNode& copy));
  CProjectModel* Model() const;

  const ServerLock lock;
  DispatchPtr manager;
  CXmlNode* notedNode = nullptr;
  std::uint64_t notedEpoch = 0;  // of the tree
};

}  // namespace tarn
