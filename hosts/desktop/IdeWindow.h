#pragma once

#include <QCoreApplication>
#include <QMainWindow>
#include <QTimer>
#include <memory>
#include <string>
#include <vector>

#include "hosts/core/BuildSession.h"
#include "hosts/core/HostWindow.h"
#include "hosts/desktop/CommandRunner.h"
#include "hosts/desktop/DeclarationSearch.h"
#include "hosts/desktop/DiagnosticMarkers.h"
#include "hosts/desktop/EditorTabs.h"
#include "hosts/desktop/PaneFocusCycle.h"
#include "hosts/desktop/ProblemNavigator.h"
#include "hosts/desktop/ProjectActions.h"
#include "hosts/desktop/ServerDocks.h"
#include "hosts/desktop/ServerMenus.h"
#include "hosts/desktop/ServerNotifications.h"
#include "hosts/desktop/WindowLayout.h"
#include "platform/files/FileSystem.h"
#include "widgets/qt/QtDialogs.h"

class QMenu;

namespace tarn::host {

class CrashRecovery;
class JournalManager;
class OptionsWindow;
class OutputPane;
class EditorArea;
class EditorMacros;
class FindingsPane;
class StatusProgress;

// The main window: the server's windows in docks around the editors, its commands in menus and a
// tool bar, and the state of a build in the status bar.
class IdeWindow : public QMainWindow {
  Q_DECLARE_TR_FUNCTIONS(IdeWindow)

 public:
  explicit IdeWindow(FileSystem& fileSystem);
  ~IdeWindow() override;

  // Creates the server and embeds its windows. Returns false, after informing the user, if the
  // installation is broken.
  bool Start();
  // Opens a project in place of the current one. On error the user is informed.
  void OpenProject(const std::string& path) { project_->Open(path); }
  // Opens projects and text files by absolute paths. The user is informed of those that can't be
  // opened.
  void OpenPaths(const std::vector<std::string>& paths);
  // Access for tests and the driver; owned by the window.
  HostWindow& Frame() { return frame_; }
  CommandRunner& Commands() { return *runner_; }
  BuildSession& Session() { return *session_; }
  EditorTabs& Editors() { return *editors_; }
  OptionsWindow& Options() { return *options_; }

 protected:
  // Asks about unsaved changes, then stops a running build and waits for its end.
  void closeEvent(QCloseEvent* event) override;
  void changeEvent(QEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;
  // Application-wide filter: the key that stops a build can't be expressed as a shortcut.
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
  void AddOutputDock();
  void FollowBuilds();
  void SetHandlers();
  QWidget* MakeTreeFilter(QWidget& tree);
  std::vector<ConfigurationEntry> ListConfigurations();
  // `path` may be relative to the project's folder.
  void OpenFile(const std::string& path, int line);
  // Opens the edit field for the label of the current node.
  void RenameNode(QWidget& tree);
  void OnBuildAsked();
  void OnBuildEnded(BuildEnd end);
  void OnProjectChanged();
  void ShowTitle();

  HostWindow frame_;
  std::unique_ptr<BuildSession> session_;
  std::unique_ptr<ServerNotifications> notices_;
  std::unique_ptr<ProblemNavigator> problems_;
  std::unique_ptr<DiagnosticMarkers> problemMarks_;
  std::unique_ptr<EditorMacros> macros_;
  std::unique_ptr<DeclarationSearch> declarations_;
  std::unique_ptr<CommandRunner> runner_;
  std::unique_ptr<ProjectActions> project_;
  std::unique_ptr<JournalManager> journal_;  // null before Start
  std::unique_ptr<CrashRecovery> recovery_;
  MenuCommands menuCommands_;
  std::unique_ptr<ServerDocks> surface_;
  FileSystem& files_;
  QtDialogs dialogs_;  // shows the server's questions
  WindowLayout layout_{*this};
  PaneFocusCycle panes_{*this};
  EditorArea* area_ = nullptr;
  QMenu* editMenu_ = nullptr;
  EditorTabs* editors_ = nullptr;
  OptionsWindow* options_ = nullptr;
  FindingsPane* findings_ = nullptr;
  OutputPane* output_ = nullptr;
  StatusProgress* progress_ = nullptr;
  QTimer refreshTimer_;
  bool isClosing_ = false;  // when the build has ended
  int agreedChanges_ = 0;   // editors' change count when the user agreed to close
};

}  // namespace tarn::host
