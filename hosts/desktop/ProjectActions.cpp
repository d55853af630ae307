#include "hosts/desktop/ProjectActions.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QScopedValueRollback>
#include <QStandardPaths>
#include <QThread>
#include <QTimer>
#include <algorithm>

#include "hosts/desktop/Banner.h"
#include "hosts/desktop/ChangeTexts.h"
#include "hosts/desktop/EditorTabs.h"
#include "hosts/desktop/Examples.h"
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

// Holds the edit lock of a project during its lifetime, so that the files found stay unchanged
// until they are written.
class EditRight {
 public:
  EditRight(BuildSession& session, const std::string& project) : inspector(session.Inspector()) {
    constexpr int kMostTries = 40;
    constexpr unsigned long kBetweenTries = 50;  // milliseconds
    for (int i = 0; i < kMostTries && !isTaken && problem.empty(); ++i) {
      if (i > 0) QThread::msleep(kBetweenTries);
      session.TakeLogLines();
      isTaken = inspector.TryLockProject(project).empty();
      // Without a holder, waiting would not help.
      const std::vector<std::string> lines = session.TakeLogLines();
      if (!isTaken && !lines.empty()) problem = lines.front();
    }
  }
  ~EditRight() { inspector.UnlockProject(); }
  EditRight(const EditRight&) = delete;
  EditRight& operator=(const EditRight&) = delete;

  bool IsTaken() const { return isTaken; }
  // Returns why the lock can't be taken by any process, or an empty string.
  const std::string& GetProblem() const { return problem; }

 private:
  InspectorDriver& inspector;
  bool isTaken = false;
  std::string problem;
};

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
    : window(parentWindow),
      files(fileSystem),
      session(buildSession),
      runner(commandRunner),
      editors(editorTabs),
      banner(projectBanner),
      damage(parentWindow, buildSession, damageBanner),
      trust(parentWindow, buildSession, trustBanner),
      saves(parentWindow, saveBanner),
      history(
          buildSession.Inspector(), [this](const FileChanges& changes) { return Apply(changes); },
          [this] { return runner.IsBuilding(); }),
      watch(fileSystem, this) {
  saves.onShowFile = [this](const std::string& path) {
    if (onShowFile) onShowFile(path);
  };
  trust.onTrusted = [this] { runner.Repeat(); };
  banner.onFirst = [this] { Reload(); };
  banner.onSecond = [this] {
    watch.Follow(editorsProject);
    banner.hide();
  };
  watch.onChanged = [this] {
    banner.Tell(tr("The project's files have been changed by another program."));
  };
}

void ProjectActions::Open(const std::string& path) {
  if (session.HasProject() && QFileInfo(ToQt(path)) == QFileInfo(ToQt(session.GetProjectPath()))) {
    return;
  }
  if (!IsFree() || !editors.MayCloseAll() || !MayClose()) return;
  KeepEditors();
  const QScopedValueRollback<bool> asked(isDiscarding, true);
  Load(path);
}

bool ProjectActions::MayReplaceWith(const std::string& path) {
  const std::string present = runner.GetProjectPath();
  if (!IsFree()) return false;
  if (path == present || !HasUnsaved()) return true;
  if (session.IsDamageHeld()) return MayClose();
  const auto answer = QMessageBox::question(
      &window, tr("Tarn"),
      tr("%1 must be closed first. Save its changes?").arg(ToQt(FileNameOf(present))),
      QMessageBox::Save | QMessageBox::Cancel, QMessageBox::Cancel);
  return answer == QMessageBox::Save;
}

Status ProjectActions::Restore(const std::string& path, const std::vector<FileText>& texts,
                               const std::vector<FileText>& bases) {
  const FileChanges changes = FindChanges(bases, texts);
  Status made;
  if (path != runner.GetProjectPath()) {
    KeepEditors();
    made = runner.Open(path);
    TellWhatIsNotSaved(session.TakeSaveReport());
  }
  if (texts.empty()) return made;
  if (made) made = CheckNewFiles(history.GetFiles(), changes);
  if (made) made = history.Change(changes);
  // Nothing else is unsaved, so conflicting changes can be staged for the next save to merge.
  if (made || HasUnsaved()) return made;
  made = OpenStaged(path, texts, bases);
  if (made) history.Add(changes);
  return made;
}

