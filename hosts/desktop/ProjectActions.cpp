#include "hosts/desktop/ProjectActions.h"

#include <tarn/commands.h>

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QScopedValueRollback>
#include <QStandardPaths>
#include <QTimer>
#include <algorithm>

#include "hosts/core/FileTypes.h"
#include "hosts/core/FirstSource.h"
#include "hosts/core/GeneratedSource.h"
#include "hosts/core/ProjectTree.h"
#include "hosts/desktop/Banner.h"
#include "hosts/desktop/ChangeTexts.h"
#include "hosts/desktop/EditRight.h"
#include "hosts/desktop/EditorTabs.h"
#include "hosts/desktop/Examples.h"
#include "hosts/desktop/GeneratorDialog.h"
#include "hosts/desktop/RecentMenu.h"
#include "hosts/desktop/RecentProjects.h"
#include "hosts/desktop/RelocateDialog.h"
#include "platform/files/KeptCopy.h"
#include "platform/paths/Paths.h"
#include "widgets/qt/QtText.h"

namespace tarn::host {

namespace {

void Warn(QWidget& window, const QString& text, const std::string& reason) {
  QMessageBox::warning(&window, QCoreApplication::translate("ProjectActions", "Tarn"),
                       reason.empty() ? text : text + "\n\n" + ToQt(reason));
}

// Shows an error text below the file that it refers to.
void Warn(QWidget& window, const Error& error) {
  if (error.place.empty()) {
    Warn(window, ToQt(error.text), {});
  } else {
    Warn(window, ToQt(error.place), error.text);
  }
}

// Returns the menu text of the next step; an empty string if there is none.
QString TextOfStep(const std::deque<ProjectStep>& steps) {
  if (steps.empty()) return {};
  return ChangeText(SummarizeChanges(steps.back().changes)).replace(u'&', QStringLiteral("&&"));
}

// Fails if a file that the changes would add already exists with a different content: without a
// common base the two can't be merged.
Status CheckNewFiles(const std::vector<FileText>& present, const FileChanges& changes) {
  std::string problems;
  for (const FileChange& each : changes) {
    if (each.before) continue;
    const bool isOther = std::ranges::any_of(present, [&each](const FileText& file) {
      return file.path == each.path && file.text != each.after;
    });
    if (!isOther) continue;
    problems.append(problems.empty() ? "" : "\n").append(each.path + " has changed since");
  }
  if (problems.empty()) return {};
  return Error{ErrorCode::Changed, std::move(problems), {}};
}

}  // namespace

ProjectActions::ProjectActions(QWidget& parentWindow, FileSystem& fileSystem,
                               BuildSession& buildSession, CommandRunner& commandRunner,
                               EditorTabs& editorTabs, Banner& projectBanner, Banner& damageBanner,
                               Banner& trustBanner, Banner& saveBanner)
    : window_(parentWindow),
      files_(fileSystem),
      session_(buildSession),
      runner_(commandRunner),
      editors_(editorTabs),
      banner_(projectBanner),
      damage_(parentWindow, buildSession, damageBanner),
      trust_(parentWindow, buildSession, trustBanner),
      saves_(parentWindow, saveBanner),
      history_(
          buildSession.Inspector(), [this](const FileChanges& changes) { return Apply(changes); },
          [this] { return runner_.IsBuilding(); }),
      watch_(fileSystem, this) {
  saves_.onShowFile = [this](const std::string& path) {
    if (onShowFile) onShowFile(path);
  };
  trust_.onTrusted = [this] { runner_.Repeat(); };
  banner_.onFirst = [this] { Reload(); };
  banner_.onSecond = [this] {
    watch_.Follow(editorsProject_);
    banner_.hide();
  };
  watch_.onChanged = [this] {
    banner_.Tell(tr("The project's files have been changed by another program."));
  };
}

void ProjectActions::Open(const std::string& path) {
  if (session_.HasProject() &&
      QFileInfo(ToQt(path)) == QFileInfo(ToQt(session_.GetProjectPath()))) {
    return;
  }
  if (!IsFree() || !editors_.MayCloseAll() || !MayClose()) return;
  KeepEditors();
  const QScopedValueRollback<bool> asked(isDiscarding_, true);
  Load(path);
}

bool ProjectActions::MayReplaceWith(const std::string& path) {
  const std::string present = runner_.GetProjectPath();
  if (!IsFree()) return false;
  if (path == present || !HasUnsaved()) return true;
  if (session_.IsDamageHeld()) return MayClose();
  const auto answer = QMessageBox::question(
      &window_, tr("Tarn"),
      tr("%1 must be closed first. Save its changes?").arg(ToQt(FileNameOf(present))),
      QMessageBox::Save | QMessageBox::Cancel, QMessageBox::Cancel);
  return answer == QMessageBox::Save;
}

Status ProjectActions::Restore(const std::string& path, const std::vector<FileText>& texts,
                               const std::vector<FileText>& bases) {
  const FileChanges changes = FindChanges(bases, texts);
  Status made;
  if (path != runner_.GetProjectPath()) {
    KeepEditors();
    made = runner_.Open(path);
    ShowUnsaved(session_.TakeSaveReport());
  }
  if (texts.empty()) return made;
  if (made) made = CheckNewFiles(history_.GetFiles(), changes);
  if (made) made = history_.Change(changes);
  // Nothing else is unsaved, so conflicting changes can be staged for the next save to merge.
  if (made || HasUnsaved()) return made;
  made = OpenStaged(path, texts, bases);
  if (made) history_.Add(changes);
  return made;
}

// Opens the project with these texts in place of its files, which are not modified.
Status ProjectActions::OpenStaged(const std::string& path, const std::vector<FileText>& texts,
                                  const std::vector<FileText>& bases) {
  const Status opened = runner_.OpenWithChanges(path, JoinFileTexts(texts), JoinFileTexts(bases));
  if (!opened) return opened;
  watch_.Expect(bases);
  return {};
}

bool ProjectActions::IsFree() {
  if (!runner_.IsBuilding()) return true;
  QMessageBox::information(&window_, tr("Tarn"),
                           tr("You can open another project once the build has finished."));
  return false;
}

bool ProjectActions::Load(const std::string& path) {
  Status opened = runner_.Open(path);
  SaveReport report = session_.TakeSaveReport();
  // The present project could not be closed.
  while (!opened && !report.problems.empty() && HasUnsaved()) {
    if (!MayDropUnsaved(report)) return false;
    opened = runner_.Open(path);
    report = session_.TakeSaveReport();
  }
  ShowUnsaved(report);
  if (opened) return true;
  if (OffersToRelocate(path, opened.GetError().text)) return true;
  if (files_.Exists(path)) return false;
  RecentProjects::Remove(ToQt(path));
  if (onRecentChanged) onRecentChanged();
  return false;
}

void ProjectActions::Choose() {
  const QString last = RecentProjects::List().value(0);
  const QString chosen = QFileDialog::getOpenFileName(
      &window_, tr("Open project"), last.isEmpty() ? QDir::homePath() : QFileInfo(last).path(),
      tr("Projects (*.tprj)"));
  if (!chosen.isEmpty()) Open(FromQt(chosen));
}

// Shows why a project can't be opened. If an application file is missing, offers to locate it.
// Returns true if it was found and the project is open with the correction, which is not saved yet.
bool ProjectActions::OffersToRelocate(const std::string& path, const std::string& reason) {
  const QString text = tr("%1 can't be opened.").arg(ToQt(path));
  Relocation moves(files_, path);
  if (!moves.MissesApplication()) {
    Warn(window_, text, reason);
    return false;
  }
  QMessageBox box(QMessageBox::Warning, tr("Tarn"), text + "\n\n" + ToQt(reason),
                  QMessageBox::Close, &window_);
  const QPushButton* const find =
      box.addButton(tr("&Find moved files..."), QMessageBox::ActionRole);
  box.exec();
  if (box.clickedButton() != find) return false;
  RelocateDialog dialog(moves, FolderOf(path), &window_);
  if (dialog.exec() != QDialog::Accepted) return false;
  std::vector<FileText> bases;
  for (const FileText& each : dialog.GetTexts()) {
    if (auto disk = files_.ReadWholeFile(each.path)) bases.push_back({each.path, std::move(*disk)});
  }
  if (OpenStaged(path, dialog.GetTexts(), bases)) {
    // Before this step, the project had no file at the application's new path.
    std::erase_if(bases, [&moves](const FileText& base) {
      return std::ranges::any_of(moves.GetFound(), [&base](const MovedPath& each) {
        return each.kind == MovedPath::Kind::Application && each.newPath == base.path;
      });
    });
    history_.Add(FindChanges(bases, dialog.GetTexts()));
    return true;
  }
  // Something else is still missing. Write the corrections, so that they needn't be made again.
  const Status written = files_.WriteFiles(AsBytes(dialog.GetTexts()));
  if (!written) Warn(window_, written.GetError());
  return written && Load(path);
}

void ProjectActions::Relocate() {
  const std::string path = runner_.GetProjectPath();
  if (path.empty() || runner_.IsBuilding() || !damage_.MayGoOn()) return;
  history_.Note();
  Relocation moves(files_, path);
  moves.SetTexts(history_.GetFiles());
  RelocateDialog dialog(moves, FolderOf(path), &window_);
  if (dialog.exec() != QDialog::Accepted || runner_.IsBuilding()) return;
  const FileChanges changes = FindChanges(history_.GetFiles(), moves.Complete(dialog.GetTexts()));
  if (const Status done = history_.Change(changes); !done) Warn(window_, done.GetError());
}

// The server's own operation would close the open project before the wizard is shown.
void ProjectActions::New() {
  if (!IsFree() || !MayClose()) return;
  const std::string before = runner_.GetProjectPath();
  if (!before.empty()) {
    const QScopedValueRollback<bool> wanted(isNewWanted_, true);
    RunWizard([this] { session_.Manager().Command(TARN_CMD_NEW_APPLICATION); });
    if (session_.HasProject()) return;
    // The new project could not be opened after the other was closed. Deferred until after the
    // notification of that, so that unsaved texts are kept.
    QTimer::singleShot(0, this, [this, before] { Load(before); });
  } else if (session_.Manager().ProjectNew() != 0) {
    RecentProjects::RecordNew(session_.GetProjectPath());
    CompleteNew({});
  }
}

std::string ProjectActions::GetFolderForNew() const {
  return isNewWanted_ ? FromQt(RecentProjects::GetNewFolder()) : std::string();
}

// Adds a first source to the applications that are new, and saves the project, deferred until after
// the notification of the new one. `known` are the paths of those that are not new.
void ProjectActions::CompleteNew(const std::vector<std::string>& known) {
  QTimer::singleShot(0, this, [this, known] {
    session_.Inspector().PublishAll();  // makes paths absolute
    std::string source;
    for (const ApplicationEntry& each : ListApplications(session_.Inspector())) {
      if (std::ranges::find(known, each.path) != known.end()) continue;
      const Result<std::string> added = AddFirstSource(session_, files_, each.path);
      if (!added) Warn(window_, added.GetError());
      if (added) source = *added;
    }
    SaveAll();
    if (!source.empty() && onShowFile) onShowFile(source);
  });
}

void ProjectActions::NewApplication() {
  RunWizard([this] { runner_.Run(TARN_CMD_NEW_APPLICATION); });
}

// Completes what the wizard that `run` shows has created.
void ProjectActions::RunWizard(const std::function<void()>& run) {
  const std::string before = runner_.GetProjectPath();
  std::vector<std::string> known;
  session_.Inspector().PublishAll();  // makes paths absolute
  for (const ApplicationEntry& each : ListApplications(session_.Inspector())) {
    known.push_back(each.path);
  }
  run();
  if (!session_.HasProject()) return;
  session_.Inspector().PublishAll();
  const auto now = ListApplications(session_.Inspector());
  const bool isAny = std::ranges::any_of(now, [&known](const ApplicationEntry& each) {
    return std::ranges::find(known, each.path) == known.end();
  });
  if (!isAny) return;
  if (session_.GetProjectPath() != before) RecentProjects::RecordNew(session_.GetProjectPath());
  CompleteNew(known);
}

// Returns the folder in which the user probably wants a new file: that of the current file, else
// `src` next to the project, if there is one.
QString ProjectActions::GetFileFolder() {
  const std::string project = runner_.GetProjectPath();
  if (project.empty()) return QDir::homePath();
  const std::string current = session_.Manager().GetPropertyValue({}, "General", "NodeDir");
  if (!current.empty() && files_.IsFolder(current)) return ToQt(current);
  const std::string sources = JoinPath(FolderOf(project), "src");
  return ToQt(files_.IsFolder(sources) ? sources : FolderOf(project));
}

// Returns the path of the file to create; an empty string if the user cancels.
QString ProjectActions::AskForNewFile(const QString& folder) {
  QFileDialog dialog(&window_, tr("New file"), folder);
  dialog.setAcceptMode(QFileDialog::AcceptSave);
  dialog.setFileMode(QFileDialog::AnyFile);
  dialog.setOption(QFileDialog::DontConfirmOverwrite);
  dialog.setLabelText(QFileDialog::Accept, tr("&Create"));
  return dialog.exec() == QDialog::Accepted ? dialog.selectedFiles().value(0) : QString();
}

void ProjectActions::NewFile() {
  const std::string project = runner_.GetProjectPath();
  const QString chosen = AskForNewFile(GetFileFolder());
  if (chosen.isEmpty()) return;
  const std::string path = FromQt(chosen);
  const Result<bool> exists = files_.CheckExists(path);
  if (!exists) return Warn(window_, exists.GetError());
  // An existing file is added as it is.
  if (!*exists) {
    if (const Status made = files_.WriteOwnFile(path, {}); !made) {
      return Warn(window_, Error{made.GetError().code, made.GetError().text, path});
    }
  }
  const bool mayAdd = !project.empty() && !runner_.IsBuilding() && damage_.MayGoOn();
  if (mayAdd && session_.Manager().AddExistingItem(path) == 0) {
    // The project itself contains no files.
    session_.Inspector().SelectApplication(session_.Manager().GetSelectedApplication());
    session_.Manager().AddExistingItem(path);
  }
  if (onShowFile) onShowFile(path);
}

bool ProjectActions::CanAddGenerated() {
  return !runner_.GetProjectPath().empty() && !runner_.IsBuilding() &&
         !ListApplications(session_.Inspector()).empty();
}

void ProjectActions::AddGenerated() {
  if (!CanAddGenerated() || !damage_.MayGoOn()) return;
  NewGenerator generator(session_, files_);
  FileTypes types(files_, session_.GetFolders().ConfigFile(files_));
  GeneratorDialog dialog(generator, types, &window_);
  if (dialog.exec() != QDialog::Accepted || runner_.IsBuilding()) return;
  if (const std::string why = generator.Add(dialog.GetRequest()); !why.empty()) {
    Warn(window_, ToQt(why), {});
  }
}

void ProjectActions::ProposeFolder() {
  session_.Inspector().SetNewProjectFolder(FromQt(RecentProjects::GetNewFolder()));
}

void ProjectActions::OpenExample(const Example& example) {
  if (!IsFree()) return;
  const QString folder = QFileDialog::getExistingDirectory(
      &window_, tr("Choose a folder for the copy of %1").arg(ToQt(example.name)), QDir::homePath());
  if (folder.isEmpty()) return;
  const Result<std::string> copied = CopyExample(files_, example, FromQt(folder));
  if (copied) {
    Open(*copied);
    return;
  }
  QMessageBox::warning(&window_, tr("Tarn"),
                       tr("%1 can't be copied: %2")
                           .arg(ToQt(copied.GetError().place), ToQt(copied.GetError().text)));
}

void ProjectActions::SaveAll() {
  // A text that can't be saved is reported and doesn't prevent saving the others.
  static_cast<void>(editors_.SaveAll());
  if (!HasUnsaved() || !damage_.MayGoOn()) return;
  history_.Note();
  session_.TakeLogLines();
  runner_.SaveProject();
  const SaveReport report = session_.TakeSaveReport();
  saves_.Show(report);
  ShowUnsaved(report);
}

bool ProjectActions::Leave() {
  if (!MayClose()) return false;
  KeepEditors();
  session_.TakeLogLines();
  if (!session_.HasProject()) return true;
  while (session_.Manager().ProjectClose() == 0) {
    const SaveReport report = session_.TakeSaveReport();
    if (report.problems.empty() || !MayDropUnsaved(report)) return false;
  }
  const SaveReport report = session_.TakeSaveReport();
  ShowUnsaved(report);
  saves_.ShowConflictsNow(report);
  return true;
}

// Asks the user about changes that could not be written anywhere. Returns true if they have been
// dropped, possibly after copies of the files were saved in a folder.
bool ProjectActions::MayDropUnsaved(const SaveReport& report) {
  std::string text;
  for (const std::string& line : report.problems) text += "\n" + line;
  QMessageBox box(QMessageBox::Warning, tr("Tarn"),
                  tr("The project's changes could not be saved.") + "\n" + ToQt(text),
                  QMessageBox::Discard | QMessageBox::Cancel, &window_);
  box.setObjectName("unsaved");
  const QPushButton* const save = box.addButton(tr("&Save copies..."), QMessageBox::ActionRole);
  box.setDefaultButton(QMessageBox::Cancel);
  const int answer = box.exec();
  const bool isDropped =
      box.clickedButton() == save ? SaveCopies() : answer == QMessageBox::Discard;
  if (isDropped) session_.Inspector().DropChanges();
  return isDropped;
}

// Saves copies of the project's files, as they would be written, in a folder that the user chooses.
bool ProjectActions::SaveCopies() {
  const QString folder = QFileDialog::getExistingDirectory(
      &window_, tr("Folder for the copies"),
      QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation));
  if (folder.isEmpty()) return false;
  for (const FileText& each : ReadProjectFiles(session_.Inspector())) {
    std::string copy = JoinPath(FromQt(folder), FileNameOf(each.path));
    if (const Status kept = KeepCopy(files_, copy, each.text, ".unsaved", copy); !kept) {
      Warn(window_, ToQt(copy), kept.GetError().text);
      return false;
    }
  }
  return true;
}

