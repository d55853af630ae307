#pragma once

#include <QCoreApplication>
#include <QDateTime>
#include <QString>
#include <cstdint>
#include <functional>
#include <string>

#include "hosts/desktop/Indentation.h"
#include "hosts/desktop/LineProblems.h"
#include "hosts/desktop/Scintilla.h"
#include "hosts/desktop/TextSearch.h"
#include "hosts/desktop/UnsavedText.h"
#include "platform/Result.h"
#include "platform/files/FileSystem.h"

namespace tarn::host {

// One text file in an editor. A file that is no UTF-8 is shown and written byte by byte, so that
// saving changes only what the user changed.
class CodeEditor : public QsciScintilla {
  Q_DECLARE_TR_FUNCTIONS(CodeEditor)

 public:
  CodeEditor(FileSystem& fileSystem, std::string filePath);

  const std::string& GetPath() const { return path; }
  bool IsUtf8() const { return isUtf8; }
  QString GetText() const;
  // Takes the text from the disk; what stood here is gone, the place in it stays.
  Status Load();
  Status Save();
  // The text as it is now, for Restore.
  UnsavedText GetUnsaved() const;
  // Puts in a text that was never saved, as a change of what the file holds, which undo takes back.
  // If the file isn't the one that the text was made from, the two are in conflict.
  void Restore(const UnsavedText& unsaved);
  // Another number after each change of the text.
  int GetRevision() const { return revision; }
  // Looks whether the file on the disk is another than the one that was read or written last. Then
  // it is read again, unless that would lose changes: the two are in conflict.
  void FollowDisk();
  bool IsInConflict() const { return isInConflict; }
  // Ends a conflict: what stands here counts, and the next save writes it.
  void KeepMine();
  // Lines count from 1; one beyond the end goes to the last.
  void GoToLine(int line);
  // The text has conditions of a preprocessor, whose code is grey if it is left out.
  bool HasConditions() const;
  // What the compiler defines, as "NAME" or "NAME=VALUE" with blanks between. Nothing is grey
  // unless that decides the conditions.
  void SetMacros(const std::string& macros, bool areComplete);
  // Errors and warnings to be shown; a tip says them under the mouse.
  LineProblems& Problems() { return *problems; }
  // A click with Ctrl, which has put the cursor there.
  std::function<void()> onFollowName;

  // Places count the characters of GetText.
  SearchHit Selection() const;
  void Select(const SearchHit& place);
  // Shows these places, and no others that were shown before.
  void MarkHits(const QList<SearchHit>& hits);
  // Puts the replacements in, as one step to be undone. The places are in order.
  void ReplaceHits(const QList<SearchHit>& hits);

 protected:
  void changeEvent(QEvent* event) override;
  bool viewportEvent(QEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  // Files are for the window around; their names are no text for here.
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dragMoveEvent(QDragMoveEvent* event) override;
  void dropEvent(QDropEvent* event) override;

 private:
  // When the file was written last, and its size in bytes; of one that is gone, nothing.
  struct DiskState {
    QDateTime modified;
    qint64 size = 0;
    bool operator==(const DiskState&) const = default;
  };

  DiskState LookAtDisk() const;
  void Fill(const QByteArray& utf8);
  void ChooseLexer();
  void ShowIndentation(const Indentation& indentation);
  void Colour();
  void ForEachHit(const QList<SearchHit>& hits,
                  const std::function<void(const SearchHit& hit, long start, long end)>& onHit);

  FileSystem& files;
  std::string path;
  LineProblems* problems = nullptr;
  bool isUtf8 = true;
  bool hasMark = false;  // the file begins with a byte order mark, which is no part of the text
  bool isInConflict = false;
  int revision = 0;
  std::uint64_t base = 0;  // hash of the file's bytes as they were read or written last
  DiskState known;         // of the file as it was read or written last
};

}  // namespace tarn::host
