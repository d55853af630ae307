#include "hosts/desktop/EditorTabs.h"

#include <QDir>
#include <QFileInfo>
#include <QHash>
#include <QMessageBox>
#include <QMouseEvent>
#include <QPushButton>
#include <QTabBar>
#include <algorithm>

#include "hosts/desktop/CodeEditor.h"
#include "platform/paths/Paths.h"
#include "widgets/qt/QtText.h"

namespace tarn::host {

EditorTabs::EditorTabs(FileSystem& fileSystem, QWidget* parent)
    : QTabWidget(parent), files_(fileSystem), watch_(this) {
  watch_.onChanged = [this] { FollowDisk(); };
  setDocumentMode(true);
  setTabsClosable(true);
  setMovable(true);
  setUsesScrollButtons(true);
  setAccessibleName(tr("Open files"));
  tabBar()->setAccessibleName(tr("Open files"));
  tabBar()->installEventFilter(this);
  connect(this, &QTabWidget::tabCloseRequested, this, [this](int index) { CloseTab(index); });
}

bool EditorTabs::eventFilter(QObject* watched, QEvent* event) {
  if (watched != tabBar() || event->type() != QEvent::MouseButtonRelease) {
    return QTabWidget::eventFilter(watched, event);
  }
  const auto* const click = static_cast<QMouseEvent*>(event);
  const int index = tabBar()->tabAt(click->position().toPoint());
  if (click->button() != Qt::MiddleButton || index < 0) return false;
  CloseTab(index);
  return true;
}

CodeEditor* EditorTabs::Find(const std::string& path) const {
  const QString wanted = QFileInfo(ToQt(path)).canonicalFilePath();
  for (int index = 0; index < count(); ++index) {
    const std::string& present = At(index)->GetPath();
    const bool isFile = !wanted.isEmpty() && QFileInfo(ToQt(present)).canonicalFilePath() == wanted;
    if (isFile || present == path) return At(index);
  }
  return nullptr;
}

bool EditorTabs::OpenFile(const std::string& path, int line) {
  CodeEditor* editor = Find(path);
  if (editor == nullptr) {
    editor = new CodeEditor(files_, path);
    if (!Load(*editor)) {
      delete editor;
      return false;
    }
    Add(*editor);
  }
  setCurrentWidget(editor);
  if (line > 0) editor->GoToLine(line);
  return true;
}

// Takes ownership of the editor, whose text is loaded.
void EditorTabs::Add(CodeEditor& editor) {
  const int index = addTab(&editor, {});
  setTabToolTip(index, ToQt(editor.GetPath()));
  connect(&editor, &QsciScintilla::modificationChanged, this, [this] { ShowNames(); });
  connect(&editor, &QsciScintilla::textChanged, this, [this] { ++changeCount_; });
  editor.onFollowName = [this] {
    if (onFollowName) onFollowName();
  };
  zoom_.Add(editor);
  if (onOpened) onOpened(editor);
}

void EditorTabs::OpenUnsaved(const UnsavedText& unsaved) {
  CodeEditor* editor = Find(unsaved.path);
  const bool isNew = editor == nullptr;
  if (isNew) editor = new CodeEditor(files_, unsaved.path);
  editor->Restore(unsaved);
  if (isNew) Add(*editor);
  setCurrentWidget(editor);
}

bool EditorTabs::SaveAll() {
  std::vector<CodeEditor*> modified;
  for (int index = 0; index < count(); ++index) {
    if (At(index)->isModified()) modified.push_back(At(index));
  }
  return Save(modified);
}

bool EditorTabs::SaveCurrent() {
  return Current() == nullptr || Save({Current()});
}

bool EditorTabs::SaveForBuild() {
  if (SaveAll()) return true;
  QStringList names;
  for (int index = 0; index < count(); ++index) {
    if (At(index)->isModified()) names += ToQt(FileNameOf(At(index)->GetPath()));
  }
  QMessageBox box(QMessageBox::Question, tr("Tarn"),
                  tr("%1 has unsaved changes. Build the version on disk?", nullptr,
                     static_cast<int>(names.size()))
                      .arg(names.join(", ")),
                  QMessageBox::Cancel, this);
  const QPushButton* const build = box.addButton(tr("&Build"), QMessageBox::AcceptRole);
  box.setDefaultButton(QMessageBox::Cancel);
  box.exec();
  return box.clickedButton() == build;
}

bool EditorTabs::ReloadCurrent() {
  return Current() == nullptr || Load(*Current());
}

bool EditorTabs::CloseCurrent() {
  return count() == 0 || CloseTab(currentIndex());
}

bool EditorTabs::MayCloseAll() {
  QWidget* const inView = currentWidget();
  for (int index = 0; index < count(); ++index) {
    if (!MayClose(*At(index))) return false;
  }
  // Return to the tab that the user was in, because that is what is stored for the next start.
  if (inView != nullptr) setCurrentWidget(inView);
  return true;
}

void EditorTabs::CloseAll(bool keepModified) {
  for (int index = count() - 1; index >= 0; --index) {
    CodeEditor* const editor = At(index);
    if (keepModified && editor->isModified()) continue;
    removeTab(index);
    editor->deleteLater();
  }
}

// Each entry has the form line:column:path, with a leading star for the current tab.
QStringList EditorTabs::Describe() const {
  QStringList description;
  for (int index = 0; index < count(); ++index) {
    int line = 0;
    int column = 0;
    At(index)->getCursorPosition(&line, &column);
    description += QString("%1%2:%3:%4")
                       .arg(index == currentIndex() ? "*" : "")
                       .arg(line)
                       .arg(column)
                       .arg(ToQt(At(index)->GetPath()));
  }
  return description;
}

void EditorTabs::Restore(const QStringList& description, const std::vector<UnsavedText>& unsaved) {
  CodeEditor* inView = nullptr;
  for (QString entry : description) {
    const bool isInView = entry.startsWith('*');
    if (isInView) entry.remove(0, 1);
    const std::string path = FromQt(entry.section(':', 2));
    const auto text = std::find_if(unsaved.begin(), unsaved.end(),
                                   [&](const UnsavedText& each) { return each.path == path; });
    if (text != unsaved.end()) {
      OpenUnsaved(*text);
    } else if (!files_.Examine(path) || !OpenFile(path, 0)) {
      continue;
    }
    Current()->setCursorPosition(entry.section(':', 0, 0).toInt(),
                                 entry.section(':', 1, 1).toInt());
    if (isInView) inView = Current();
  }
  if (inView != nullptr) setCurrentWidget(inView);
  if (onConflict) onConflict();
}

void EditorTabs::FollowDisk() {
  for (int index = 0; index < count(); ++index) At(index)->FollowDisk();
  if (onConflict) onConflict();
}

void EditorTabs::tabInserted(int index) {
  QTabWidget::tabInserted(index);
  ShowNames();
  WatchFiles();
}

void EditorTabs::tabRemoved(int index) {
  QTabWidget::tabRemoved(index);
  ShowNames();
  WatchFiles();
}

void EditorTabs::WatchFiles() {
  QStringList paths;
  for (int index = 0; index < count(); ++index) paths += ToQt(At(index)->GetPath());
  watch_.SetFiles(paths);
}

CodeEditor* EditorTabs::Current() const {
  return count() == 0 ? nullptr : At(currentIndex());
}

CodeEditor* EditorTabs::At(int index) const {
  return static_cast<CodeEditor*>(widget(index));
}

bool EditorTabs::Load(CodeEditor& editor) {
  const Status loaded = editor.Load();
  if (!loaded) {
    QMessageBox::warning(
        this, tr("Tarn"),
        tr("%1 can't be read: %2").arg(ToQt(editor.GetPath()), ToQt(loaded.GetError().text)));
  }
  return static_cast<bool>(loaded);
}

// A file that can't be saved doesn't prevent saving the others; the first one in conflict is
// brought to the front.
bool EditorTabs::Save(const std::vector<CodeEditor*>& wanted) {
  std::vector<CodeEditor*> refused;
  QStringList failures;
  for (CodeEditor* const editor : wanted) {
    editor->FollowDisk();
    if (editor->IsInConflict()) {
      refused.push_back(editor);
    } else if (const Status saved = editor->Save(); !saved) {
      failures +=
          tr("%1 can't be written: %2").arg(ToQt(editor->GetPath()), ToQt(saved.GetError().text));
    }
  }
  if (!refused.empty()) {
    const bool isInView = std::find(refused.begin(), refused.end(), Current()) != refused.end();
    if (!isInView) setCurrentWidget(refused.front());
    QStringList names;
    for (const CodeEditor* each : refused) names += ToQt(FileNameOf(each->GetPath()));
    if (onRefused) onRefused(names);
  }
  if (!failures.isEmpty()) QMessageBox::warning(this, tr("Tarn"), failures.join('\n'));
  return refused.empty() && failures.isEmpty();
}

bool EditorTabs::MayClose(CodeEditor& editor) {
  if (!editor.isModified()) return true;
  setCurrentWidget(&editor);
  editor.FollowDisk();
  QString question = tr("Save changes to %1?").arg(ToQt(FileNameOf(editor.GetPath())));
  if (editor.IsInConflict()) {
    question +=
        "\n\n" + tr("Another program has also changed this file. Saving overwrites its changes.");
  }
  const auto answer = QMessageBox::question(
      this, tr("Tarn"), question, QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel,
      editor.IsInConflict() ? QMessageBox::Cancel : QMessageBox::Save);
  if (answer != QMessageBox::Save) return answer == QMessageBox::Discard;
  if (editor.IsInConflict()) editor.KeepMine();
  return Save({&editor});
}

bool EditorTabs::CloseTab(int index) {
  CodeEditor* const editor = At(index);
  if (!MayClose(*editor)) return false;
  removeTab(indexOf(editor));
  editor->deleteLater();
  return true;
}

// Adds the folder to tabs with equal file names.
void EditorTabs::ShowNames() {
  QHash<QString, int> counts;
  for (int index = 0; index < count(); ++index) ++counts[ToQt(FileNameOf(At(index)->GetPath()))];
  for (int index = 0; index < count(); ++index) {
    const std::string& path = At(index)->GetPath();
    QString name = ToQt(FileNameOf(path));
    if (counts[name] > 1) name += " (" + QFileInfo(ToQt(path)).dir().dirName() + ")";
    if (At(index)->isModified()) name += " *";
    setTabText(index, name.replace("&", "&&"));
  }
}

}  // namespace tarn::host
