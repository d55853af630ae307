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
#include "hosts/core/WizardForm.h"
#include "hosts/desktop/Banner.h"
#include "hosts/desktop/CodeEditor.h"
#include "hosts/desktop/CrashRecovery.h"
#include "hosts/desktop/EditMenu.h"
#include "hosts/desktop/EditorArea.h"
#include "hosts/desktop/EditorMacros.h"
#include "hosts/desktop/EditorStatus.h"
#include "hosts/desktop/Examples.h"
#include "hosts/desktop/FindingsPane.h"
#include "hosts/desktop/JournalManager.h"
#include "hosts/desktop/Mnemonics.h"
#include "hosts/desktop/NewProjectForm.h"
#include "hosts/desktop/OptionsWindow.h"
#include "hosts/desktop/OutputPane.h"
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
constexpr QSize kFirstWindowSize{1280, 800};
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

// Translates the title that the server proposes.
QString TitleOfOptions(const QString& proposed) {
  const QString end = " Local Settings";
  if (!proposed.endsWith(end)) return IdeWindow::tr("Local Settings");
  return IdeWindow::tr("%1 Local Settings").arg(proposed.chopped(end.size()));
}

}  // namespace

IdeWindow::IdeWindow(FileSystem& fileSystem)
    : session_(std::make_unique<BuildSession>(frame_, fileSystem,
                                              HostFolders::FromEnvironment(fileSystem))),
      runner_(std::make_unique<CommandRunner>(frame_, *session_, fileSystem)),
      files_(fileSystem),
      dialogs_(frame_.GetHandle(), this),
      editors_(new EditorTabs(fileSystem, this)) {
  setDockNestingEnabled(true);
  // The tree gets the full height because projects are deep; tool output needs width.
  setCorner(Qt::BottomLeftCorner, Qt::LeftDockWidgetArea);
  setCorner(Qt::BottomRightCorner, Qt::BottomDockWidgetArea);
  setTabPosition(Qt::AllDockWidgetAreas, QTabWidget::North);
  setAcceptDrops(true);
  resize(kFirstWindowSize);
  MakeMenuCommands();
  surface_ = std::make_unique<ServerDocks>(*this, frame_, menuCommands_);
  surface_->onTree = [this](QWidget& tree) { return MakeTreeFilter(tree); };
  AddCentre();
  AddStatusBar();
  AddProblems();
  AddMenus();
  AddOptionsDock();
  FollowBuilds();
  SetHandlers();
  ShowTitle();
}

// Order of destruction: the server's windows before the docks that contain them, and the options
// window before the server that it queries. A window that is destroyed takes the focus away from
// its fields, which may trigger callbacks.
IdeWindow::~IdeWindow() {
  recovery_.reset();
  journal_.reset();
  notices_.reset();
  project_.reset();
  frame_.SetHandler(kMsgPaneCaption, {});
  delete options_;
  delete findings_;
  runner_.reset();
  session_.reset();
}

void IdeWindow::MakeMenuCommands() {
  menuCommands_.isEnabled = [this](std::uint32_t command) { return runner_->IsEnabled(command); };
  menuCommands_.run = [this](std::uint32_t command) {
    // This command needs a name, which the options window asks for.
    if (command == TARN_CMD_ADD_CONFIGURATION) return options_->AddConfiguration();
    if (command == TARN_CMD_NEW_APPLICATION) return project_->NewApplication();
    runner_->Run(command);
  };
  menuCommands_.listTools = [this] {
    return WithoutForeignTools(ReadToolEntries(session_->Manager().GetToolCommands()),
                               session_->Manager().GetPropertyValue({}, "Build", "TranslateTool"));
  };
  menuCommands_.listConfigurations = [this] { return ListConfigurations(); };
  menuCommands_.chooseConfiguration = [this](const std::string& name) {
    options_->ChooseConfiguration(ToQt(name));
  };
  menuCommands_.hostCommands["AddGenerated"] = {[this] { return project_->CanAddGenerated(); },
                                                [this] { project_->AddGenerated(); }};
  menuCommands_.pictureFolder = FolderOf(session_->GetFolders().ConfigFile(files_));
}

