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

// The open files, one in each tab. A star marks what is not saved. A file that changes on the disk
// is read again, unless the user has changed it as well: it is not saved then until he has decided
// which of both he wants (see CodeEditor::IsInConflict).
class EditorTabs : public QTabWidget {
  Q_DECLARE_TR_FUNCTIONS(EditorTabs)

 public:
  EditorTabs(FileSystem& fileSystem, QWidget* parent);

  // Shows the file, at a line from 1 on; 0 leaves the place. False when it can't be read, which the
  // user has been told.
  bool OpenFile(const std::string& path, int line);
  // Saves every text that can be. False if there is one that can't, which the user has been told.
  bool SaveAll();
  bool SaveCurrent();
  // Takes the text in view from the disk; what stood there is gone. False when it can't be read,
  // which the user has been told.
  bool ReloadCurrent();
  bool CloseCurrent();
  // The same before a build, whose tools read the files. Also true if the user wants to build what
  // is on the disk instead of a text that can't be saved.
  bool SaveForBuild();
  // Returns nullptr if the file is not open.
  CodeEditor* Find(const std::string& path) const;
  // Asks for each text that is not saved. False when the user would rather stay.
  bool MayCloseAll();
  // Another number after each change of a text.
  int GetChangeCount() const { return changeCount; }
  // Closes without a question; texts that are not saved stay open if so wanted.
  void CloseAll(bool keepModified);
  // The open files and the places in them, for Restore. Files that are gone are left out there,
  // except for those that have a text among the unsaved ones: these come back as changes.
  QStringList Describe() const;
  void Restore(const QStringList& description, const std::vector<UnsavedText>& unsaved = {});
  // Looks for files that changed on the disk; for the time when the window comes to the front.
  void FollowDisk();
  CodeEditor* Current() const;
  // The one in a tab, from 0.
  CodeEditor* At(int index) const;
  // An editor may have come into conflict, or out of it.
  std::function<void()> onConflict;
  // These files were to be saved, but are in conflict.
  std::function<void(const QStringList& names)> onRefused;
  // An editor has been made, with its text in it.
  std::function<void(CodeEditor& editor)> onOpened;
  // The user has asked for the declaration of what is at the cursor.
  std::function<void()> onFollowName;
  EditorZoom& Zoom() { return zoom; }

 protected:
  void tabInserted(int index) override;
  void tabRemoved(int index) override;
  // The middle button closes a tab.
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

  FileSystem& files;
  FileWatch watch;
  EditorZoom zoom{*this};
  int changeCount = 0;
};

}  // namespace tarn::host
