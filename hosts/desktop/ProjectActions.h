#pragma once

#include <QCoreApplication>
#include <QObject>
#include <cstdint>
#include <functional>
#include <string>

#include "hosts/desktop/CommandRunner.h"
#include "hosts/desktop/DamageNotice.h"
#include "hosts/desktop/ProjectWatch.h"
#include "hosts/desktop/SaveNotice.h"
#include "hosts/frame/BuildSession.h"
#include "hosts/frame/ProjectHistory.h"
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
                 Banner& damageBanner, Banner& saveBanner);

  // Another project takes the place of this one.
  void Open(const std::string& path);
  // The same with changes that were never saved, also if it is the project that is open. Both texts
  // are in the form of InspectorDriver::GetFileTexts, `bases` as the files were without the
  // changes; without any it is just opened. False if it could not be opened, which the user has
  // been told, or the user would rather stay.
  bool OpenWithChanges(const std::string& path, const std::string& texts, const std::string& bases);
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
  bool OffersToRelocate(const std::string& path, const std::string& reason);
  void TellWhatIsNotSaved(const SaveReport& report);
  void Reload();
  Status TakeFromDisk();
  static Error DescribeBusy();
  void Go(Status (ProjectHistory::*way)());

  QWidget& window;
  FileSystem& files;
  BuildSession& session;
  CommandRunner& runner;
  EditorTabs& editors;
  Banner& banner;
  DamageNotice damage;
  SaveNotice saves;
  ProjectHistory history;
  ProjectWatch watch;
  std::string editorsProject;  // whose files the editors show; empty for none
  bool isDiscarding = false;   // texts that are not saved may go with their project
};

}  // namespace tarn::host
