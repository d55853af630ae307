#pragma once

#include <memory>
#include <string>
#include <vector>

#include "hosts/cli/CommandSpec.h"
#include "hosts/cli/Console.h"
#include "hosts/cli/Invocation.h"
#include "hosts/core/BuildSession.h"
#include "hosts/core/FileChanges.h"
#include "hosts/core/ProjectTree.h"

namespace tarn::host {

class EditRecord;

// The environment of a command: the invocation, the output, and the project once it is open.
// Functions that return an int return 0, or an exit code after printing the error.
class CommandContext {
 public:
  CommandContext(Invocation invocation, Console& output, FileSystem& fileSystem);

  const Invocation& Asked() const { return asked_; }
  // The values that only this command has, in the struct that its declaration filled.
  template <class Options>
  const Options& Own() const {
    return asked_.Own<Options>();
  }
  Console& Out() { return console_; }
  FileSystem& Files() { return files_; }
  // The user's working folder; opening a project changes that of the process.
  const std::string& StartFolder() const { return startFolder_; }
  // Returns a path as the user would write it.
  std::string Show(const std::string& path) const;
  // Returns the full path, with links in its parent folders resolved; for files that can't be read
  // or written.
  std::string ShowResolved(const std::string& path) const;
  // Returns "PATH can't be ACTION: REASON", with the path from ShowResolved.
  std::string ShowFailure(const std::string& path, const std::string& action,
                          const std::string& reason) const;
  // Returns why no file can have this name, or an empty string if one can.
  std::string WhyUnusable(const std::string& path) const;
  // Prints an error on the error stream, with the lines of `more` below it.
  void Complain(const std::string& text, const std::vector<std::string>& more = {}) const;
  // Prints a remark on the error stream, except with --quiet.
  void Remark(const std::string& text) const;

  // Finds the project of the command line without opening it. Returns 0 and sets the path, or
  // returns an exit code after printing the error.
  int LocateProject(std::string& path);
  // Like the overload above, for a different argument than the command line's project.
  int LocateProject(const std::string& word, std::string& path);

  BuildSession& Session();
  // The window that receives the server's messages and questions.
  HostWindow& Frame() { return frame_; }
  // Creates the server and its components, once. Returns 0, or an exit code after printing the
  // error.
  int StartSession();
  // Opens the project. Returns 0, or an exit code after printing the error.
  int OpenProject();
  int OpenProject(const std::string& path);
  // Waits for the project's edit lock, which is then held until the end of the command. Returns 0,
  // or an exit code after printing the error. OpenProject calls this for commands that edit.
  int LockEdits(const std::string& path);
  // Reads the log of the project's last build. Returns 0, or an exit code after printing the error.
  // Prints a remark if the log is empty or damaged.
  int ReadLog(const std::string& project, std::string& text);
  // Prints why the log can't be read, and returns the exit code.
  int RefuseLog(const std::string& project, const Error& error);
  // Prints the damage of the project on the error stream, for commands that don't need the project
  // otherwise; no-op if it can't be opened.
  void ShowDamageOf(const std::string& path);
  // The damage of the project that was opened, or that could not be opened.
  const std::vector<DamageEntry>& GetDamage() const { return damage_; }
  // Refuses to continue with a damaged open project, unless the user agreed. Returns 0, or an exit
  // code after printing the error.
  int CheckDamage();
  // Returns true if the user has agreed to files outside the folder of this project, or trusts it.
  bool MayWriteOutside(const std::string& project);
  // Prints the operations that were refused because the project is not trusted, and how to trust
  // it. Returns them; empty if nothing was refused.
  std::vector<std::string> ShowRefused();
  // The last error that was printed.
  const std::string& GetLastComplaint() const { return lastComplaint_; }
  // Notes that the command found everything up to date.
  void NoteIdle() { isIdle_ = true; }
  bool IsIdle() const { return isIdle_; }
  // True if the project is open, or was opened to check for damage.
  bool HasOpened() const { return hasOpened_; }
  // Sets `chosen` to the application of --app, all of them without it, and activates the
  // configuration of --config. Returns 0, or an exit code after printing the error.
  int ChooseApplications(std::vector<ApplicationEntry>& chosen);
  // Like ChooseApplications(), and prepares the session: `chosen` has the outputs of all
  // applications in these configurations.
  int ChoosePreparedApplications(std::vector<ApplicationEntry>& chosen);
  // Path of the application of --app after ChooseApplications; empty without --app.
  const std::string& Scope() const { return scope_; }
  // Finds an application by a label or a path.
  FoundApplication FindApplication(const std::vector<ApplicationEntry>& applications,
                                   const std::string& key) const;
  // Makes the node of --node current, else the application of --app, else the active application.
  int ChooseNode();
  // Makes the node for `key` current. The key is a path or a label, either of them after the label
  // of its application or group and a slash, or one of these with "#N" for the Nth match. If the
  // key doesn't name an application, the node is searched for in the application with this path;
  // everywhere if the path is empty. Returns the number of matches; the node becomes current only
  // if it is unique.
  int SelectNode(const std::string& key, const std::string& application);
  // Like SelectNode(), but requires exactly one match. Returns 0, or an exit code after printing
  // the error.
  int FindNode(const std::string& key, const std::string& application);
  // Stores a new label for the current node. Returns false if the server refuses.
  bool RenameCurrentNode(const std::string& label);
  // Saves the project, with the configurations that were active before --config, and records the
  // change for undo. Returns 0, or an exit code after printing the error.
  int SaveProject();
  // Like SaveProject(), but leaves recording to the command.
  int SaveFiles();
  // Adds a change of the project's files to the undo record.
  void RecordEdit(const std::string& project, const std::string& label, const FileChanges& changes);
  // Writes the undo record; on error only prints a remark, because nothing but undo is affected.
  void WriteRecord(EditRecord& record);

 private:
  ProjectAccess Access() const { return asked_.command->access; }
  void ShowDefinitionErrors();
  // Printed even with --quiet, but not during completion, where it would disturb the shell's
  // command line.
  void ShowDamage(std::vector<DamageEntry> found);
  int RefuseDamaged();
  void RestoreConfigurations();
  std::vector<std::string> NodeNames(const std::string& application);
  int SelectNodeIn(const std::string& key, const std::string& application);
  int SelectConfiguration(const std::vector<ApplicationEntry>& applications);
  void SwitchTo(const ApplicationEntry& application, const std::string& configuration);

  Invocation asked_;
  Console& console_;
  FileSystem& files_;
  std::string startFolder_;
  std::string scope_;
  HostWindow frame_;
  std::unique_ptr<BuildSession> session_;
  std::vector<DamageEntry> damage_;
  std::vector<FileText> openedFiles_;  // of a project that is about to be changed
  mutable std::string lastComplaint_;
  bool isStarted_ = false;
  bool hasOpened_ = false;
  bool isIdle_ = false;
  std::vector<ApplicationEntry> switched_;  // state before --config
};

}  // namespace tarn::host
