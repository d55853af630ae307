#include "hosts/desktop/IdeWindow.h"

#include <QAbstractScrollArea>
#include <QApplication>
#include <QCloseEvent>
#include <QDir>
#include <QDockWidget>
#include <QFileDialog>
#include <QFileInfo>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QMimeData>
#include <QPointer>
#include <QScopedValueRollback>
#include <QStatusBar>
#include <QToolBar>
#include <QUrl>
#include <algorithm>
#include <cstdlib>
#include <limits>

#include "hosts/desktop/Banner.h"
#include "hosts/desktop/CodeEditor.h"
#include "hosts/desktop/EditMenu.h"
#include "hosts/desktop/EditorArea.h"
#include "hosts/desktop/EditorStatus.h"
#include "hosts/desktop/Examples.h"
#include "hosts/desktop/OptionsWindow.h"
#include "hosts/desktop/RecentMenu.h"
#include "hosts/desktop/RecentProjects.h"
#include "hosts/desktop/StatusProgress.h"
#include "hosts/desktop/TreeFilter.h"
#include "hosts/desktop/WelcomePage.h"
#include "hosts/frame/LogEntry.h"
#include "platform/paths/Paths.h"
#include "platform/qt/QtText.h"
#include "platform/qt/WidgetPeer.h"
#include "platform/text/Text.h"

