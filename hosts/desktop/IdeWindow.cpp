#include "hosts/desktop/IdeWindow.h"

#include <tarn/commands.h>

#include <QApplication>
#include <QCloseEvent>
#include <QDockWidget>
#include <QFileInfo>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QMimeData>
#include <QPointer>
#include <QShortcut>
#include <QStatusBar>
#include <QTreeView>
#include <QUrl>
#include <algorithm>
#include <cstdlib>
#include <limits>
#include <utility>

#include "hosts/core/ProjectFile.h"
#include "hosts/desktop/Banner.h"
#include "hosts/desktop/CodeEditor.h"
#include "hosts/desktop/CrashRecovery.h"
#include "hosts/desktop/EditMenu.h"
#include "hosts/desktop/EditorArea.h"
#include "hosts/desktop/EditorMacros.h"
#include "hosts/desktop/EditorStatus.h"
#include "hosts/desktop/Examples.h"
#include "hosts/desktop/FindingsPane.h"
#include "hosts/desktop/JournalKeeper.h"
#include "hosts/desktop/OptionsWindow.h"
#include "hosts/desktop/StatusProgress.h"
#include "hosts/desktop/TreeFilter.h"
#include "hosts/desktop/WelcomePage.h"
#include "platform/files/SameName.h"
#include "platform/paths/Paths.h"
#include "platform/text/Text.h"
#include "widgets/qt/QtText.h"

