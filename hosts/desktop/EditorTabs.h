#pragma once

#include <QCoreApplication>
#include <QStringList>
#include <QTabWidget>
#include <functional>
#include <string>
#include <vector>

#include "hosts/desktop/EditorZoom.h"
#include "hosts/desktop/FileWatch.h"
#include "hosts/desktop/UnsavedText.h"
#include "platform/files/FileSystem.h"

namespace tarn::host {

class CodeEditor;

// The open files, one per tab. A star marks unsaved ones. A file that changes on disk is reloaded,
// unless the user has changed it as well: then it is not saved until the user has chosen a version
// (see CodeEditor::IsInConflict). If a function returns false because of a file error, the user has
// already been informed.
class EditorTabs : public QTabWidget {
  Q_DECLARE_TR_FUNCTIONS(EditorTabs)

 public:
  EditorTabs(FileSystem& fileSystem, QWidget* parent);

  // Shows the file at a line, counted from 1; 0 keeps the cursor position. Returns false if it
  // can't be read.
  bool OpenFile(const std::string& path, int line);
  // Saves all texts that can be saved. Returns false if one of them can't.
  bool SaveAll();
  bool SaveCurrent();
  // Reloads the current text from disk and discards the changes. Returns false if it can't be read.
  bool ReloadCurrent();
  bool CloseCurrent();
  // Like SaveAll(), but for the start of a build, whose tools read the files. Also returns true if
  // the user agrees to build with the version on disk of a text that can't be saved.
  bool SaveForBuild();
  // Returns nullptr if the file is not open.
  CodeEditor* Find(const std::string& path) const;
  // Asks the user about each unsaved text. Returns false if the user cancels.
  bool MayCloseAll();
  // A counter that changes with each change of a text.
  int GetChangeCount() const { return changeCount_; }
  // Closes all tabs without asking; with `keepModified`, unsaved texts remain open.
  void CloseAll(bool keepModified);
  // Returns the open files and cursor positions, for Restore. Restore skips files that no longer
  // exist, except for those in `unsaved`, which are restored as changes.
  QStringList Describe() const;
  void Restore(const QStringList& description, const std::vector<UnsavedText>& unsaved = {});
  // Checks for files that have changed on disk; call this when the window is activated.
  void FollowDisk();
  CodeEditor* Current() const;
  // Editor in a tab, counted from 0.
  CodeEditor* At(int index) const;
  // Called when an editor may have entered or left a conflict.
  std::function<void()> onConflict;
  // Called when files could not be saved because they are in conflict.
  std::function<void(const QStringList& names)> onRefused;
  // Called after an editor was created and its text loaded.
  std::function<void(CodeEditor& editor)> onOpened;
  // Called when the user requests the declaration of the name at the cursor.
  std::function<void()> onFollowName;
  EditorZoom& Zoom() { return zoom_; }

 protected:
  void tabInserted(int index) override;
  void tabRemoved(int index) override;
  // Closes a tab on a middle click.
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void Add(CodeEditor& editor);
  void OpenUnsaved(const UnsavedText& unsaved);
  bool Load(CodeEditor& editor);
  bool Save(const std::vector<CodeEditor*>& wanted);
  bool MayClose(CodeEditor& editor);
  bool CloseTab(int index);
  void ShowNames();
  void WatchFiles();

  FileSystem& files_;
  FileWatch watch_;
  EditorZoom zoom_{*this};
  int changeCount_ = 0;
};

}  // namespace tarn::host
