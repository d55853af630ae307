#pragma once

#include <QCoreApplication>
#include <QMainWindow>
#include <QTimer>
#include <memory>
#include <string>
#include <vector>

#include "hosts/desktop/CommandRunner.h"
#include "hosts/desktop/DeclarationSearch.h"
#include "hosts/desktop/EditorTabs.h"
#include "hosts/desktop/PaneCycle.h"
#include "hosts/desktop/PopupMenus.h"
#include "hosts/desktop/ProblemMarks.h"
#include "hosts/desktop/ProblemNavigator.h"
#include "hosts/desktop/ProjectHistory.h"
#include "hosts/desktop/ProjectWatch.h"
#include "hosts/desktop/ServerMenus.h"
#include "hosts/desktop/ServerNotices.h"
#include "hosts/desktop/WindowLayout.h"
#include "hosts/frame/BuildSession.h"
#include "hosts/frame/MainFrame.h"
#include "platform/files/FileSystem.h"
#include "platform/qt/QtDialogs.h"

class QDockWidget;
class QMenu;
class QToolBar;

namespace tarn::host {

class OptionsWindow;
class EditorArea;
class StatusProgress;
class WelcomePage;
struct Example;

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
  void OpenProject(const std::string& path);
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

 private:
  void AnswerMessages();
  void AddDock(const HostEvent& announcement);
  void AddOptionsDock();
  void AddFileMenu();
  void ChooseProject();
  // `path` may be relative to the project's folder.
  void OpenFile(const std::string& path, int line);
  std::vector<ConfigurationEntry> ListConfigurations();
  void ShowPopup(const std::string& name, QPoint screen);
  void AddMenu(const std::string& xml);
  void AddToolBar(const std::string& xml);
  void OnBuildAsked();
  void OnBuildEnded(BuildEnd end);
  void ShowLog();
  void OnProjectChanged();
  void OpenExample(const Example& example);
  void NewProject();
  WelcomePage* MakeWelcomePage();
  // What is open of the project is kept for the next time.
  void KeepEditors();
  QWidget* MakeTreeFilter(QWidget& tree);
  // The texts in the editors, and the project itself.
  void SaveAll();
  void ReloadProject();
  void ShowFailure(const Error& error);
  void AddHistory();
  void GoInHistory(Status (ProjectHistory::*go)());
  void ShowTitle();

  MainFrame frame;
  std::unique_ptr<BuildSession> session;
  std::unique_ptr<ServerNotices> notices;
  std::unique_ptr<ProblemNavigator> problems;
  std::unique_ptr<ProblemMarks> problemMarks;
  std::unique_ptr<DeclarationSearch> declarations;
  std::unique_ptr<CommandRunner> runner;
  std::unique_ptr<ProjectHistory> history;
  MenuCommands menuCommands;
  PopupMenus popups;
  FileSystem& files;
  QtDialogs dialogs;  // what the server asks its user
  WindowLayout layout{*this};
  PaneCycle panes{*this};
  WelcomePage* welcome = nullptr;
  EditorArea* area = nullptr;
  QMenu* editMenu = nullptr;
  ProjectWatch projectWatch;
  EditorTabs* editors = nullptr;
  OptionsWindow* options = nullptr;
  QDockWidget* lastBottomDock = nullptr;
  QToolBar* serverBar = nullptr;
  WindowHandle logWindow = 0;
  QDockWidget* logDock = nullptr;
  StatusProgress* progress = nullptr;
  std::string editorsProject;  // whose files the editors show; empty for none
  QTimer refreshTimer;
  bool isDiscarding = false;  // texts that are not saved may go with their project
  bool isClosing = false;     // as soon as the build has ended
};

}  // namespace tarn::host
