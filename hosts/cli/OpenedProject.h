#pragma once

#include <memory>
#include <string>
#include <vector>

#include "hosts/cli/Console.h"
#include "hosts/cli/Invocation.h"
#include "hosts/core/BuildSession.h"
#include "hosts/core/FileChanges.h"
#include "hosts/core/ProjectTree.h"

namespace tarn::host {

class EditRecord;

// What every command works with: what was asked, where to write, and the project once it is open.
class CommandContext {
 public:
  CommandContext(Invocation invocation, Console& output, FileSystem& fileSystem);

  const Invocation& Asked() const { return asked; }
  Console& Out() { return console; }
  FileSystem& Files() { return files; }
  // The folder that the user is in; opening a project moves the process to another one.
  const std::string& StartFolder() const { return startFolder; }
  // A path as the user would write it.
  std::string Show(const std::string& path) const;
  // The whole path, with the links above its last name resolved: of a file that can't be read or
  // written.
  std::string ShowResolved(const std::string& path) const;
  // "PATH can't be ACTION: REASON", with the path as ShowResolved has it.
  std::string ShowFailure(const std::string& path, const std::string& action,
                          const std::string& reason) const;
  // An error, in plain words, on the error stream; `more` are the lines below it.
  void Complain(const std::string& text, const std::vector<std::string>& more = {}) const;
  // A remark there, unless the user wants quiet.
  void Remark(const std::string& text) const;

  // Finds the project that was asked for without opening it: 0 and its path, or an exit code when
  // there is none, with everything said.
  int LocateProject(std::string& path);
  // The same for another word than the one that the command line has for the project.
  int LocateProject(const std::string& word, std::string& path);

  BuildSession& Session();
  // The window that the server's messages and questions go to.
  MainFrame& Frame() { return frame; }
  // Makes the server and its components, once. 0, or an exit code with everything said.
  int StartSession();
  // Opens the project. 0, or an exit code with everything said.
  int OpenProject();
  int OpenProject(const std::string& path);
  // Waits for the right to change the project, which other programs don't have until the end of the
  // command then. 0, or an exit code with everything said. Commands that edit have it when the
  // project is open.
  int LockEdits(const std::string& path);
  // Reads the log of the project's last build. 0, or an exit code with everything said. A log that
  // is empty or damaged is remarked.
  int ReadLog(const std::string& project, std::string& text);
  // Says why that log can't be read, and returns the exit code.
  int RefuseLog(const std::string& project, const Error& error);
  // Shows on the error stream what was lost of the project when it was read, also for a command
  // that doesn't need the project itself; nothing if it can't be opened.
  void ShowDamageOf(const std::string& path);
  // What was lost of the project that was opened, or could not be opened.
  const std::vector<DamageEntry>& GetDamage() const { return damage; }
  // Refuses to go on with an open project that has damage, unless the user agreed: 0, or an exit
  // code with everything said.
  int CheckDamage();
  // The user has agreed to files outside the folder of this project, or trusts it.
  bool MayWriteOutside(const std::string& project);
  // Says what was refused to the project since it is not trusted, and what the user can do. Returns
  // the wishes; none if nothing was refused.
  std::vector<std::string> ShowRefused();
  // The last error that was shown.
  const std::string& GetLastComplaint() const { return lastComplaint; }
  // The project is open, or was opened to look for damage.
  bool HasOpened() const { return hasOpened; }
  // The applications that --app means, all without one, with the configuration that --config names
  // in force. 0, or an exit code with everything said.
  int ChooseApplications(std::vector<ApplicationEntry>& chosen);
  // Path of the application that --app means, once it was chosen; empty without --app.
  const std::string& Scope() const { return scope; }
  // The application that the user names by a label or a path.
  FoundApplication FindApplication(const std::vector<ApplicationEntry>& applications,
                                   const std::string& key) const;
  // Makes the node current that --node means, else the application of --app, else the active one.
  int ChooseNode();
  // Makes the node current that the user means: by a path or a label, by either of them after
  // the label of its application or group and a slash, or by one of these with "#N" for the Nth of
  // several. Without a label it is looked for in the application with this path, anywhere for an
  // empty one. Returns how many could be meant; of several none becomes current.
  int SelectNode(const std::string& key, const std::string& application);
  // The same for one that has to be there. 0, or an exit code with everything said.
  int FindNode(const std::string& key, const std::string& application);
  // Stores a label for the current node. False when the server refuses.
  bool RenameCurrentNode(const std::string& label);
  // Writes the project's files, with the configurations in force that were before --config. 0, or
  // an exit code with everything said.
  int SaveProject();
  // The same for a command that records what it did by itself.
  int SaveFiles();
  // Adds what a command made of the project's files to what can be undone.
  void RecordEdit(const std::string& project, const std::string& label, const FileChanges& changes);
  // Stores what can be undone; a failure costs no more than that, and is only remarked.
  void WriteRecord(EditRecord& record);

 private:
  void ShowDefinitionErrors();
  // Also if the user wants quiet, but not in the middle of a line that a shell completes.
  void ShowDamage(std::vector<DamageEntry> found);
  int RefuseDamaged();
  void RestoreConfigurations();
  std::vector<std::string> NodeNames(const std::string& application);
  int SelectNodeIn(const std::string& key, const std::string& application);
  int SelectConfiguration(const std::vector<ApplicationEntry>& applications);
  void SwitchTo(const ApplicationEntry& application, const std::string& configuration);

  Invocation asked;
  Console& console;
  FileSystem& files;
  std::string startFolder;
  std::string scope;
  MainFrame frame;
  std::unique_ptr<BuildSession> session;
  std::vector<DamageEntry> damage;
  std::vector<FileText> openedFiles;  // the files of a project that is to be changed
  mutable std::string lastComplaint;
  bool isStarted = false;
  bool hasOpened = false;
  std::vector<ApplicationEntry> switched;  // as they were before --config
};

}  // namespace tarn::host