// Creates the editors, and the welcome page shown while none is open.
void IdeWindow::AddCentre() {
  const std::string shared = HostFolders::FromEnvironment(files_).application;
  auto* const welcome = new WelcomePage(FindExamples(files_, shared + "examples"),
                                        ToQt(shared) + "config/resources/", this);
  area_ = new EditorArea(*editors_, *welcome, this);
  setCentralWidget(area_);
  project_ = std::make_unique<ProjectActions>(*this, files_, *session_, *runner_, *editors_,
                                              area_->ProjectBanner(), area_->DamageBanner(),
                                              area_->TrustBanner(), area_->SaveBanner());
  project_->onShowFile = [this](const std::string& path) { OpenFile(path, 0); };
  runner_->mayChange = [this] { return project_->MayChange(); };
  project_->onRecentChanged = [welcome] { welcome->FillRecent(); };
  welcome->onOpen = [this] { project_->Choose(); };
  welcome->onNew = [this] { project_->New(); };
  welcome->onExample = [this](const Example& example) { project_->OpenExample(example); };
  welcome->onRecent = [this](const QString& path) { project_->Open(FromQt(path)); };
}

void IdeWindow::AddStatusBar() {
  progress_ = new StatusProgress(*runner_, this);
  progress_->onShowLog = [this] { surface_->ShowLog(); };
  statusBar()->addWidget(progress_, 1);
  notices_ = std::make_unique<ServerNotifications>(frame_, files_, *statusBar());
  notices_->onSelectionChanged = [this] { surface_->RefreshToolBars(); };
  notices_->queryLabel = [this] {
    return session_->Manager().GetPropertyValue({}, "General", "Header");
  };
  notices_->isBuilding = [this] { return runner_->IsBuilding(); };
  notices_->openText = [this](const std::string& path) { OpenFile(path, 0); };
  statusBar()->addPermanentWidget(new EditorStatus(*editors_, this));
}

// Protects unsaved changes against a crash; journals of crashed windows are offered as soon as the
// message loop runs.
void IdeWindow::AddJournal() {
  const std::string& folder = session_->GetFolders().data;
  const std::string root = JoinPath(folder, "journal");
  TakenJournals taken = TakeJournals(files_, root);
  journal_ = std::make_unique<JournalManager>(files_, root, taken, *session_, *editors_,
                                              area_->JournalBanner());
  journal_->onTabsChanged = [this] { project_->KeepEditors(); };
  recovery_ = std::make_unique<CrashRecovery>(*this, files_, *project_, *editors_, *journal_,
                                              JoinPath(folder, "rescued"), std::move(taken.left));
  QTimer::singleShot(0, recovery_.get(), [this] { recovery_->Offer(); });
}

// Creates the objects that navigate from diagnostics and symbols to source lines.
void IdeWindow::AddProblems() {
  const auto open = [this](const std::string& path, int line) { OpenFile(path, line); };
  problems_ = std::make_unique<ProblemNavigator>(files_, *statusBar());
  problems_->open = open;
  problemMarks_ = std::make_unique<DiagnosticMarkers>(problems_->GetList(), *editors_);
  macros_ = std::make_unique<EditorMacros>(*session_, *editors_);
  declarations_ = std::make_unique<DeclarationSearch>(*editors_, *statusBar());
  declarations_->queryGlobals = [this] { return session_->Inspector().GetGlobals({}, {}); };
  declarations_->open = open;
  editors_->onFollowName = [this] { declarations_->Go(); };
}

// The server's menus are added after these.
void IdeWindow::AddMenus() {
  QMenu* const file = menuBar()->addMenu(tr("&File"));
  project_->AddOpening(*file);
  file->addSeparator();
  file->addAction(tr("&Save"), QKeySequence::Save, this, [this] { editors_->SaveCurrent(); });
  file->addAction(tr("Save &all"), Qt::CTRL | Qt::SHIFT | Qt::Key_S, this,
                  [this] { project_->SaveAll(); });
  // Explicit keys, because not all desktops define standard ones for these two.
  file->addAction(tr("&Close file"), this, [this] { editors_->CloseCurrent(); })
      ->setShortcuts({Qt::CTRL | Qt::Key_W, Qt::CTRL | Qt::Key_F4});
  file->addSeparator();
  file->addAction(tr("&Quit"), Qt::CTRL | Qt::Key_Q, this, [this] { close(); });
  editMenu_ = MakeEditMenu(*this, *editors_, area_->Finder(), *declarations_);
  project_->AddHistory(*editMenu_);
  menuBar()->addMenu(editMenu_);
  panes_.editor = [this] { return editors_->Current(); };
  menuBar()->addMenu(layout_.MakeMenu({panes_.Actions(), editors_->Zoom().MakeActions()}));
}

