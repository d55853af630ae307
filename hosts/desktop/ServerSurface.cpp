#include "hosts/desktop/ServerSurface.h"

#include <tarn/commands.h>

#include <QAbstractScrollArea>
#include <QDockWidget>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QTimer>
#include <QToolBar>

#include "hosts/core/LogEntry.h"
#include "hosts/core/ServerDrivers.h"
#include "widgets/qt/QtText.h"
#include "widgets/qt/WidgetPeer.h"
#include "xml/XmlNode.h"

namespace tarn::host {

namespace {

constexpr int kProjectWindow = 4003;
constexpr int kLogWindow = 4004;
// The log's popup menu is named by its window id.
constexpr const char* kLogPopup = "4004";
constexpr int kFirstTreeWidth = 280;
constexpr int kFirstOutputHeight = 220;

constexpr HostMessage kAnswered[] = {kMsgAnnounceWindow, kMsgAddMainMenu, kMsgCreateToolbar,
                                     kMsgShowPopupMenu};

}  // namespace

ServerSurface::ServerSurface(QMainWindow& mainWindow, MainFrame& mainFrame,
                             const MenuCommands& menuCommands)
    : window(mainWindow), frame(mainFrame), commands(menuCommands) {
  const auto answer = [this](HostMessage number, auto act) {
    frame.Answer(number, [act](const HostEvent& event) {
      act(event);
      return std::intptr_t{1};
    });
  };
  answer(kMsgAnnounceWindow, [this](const HostEvent& event) { AddDock(event); });
  answer(kMsgAddMainMenu, [this](const HostEvent& event) {
    window.menuBar()->addMenu(MakeServerMenu(event.detail, commands, window));
  });
  answer(kMsgCreateToolbar, [this](const HostEvent& event) { AddToolBar(event.detail); });
  answer(kMsgShowPopupMenu, [this](const HostEvent& event) {
    const auto& place = *reinterpret_cast<const Point*>(event.wParam);
    // Deferred: a menu would be closed by the mouse press that is still in progress.
    QTimer::singleShot(0, &window, [this, screen = QPoint(place.x, place.y), name = event.detail] {
      ShowPopup(name, screen);
    });
  });
}

ServerSurface::~ServerSurface() {
  for (const HostMessage number : kAnswered) frame.Answer(number, {});
}

void ServerSurface::RefreshToolBars() {
  for (QToolBar* const bar : toolBars) RefreshServerToolBar(*bar, commands);
}

void ServerSurface::ShowLog() {
  if (logDock == nullptr) return;
  logDock->show();
  logDock->raise();
  logDock->widget()->setFocus();
}

void ServerSurface::AddDock(const HostEvent& announcement) {
  const auto* const announced = reinterpret_cast<const CWnd*>(announcement.wParam);
  QWidget* const widget = WidgetOf(*announced);
  if (widget == nullptr) return;
  const auto element = ParseXml(announcement.detail);
  const QString id = ToQt(AttributeOf(element.get(), "ID"));
  // Announced again each time the window is requested, for example by a script.
  if (window.findChild<QDockWidget*>("dock" + id) != nullptr) return;
  auto* const dock = new QDockWidget(ToQt(AttributeOf(element.get(), "Title")), &window);
  dock->setObjectName("dock" + id);
  dock->setWidget(widget);
  // The focusable view gets the dock's title as accessible name, and receives the focus set on the
  // window.
  for (auto* const view : dock->findChildren<QAbstractScrollArea*>()) {
    if (view->accessibleName().isEmpty()) view->setAccessibleName(dock->windowTitle());
    if (widget->focusProxy() == nullptr) widget->setFocusProxy(view);
  }
  if (id.toInt() == kProjectWindow) {
    AddTree(*dock, *widget);
    return;
  }
  if (id.toInt() == kLogWindow) {
    logDock = dock;
    logWindow = announced->GetHandle();
  }
  AddBottomDock(*dock);
  window.resizeDocks({dock}, {kFirstOutputHeight}, Qt::Vertical);
}

void ServerSurface::AddBottomDock(QDockWidget& dock) {
  window.addDockWidget(Qt::BottomDockWidgetArea, &dock);
  if (lastBottomDock != nullptr) {
    window.tabifyDockWidget(lastBottomDock, &dock);
    dock.raise();
  }
  lastBottomDock = &dock;
}

void ServerSurface::AddTree(QDockWidget& dock, QWidget& tree) {
  AddTreeShortcuts(tree, commands);
  if (onTree) dock.setWidget(onTree(tree));
  window.addDockWidget(Qt::LeftDockWidgetArea, &dock);
  window.resizeDocks({&dock}, {kFirstTreeWidth}, Qt::Horizontal);
}

void ServerSurface::AddToolBar(const std::string& xml) {
  QToolBar* const bar = window.addToolBar(QString());
  // The layout is stored by object name.
  bar->setObjectName(toolBars.empty() ? QString("serverBar")
                                      : QString("serverBar%1").arg(toolBars.size() + 1));
  FillServerToolBar(*bar, xml, commands);
  toolBars.push_back(bar);
}

void ServerSurface::ShowPopup(const std::string& name, QPoint screen) {
  MenuCommands offered = commands;
  if (name == kLogPopup) {
    // The log implements copy and clear by itself, with its own enabled states.
    const auto isLogs = [](std::uint32_t command) {
      return command >= TARN_CMD_CLEAR_LOG && command <= TARN_CMD_CUT_LOG;
    };
    offered.isEnabled = [this, isLogs](std::uint32_t command) {
      return isLogs(command) || commands.isEnabled(command);
    };
    offered.run = [this, isLogs](std::uint32_t command) {
      if (!isLogs(command)) return commands.run(command);
      SendWindowMessage(logWindow, kMsgCommand, command, 0);
    };
  }
  popups.Show(name, screen, offered, window);
}

}  // namespace tarn::host
