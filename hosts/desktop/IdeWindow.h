#pragma once

#include <QElapsedTimer>
#include <QMainWindow>
#include <QTimer>
#include <memory>
#include <string>

#include "hosts/desktop/CommandRunner.h"
#include "hosts/desktop/ServerMenus.h"
#include "hosts/frame/BuildSession.h"
#include "hosts/frame/MainFrame.h"
#include "platform/files/FileSystem.h"

class QLabel;
class QToolBar;

namespace tarn::host {

// The main window: a server with its windows in docks around the editors, its commands in menus and
// a tool bar, and the state of a build below.
class IdeWindow : public QMainWindow {
 public:
  explicit IdeWindow(FileSystem& fileSystem);
  ~IdeWindow() override;

  // Makes the server and takes its windows in. False when the installation is broken, which the
  // user has been told.
  bool Start();
  void OpenProject(const std::string& path);
  CommandRunner& Commands() { return *runner; }
  BuildSession& Session() { return *session; }

 protected:
  // Waits for a build that it stops first.
  void closeEvent(QCloseEvent* event) override;

 private:
  void AnswerMessages();
  void AddDock(const HostEvent& announcement);
  void AddMenu(const std::string& xml);
  void AddToolBar(const std::string& xml);
  void OnBuildStarted();
  void OnBuildEnded(BuildEnd end);
  void ShowTitle();

  MainFrame frame;
  std::unique_ptr<BuildSession> session;
  std::unique_ptr<CommandRunner> runner;
  MenuCommands menuCommands;
  QToolBar* serverBar = nullptr;
  QLabel* stateLabel = nullptr;
  QTimer refreshTimer;
  QElapsedTimer buildTime;
  bool isClosing = false;  // as soon as the build has ended
};

}  // namespace tarn::host