void IdeWindow::FollowBuilds() {
  runner_->onAsked = [this] { OnBuildAsked(); };
  runner_->onStarted = [this] { options_->SetBuilding(true); };
  runner_->onEnded = [this](BuildEnd end) { OnBuildEnded(end); };
  runner_->onProjectChanged = [this] { OnProjectChanged(); };
  runner_->onOptionsLoaded = [this] { macros_->OnOptionsLoaded(); };
  runner_->onProjectClosing = [this] { notices_->Clear(); };
  // A script's build must not block the window.
  session_->Scripts().runBuild = [this](const BuildRequest& request) {
    return runner_->RunAndWait(request);
  };
  session_->Scripts().awaitBuild = [this] { return runner_->AwaitBuild(); };
  dialogs_.findProblem = [this](const CPropertySheet& sheet) {
    return NewProjectForm::FindProblem(sheet, files_, session_->Tools().ListTools());
  };
  dialogs_.onSheet = [this](const CPropertySheet& sheet, QDialog& dialog) {
    const std::string shared = session_->GetFolders().application;
    NewProjectForm::Extend(sheet, dialog, ToQt(shared) + "config/resources/",
                           project_->GetFolderForNew());
  };
  dialogs_.onAccepted = [this] { QTimer::singleShot(0, this, [this] { runner_->FollowStop(); }); };
}

void IdeWindow::SetHandlers() {
  for (const HostMessage number : {kMsgOpenFileAtLine, kMsgOpenFile}) {
    frame_.SetHandler(number, [this, number](const HostMessageEvent& event) {
      // The message for a node's file contains no position.
      const int line = number == kMsgOpenFileAtLine ? LineOf(event.lParam) : 0;
      // Deferred: the sender is one of the server's windows in the middle of a click.
      QTimer::singleShot(0, this, [this, path = event.text, line] {
        if (line > 0) problems_->GoTo(path, line);
        OpenFile(path, line);
      });
      return std::intptr_t{1};
    });
  }
  // The compilers must see the content of the editors, no matter how the build was started.
  frame_.SetHandler(kMsgBuildStarting, [this](const HostMessageEvent&) {
    return std::intptr_t{editors_->SaveForBuild() ? 1 : 0};
  });
}

bool IdeWindow::Start() {
  if (const Status started = session_->Start(); !started) {
    const QString fault = ToQt(started.GetError().place + ": " + started.GetError().text);
    QMessageBox::critical(this, tr("Tarn"),
                          session_->IsOwnDefinition(started.GetError())
                              ? tr("A definition has to be corrected: %1").arg(fault)
                              : tr("This installation is incomplete: %1").arg(fault));
    return false;
  }
  session_->SetLimits({});
  // Placed after the server's menus.
  QMenu* const navigation = menuBar()->addMenu(tr("&Navigate"));
  problems_->AddActions(*navigation);
  session_->Manager().GetProjectWindow();
  session_->Manager().GetOutputWindow();
  AddFindingsDock(*navigation);
  AddOutputDock();
  for (const QAction* each : menuBar()->actions()) KeepMnemonics(*each->menu());
  surface_->LoadPopups(files_, session_->GetFolders().ConfigFile(files_));
  layout_.Restore();
  layout_.HidePanes();
  project_->ProposeFolder();
  AddJournal();
  connect(&refreshTimer_, &QTimer::timeout, this, [this] {
    project_->Note();
    setWindowModified(project_->HasUnsaved());
    options_->Poll();
    if (runner_->IsBuilding()) {
      problemMarks_->Refresh();
    } else {
      macros_->Follow();
    }
    surface_->RefreshToolBars();
  });
  refreshTimer_.start(kRefreshMs);
  QApplication::instance()->installEventFilter(this);
  return true;
}

