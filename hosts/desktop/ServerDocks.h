#pragma once

#include <QCoreApplication>
#include <QPoint>
#include <functional>
#include <string>
#include <vector>

#include "hosts/core/HostWindow.h"
#include "hosts/desktop/PopupMenus.h"
#include "hosts/desktop/ServerMenus.h"
#include "platform/files/FileSystem.h"

class QDockWidget;
class QMainWindow;
class QToolBar;
class QWidget;

namespace tarn::host {

// The server's part of the main window: its windows in docks, its menus in the menu bar, its tool
// bars, and the popup menus that it requests.
//
// Handles the frame's messages for them during its lifetime; borrows everything. Main thread only.
class ServerDocks {
  Q_DECLARE_TR_FUNCTIONS(ServerDocks)

 public:
  // Menus and buttons execute the commands of `menuCommands`.
  ServerDocks(QMainWindow& mainWindow, HostWindow& mainFrame, const MenuCommands& menuCommands);
  ~ServerDocks();
  ServerDocks(const ServerDocks&) = delete;
  ServerDocks& operator=(const ServerDocks&) = delete;

  // Wraps the tree: returns the widget to put into the dock of the project's tree, which contains
  // the tree.
  std::function<QWidget*(QWidget& tree)> onTree;

  void LoadPopups(FileSystem& files, const std::string& configFile) {
    popups_.Load(files, configFile);
  }
  // Updates the enabled states of the buttons; call this periodically, because they are always
  // visible.
  void RefreshToolBars();
  // Shows the log and gives it the keyboard focus.
  void ShowLog();
  // Like ShowLog(), without the focus.
  void RaiseLog();
  // Adds a dock as a tab to those at the lower edge of the window.
  void AddBottomDock(QDockWidget& dock);

 private:
  void AddDock(const HostMessageEvent& announcement);
  void AddTree(QDockWidget& dock, QWidget& tree);
  static void AddHint(const QDockWidget& dock, int id);
  void AddToolBar(const std::string& xml);
  void ShowPopup(const std::string& name, QPoint screen);

  QMainWindow& window_;
  HostWindow& frame_;
  const MenuCommands& commands_;
  PopupMenus popups_;
  std::vector<QToolBar*> toolBars_;
  QDockWidget* lastBottomDock_ = nullptr;
  QDockWidget* logDock_ = nullptr;
  WindowHandle logWindow_ = 0;
};

}  // namespace tarn::host
