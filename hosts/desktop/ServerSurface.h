#pragma once

#include <QCoreApplication>
#include <QPoint>
#include <functional>
#include <string>
#include <vector>

#include "hosts/core/MainFrame.h"
#include "hosts/desktop/PopupMenus.h"
#include "hosts/desktop/ServerMenus.h"
#include "platform/files/FileSystem.h"

class QDockWidget;
class QMainWindow;
class QToolBar;
class QWidget;

namespace tarn::host {

// What the server shows in the main window: its windows in docks, its menus in the menu bar, its
// tool bars, and the popup menus that it asks for.
//
// Answers the frame's messages for them while it lives; borrows everything. On the frame's thread.
class ServerSurface {
  Q_DECLARE_TR_FUNCTIONS(ServerSurface)

 public:
  // Menus and buttons give the commands of `menuCommands`.
  ServerSurface(QMainWindow& mainWindow, MainFrame& mainFrame, const MenuCommands& menuCommands);
  ~ServerSurface();
  ServerSurface(const ServerSurface&) = delete;
  ServerSurface& operator=(const ServerSurface&) = delete;

  // Gives the widget that stands in the dock of the project's tree, in which the tree has been put.
  std::function<QWidget*(QWidget& tree)> onTree;

  void LoadPopups(FileSystem& files, const std::string& configFile) {
    popups.Load(files, configFile);
  }
  // Buttons are always seen, so what they can do is to be asked for now and then.
  void RefreshToolBars();
  // With the keyboard in it.
  void ShowLog();
  // Puts a dock behind the others at the lower edge of the window, as a tab.
  void AddBottomDock(QDockWidget& dock);

 private:
  void AddDock(const HostEvent& announcement);
  void AddTree(QDockWidget& dock, QWidget& tree);
  void AddToolBar(const std::string& xml);
  void ShowPopup(const std::string& name, QPoint screen);

  QMainWindow& window;
  MainFrame& frame;
  const MenuCommands& commands;
  PopupMenus popups;
  std::vector<QToolBar*> toolBars;
  QDockWidget* lastBottomDock = nullptr;
  QDockWidget* logDock = nullptr;
  WindowHandle logWindow = 0;
};

}  // namespace tarn::host
