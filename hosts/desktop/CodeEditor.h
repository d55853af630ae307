#pragma once

#include <QCoreApplication>
#include <QDateTime>
#include <QString>
#include <cstdint>
#include <functional>
#include <string>

#include "hosts/desktop/AnnotationLayout.h"
#include "hosts/desktop/Indentation.h"
#include "hosts/desktop/Scintilla.h"
#include "hosts/desktop/TextSearch.h"
#include "hosts/desktop/UnsavedText.h"
#include "platform/Result.h"
#include "platform/files/FileSystem.h"

namespace tarn::host {

// An editor for one text file. A file that is not valid UTF-8 is shown and written as Latin-1, byte
// by byte, so that a save changes only what the user has changed.
class CodeEditor : public QsciScintilla {
  Q_DECLARE_TR_FUNCTIONS(CodeEditor)

 public:
  CodeEditor(FileSystem& fileSystem, std::string filePath);

  const std::string& GetPath() const { return path_; }
  bool IsUtf8() const { return isUtf8_; }
  QString GetText() const;
  // Loads the file and discards the current text; the cursor stays at its position.
  Status Load();
  Status Save();
  // Returns the current text, for Restore.
  UnsavedText GetUnsaved() const;
  // Inserts a text that was never saved, as an undoable change of the file's content. If the file
  // has changed since the text was derived from it, the editor is in conflict.
  void Restore(const UnsavedText& unsaved);
  // A counter that changes with each change of the text.
  int GetRevision() const { return revision_; }
  // Checks if the file has changed on disk since it was last read or written. If so, it is
  // reloaded, unless that would lose changes: then the editor is in conflict.
  void FollowDisk();
  bool IsInConflict() const { return isInConflict_; }
  // Ends a conflict in favour of the editor's text, which the next save writes.
  void KeepMine();
  // Lines are counted from 1; a line beyond the end selects the last one.
  void GoToLine(int line);
  // Returns true if the text has preprocessor conditions, for which excluded code is shown in grey.
  bool HasConditions() const;
  // Sets the macros defined by the compiler, as "NAME" or "NAME=VALUE" separated by spaces. Code is
  // shown in grey only if `areComplete`, i.e. if the macros decide the conditions.
  void SetMacros(const std::string& macros, bool areComplete);
  // Errors and warnings displayed in the text; their messages are shown in a tool tip.
  AnnotationLayout& Problems() { return *problems_; }
  // Called after a Ctrl+click, which has moved the cursor.
  std::function<void()> onFollowName;

  // Positions count characters of GetText().
  SearchHit Selection() const;
  void Select(const SearchHit& place);
  // Highlights these hits and removes the previous highlights.
  void MarkHits(const QList<SearchHit>& hits);
  // Inserts the replacements as one undo step. The hits must be sorted.
  void ReplaceHits(const QList<SearchHit>& hits);

 protected:
  void changeEvent(QEvent* event) override;
  bool viewportEvent(QEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  // Dropped files are left to the main window; their names must not be inserted as text.
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dragMoveEvent(QDragMoveEvent* event) override;
  void dropEvent(QDropEvent* event) override;

 private:
  // Modification time and size of the file in bytes; default values if it doesn't exist.
  struct DiskState {
    QDateTime modified;
    qint64 size = 0;
    bool operator==(const DiskState&) const = default;
  };

  DiskState StatOnDisk() const;
  void Fill(const QByteArray& utf8);
  void ChooseLexer();
  void ShowIndentation(const Indentation& indentation);
  void Colour();
  void ForEachHit(const QList<SearchHit>& hits,
                  const std::function<void(const SearchHit& hit, long start, long end)>& onHit);

  FileSystem& files_;
  std::string path_;
  AnnotationLayout* problems_ = nullptr;
  bool isUtf8_ = true;
  bool hasMark_ = false;  // the file begins with a byte order mark, which is not part of the text
  bool isInConflict_ = false;
  int revision_ = 0;
  std::uint64_t base_ = 0;  // hash of the file's bytes when last read or written
  DiskState known_;         // state of the file when last read or written
};

}  // namespace tarn::host