// The server reports nothing when it saves; its log names the backups of what couldn't be saved.
void ProjectActions::ShowUnsaved(const SaveReport& report) {
  std::string reasons;
  for (const std::string& line : report.problems) {
    reasons.append(reasons.empty() ? "" : "\n") += line;
  }
  if (!reasons.empty()) {
    Warn(window_, tr("The project's changes could not be saved."), reasons);
  }
}

void ProjectActions::AddOpening(QMenu& menu) {
  menu.addAction(tr("&New project..."), QKeySequence::New, this, [this] { New(); });
  menu.addAction(tr("New &file..."), this, [this] { NewFile(); });
  menu.addAction(tr("&Open project..."), QKeySequence::Open, this, [this] { Choose(); });
  QMenu* const recent =
      MakeRecentMenu(window_, [this](const QString& path) { Open(FromQt(path)); });
  menu.addMenu(recent);
  QAction* const relocate =
      menu.addAction(tr("Find &moved files..."), this, [this] { Relocate(); });
  connect(&menu, &QMenu::aboutToShow, this, [this, relocate] {
    relocate->setEnabled(!runner_.GetProjectPath().empty() && !runner_.IsBuilding());
  });
  const auto tell = [this] {
    if (onRecentChanged) onRecentChanged();
  };
  // Queued, because the entry that clears the list processes its click after this signal.
  connect(recent, &QMenu::triggered, this, tell, Qt::QueuedConnection);
}