// Opens the project with these texts in place of its files, which are not modified.
Status ProjectActions::OpenStaged(const std::string& path, const std::vector<FileText>& texts,
                                  const std::vector<FileText>& bases) {
  const Status opened = runner.OpenWithChanges(path, JoinFileTexts(texts), JoinFileTexts(bases));
  if (!opened) return opened;
  watch.Expect(bases);
  return {};
}

bool ProjectActions::IsFree() {
  if (!runner.IsBuilding()) return true;
  QMessageBox::information(&window, tr("Tarn"),
                           tr("You can open another project once the build has finished."));
  return false;
}

bool ProjectActions::Load(const std::string& path) {
  Status opened = runner.Open(path);
  SaveReport report = session.TakeSaveReport();
  // The present project could not be closed.
  while (!opened && !report.problems.empty() && HasUnsaved()) {
    if (!MayDropUnsaved(report)) return false;
    opened = runner.Open(path);
    report = session.TakeSaveReport();
  }
  TellWhatIsNotSaved(report);
  if (opened) return true;
  if (OffersToRelocate(path, opened.GetError().text)) return true;
  if (files.Exists(path)) return false;
  RecentProjects::Remove(ToQt(path));
  if (onRecentChanged) onRecentChanged();
  return false;
}

void ProjectActions::Choose() {
  const QString last = RecentProjects::List().value(0);
  const QString chosen = QFileDialog::getOpenFileName(
      &window, tr("Open project"), last.isEmpty() ? QDir::homePath() : QFileInfo(last).path(),
      tr("Projects (*.tprj)"));
  if (!chosen.isEmpty()) Open(FromQt(chosen));
}

// Shows why a project can't be opened. If an application file is missing, offers to locate it.
// Returns true if it was found and the project is open with the correction, which is not saved yet.
bool ProjectActions::OffersToRelocate(const std::string& path, const std::string& reason) {
  const QString text = tr("%1 can't be opened.").arg(ToQt(path));
  Relocation moves(files, path);
  if (!moves.MissesApplication()) {
    Warn(window, text, reason);
    return false;
  }
  QMessageBox box(QMessageBox::Warning, tr("Tarn"), text + "\n\n" + ToQt(reason),
                  QMessageBox::Close, &window);
  const QPushButton* const find =
      box.addButton(tr("&Find moved files..."), QMessageBox::ActionRole);
  box.exec();
  if (box.clickedButton() != find) return false;
  RelocateDialog dialog(moves, FolderOf(path), &window);
  if (dialog.exec() != QDialog::Accepted) return false;
  std::vector<FileText> bases;
  for (const FileText& each : dialog.GetTexts()) {
    if (auto disk = files.ReadWholeFile(each.path)) bases.push_back({each.path, std::move(*disk)});
  }
  if (OpenStaged(path, dialog.GetTexts(), bases)) {
    // Before this step, the project had no file at the application's new path.
    std::erase_if(bases, [&moves](const FileText& base) {
      return std::ranges::any_of(moves.GetFound(), [&base](const MovedPath& each) {
        return each.kind == MovedPath::Kind::Application && each.newPath == base.path;
      });
    });
    history.Add(FindChanges(bases, dialog.GetTexts()));
    return true;
  }
  // Something else is still missing. Write the corrections, so that they needn't be made again.
  const Status written = files.WriteFiles(AsBytes(dialog.GetTexts()));
  if (!written) Warn(window, written.GetError());
  return written && Load(path);
}

void ProjectActions::Relocate() {
  const std::string path = runner.GetProjectPath();
  if (path.empty() || runner.IsBuilding() || !damage.MayGoOn()) return;
  history.Note();
  Relocation moves(files, path);
  moves.SetTexts(history.GetFiles());
  RelocateDialog dialog(moves, FolderOf(path), &window);
  if (dialog.exec() != QDialog::Accepted || runner.IsBuilding()) return;
  const FileChanges changes = FindChanges(history.GetFiles(), moves.Complete(dialog.GetTexts()));
  if (const Status done = history.Change(changes); !done) Warn(window, done.GetError());
}