namespace tarn::host {

namespace {

constexpr int kProjectWindow = 4003;
// The log's popup menu goes by the number of its window.
constexpr const char* kLogPopup = "4004";
constexpr int kLogWindow = 4004;
// How late a button of the tool bar may show what can be done.
constexpr int kRefreshMs = 250;
constexpr QSize kFirstSize{1280, 800};
constexpr int kFirstTreeWidth = 280;
constexpr int kFirstOptionsWidth = 400;
constexpr int kFirstOutputHeight = 220;

std::vector<std::string> LocalFilesOf(const QMimeData& data) {
  std::vector<std::string> paths;
  for (const QUrl& url : data.urls()) {
    if (url.isLocalFile()) paths.push_back(FromQt(url.toLocalFile()));
  }
  return paths;
}

// The sign tells who sends it; a number out of a tool's message can be of any size.
int LineOf(std::intptr_t number) {
  constexpr std::intptr_t kMost = std::numeric_limits<int>::max();
  return static_cast<int>(std::abs(std::clamp(number, -kMost, kMost)));
}

}  // namespace

IdeWindow::IdeWindow(FileSystem& fileSystem)
    : session(std::make_unique<BuildSession>(frame, fileSystem,
                                             HostFolders::FromEnvironment(fileSystem))),
      runner(std::make_unique<CommandRunner>(frame, *session, fileSystem)),
      files(fileSystem),
      dialogs(frame.GetHandle(), this),
      projectWatch(fileSystem, this),
      editors(new EditorTabs(fileSystem, this)) {
  menuCommands.isEnabled = [this](std::uint32_t command) { return runner->IsEnabled(command); };
  menuCommands.run = [this](std::uint32_t command) {
    // The command itself takes the name that the options window holds for it.
    if (command == kCmdAddConfiguration) return options->AddConfiguration();
    runner->Run(command);
  };
  menuCommands.listTools = [this] { return ReadToolEntries(session->Manager().GetToolCommands()); };
  menuCommands.listConfigurations = [this] { return ListConfigurations(); };
  menuCommands.chooseConfiguration = [this](const std::string& name) {
    options->ChooseConfiguration(ToQt(name));
  };
  menuCommands.pictureFolder = FolderOf(session->GetFolders().ConfigFile(files));
  runner->onAsked = [this] { OnBuildAsked(); };
  runner->onStarted = [this] { options->SetBuilding(true); };
  runner->onProjectChanged = [this] { OnProjectChanged(); };
  runner->onEnded = [this](BuildEnd end) { OnBuildEnded(end); };
  progress = new StatusProgress(*runner, this);
  progress->onShowLog = [this] { ShowLog(); };
  statusBar()->addWidget(progress, 1);
  // A script's build doesn't hold the window.
  session->Scripts().runBuild = [this](const BuildRequest& request) {
    return runner->RunAndWait(request);
  };
  session->Scripts().awaitBuild = [this] { return runner->AwaitBuild(); };
  dialogs.onAccepted = [this] { QTimer::singleShot(0, this, [this] { runner->FollowStop(); }); };
  notices = std::make_unique<ServerNotices>(frame, files, *statusBar());
  notices->onSelectionChanged = [this] {
    if (serverBar != nullptr) RefreshServerToolBar(*serverBar, menuCommands);
  };
  notices->isBuilding = [this] { return runner->IsBuilding(); };
  notices->openText = [this](const std::string& path) { OpenFile(path, 0); };
  runner->onProjectClosing = [this] { notices->Forget(); };
  problems = std::make_unique<ProblemNavigator>(files, *statusBar());
  problemMarks = std::make_unique<ProblemMarks>(problems->GetList(), *editors);
  problems->open = [this](const std::string& path, int line) { OpenFile(path, line); };
  declarations = std::make_unique<DeclarationSearch>(*editors, *statusBar());
  declarations->askGlobals = [this] { return session->Inspector().GetGlobals({}, {}); };
  declarations->open = [this](const std::string& path, int line) { OpenFile(path, line); };
  editors->onFollowName = [this] { declarations->Go(); };
  setDockNestingEnabled(true);
  // The tree has the whole height, as projects are deep; what tools say needs width.
  setCorner(Qt::BottomLeftCorner, Qt::LeftDockWidgetArea);
  setCorner(Qt::BottomRightCorner, Qt::BottomDockWidgetArea);
  setTabPosition(Qt::AllDockWidgetAreas, QTabWidget::North);
  setAcceptDrops(true);
  welcome = MakeWelcomePage();
  area = new EditorArea(*editors, *welcome, this);
  setCentralWidget(area);
  Banner& banner = area->ProjectBanner();
  banner.onFirst = [this] { ReloadProject(); };
  banner.onSecond = [this, &banner] {
    projectWatch.Follow(editorsProject);
    banner.hide();
  };
  projectWatch.onChanged = [&banner] {
    banner.Tell(tr("The project's files have been changed by another program."));
  };
  statusBar()->addPermanentWidget(new EditorStatus(*editors, this));
  resize(kFirstSize);
  AddFileMenu();
  editMenu = MakeEditMenu(*this, *editors, area->Finder(), *declarations);
  AddHistory();
  menuBar()->addMenu(editMenu);
  AddOptionsDock();
  panes.editor = [this] { return editors->Current(); };
  menuBar()->addMenu(layout.MakeMenu(panes.Actions() + editors->Zoom().MakeActions()));
  AnswerMessages();
  ShowTitle();
}

// The server's windows go before the docks that hold them, and the options before the server that
// they ask: a window that goes takes the keyboard out of its fields.
IdeWindow::~IdeWindow() {
  notices.reset();
  history.reset();
  frame.Answer(kMsgPaneCaption, {});
  delete options;
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
  frame.Answer(kMsgShowPopupMenu, [this](const HostEvent& event) {
    const auto& place = *reinterpret_cast<const Point*>(event.wParam);
    // Later: a menu would go with a mouse press that is still under way.
    QTimer::singleShot(0, this, [this, screen = QPoint(place.x, place.y), name = event.detail] {
      ShowPopup(name, screen);
    });
    return std::intptr_t{1};
  });
  for (const HostMessage number : {kMsgOpenFileAtLine, kMsgOpenFile}) {
    frame.Answer(number, [this, number](const HostEvent& event) {
      // The file of a node comes without a place in it.
      const int line = number == kMsgOpenFileAtLine ? LineOf(event.lParam) : 0;
      // Later: the sender is one of the server's windows in the middle of a click.
      QTimer::singleShot(0, this, [this, path = event.text, line] {
        if (line > 0) problems->GoTo(path, line);
        OpenFile(path, line);
      });
      return std::intptr_t{1};
    });
  }
  // What the compilers are to see is what stands in the editors, whoever has the build started.
  frame.Answer(kMsgBuildStarting,
               [this](const HostEvent&) { return std::intptr_t{editors->SaveAll() ? 1 : 0}; });
}

bool IdeWindow::Start() {
  if (const Status started = session->Start(); !started) {
    QMessageBox::critical(this, tr("Tarn"), ToQt(started.GetError().text));
    return false;
  }
  // Behind the server's menus.
  problems->AddActions(*menuBar()->addMenu(tr("&Navigate")));
  session->Manager().GetProjectWindow();
  logWindow = session->Manager().GetOutputWindow();
  popups.Load(files, session->GetFolders().ConfigFile(files));
  layout.Restore();
  connect(&refreshTimer, &QTimer::timeout, this, [this] {
    if (history->Note()) projectWatch.Include(history->GetFiles());
    setWindowModified(!runner->GetProjectPath().empty() && history->HasUnsaved());
    if (runner->IsBuilding()) problemMarks->Refresh();
    if (serverBar != nullptr) RefreshServerToolBar(*serverBar, menuCommands);
  });
  refreshTimer.start(kRefreshMs);
  return true;
}

void IdeWindow::OpenProject(const std::string& path) {
  if (session->HasProject() && QFileInfo(ToQt(path)) == QFileInfo(ToQt(session->GetProjectPath())))
    return;
  if (runner->IsBuilding()) {
    QMessageBox::information(this, tr("Tarn"),
                             tr("Another project can be opened as soon as the build has ended."));
    return;
  }
  if (!editors->MayCloseAll()) return;
  KeepEditors();
  const QScopedValueRollback<bool> asked(isDiscarding, true);
  if (const Status opened = runner->Open(path); !opened) {
    const QString reason = ToQt(opened.GetError().text);
    const QString text = tr("%1 can't be opened.").arg(ToQt(path));
    QMessageBox::warning(this, tr("Tarn"), reason.isEmpty() ? text : text + "\n\n" + reason);
    if (files.Exists(path)) return;
    RecentProjects::Remove(ToQt(path));
    welcome->FillRecent();
  }
}

void IdeWindow::OpenPaths(const std::vector<std::string>& paths) {
  QStringList missing;
  for (const std::string& path : paths) {
    if (!QFileInfo(ToQt(path)).isFile()) {
      missing += ToQt(path);
    } else if (EqualNoCase(SplitPath(path).extension, ".tprj")) {
      OpenProject(path);
    } else {
      OpenFile(path, 0);
    }
  }
  if (missing.isEmpty()) return;
  QMessageBox::warning(this, tr("Tarn"),
                       tr("There is no such file:\n%1", nullptr, static_cast<int>(missing.size()))
                           .arg(missing.join('\n')));
}

void IdeWindow::OnProjectChanged() {
  const std::string path = runner->GetProjectPath();
  problems->SetProject(path);
  problemMarks->SetFolder(FolderOf(path));
  problemMarks->Refresh();
  ShowTitle();
  area->ProjectBanner().hide();
  projectWatch.Follow(path);
  history->Begin();
  options->OnNodeLoaded();
  if (path == editorsProject) return;
  KeepEditors();
  // What is not saved stays, unless the user has been asked for it.
  editors->CloseAll(!isDiscarding);
  editorsProject = path;
  if (path.empty()) return;
  RecentProjects::Note(path);
  // The page stays as long as no file is open.
  welcome->FillRecent();
  editors->Restore(RecentProjects::EditorsOf(path));
}

void IdeWindow::KeepEditors() {
  if (!editorsProject.empty()) RecentProjects::KeepEditors(editorsProject, editors->Describe());
}

void IdeWindow::AddHistory() {
  history = std::make_unique<ProjectHistory>(*session, *runner);
  editMenu->addSeparator();
  QAction* const undo =
      editMenu->addAction(tr("Undo project change"), Qt::CTRL | Qt::ALT | Qt::Key_Z, this,
                          [this] { GoInHistory(&ProjectHistory::Undo); });
  QAction* const redo =
      editMenu->addAction(tr("Redo project change"), Qt::CTRL | Qt::ALT | Qt::SHIFT | Qt::Key_Z,
                          this, [this] { GoInHistory(&ProjectHistory::Redo); });
  connect(editMenu, &QMenu::aboutToShow, this, [this, undo, redo] {
    history->Note();
    undo->setEnabled(history->CanUndo());
    redo->setEnabled(history->CanRedo());
  });
  // Else the keys would be dead once they were looked up in vain.
  connect(editMenu, &QMenu::aboutToHide, this, [undo, redo] {
    undo->setEnabled(true);
    redo->setEnabled(true);
  });
}

void IdeWindow::GoInHistory(Status (ProjectHistory::*go)()) {
  // What another program has written is to be decided on first.
  if (!projectWatch.GetChanged().empty()) {
    projectWatch.Look();
    return;
  }
  if (const Status gone = (history.get()->*go)(); !gone) {
    ShowFailure(gone.GetError());
  }
}

void IdeWindow::ShowFailure(const Error& error) {
  const QString text = ToQt(error.text);
  QMessageBox::warning(this, tr("Tarn"),
                       error.place.empty() ? text : ToQt(error.place) + "\n\n" + text);
}

void IdeWindow::SaveAll() {
  if (!editors->SaveAll() || !history->HasUnsaved()) return;
  history->Note();
  runner->SaveProject();
}

void IdeWindow::ReloadProject() {
  if (runner->IsBuilding()) return;
  if (const Status opened = runner->ReopenWith(projectWatch.GetChanged()); !opened) {
    ShowFailure(opened.GetError());
  }
}

// The server closes the project first, so that the wizard can only make another one.
void IdeWindow::NewProject() {
  if (runner->IsBuilding()) return;
  const std::string before = runner->GetProjectPath();
  if (session->Manager().ProjectNew() != 0 || before.empty()) return;
  // Behind the news of the project that stands in for none.
  QTimer::singleShot(0, this, [this, before] { OpenProject(before); });
}

void IdeWindow::OpenExample(const Example& example) {
  const QString folder = QFileDialog::getExistingDirectory(
      this, tr("Where to put a copy of %1").arg(ToQt(example.name)), QDir::homePath());
  if (folder.isEmpty()) return;
  const Result<std::string> copied = CopyExample(files, example, FromQt(folder));
  if (copied) {
    OpenProject(*copied);
  } else {
    QMessageBox::warning(this, tr("Tarn"),
                         tr("%1 can't be copied: %2")
                             .arg(ToQt(copied.GetError().place), ToQt(copied.GetError().text)));
  }
}

WelcomePage* IdeWindow::MakeWelcomePage() {
  const std::string shared = HostFolders::FromEnvironment(files).application;
  auto* const page = new WelcomePage(FindExamples(files, shared + "examples"),
                                     ToQt(shared) + "config/resources/", this);
  page->onOpen = [this] { ChooseProject(); };
  page->onNew = [this] { NewProject(); };
  page->onExample = [this](const Example& example) { OpenExample(example); };
  page->onRecent = [this](const QString& path) { OpenProject(FromQt(path)); };
  return page;
}

void IdeWindow::AddFileMenu() {
  QMenu* const menu = menuBar()->addMenu(tr("&File"));
  menu->addAction(tr("&New project..."), QKeySequence::New, this, [this] { NewProject(); });
  menu->addAction(tr("&Open project..."), QKeySequence::Open, this, [this] { ChooseProject(); });
  QMenu* const recent =
      MakeRecentMenu(*this, [this](const QString& path) { OpenProject(FromQt(path)); });
  menu->addMenu(recent);
  // Later: its own entry that clears the list hears of the click behind this.
  connect(
      recent, &QMenu::triggered, this, [this] { welcome->FillRecent(); }, Qt::QueuedConnection);
  menu->addSeparator();
  menu->addAction(tr("&Save"), QKeySequence::Save, this, [this] { editors->SaveCurrent(); });
  menu->addAction(tr("Save &all"), Qt::CTRL | Qt::SHIFT | Qt::Key_S, this, [this] { SaveAll(); });
  menu->addAction(tr("&Close file"), QKeySequence::Close, this,
                  [this] { editors->CloseCurrent(); });
  menu->addSeparator();
  menu->addAction(tr("&Quit"), QKeySequence::Quit, this, [this] { close(); });
}

void IdeWindow::ChooseProject() {
  const QString chosen = QFileDialog::getOpenFileName(
      this, tr("Open project"), QFileInfo(ToQt(runner->GetProjectPath())).path(),
      tr("Projects (*.tprj)"));
  if (!chosen.isEmpty()) OpenProject(FromQt(chosen));
}

void IdeWindow::OpenFile(const std::string& path, int line) {
  // A message of a tool may name no file.
  if (path.empty()) return;
  const std::string place =
      IsRelativePath(path) ? JoinPath(FolderOf(session->GetProjectPath()), path) : path;
  // By any other spelling the file would be edited a second time.
  if (editors->OpenFile(files.NameOnDisk(place), line)) editors->Current()->setFocus();
}

void IdeWindow::changeEvent(QEvent* event) {
  QMainWindow::changeEvent(event);
  if (event->type() == QEvent::ActivationChange && isActiveWindow()) {
    editors->FollowDisk();
    projectWatch.Look();
    // Another program may have built as well.
    problemMarks->Refresh();
  }
}

void IdeWindow::dragEnterEvent(QDragEnterEvent* event) {
  if (!LocalFilesOf(*event->mimeData()).empty()) event->acceptProposedAction();
}

// Later: the program that the files come from waits for an answer, and there may be questions.
void IdeWindow::dropEvent(QDropEvent* event) {
  event->acceptProposedAction();
  QTimer::singleShot(0, this, [this, paths = LocalFilesOf(*event->mimeData())] {
    activateWindow();
    OpenPaths(paths);
  });
}

void IdeWindow::closeEvent(QCloseEvent* event) {
  isClosing = false;
  if (!editors->MayCloseAll()) {
    event->ignore();
    return;
  }
  // What a script would do next has nobody to see it.
  if (session->Scripts().IsRunning()) session->Scripts().RequestStop();
  runner->Stop();
  if (!runner->IsBuilding()) {
    layout.Save();
    options->KeepLayout();
    KeepEditors();
    QMainWindow::closeEvent(event);
    return;
  }
  isClosing = true;
  progress->Say(tr("Closing as soon as the build has stopped..."));
  event->ignore();
}

void IdeWindow::AddDock(const HostEvent& announcement) {
  const auto* const window = reinterpret_cast<const CWnd*>(announcement.wParam);
  QWidget* const widget = WidgetOf(*window);
  if (widget == nullptr) return;
  const auto element = ParseXml(announcement.detail);
  const QString id = ToQt(AttributeOf(element.get(), "ID"));
  // Announced whenever somebody asks for the window, a script for example.
  if (findChild<QDockWidget*>("dock" + id) != nullptr) return;
  auto* const dock = new QDockWidget(ToQt(AttributeOf(element.get(), "Title")), this);
  dock->setObjectName("dock" + id);
  dock->setWidget(widget);
  // What takes the keyboard in it goes by its name, and gets the keyboard that the window is given.
  for (auto* const view : dock->findChildren<QAbstractScrollArea*>()) {
    if (view->accessibleName().isEmpty()) view->setAccessibleName(dock->windowTitle());
    if (widget->focusProxy() == nullptr) widget->setFocusProxy(view);
  }
  if (id.toInt() == kProjectWindow) {
    AddTreeShortcuts(*widget, menuCommands);
    runner->isOccupied = [tree = QPointer<QWidget>(widget)] {
      const auto* const field = qobject_cast<QLineEdit*>(QApplication::focusWidget());
      return field != nullptr && tree != nullptr && tree->isAncestorOf(field);
    };
    dock->setWidget(MakeTreeFilter(*widget));
    addDockWidget(Qt::LeftDockWidgetArea, dock);
    resizeDocks({dock}, {kFirstTreeWidth}, Qt::Horizontal);
    return;
  }
  if (id.toInt() == kLogWindow) logDock = dock;
  addDockWidget(Qt::BottomDockWidgetArea, dock);
  if (lastBottomDock != nullptr) {
    tabifyDockWidget(lastBottomDock, dock);
    dock->raise();
  }
  lastBottomDock = dock;
  resizeDocks({dock}, {kFirstOutputHeight}, Qt::Vertical);
}

void IdeWindow::AddOptionsDock() {
  options = new OptionsWindow(*session, this);
  auto* const dock = new QDockWidget(tr("Options"), this);
  dock->setObjectName(QString("dock%1").arg(kOptionsPane));
  dock->setWidget(options);
  addDockWidget(Qt::RightDockWidgetArea, dock);
  resizeDocks({dock}, {kFirstOptionsWidth}, Qt::Horizontal);
  frame.Answer(kMsgPaneCaption, [this, dock](const HostEvent& event) {
    if (event.lParam != kOptionsPane) return std::intptr_t{1};
    dock->setWindowTitle(ToQt(event.text));
    dock->toggleViewAction()->setText(tr("Options"));
    options->OnNodeLoaded();
    return std::intptr_t{1};
  });
  runner->onShowOptions = [this, dock] {
    dock->show();
    dock->raise();
    options->setFocus();
  };
}

std::vector<ConfigurationEntry> IdeWindow::ListConfigurations() {
  const ConfigurationList list = options->Configurations();
  std::vector<ConfigurationEntry> entries;
  for (const std::string& name : list.names) {
    entries.push_back({name, EqualNoCase(name, list.current)});
  }
  return entries;
}

void IdeWindow::ShowPopup(const std::string& name, QPoint screen) {
  MenuCommands commands = menuCommands;
  if (name == kLogPopup) {
    // The log has its own idea of what is copied and cleared, and when.
    const auto isLogs = [](std::uint32_t command) {
      return command >= kCmdClearLog && command <= kCmdCutLog;
    };
    commands.isEnabled = [this, isLogs](std::uint32_t command) {
      return isLogs(command) || menuCommands.isEnabled(command);
    };
    commands.run = [this, isLogs](std::uint32_t command) {
      if (!isLogs(command)) return menuCommands.run(command);
      SendWindowMessage(logWindow, kMsgCommand, command, 0);
    };
  }
  popups.Show(name, screen, commands, *this);
}

QWidget* IdeWindow::MakeTreeFilter(QWidget& tree) {
  const std::string shared = HostFolders::FromEnvironment(files).application;
  auto* const filter = new TreeFilter(tree, ToQt(shared) + "config/resources/", this);
  filter->askNodes = [this] {
    return IndexTree(session->Inspector().GetTree(),
                     ToQt(AddSeparator(FolderOf(runner->GetProjectPath()))));
  };
  filter->onChosen = [this](const IndexedNode& node) {
    session->Inspector().SelectNodeByPlace(node.place);
  };
  QAction* const action = editMenu->addAction(tr("Find in the &project..."), filter, [filter] {
    if (auto* const dock = qobject_cast<QDockWidget*>(filter->parentWidget())) {
      dock->show();
      dock->raise();
    }
    filter->Begin();
  });
  action->setShortcuts({Qt::CTRL | Qt::Key_P, Qt::CTRL | Qt::SHIFT | Qt::Key_F});
  return filter;
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

void IdeWindow::OnBuildAsked() {
  // A message would hide how the build goes.
  statusBar()->clearMessage();
  // A value that the user is still writing is meant to be built.
  options->FinishEditing();
  area->ProjectBanner().SetReady(false, tr("The project is being built."));
  progress->Begin(ToQt(FolderOf(session->GetProjectPath())));
}

void IdeWindow::OnBuildEnded(BuildEnd end) {
  options->SetBuilding(false);
  area->ProjectBanner().SetReady(true, {});
  progress->End(end);
  problemMarks->Refresh();
  if (isClosing) close();
}

void IdeWindow::ShowLog() {
  if (logDock == nullptr) return;
  logDock->show();
  logDock->raise();
  logDock->widget()->setFocus();
}

void IdeWindow::ShowTitle() {
  const QString path = ToQt(runner->GetProjectPath());
  setWindowTitle(path.isEmpty() ? tr("Tarn")
                                : tr("%1[*] - Tarn").arg(QFileInfo(path).completeBaseName()));
}

}  // namespace tarn::host
