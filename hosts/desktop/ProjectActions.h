#pragma once

#include <QCoreApplication>
#include <QObject>
#include <cstdint>
#include <functional>
#include <string>

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

// What the user does with the project as a whole: opens, makes, saves and leaves one, goes back in
// its changes, and decides when another program has written its files. The editors go with it, and
// what can't be done is told to the user.
//
// Borrows everything; `window` is where it asks. On the frame's thread.
class ProjectActions : public QObject {
  Q_DECLARE_TR_FUNCTIONS(ProjectActions)

 public:
  ProjectActions(QWidget& parentWindow, FileSystem& fileSystem, BuildSession& buildSession,
                 CommandRunner& commandRunner, EditorTabs& editorTabs, Banner& projectBanner,
                 Banner& damageBanner, Banner& trustBanner, Banner& saveBanner);

  // Another project takes the place of this one.
  void Open(const std::string& path);
  // Returns whether the project with this path may take the place of the open one without a word
  // about it later: the user agrees that changes of the open one are saved for that.
  bool MayReplaceWith(const std::string& path);
  // Opens the project, unless it is open, and makes changes to it that were never saved, in memory
  // and as one step: `bases` are its files as they were without the changes, `texts` with them.
  // Without texts it is just opened. If the error's code is Changed, the project is open without
  // these changes: they don't fit to what was changed since, one reason a line.
  Status Restore(const std::string& path, const std::vector<FileText>& texts,
                 const std::vector<FileText>& bases);
  void Choose();
  void New();
  void OpenExample(const Example& example);
  // Lets the user find files that are missing, and corrects the project in one step.
  void Relocate();
  // The texts in the editors, and the project itself.
  void SaveAll();
  // For the end of the program: the project goes, with its editors kept for the next time. False
  // when the server keeps it, as while somebody else's build runs.
  bool Leave();

  // Entries for a menu.
  void AddOpening(QMenu& menu);
  void AddHistory(QMenu& menu);

  // The server has another project, none, or this one anew.
  void Follow();
  // Takes what has changed in the meantime as a step to go back to; to be called now and then.
  void Note();
  // Looks for what other programs have written; for the time when the window comes to the front.
  void Look() { watch.Look(); }
  // Returns whether the project may be built and written; asks if it was read only in part.
  bool MayChange() { return damage.MayGoOn(); }
  // A build has ended: asks for trust if it was refused something for lack of it.
  void AskForTrust() { trust.Follow(); }
  // Something has changed since it was opened or saved.
  bool HasUnsaved();
  // Stores which files are open, for the next time.
  void KeepEditors();

  // The list of recent projects has changed.
  std::function<void()> onRecentChanged;
  // The user wants to see a file that a save has kept.
  std::function<void(const std::string& path)> onShowFile;

 private:
  // False while a build runs, which the user has been told.
  bool IsFree();
  bool MayClose() { return !HasUnsaved() || damage.MayClose(); }
  bool Load(const std::string& path);
  Status OpenStaged(const std::string& path, const std::vector<FileText>& texts,
                    const std::vector<FileText>& bases);
  bool OffersToRelocate(const std::string& path, const std::string& reason);
  void TellWhatIsNotSaved(const SaveReport& report);
  void Reload();
  Status TakeFromDisk();
  Status Apply(const FileChanges& changes);
  void Go(Status (ProjectHistory::*way)());

  QWidget& window;
  FileSystem& files;
  BuildSession& session;
  CommandRunner& runner;
  EditorTabs& editors;
  Banner& banner;
  DamageNotice damage;
  TrustNotice trust;
  SaveNotice saves;
  ProjectHistory history;
  ProjectWatch watch;
  std::string editorsProject;  // whose files the editors show; empty for none
  bool isDiscarding = false;   // texts that are not saved may go with their project
  bool isApplying = false;     // the project is read again, from memory
};

}  // namespace tarn::host