// The server closes the project first, so the wizard always creates a new one.
void ProjectActions::New() {
  if (!IsFree() || !MayClose()) return;
  const std::string before = runner.GetProjectPath();
  if (session.Manager().ProjectNew() != 0) {
    RecentProjects::NoteNew(session.GetProjectPath());
    // The first save completes the files of the new project.
    QTimer::singleShot(0, this, [this] { SaveAll(); });
    return;
  }
  if (before.empty()) return;
  // Deferred until after the notification of the placeholder project, so that unsaved texts are
  // kept.
  QTimer::singleShot(0, this, [this, before] { Load(before); });
}

void ProjectActions::OpenExample(const Example& example) {
  if (!IsFree()) return;
  const QString folder = QFileDialog::getExistingDirectory(
      &window, tr("Choose a folder for the copy of %1").arg(ToQt(example.name)), QDir::homePath());
  if (folder.isEmpty()) return;
  const Result<std::string> copied = CopyExample(files, example, FromQt(folder));
  if (copied) {
    Open(*copied);
    return;
  }
  QMessageBox::warning(&window, tr("Tarn"),
                       tr("%1 can't be copied: %2")
                           .arg(ToQt(copied.GetError().place), ToQt(copied.GetError().text)));
}

void ProjectActions::SaveAll() {
  // A text that can't be saved is reported and doesn't prevent saving the others.
  static_cast<void>(editors.SaveAll());
  if (!HasUnsaved() || !damage.MayGoOn()) return;
  history.Note();
  session.TakeLogLines();
  runner.SaveProject();
  const SaveReport report = session.TakeSaveReport();
  saves.Show(report);
  TellWhatIsNotSaved(report);
}

bool ProjectActions::Leave() {
  if (!MayClose()) return false;
  KeepEditors();
  session.TakeLogLines();
  if (!session.HasProject()) return true;
  while (session.Manager().ProjectClose() == 0) {
    const SaveReport report = session.TakeSaveReport();
    if (report.problems.empty() || !MayDropUnsaved(report)) return false;
  }
  const SaveReport report = session.TakeSaveReport();
  TellWhatIsNotSaved(report);
  saves.ShowConflictsNow(report);
  return true;
}

// Asks the user about changes that could not be written anywhere. Returns true if they have been
// dropped, possibly after copies of the files were saved in a folder.
bool ProjectActions::MayDropUnsaved(const SaveReport& report) {
  std::string text;
  for (const std::string& line : report.problems) text += "\n" + line;
  QMessageBox box(QMessageBox::Warning, tr("Tarn"),
                  tr("The project's changes could not be saved.") + "\n" + ToQt(text),
                  QMessageBox::Discard | QMessageBox::Cancel, &window);
  box.setObjectName("unsaved");
  const QPushButton* const save = box.addButton(tr("&Save copies..."), QMessageBox::ActionRole);
  box.setDefaultButton(QMessageBox::Cancel);
  const int answer = box.exec();
  const bool isDropped =
      box.clickedButton() == save ? SaveCopies() : answer == QMessageBox::Discard;
  if (isDropped) session.Inspector().DropChanges();
  return isDropped;
}

// Saves copies of the project's files, as they would be written, in a folder that the user chooses.
bool ProjectActions::SaveCopies() {
  const QString folder = QFileDialog::getExistingDirectory(
      &window, tr("Folder for the copies"),
      QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation));
  if (folder.isEmpty()) return false;
  for (const FileText& each : ReadProjectFiles(session.Inspector())) {
    std::string copy = JoinPath(FromQt(folder), FileNameOf(each.path));
    if (const Status kept = KeepCopy(files, copy, each.text, ".unsaved", copy); !kept) {
      Warn(window, ToQt(copy), kept.GetError().text);
      return false;
    }
  }
  return true;
}

