#pragma once

#include <QCoreApplication>
#include <QObject>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "hosts/core/BuildSession.h"
#include "hosts/core/ProjectHistory.h"
#include "hosts/desktop/CommandRunner.h"
#include "hosts/desktop/DamageNotice.h"
#include "hosts/desktop/ProjectWatch.h"
#include "hosts/desktop/SaveNotice.h"
#include "hosts/desktop/TrustNotice.h"
#include "platform/files/FileSystem.h"

class QMenu;
class QWidget;

namespace tarn::host {

class Banner;
class EditorTabs;
struct Example;

// The user's actions on the project as a whole: open, create, save and close it, undo changes, and
// decide what happens when another program has written its files. The editors are opened and closed
// with the project, and the user is informed of errors.
//
// Borrows everything; `window` is the parent of dialogs. Main thread only.
class ProjectActions : public QObject {
  Q_DECLARE_TR_FUNCTIONS(ProjectActions)

 public:
  ProjectActions(QWidget& parentWindow, FileSystem& fileSystem, BuildSession& buildSession,
                 CommandRunner& commandRunner, EditorTabs& editorTabs, Banner& projectBanner,
                 Banner& damageBanner, Banner& trustBanner, Banner& saveBanner);

  // Opens a project in place of the current one.
  void Open(const std::string& path);
  // Returns true if the project with this path may replace the open one without further questions:
  // the user agrees that changes of the open one are saved.
  bool MayReplaceWith(const std::string& path);
  // Opens the project, unless it is already open, and applies unsaved changes to it, in memory and
  // as one undo step: `bases` are its files without the changes, `texts` with them. If there are no
  // texts, the project is just opened. If the error's code is Changed, the project is open without
  // these changes, because they conflict with later ones; the text has one reason per line.
  Status Restore(const std::string& path, const std::vector<FileText>& texts,
                 const std::vector<FileText>& bases);
  void Choose();
  void New();
  // Returns the folder to propose while the wizard for a new project is shown over an open one;
  // otherwise an empty string.
  std::string GetFolderForNew() const;
  // Runs the wizard for a new application, in the open project or in a new one.
  void NewApplication();
  // Creates an empty file that the user names, and adds it to the project at the current node.
  void NewFile();
  // Asks for a file from which a build makes another, and adds it at the current node.
  void AddGenerated();
  bool CanAddGenerated();
  // Makes the user's own folder the proposal for new projects.
  void ProposeFolder();
  void OpenExample(const Example& example);
  // Lets the user locate missing files, and corrects the project in one step.
  void Relocate();
  // Saves the texts in the editors and the project itself.
  void SaveAll();
  // Closes the project at the end of the program and stores the open editors for the next start.
  // Returns false if the server refuses, as during a build started elsewhere.
  bool Leave();

  // Add entries to a menu.
  void AddOpening(QMenu& menu);
  void AddHistory(QMenu& menu);

  // Call this when the server has opened a different project, closed one, or reloaded the same one.
  void Follow();
  // Records changes as an undo step; to be called periodically.
  void Note();
  // Checks for files written by other programs; call this when the window is activated.
  void Poll() { watch_.Poll(); }
  // Returns true if the project may be built and saved; asks the user if it is damaged.
  bool MayChange() { return damage_.MayGoOn(); }
  // Call this after a build: asks for trust if something was refused for lack of it.
  void RequestTrust() { trust_.Follow(); }
  // Returns true if the project has changed since it was opened or saved.
  bool HasUnsaved();
  // Stores which files are open, for the next start.
  void KeepEditors();

  // Called when the list of recent projects has changed.
  std::function<void()> onRecentChanged;
  // Called when the user wants to see a backup made by a save.
  std::function<void(const std::string& path)> onShowFile;

 private:
  void CompleteNew(const std::vector<std::string>& known);
  void RunWizard(const std::function<void()>& run);
  QString GetFileFolder();
  QString AskForNewFile(const QString& folder);
  // Returns false during a build, after informing the user.
  bool IsFree();
  bool MayClose() { return !HasUnsaved() || damage_.MayClose(); }
  bool Load(const std::string& path);
  Status OpenStaged(const std::string& path, const std::vector<FileText>& texts,
                    const std::vector<FileText>& bases);
  bool OffersToRelocate(const std::string& path, const std::string& reason);
  bool MayDropUnsaved(const SaveReport& report);
  bool SaveCopies();
  void ShowUnsaved(const SaveReport& report);
  void Reload();
  Status TakeFromDisk();
  Status Apply(const FileChanges& changes);
  void Go(Status (ProjectHistory::*way)());

  QWidget& window_;
  FileSystem& files_;
  BuildSession& session_;
  CommandRunner& runner_;
  EditorTabs& editors_;
  Banner& banner_;
  DamageNotice damage_;
  TrustNotice trust_;
  SaveNotice saves_;
  ProjectHistory history_;
  ProjectWatch watch_;
  std::string editorsProject_;  // project of the files in the editors; empty if none
  bool isDiscarding_ = false;   // unsaved texts may be closed with their project
  bool isApplying_ = false;     // the project is being reloaded from memory
  bool isNewWanted_ = false;    // the wizard runs for a new project while one is open
};

}  // namespace tarn::host