namespace tarn::host {

namespace {

// Maximum delay of the tool bar's enabled states.
constexpr int kRefreshMs = 250;
constexpr int kMessageMs = 8000;
constexpr QSize kFirstSize{1280, 800};
constexpr int kFirstOptionsWidth = 400;

std::vector<std::string> LocalFilesOf(const QMimeData& data) {
  std::vector<std::string> paths;
  for (const QUrl& url : data.urls()) {
    if (url.isLocalFile()) paths.push_back(FromQt(url.toLocalFile()));
  }
  return paths;
}

// Returns the project to open for a file: the file itself, or for an application the project next
// to it. Returns an empty string if it is a text to edit.
std::string ProjectOf(FileSystem& files, const std::string& path) {
  const std::string extension = SplitPath(path).extension;
  if (EqualNoCase(extension, ".tprj")) return RealName(files, path);
  return EqualNoCase(extension, ".tapp") ? FindProject(files, FolderOf(path)).path : std::string();
}

// The sign identifies the sender. A line number from a tool's message may have any size, so it is
// clamped.
int LineOf(std::intptr_t number) {
  constexpr std::intptr_t kMost = std::numeric_limits<int>::max();
  return static_cast<int>(std::abs(std::clamp(number, -kMost, kMost)));
}

// On most keyboards Break is Ctrl+Pause, for which the toolkit has no key code.
bool IsBreak(const QKeyEvent& event) {
  constexpr quint32 kBreakSymbol = 0xff6b;
  return event.modifiers().testFlag(Qt::ControlModifier) &&
         (event.key() == Qt::Key_Cancel || event.nativeVirtualKey() == kBreakSymbol);
}

}  // namespace

IdeWindow::IdeWindow(FileSystem& fileSystem)
    : session(std::make_unique<BuildSession>(frame, fileSystem,
                                             HostFolders::FromEnvironment(fileSystem))),
      runner(std::make_unique<CommandRunner>(frame, *session, fileSystem)),
      files(fileSystem),
      dialogs(frame.GetHandle(), this),
      editors(new EditorTabs(fileSystem, this)) {
  setDockNestingEnabled(true);
  // The tree gets the full height because projects are deep; tool output needs width.
  setCorner(Qt::BottomLeftCorner, Qt::LeftDockWidgetArea);
  setCorner(Qt::BottomRightCorner, Qt::BottomDockWidgetArea);
  setTabPosition(Qt::AllDockWidgetAreas, QTabWidget::North);
  setAcceptDrops(true);
  resize(kFirstSize);
  MakeMenuCommands();
  surface = std::make_unique<ServerSurface>(*this, frame, menuCommands);
  surface->onTree = [this](QWidget& tree) { return MakeTreeFilter(tree); };
  AddCentre();
  AddStatusBar();
  AddProblems();
  AddMenus();
  AddOptionsDock();
  FollowBuilds();
  AnswerMessages();
  ShowTitle();
}

// Order of destruction: the server's windows before the docks that contain them, and the options
// window before the server that it queries. A window that is destroyed takes the focus away from
// its fields, which may trigger callbacks.
IdeWindow::~IdeWindow() {
  recovery.reset();
  journal.reset();
  notices.reset();
  project.reset();
  frame.Answer(kMsgPaneCaption, {});
  delete options;
  delete findings;
  runner.reset();
  session.reset();
}

void IdeWindow::MakeMenuCommands() {
  menuCommands.isEnabled = [this](std::uint32_t command) { return runner->IsEnabled(command); };
  menuCommands.run = [this](std::uint32_t command) {
    // This command needs a name, which the options window asks for.
    if (command == TARN_CMD_ADD_CONFIGURATION) return options->AddConfiguration();
    runner->Run(command);
  };
  menuCommands.listTools = [this] { return ReadToolEntries(session->Manager().GetToolCommands()); };
  menuCommands.listConfigurations = [this] { return ListConfigurations(); };
  menuCommands.chooseConfiguration = [this](const std::string& name) {
    options->ChooseConfiguration(ToQt(name));
  };
  menuCommands.pictureFolder = FolderOf(session->GetFolders().ConfigFile(files));
}

// Creates the editors, and the welcome page shown while none is open.
void IdeWindow::AddCentre() {
  const std::string shared = HostFolders::FromEnvironment(files).application;
  auto* const welcome = new WelcomePage(FindExamples(files, shared + "examples"),
                                        ToQt(shared) + "config/resources/", this);
  area = new EditorArea(*editors, *welcome, this);
  setCentralWidget(area);
  project = std::make_unique<ProjectActions>(*this, files, *session, *runner, *editors,
                                             area->ProjectBanner(), area->DamageBanner(),
                                             area->TrustBanner(), area->SaveBanner());
  project->onShowFile = [this](const std::string& path) { OpenFile(path, 0); };
  runner->mayChange = [this] { return project->MayChange(); };
  project->onRecentChanged = [welcome] { welcome->FillRecent(); };
  welcome->onOpen = [this] { project->Choose(); };
  welcome->onNew = [this] { project->New(); };
  welcome->onExample = [this](const Example& example) { project->OpenExample(example); };
  welcome->onRecent = [this](const QString& path) { project->Open(FromQt(path)); };
}

void IdeWindow::AddStatusBar() {
  progress = new StatusProgress(*runner, this);
  progress->onShowLog = [this] { surface->ShowLog(); };
  statusBar()->addWidget(progress, 1);
  notices = std::make_unique<ServerNotices>(frame, files, *statusBar());
  notices->onSelectionChanged = [this] { surface->RefreshToolBars(); };
  notices->askLabel = [this] {
    return session->Manager().GetPropertyValue({}, "General", "Header");
  };
  notices->isBuilding = [this] { return runner->IsBuilding(); };
  notices->openText = [this](const std::string& path) { OpenFile(path, 0); };
  statusBar()->addPermanentWidget(new EditorStatus(*editors, this));
}

// Protects unsaved changes against a crash; journals of crashed windows are offered as soon as the
// message loop runs.
void IdeWindow::AddJournal() {
  const std::string& folder = session->GetFolders().data;
  const std::string root = JoinPath(folder, "journal");
  TakenJournals taken = TakeJournals(files, root);
  journal = std::make_unique<JournalKeeper>(files, root, taken, *session, *editors,
                                            area->JournalBanner());
  journal->onTabsChanged = [this] { project->KeepEditors(); };
  recovery = std::make_unique<CrashRecovery>(*this, files, *project, *editors, *journal,
                                             JoinPath(folder, "rescued"), std::move(taken.left));
  QTimer::singleShot(0, recovery.get(), [this] { recovery->Offer(); });
}

// Creates the objects that navigate from diagnostics and symbols to source lines.
void IdeWindow::AddProblems() {
  const auto open = [this](const std::string& path, int line) { OpenFile(path, line); };
  problems = std::make_unique<ProblemNavigator>(files, *statusBar());
  problems->open = open;
  problemMarks = std::make_unique<ProblemMarks>(problems->GetList(), *editors);
  macros = std::make_unique<EditorMacros>(*session, *editors);
  declarations = std::make_unique<DeclarationSearch>(*editors, *statusBar());
  declarations->askGlobals = [this] { return session->Inspector().GetGlobals({}, {}); };
  declarations->open = open;
  editors->onFollowName = [this] { declarations->Go(); };
}

// The server's menus are added after these.
void IdeWindow::AddMenus() {
  QMenu* const file = menuBar()->addMenu(tr("&File"));
  project->AddOpening(*file);
  file->addSeparator();
  file->addAction(tr("&Save"), QKeySequence::Save, this, [this] { editors->SaveCurrent(); });
  file->addAction(tr("Save &all"), Qt::CTRL | Qt::SHIFT | Qt::Key_S, this,
                  [this] { project->SaveAll(); });
  // Explicit keys, because not all desktops define standard ones for these two.
  file->addAction(tr("&Close file"), this, [this] { editors->CloseCurrent(); })
      ->setShortcuts({Qt::CTRL | Qt::Key_W, Qt::CTRL | Qt::Key_F4});
  file->addSeparator();
  file->addAction(tr("&Quit"), Qt::CTRL | Qt::Key_Q, this, [this] { close(); });
  editMenu = MakeEditMenu(*this, *editors, area->Finder(), *declarations);
  project->AddHistory(*editMenu);
  menuBar()->addMenu(editMenu);
  panes.editor = [this] { return editors->Current(); };
  menuBar()->addMenu(layout.MakeMenu({panes.Actions(), editors->Zoom().MakeActions()}));
}

void IdeWindow::FollowBuilds() {
  runner->onAsked = [this] { OnBuildAsked(); };
  runner->onStarted = [this] { options->SetBuilding(true); };
  runner->onEnded = [this](BuildEnd end) { OnBuildEnded(end); };
  runner->onProjectChanged = [this] { OnProjectChanged(); };
  runner->onOptionsLoaded = [this] { macros->OnOptionsLoaded(); };
  runner->onProjectClosing = [this] { notices->Forget(); };
  // A script's build must not block the window.
  session->Scripts().runBuild = [this](const BuildRequest& request) {
    return runner->RunAndWait(request);
  };
  session->Scripts().awaitBuild = [this] { return runner->AwaitBuild(); };
  dialogs.onAccepted = [this] { QTimer::singleShot(0, this, [this] { runner->FollowStop(); }); };
}

void IdeWindow::AnswerMessages() {
  for (const HostMessage number : {kMsgOpenFileAtLine, kMsgOpenFile}) {
    frame.Answer(number, [this, number](const HostEvent& event) {
      // The message for a node's file contains no position.
      const int line = number == kMsgOpenFileAtLine ? LineOf(event.lParam) : 0;
      // Deferred: the sender is one of the server's windows in the middle of a click.
      QTimer::singleShot(0, this, [this, path = event.text, line] {
        if (line > 0) problems->GoTo(path, line);
        OpenFile(path, line);
      });
      return std::intptr_t{1};
    });
  }
  // The compilers must see the content of the editors, no matter how the build was started.
  frame.Answer(kMsgBuildStarting,
               [this](const HostEvent&) { return std::intptr_t{editors->SaveForBuild() ? 1 : 0}; });
}

bool IdeWindow::Start() {
  if (const Status started = session->Start(); !started) {
    QMessageBox::critical(
        this, tr("Tarn"),
        tr("This installation is incomplete: %1")
            .arg(ToQt(started.GetError().place + ": " + started.GetError().text)));
    return false;
  }
  // Placed after the server's menus.
  QMenu* const navigation = menuBar()->addMenu(tr("&Navigate"));
  problems->AddActions(*navigation);
  session->Manager().GetProjectWindow();
  session->Manager().GetOutputWindow();
  AddFindingsDock(*navigation);
  surface->LoadPopups(files, session->GetFolders().ConfigFile(files));
  layout.Restore();
  AddJournal();
  connect(&refreshTimer, &QTimer::timeout, this, [this] {
    project->Note();
    setWindowModified(project->HasUnsaved());
    options->Look();
    if (runner->IsBuilding()) {
      problemMarks->Refresh();
    } else {
      macros->Follow();
    }
    surface->RefreshToolBars();
  });
  refreshTimer.start(kRefreshMs);
  QApplication::instance()->installEventFilter(this);
  return true;
}

void IdeWindow::OpenPaths(const std::vector<std::string>& paths) {
  QStringList missing;
  for (const std::string& path : paths) {
    if (!QFileInfo(ToQt(path)).isFile()) {
      missing += ToQt(path);
    } else if (const std::string owner = ProjectOf(files, path); !owner.empty()) {
      project->Open(owner);
    } else {
      OpenFile(path, 0);
    }
  }
  if (missing.isEmpty()) return;
  QMessageBox::warning(
      this, tr("Tarn"),
      tr("File not found:\n%1", nullptr, static_cast<int>(missing.size())).arg(missing.join('\n')));
}

void IdeWindow::OnProjectChanged() {
  const std::string path = runner->GetProjectPath();
  problems->SetProject(path);
  problemMarks->SetFolder(FolderOf(path));
  problemMarks->Refresh();
  ShowTitle();
  findings->Clear();
  project->Follow();
  options->OnNodeLoaded();
}

void IdeWindow::OpenFile(const std::string& path, int line) {
  // A tool's message need not name a file.
  if (path.empty()) return;
  const std::string place =
      IsRelativePath(path) ? JoinPath(FolderOf(session->GetProjectPath()), path) : path;
  // With a different spelling the file would be opened in a second editor.
  if (editors->OpenFile(files.NameOnDisk(place), line)) editors->Current()->setFocus();
}

void IdeWindow::changeEvent(QEvent* event) {
  QMainWindow::changeEvent(event);
  if (event->type() == QEvent::ActivationChange && isActiveWindow()) {
    editors->FollowDisk();
    project->Look();
    // Another program may have built as well.
    problemMarks->Refresh();
  }
}

void IdeWindow::dragEnterEvent(QDragEnterEvent* event) {
  if (!LocalFilesOf(*event->mimeData()).empty()) event->acceptProposedAction();
}

// Deferred: the program that the files are dragged from waits for a reply, and opening may ask
// questions.
void IdeWindow::dropEvent(QDropEvent* event) {
  event->acceptProposedAction();
  QTimer::singleShot(0, this, [this, paths = LocalFilesOf(*event->mimeData())] {
    activateWindow();
    OpenPaths(paths);
  });
}

void IdeWindow::closeEvent(QCloseEvent* event) {
  // The user is not asked again about what was agreed before the build was stopped.
  const bool isAgreed =
      std::exchange(isClosing, false) && editors->GetChangeCount() == agreedChanges;
  if (!isAgreed && !editors->MayCloseAll()) {
    event->ignore();
    return;
  }
  // The script's output would no longer be visible.
  if (session->Scripts().IsRunning()) session->Scripts().RequestStop();
  runner->Stop();
  if (!runner->IsBuilding()) {
    layout.Save();
    options->KeepLayout();
    if (project->Leave()) {
      if (journal) journal->End();
      event->accept();
    } else {
      event->ignore();
    }
    return;
  }
  isClosing = true;
  agreedChanges = editors->GetChangeCount();
  progress->Say(tr("Closing once the build has stopped..."));
  event->ignore();
}

bool IdeWindow::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() != QEvent::KeyPress || !isActiveWindow() ||
      !IsBreak(static_cast<const QKeyEvent&>(*event))) {
    return QMainWindow::eventFilter(watched, event);
  }
  menuCommands.run(TARN_CMD_STOP);
  return true;
}

