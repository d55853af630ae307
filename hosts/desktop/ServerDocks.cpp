#include "hosts/desktop/ServerDocks.h"

#include <tarn/commands.h>

#include <QAbstractItemView>
#include <QAbstractScrollArea>
#include <QDockWidget>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QTimer>
#include <QToolBar>

#include "hosts/core/LogEntry.h"
#include "hosts/core/ServerDrivers.h"
#include "hosts/desktop/EmptyHint.h"
#include "widgets/qt/QtText.h"
#include "widgets/qt/WidgetPeer.h"
#include "xml/XmlNode.h"

namespace tarn::host {

namespace {

constexpr int kProjectWindow = 4003;
constexpr int kLogWindow = 4004;
// The log's popup menu is named by its window id.
constexpr const char* kLogPopup = "4004";
constexpr int kReportWindow = 4006;
constexpr int kGlobalsWindow = 4015;
constexpr int kFirstTreeWidth = 280;
constexpr int kFirstOutputHeight = 220;

constexpr HostMessage kSurfaceMessages[] = {kMsgAnnounceWindow, kMsgAddMainMenu, kMsgCreateToolbar,
                                            kMsgShowPopupMenu};

}  // namespace

ServerDocks::ServerDocks(QMainWindow& mainWindow, HostWindow& mainFrame,
                         const MenuCommands& menuCommands)
    : window_(mainWindow), frame_(mainFrame), commands_(menuCommands) {
  const auto answer = [this](HostMessage number, auto act) {
    frame_.SetHandler(number, [act](const HostMessageEvent& event) {
      act(event);
      return std::intptr_t{1};
    });
  };
  answer(kMsgAnnounceWindow, [this](const HostMessageEvent& event) { AddDock(event); });
  answer(kMsgAddMainMenu, [this](const HostMessageEvent& event) {
    window_.menuBar()->addMenu(MakeServerMenu(event.detail, commands_, window_));
  });
  answer(kMsgCreateToolbar, [this](const HostMessageEvent& event) { AddToolBar(event.detail); });
  answer(kMsgShowPopupMenu, [this](const HostMessageEvent& event) {
    const auto& place = *reinterpret_cast<const Point*>(event.wParam);
    // Deferred: a menu would be closed by the mouse press that is still in progress.
    QTimer::singleShot(0, &window_, [this, screen = QPoint(place.x, place.y), name = event.detail] {
      ShowPopup(name, screen);
    });
  });
}

ServerDocks::~ServerDocks() {
  for (const HostMessage number : kSurfaceMessages) frame_.SetHandler(number, {});
}

void ServerDocks::RefreshToolBars() {
  for (QToolBar* const bar : toolBars_) RefreshServerToolBar(*bar, commands_);
}

void ServerDocks::RaiseLog() {
  if (logDock_ == nullptr) return;
  logDock_->show();
  logDock_->raise();
}

void ServerDocks::ShowLog() {
  RaiseLog();
  if (logDock_ != nullptr) logDock_->widget()->setFocus();
}

void ServerDocks::AddDock(const HostMessageEvent& announcement) {
  const auto* const announced = reinterpret_cast<const CWnd*>(announcement.wParam);
  QWidget* const widget = WidgetOf(*announced);
  if (widget == nullptr) return;
  const auto element = ParseXml(announcement.detail);
  const QString id = ToQt(GetAttribute(element.get(), "ID"));
  // Announced again each time the window is requested, for example by a script.
  if (window_.findChild<QDockWidget*>("dock" + id) != nullptr) return;
  auto* const dock = new QDockWidget(Translated(GetAttribute(element.get(), "Title")), &window_);
  dock->setObjectName("dock" + id);
  dock->setWidget(widget);
  // The focusable view gets the dock's title as accessible name, and receives the focus set on the
  // window.
  for (auto* const view : dock->findChildren<QAbstractScrollArea*>()) {
    if (view->accessibleName().isEmpty()) view->setAccessibleName(dock->windowTitle());
    if (widget->focusProxy() == nullptr) widget->setFocusProxy(view);
  }
  AddHint(*dock, id.toInt());
  if (id.toInt() == kProjectWindow) {
    AddTree(*dock, *widget);
    return;
  }
  if (id.toInt() == kLogWindow) {
    logDock_ = dock;
    logWindow_ = announced->GetHandle();
  }
  AddBottomDock(*dock);
  window_.resizeDocks({dock}, {kFirstOutputHeight}, Qt::Vertical);
}

// Says what will be shown in a window that is still empty.
void ServerDocks::AddHint(const QDockWidget& dock, int id) {
  if (auto* const log = dock.findChild<QPlainTextEdit*>(); log != nullptr && id == kLogWindow) {
    log->setPlaceholderText(tr("The commands of a build and their output appear here."));
  }
  auto* const view = dock.findChild<QAbstractItemView*>();
  if (view == nullptr) return;
  if (id == kReportWindow) {
    AddEmptyHint(*view, tr("The errors and warnings of the last build appear here."));
  } else if (id == kGlobalsWindow) {
    AddEmptyHint(*view, tr("The functions, variables and types of the program appear here after a "
                           "build."));
  }
}

void ServerDocks::AddBottomDock(QDockWidget& dock) {
  window_.addDockWidget(Qt::BottomDockWidgetArea, &dock);
  if (lastBottomDock_ != nullptr) {
    window_.tabifyDockWidget(lastBottomDock_, &dock);
    dock.raise();
  }
  lastBottomDock_ = &dock;
}

void ServerDocks::AddTree(QDockWidget& dock, QWidget& tree) {
  AddTreeShortcuts(tree, commands_);
  if (onTree) dock.setWidget(onTree(tree));
  window_.addDockWidget(Qt::LeftDockWidgetArea, &dock);
  window_.resizeDocks({&dock}, {kFirstTreeWidth}, Qt::Horizontal);
}

void ServerDocks::AddToolBar(const std::string& xml) {
  QToolBar* const bar = window_.addToolBar(QString());
  // The layout is stored by object name.
  bar->setObjectName(toolBars_.empty() ? QString("serverBar")
                                       : QString("serverBar%1").arg(toolBars_.size() + 1));
  FillServerToolBar(*bar, xml, commands_);
  toolBars_.push_back(bar);
}

void ServerDocks::ShowPopup(const std::string& name, QPoint screen) {
  MenuCommands offered = commands_;
  if (name == kLogPopup) {
    // The log implements copy and clear by itself, with its own enabled states.
    const auto isLogs = [](std::uint32_t command) {
      return command >= TARN_CMD_CLEAR_LOG && command <= TARN_CMD_CUT_LOG;
    };
    offered.isEnabled = [this, isLogs](std::uint32_t command) {
      return isLogs(command) || commands_.isEnabled(command);
    };
    offered.run = [this, isLogs](std::uint32_t command) {
      if (!isLogs(command)) return commands_.run(command);
      SendWindowMessage(logWindow_, kMsgCommand, command, 0);
    };
  }
  popups_.Show(name, screen, offered, window_);
}

}  // namespace tarn::host