void IdeWindow::OpenPaths(const std::vector<std::string>& paths) {
  QStringList missing;
  for (const std::string& path : paths) {
    if (!QFileInfo(ToQt(path)).isFile()) {
      missing += ToQt(path);
    } else if (const std::string owner = ProjectOf(files_, path); !owner.empty()) {
      project_->Open(owner);
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
  const std::string path = runner_->GetProjectPath();
  problems_->SetProject(path);
  problemMarks_->SetFolder(FolderOf(path));
  problemMarks_->Refresh();
  ShowTitle();
  findings_->Clear();
  project_->Follow();
  options_->OnNodeLoaded();
  if (!path.empty()) return layout_.ShowPanes();
  notices_->Clear();  // of the placeholder project
  // Deferred, because another project may be opened next.
  QTimer::singleShot(0, this, [this] {
    if (runner_->GetProjectPath().empty()) layout_.HidePanes();
  });
}

void IdeWindow::OpenFile(const std::string& path, int line) {
  // A tool's message need not name a file.
  if (path.empty()) return;
  const std::string place =
      IsRelativePath(path) ? JoinPath(FolderOf(session_->GetProjectPath()), path) : path;
  // With a different spelling the file would be opened in a second editor.
  if (editors_->OpenFile(files_.NameOnDisk(place), line)) editors_->Current()->setFocus();
}

void IdeWindow::changeEvent(QEvent* event) {
  QMainWindow::changeEvent(event);
  if (event->type() == QEvent::ActivationChange && isActiveWindow()) {
    editors_->FollowDisk();
    project_->Poll();
    // Another program may have built as well.
    problemMarks_->Refresh();
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
      std::exchange(isClosing_, false) && editors_->GetChangeCount() == agreedChanges_;
  if (!isAgreed && !editors_->MayCloseAll()) {
    event->ignore();
    return;
  }
  // The script's output would no longer be visible.
  if (session_->Scripts().IsRunning()) session_->Scripts().RequestStop();
  runner_->Stop();
  if (!runner_->IsBuilding()) {
    layout_.Save();
    options_->KeepLayout();
    if (project_->Leave()) {
      if (journal_) journal_->End();
      event->accept();
    } else {
      event->ignore();
    }
    return;
  }
  isClosing_ = true;
  agreedChanges_ = editors_->GetChangeCount();
  progress_->Say(tr("Closing once the build has stopped..."));
  event->ignore();
}

bool IdeWindow::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() != QEvent::KeyPress || !isActiveWindow() ||
      !IsBreak(static_cast<const QKeyEvent&>(*event))) {
    return QMainWindow::eventFilter(watched, event);
  }
  menuCommands_.run(TARN_CMD_STOP);
  return true;
}

void IdeWindow::AddOptionsDock() {
  options_ = new OptionsWindow(*session_, this);
  layout_.onReset = [this] { options_->ResetLayout(); };
  auto* const dock = new QDockWidget(tr("Options"), this);
  dock->setObjectName(QString("dock%1").arg(kOptionsPane));
  dock->setWidget(options_);
  addDockWidget(Qt::RightDockWidgetArea, dock);
  resizeDocks({dock}, {kFirstOptionsWidth}, Qt::Horizontal);
  frame_.SetHandler(kMsgPaneCaption, [this, dock](const HostMessageEvent& event) {
    if (event.lParam != kOptionsPane) return std::intptr_t{1};
    dock->setWindowTitle(TitleOfOptions(ToQt(event.text)));
    dock->toggleViewAction()->setText(tr("Options"));
    options_->OnNodeLoaded();
    return std::intptr_t{1};
  });
  runner_->onShowOptions = [this, dock] {
    dock->show();
    dock->raise();
    options_->setFocus();
  };
}

// Hidden until the user starts a check.
void IdeWindow::AddFindingsDock(QMenu& menu) {
  findings_ = new FindingsPane(*session_, files_, this);
  findings_->isBusy = [this] { return runner_->IsBuilding(); };
  findings_->onChosen = [this](const Finding& finding) {
    if (finding.hasPlace) {
      session_->Inspector().SelectNodeByPlace(finding.place);
    } else if (!finding.file.empty()) {
      OpenFile(finding.file, finding.line);
    }
  };
  auto* const dock = new QDockWidget(tr("Project check"), this);
  dock->setObjectName("dockFindings");
  dock->setWidget(findings_);
  surface_->AddBottomDock(*dock);
  dock->hide();
  menu.addAction(tr("&Check project"), this, [this, dock] {
    dock->show();
    dock->raise();
    findings_->setFocus();
    findings_->Start();
  });
}

// Hidden until an action prints something.
void IdeWindow::AddOutputDock() {
  output_ = new OutputPane(this);
  auto* const dock = new QDockWidget(tr("Program output"), this);
  dock->setObjectName("dockOutput");
  dock->setWidget(output_);
  surface_->AddBottomDock(*dock);
  dock->hide();
  output_->onFirst = [dock] {
    dock->show();
    dock->raise();
  };
  runner_->onOutput = [this](const std::string& text) { output_->Add(text); };
  runner_->queryToolTitle = [this](std::uint32_t command) {
    for (const ToolEntry& each : menuCommands_.listTools()) {
      if (each.command == command) return each.name;
    }
    return std::string();
  };
}

std::vector<ConfigurationEntry> IdeWindow::ListConfigurations() {
  const ConfigurationList list = options_->Configurations();
  std::vector<ConfigurationEntry> entries;
  for (const std::string& name : list.names) {
    entries.push_back({name, EqualNoCase(name, list.current)});
  }
  return entries;
}

void IdeWindow::RenameNode(QWidget& tree) {
  auto* const view = qobject_cast<QTreeView*>(QApplication::focusWidget());
  if (view == nullptr || (view != &tree && !tree.isAncestorOf(view))) return;
  const std::string kind = NodeOptions(*session_).GetKind();
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
  runner_->isOccupied = [watched = QPointer<QWidget>(&tree)] {
    const auto* const field = qobject_cast<QLineEdit*>(QApplication::focusWidget());
    return field != nullptr && watched != nullptr && watched->isAncestorOf(field);
  };
  const std::string shared = HostFolders::FromEnvironment(files_).application;
  auto* const filter = new TreeFilter(tree, ToQt(shared) + "config/resources/", this);
  filter->queryNodes = [this] {
    return IndexTree(session_->Inspector().GetTree(),
                     ToQt(AddSeparator(FolderOf(runner_->GetProjectPath()))));
  };
  filter->onChosen = [this](const IndexedNode& node) {
    session_->Inspector().SelectNodeByPlace(node.place);
  };
  editMenu_->addSeparator();
  QAction* const action = editMenu_->addAction(tr("Find in pro&ject..."), filter, [filter] {
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
  output_->Begin();
  // The output of an action would cover the messages of the build.
  if (runner_->GetToolTitle().empty() && output_->isVisible()) surface_->RaiseLog();
  // A value that is still being edited is included in the build, unless it has already started.
  if (runner_->IsWaiting()) options_->FinishEditing();
  area_->ProjectBanner().SetReady(false, tr("The project is being built."));
  progress_->Begin(ToQt(FolderOf(session_->GetProjectPath())));
}

void IdeWindow::OnBuildEnded(BuildEnd end) {
  options_->SetBuilding(false);
  area_->ProjectBanner().SetReady(true, {});
  progress_->End(end);
  problemMarks_->Refresh();
  // A build that was refused has no log.
  const std::string& problem = session_->GetLockProblem();
  if (!problem.empty()) statusBar()->showMessage(ToQt(problem));
  project_->RequestTrust();
  if (isClosing_) close();
}

void IdeWindow::ShowTitle() {
  const QString path = ToQt(runner_->GetProjectPath());
  setWindowTitle(path.isEmpty() ? tr("Tarn")
                                : tr("%1[*] - Tarn").arg(QFileInfo(path).completeBaseName()));
}

}  // namespace tarn::host