void IdeWindow::AddOptionsDock() {
  options = new OptionsWindow(*session, this);
  layout.onReset = [this] { options->ResetLayout(); };
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

// Hidden until the user starts a check.
void IdeWindow::AddFindingsDock(QMenu& menu) {
  findings = new FindingsPane(*session, files, this);
  findings->isBusy = [this] { return runner->IsBuilding(); };
  findings->onChosen = [this](const Finding& finding) {
    if (finding.hasPlace) {
      session->Inspector().SelectNodeByPlace(finding.place);
    } else if (!finding.file.empty()) {
      OpenFile(finding.file, finding.line);
    }
  };
  auto* const dock = new QDockWidget(tr("Project check"), this);
  dock->setObjectName("dockFindings");
  dock->setWidget(findings);
  surface->AddBottomDock(*dock);
  dock->hide();
  menu.addAction(tr("&Check project"), this, [this, dock] {
    dock->show();
    dock->raise();
    findings->setFocus();
    findings->Start();
  });
}

std::vector<ConfigurationEntry> IdeWindow::ListConfigurations() {
  const ConfigurationList list = options->Configurations();
  std::vector<ConfigurationEntry> entries;
  for (const std::string& name : list.names) {
    entries.push_back({name, EqualNoCase(name, list.current)});
  }
  return entries;
}

void IdeWindow::RenameNode(QWidget& tree) {
  auto* const view = qobject_cast<QTreeView*>(QApplication::focusWidget());
  if (view == nullptr || (view != &tree && !tree.isAncestorOf(view))) return;
  const std::string kind = NodeOptions(*session).GetKind();
  if (kind == "Application" || kind == "Group") {
    QKeyEvent open(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
    QApplication::sendEvent(view, &open);
  } else if (!kind.empty()) {
    statusBar()->showMessage(tr("Only groups and applications can be renamed here; files are shown "
                                "under their names on disk."),
                             kMessageMs);
  }
}

QWidget* IdeWindow::MakeTreeFilter(QWidget& tree) {
  auto* const rename = new QShortcut(Qt::Key_F2, &tree);
  rename->setContext(Qt::WidgetWithChildrenShortcut);
  connect(rename, &QShortcut::activated, this, [this, &tree] { RenameNode(tree); });
  runner->isOccupied = [watched = QPointer<QWidget>(&tree)] {
    const auto* const field = qobject_cast<QLineEdit*>(QApplication::focusWidget());
    return field != nullptr && watched != nullptr && watched->isAncestorOf(field);
  };
  const std::string shared = HostFolders::FromEnvironment(files).application;
  auto* const filter = new TreeFilter(tree, ToQt(shared) + "config/resources/", this);
  filter->askNodes = [this] {
    return IndexTree(session->Inspector().GetTree(),
                     ToQt(AddSeparator(FolderOf(runner->GetProjectPath()))));
  };
  filter->onChosen = [this](const IndexedNode& node) {
    session->Inspector().SelectNodeByPlace(node.place);
  };
  editMenu->addSeparator();
  QAction* const action = editMenu->addAction(tr("Find in pro&ject..."), filter, [filter] {
    if (auto* const dock = qobject_cast<QDockWidget*>(filter->parentWidget())) {
      dock->show();
      dock->raise();
    }
    filter->Begin();
  });
  action->setShortcuts({Qt::CTRL | Qt::Key_P, Qt::CTRL | Qt::SHIFT | Qt::Key_F});
  return filter;
}

void IdeWindow::OnBuildAsked() {
  // A message would cover the progress of the build.
  statusBar()->clearMessage();
  // A value that is still being edited is included in the build, unless it has already started.
  if (runner->IsWaiting()) options->FinishEditing();
  area->ProjectBanner().SetReady(false, tr("The project is being built."));
  progress->Begin(ToQt(FolderOf(session->GetProjectPath())));
}

void IdeWindow::OnBuildEnded(BuildEnd end) {
  options->SetBuilding(false);
  area->ProjectBanner().SetReady(true, {});
  progress->End(end);
  problemMarks->Refresh();
  // A build that was refused has no log.
  const std::string& problem = session->GetLockProblem();
  if (!problem.empty()) statusBar()->showMessage(ToQt(problem));
  project->AskForTrust();
  if (isClosing) close();
}

void IdeWindow::ShowTitle() {
  const QString path = ToQt(runner->GetProjectPath());
  setWindowTitle(path.isEmpty() ? tr("Tarn")
                                : tr("%1[*] - Tarn").arg(QFileInfo(path).completeBaseName()));
}

}  // namespace tarn::host