// The server reports nothing when it saves; its log names the backups of what couldn't be saved.
void ProjectActions::TellWhatIsNotSaved(const SaveReport& report) {
  std::string reasons;
  for (const std::string& line : report.problems) {
    reasons.append(reasons.empty() ? "" : "\n") += line;
  }
  if (!reasons.empty()) {
    Warn(window, tr("The project's changes could not be saved."), reasons);
  }
}

void ProjectActions::AddOpening(QMenu& menu) {
  menu.addAction(tr("&New project..."), QKeySequence::New, this, [this] { New(); });
  menu.addAction(tr("&Open project..."), QKeySequence::Open, this, [this] { Choose(); });
  QMenu* const recent = MakeRecentMenu(window, [this](const QString& path) { Open(FromQt(path)); });
  menu.addMenu(recent);
  QAction* const relocate =
      menu.addAction(tr("Find &moved files..."), this, [this] { Relocate(); });
  connect(&menu, &QMenu::aboutToShow, this, [this, relocate] {
    relocate->setEnabled(!runner.GetProjectPath().empty() && !runner.IsBuilding());
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
    history.Note();
    undo->setEnabled(history.CanUndo());
    redo->setEnabled(history.CanRedo());
    const QString back = TextOfStep(history.GetUndoSteps());
    const QString on = TextOfStep(history.GetRedoSteps());
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
  const std::string path = runner.GetProjectPath();
  // Its files are the same.
  if (isApplying) return;
  // Commands of the server create projects as well.
  session.Inspector().SetNewProjectFolder(FromQt(RecentProjects::GetNewFolder()));
  banner.hide();
  damage.Follow();
  saves.Show(session.TakeSaveReport());
  watch.Follow(path);
  // The steps are kept: undo merges with changes that another program has made since.
  history.Refresh();
  if (path == editorsProject) return;
  trust.Hide();
  history.Clear();
  KeepEditors();
  // Unsaved texts stay open, unless the user has agreed to discard them.
  editors.CloseAll(!isDiscarding);
  editorsProject = path;
  if (path.empty()) return;
  RecentProjects::Note(path);
  if (onRecentChanged) onRecentChanged();
  editors.Restore(RecentProjects::EditorsOf(path));
}

void ProjectActions::Note() {
  if (history.Note()) watch.Include(history.GetFiles());
}

bool ProjectActions::HasUnsaved() {
  return !runner.GetProjectPath().empty() && session.Inspector().IsModified() != 0;
}

void ProjectActions::KeepEditors() {
  if (!editorsProject.empty()) RecentProjects::KeepEditors(editorsProject, editors.Describe());
}

void ProjectActions::Reload() {
  if (runner.IsBuilding()) return;
  if (HasUnsaved()) {
    const auto answer = QMessageBox::question(
        &window, tr("Tarn"),
        tr("The project has unsaved changes.\n\nSaving merges them with the other program's "
           "changes."),
        QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel, QMessageBox::Save);
    if (answer == QMessageBox::Save) SaveAll();
    if (answer != QMessageBox::Discard) return;
  }
  if (const Status taken = TakeFromDisk(); !taken) Warn(window, taken.GetError());
}

Status ProjectActions::TakeFromDisk() {
  const EditRight right(session, runner.GetProjectPath());
  if (!right.GetProblem().empty()) return Error{ErrorCode::NotAFile, right.GetProblem(), {}};
  if (!right.IsTaken()) {
    return Error{ErrorCode::Busy, FromQt(tr("Another program is changing the project.")), {}};
  }
  const bool hadUnsaved = HasUnsaved();
  session.Inspector().DropChanges();
  Status taken = runner.ReopenWith({});
  // The steps referred to the discarded changes.
  if (taken && hadUnsaved) history.Clear();
  return taken;
}

Status ProjectActions::Apply(const FileChanges& changes) {
  const QScopedValueRollback<bool> applying(isApplying, true);
  return runner.Apply(changes);
}

void ProjectActions::Go(Status (ProjectHistory::*way)()) {
  if (runner.GetProjectPath().empty() || !damage.MayGoOn()) return;
  if (const Status gone = (history.*way)(); !gone) Warn(window, gone.GetError());
  watch.Include(history.GetFiles());
}

}  // namespace tarn::host
