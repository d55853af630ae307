#pragma once

#include <QCoreApplication>
#include <QMainWindow>
#include <QTimer>
#include <memory>
#include <string>
#include <vector>

#include "hosts/core/BuildSession.h"
#include "hosts/core/MainFrame.h"
#include "hosts/desktop/CommandRunner.h"
#include "hosts/desktop/DeclarationSearch.h"
#include "hosts/desktop/EditorTabs.h"
#include "hosts/desktop/PaneCycle.h"
#include "hosts/desktop/ProblemMarks.h"
#include "hosts/desktop/ProblemNavigator.h"
#include "hosts/desktop/ProjectActions.h"
#include "hosts/desktop/ServerMenus.h"
#include "hosts/desktop/ServerNotices.h"
#include "hosts/desktop/ServerSurface.h"
#include "hosts/desktop/WindowLayout.h"
#include "platform/files/FileSystem.h"
#include "widgets/qt/QtDialogs.h"

class QMenu;

namespace tarn::host {

class CrashRecovery;
class JournalKeeper;
class OptionsWindow;
class EditorArea;
class EditorMacros;
class FindingsPane;
class StatusProgress;

// The main window: a server with its windows in docks around the editors, its commands in menus and
// a tool bar, and the state of a build below.
class IdeWindow : public QMainWindow {
  Q_DECLARE_TR_FUNCTIONS(IdeWindow)

 public:
  explicit IdeWindow(FileSystem& fileSystem);
  ~IdeWindow() override;

  // Makes the server and takes its windows in. False when the installation is broken, which the
  // user has been told.
  bool Start();
  // What can't be opened is told to the user; another project takes the place of this one.
  void OpenProject(const std::string& path) { project->Open(path); }
  // Projects and files for the editors, by absolute paths. The user is told of those that can't be
  // opened.
  void OpenPaths(const std::vector<std::string>& paths);
  MainFrame& Frame() { return frame; }
  CommandRunner& Commands() { return *runner; }
  BuildSession& Session() { return *session; }
  EditorTabs& Editors() { return *editors; }
  OptionsWindow& Options() { return *options; }

 protected:
  // Asks for what is not saved, and waits for a build that it stops first.
  void closeEvent(QCloseEvent* event) override;
  void changeEvent(QEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;
  // Of the application: the key that stops a build is no shortcut.
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void MakeMenuCommands();
  void AddCentre();
  void AddStatusBar();
  void AddProblems();
  void AddJournal();
  void AddMenus();
  void AddOptionsDock();
  void AddFindingsDock(QMenu& menu);
  void FollowBuilds();
  void AnswerMessages();
  QWidget* MakeTreeFilter(QWidget& tree);
  std::vector<ConfigurationEntry> ListConfigurations();
  // `path` may be relative to the project's folder.
  void OpenFile(const std::string& path, int line);
  // Opens the field for the name of the current node.
  void RenameNode(QWidget& tree);
  void OnBuildAsked();
  void OnBuildEnded(BuildEnd end);
  void OnProjectChanged();
  void ShowTitle();

  MainFrame frame;
  std::unique_ptr<BuildSession> session;
  std::unique_ptr<ServerNotices> notices;
  std::unique_ptr<ProblemNavigator> problems;
  std::unique_ptr<ProblemMarks> problemMarks;
  std::unique_ptr<EditorMacros> macros;
  std::unique_ptr<DeclarationSearch> declarations;
  std::unique_ptr<CommandRunner> runner;
  std::unique_ptr<ProjectActions> project;
  std::unique_ptr<JournalKeeper> journal;  // from Start on
  std::unique_ptr<CrashRecovery> recovery;
  MenuCommands menuCommands;
  std::unique_ptr<ServerSurface> surface;
  FileSystem& files;
  QtDialogs dialogs;  // what the server asks its user
  WindowLayout layout{*this};
  PaneCycle panes{*this};
  EditorArea* area = nullptr;
  QMenu* editMenu = nullptr;
  EditorTabs* editors = nullptr;
  OptionsWindow* options = nullptr;
  FindingsPane* findings = nullptr;
  StatusProgress* progress = nullptr;
  QTimer refreshTimer;
  bool isClosing = false;  // as soon as the build has ended
  int agreedChanges = 0;   // of the editors when the user agreed to that
};

}  // namespace tarn::host
