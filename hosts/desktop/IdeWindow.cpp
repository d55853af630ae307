#include "hosts/desktop/IdeWindow.h"

#include <QCloseEvent>
#include <QDockWidget>
#include <QFileInfo>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QStatusBar>
#include <QToolBar>

#include "hosts/frame/LogEntry.h"
#include "platform/qt/QtText.h"
#include "platform/qt/WidgetPeer.h"

namespace tarn::host {

namespace {

constexpr int kProjectWindow = 4003;
// How late a button of the tool bar may show what can be done.
constexpr int kRefreshMs = 250;

QString WordFor(BuildEnd end) {
  switch (end) {
    case BuildEnd::Succeeded:
      return IdeWindow::tr("Build succeeded");
    case BuildEnd::Stopped:
      return IdeWindow::tr("Build stopped");
    case BuildEnd::Failed:
    case BuildEnd::Refused:
      break;
  }
  return IdeWindow::tr("Build failed");
}

}  // namespace

IdeWindow::IdeWindow(FileSystem& fileSystem)
    : session(std::make_unique<BuildSession>(frame, fileSystem,
                                             HostFolders::FromEnvironment(fileSystem))),
      runner(std::make_unique<CommandRunner>(frame, *session)) {
  menuCommands.isEnabled = [this](std::uint32_t command) { return runner->IsEnabled(command); };
  menuCommands.run = [this](std::uint32_t command) { runner->Run(command); };
  runner->onStarted = [this] { OnBuildStarted(); };
  runner->onEnded = [this](BuildEnd end) { OnBuildEnded(end); };
  stateLabel = new QLabel(tr("Ready"), this);
  statusBar()->addWidget(stateLabel, 1);
  setDockNestingEnabled(true);
  AnswerMessages();
  ShowTitle();
}

// The server's windows go before the docks that hold them.
IdeWindow::~IdeWindow() {
  runner.reset();
  session.reset();
}

void IdeWindow::AnswerMessages() {
  frame.Answer(kMsgAnnounceWindow, [this](const HostEvent& event) {
    AddDock(event);
    return std::intptr_t{1};
  });
  frame.Answer(kMsgAddMainMenu, [this](const HostEvent& event) {
    AddMenu(event.detail);
    return std::intptr_t{1};
  });
  frame.Answer(kMsgCreateToolbar, [this](const HostEvent& event) {
    AddToolBar(event.detail);
    return std::intptr_t{1};
  });
}

bool IdeWindow::Start() {
  if (const Status started = session->Start(); !started) {
    QMessageBox::critical(this, tr("Tarn"), ToQt(started.GetError().text));
    return false;
  }
  session->Manager().GetProjectWindow();
  session->Manager().GetOutputWindow();
  connect(&refreshTimer, &QTimer::timeout, this, [this] {
    if (serverBar != nullptr) RefreshServerToolBar(*serverBar, menuCommands);
  });
  refreshTimer.start(kRefreshMs);
  return true;
}

void IdeWindow::OpenProject(const std::string& path) {
  if (const Status opened = session->Open(path); !opened) {
    QMessageBox::warning(this, tr("Tarn"), ToQt(opened.GetError().text));
  }
  ShowTitle();
}

void IdeWindow::closeEvent(QCloseEvent* event) {
  if (!runner->IsBuilding()) {
    QMainWindow::closeEvent(event);
    return;
  }
  isClosing = true;
  runner->Stop();
  stateLabel->setText(tr("Closing as soon as the build has stopped..."));
  event->ignore();
}

void IdeWindow::AddDock(const HostEvent& announcement) {
  const auto* const window = reinterpret_cast<const CWnd*>(announcement.wParam);
  QWidget* const widget = WidgetOf(*window);
  if (widget == nullptr) return;
  const auto element = ParseXml(announcement.detail);
  const QString id = ToQt(AttributeOf(element.get(), "ID"));
  auto* const dock = new QDockWidget(ToQt(AttributeOf(element.get(), "Title")), this);
  dock->setObjectName("dock" + id);
  dock->setWidget(widget);
  addDockWidget(id.toInt() == kProjectWindow ? Qt::LeftDockWidgetArea : Qt::BottomDockWidgetArea,
                dock);
}

void IdeWindow::AddMenu(const std::string& xml) {
  QMenu* const menu = MakeServerMenu(xml, menuCommands, *this);
  menuBar()->addMenu(menu);
}

void IdeWindow::AddToolBar(const std::string& xml) {
  if (serverBar != nullptr) return;
  serverBar = addToolBar(QString());
  serverBar->setObjectName("serverBar");
  FillServerToolBar(*serverBar, xml, menuCommands);
}

void IdeWindow::OnBuildStarted() {
  buildTime.start();
  stateLabel->setText(tr("Building..."));
}

void IdeWindow::OnBuildEnded(BuildEnd end) {
  const double seconds = static_cast<double>(buildTime.elapsed()) / 1000.0;
  stateLabel->setText(tr("%1 (%2 s)").arg(WordFor(end)).arg(seconds, 0, 'f', 1));
  if (isClosing) close();
}

void IdeWindow::ShowTitle() {
  const QString path = ToQt(session->GetProjectPath());
  setWindowTitle(path.isEmpty() ? tr("Tarn")
                                : tr("%1 - Tarn").arg(QFileInfo(path).completeBaseName()));
}

}  // namespace tarn::host