void ProjectActions::AddHistory(QMenu& menu) {
  menu.addSeparator();
  QAction* const undo = menu.addAction(tr("Undo project change"), Qt::CTRL | Qt::ALT | Qt::Key_Z,
                                       this, [this] { Go(&ProjectHistory::Undo); });
  QAction* const redo =
      menu.addAction(tr("Redo project change"), Qt::CTRL | Qt::ALT | Qt::SHIFT | Qt::Key_Z, this,
                     [this] { Go(&ProjectHistory::Redo); });
  undo->setObjectName("undoProject");
  redo->setObjectName("redoProject");
  connect(&menu, &QMenu::aboutToShow, this, [this, undo, redo] {
    history_.Note();
    undo->setEnabled(history_.CanUndo());
    redo->setEnabled(history_.CanRedo());
    const QString back = TextOfStep(history_.GetUndoSteps());
    const QString on = TextOfStep(history_.GetRedoSteps());
    undo->setText(back.isEmpty() ? tr("Undo project change") : tr("Undo: %1").arg(back));
    redo->setText(on.isEmpty() ? tr("Redo project change") : tr("Redo: %1").arg(on));
  });
  // Otherwise the shortcuts would stay disabled after having been disabled once.
  connect(&menu, &QMenu::aboutToHide, this, [undo, redo] {
    undo->setEnabled(true);
    redo->setEnabled(true);
  });
}

