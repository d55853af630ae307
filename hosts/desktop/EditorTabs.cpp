#include "hosts/desktop/EditorTabs.h"

#include <QFileInfo>
#include <QMessageBox>

#include "hosts/desktop/CodeEditor.h"
#include "platform/paths/Paths.h"
#include "platform/qt/QtText.h"

namespace tarn::host {

EditorTabs::EditorTabs(FileSystem& fileSystem, QWidget* parent)
    : QTabWidget(parent), files(fileSystem) {
  setDocumentMode(true);
  setTabsClosable(true);
  setMovable(true);
  connect(this, &QTabWidget::tabCloseRequested, this, [this](int index) { CloseTab(index); });
}

bool EditorTabs::OpenFile(const std::string& path, int line) {
  const QString wanted = QFileInfo(ToQt(path)).canonicalFilePath();
  CodeEditor* editor = nullptr;
  for (int index = 0; index < count() && !wanted.isEmpty(); ++index) {
    if (QFileInfo(ToQt(At(index)->GetPath())).canonicalFilePath() == wanted) editor = At(index);
  }
  if (editor == nullptr) {
    editor = new CodeEditor(files, path);
    if (const Status loaded = editor->Load(); !loaded) {
      delete editor;
      QMessageBox::warning(
          this, tr("Tarn"),
          tr("%1 can't be read: %2").arg(ToQt(path), ToQt(loaded.GetError().text)));
      return false;
    }
    const int index = addTab(editor, {});
    setTabToolTip(index, ToQt(path));
    ShowName(*editor);
    connect(editor, &QsciScintilla::modificationChanged, this,
            [this, editor] { ShowName(*editor); });
  }
  setCurrentWidget(editor);
  if (line > 0) editor->GoToLine(line);
  return true;
}

bool EditorTabs::SaveAll() {
  for (int index = 0; index < count(); ++index) {
    if (At(index)->isModified() && !Save(*At(index))) return false;
  }
  return true;
}

bool EditorTabs::SaveCurrent() {
  return Current() == nullptr || Save(*Current());
}

bool EditorTabs::CloseCurrent() {
  return count() == 0 || CloseTab(currentIndex());
}

bool EditorTabs::MayCloseAll() {
  for (int index = 0; index < count(); ++index) {
    if (!MayClose(*At(index))) return false;
  }
  return true;
}

void EditorTabs::FollowDisk() {
  // A question brings the window to the front once more when it is answered.
  if (isAsking) return;
  isAsking = true;
  for (int index = 0; index < count(); ++index) {
    CodeEditor& editor = *At(index);
    if (!editor.IsChangedOutside() || !files.Exists(editor.GetPath())) continue;
    const bool isWanted =
        !editor.isModified() ||
        QMessageBox::question(this, tr("Tarn"),
                              tr("%1 has changed on the disk. Read it again, and lose the changes "
                                 "that were made here?")
                                  .arg(tabToolTip(index))) == QMessageBox::Yes;
    if (isWanted) static_cast<void>(editor.Load());
  }
  isAsking = false;
}

CodeEditor* EditorTabs::Current() const {
  return count() == 0 ? nullptr : At(currentIndex());
}

CodeEditor* EditorTabs::At(int index) const {
  return static_cast<CodeEditor*>(widget(index));
}

bool EditorTabs::Save(CodeEditor& editor) {
  const Status saved = editor.Save();
  if (!saved) {
    QMessageBox::warning(
        this, tr("Tarn"),
        tr("%1 can't be written: %2").arg(ToQt(editor.GetPath()), ToQt(saved.GetError().text)));
  }
  return static_cast<bool>(saved);
}

bool EditorTabs::MayClose(CodeEditor& editor) {
  if (!editor.isModified()) return true;
  setCurrentWidget(&editor);
  const auto answer = QMessageBox::question(
      this, tr("Tarn"), tr("Save the changes in %1?").arg(ToQt(FileNameOf(editor.GetPath()))),
      QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel, QMessageBox::Save);
  if (answer == QMessageBox::Save) return Save(editor);
  return answer == QMessageBox::Discard;
}

bool EditorTabs::CloseTab(int index) {
  CodeEditor* const editor = At(index);
  if (!MayClose(*editor)) return false;
  removeTab(indexOf(editor));
  editor->deleteLater();
  return true;
}

void EditorTabs::ShowName(CodeEditor& editor) {
  const QString name = ToQt(FileNameOf(editor.GetPath())).replace("&", "&&");
  setTabText(indexOf(&editor), editor.isModified() ? name + " *" : name);
}

}  // namespace tarn::host