void ProjectActions::Follow() {
  const std::string path = runner_.GetProjectPath();
  // Its files are the same.
  if (isApplying_) return;
  // Commands of the server create projects as well.
  ProposeFolder();
  banner_.hide();
  damage_.Follow();
  saves_.Show(session_.TakeSaveReport());
  watch_.Follow(path);
  // The steps are kept: undo merges with changes that another program has made since.
  history_.Refresh();
  if (path == editorsProject_) return;
  trust_.FollowProject();
  history_.Clear();
  KeepEditors();
  // Unsaved texts stay open, unless the user has agreed to discard them.
  editors_.CloseAll(!isDiscarding_);
  editorsProject_ = path;
  if (path.empty()) return;
  RecentProjects::Note(path);
  if (onRecentChanged) onRecentChanged();
  editors_.Restore(RecentProjects::EditorsOf(path));
}

void ProjectActions::Note() {
  if (history_.Note()) watch_.Include(history_.GetFiles());
}

bool ProjectActions::HasUnsaved() {
  return !runner_.GetProjectPath().empty() && session_.Inspector().IsModified() != 0;
}

void ProjectActions::KeepEditors() {
  if (!editorsProject_.empty()) RecentProjects::KeepEditors(editorsProject_, editors_.Describe());
}

void ProjectActions::Reload() {
  if (runner_.IsBuilding()) return;
  if (HasUnsaved()) {
    const auto answer = QMessageBox::question(
        &window_, tr("Tarn"),
        tr("The project has unsaved changes.\n\nSaving merges them with the other program's "
           "changes."),
        QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel, QMessageBox::Save);
    if (answer == QMessageBox::Save) SaveAll();
    if (answer != QMessageBox::Discard) return;
  }
  if (const Status taken = TakeFromDisk(); !taken) Warn(window_, taken.GetError());
}

Status ProjectActions::TakeFromDisk() {
  const EditRight right(session_, runner_.GetProjectPath());
  if (!right.GetProblem().empty()) return Error{ErrorCode::NotAFile, right.GetProblem(), {}};
  if (!right.IsTaken()) {
    return Error{ErrorCode::Busy, FromQt(tr("Another program is changing the project.")), {}};
  }
  const bool hadUnsaved = HasUnsaved();
  session_.Inspector().DropChanges();
  Status taken = runner_.ReopenWith({});
  // The steps referred to the discarded changes.
  if (taken && hadUnsaved) history_.Clear();
  return taken;
}

Status ProjectActions::Apply(const FileChanges& changes) {
  const QScopedValueRollback<bool> applying(isApplying_, true);
  return runner_.Apply(changes);
}

void ProjectActions::Go(Status (ProjectHistory::*way)()) {
  if (runner_.GetProjectPath().empty() || !damage_.MayGoOn()) return;
  if (const Status gone = (history_.*way)(); !gone) Warn(window_, gone.GetError());
  watch_.Include(history_.GetFiles());
}

}  // namespace tarn::host
