#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "platform/files/FileSystem.h"
#include "project/SaveReport.h"

namespace tarn {

// Sees to it that saving a project takes nothing away that the system did not read itself: it
// remembers what each file held when it was read or written last, and puts a copy aside before
// anything else is overwritten. Paths are absolute.
class FileGuard {
 public:
  explicit FileGuard(FileSystem& fileSystem) : files(fileSystem) {}

  // The file was read; `damaged` when part of it did not become part of the tree.
  void NoteRead(const std::string& path, std::string_view bytes, bool damaged);
  void NoteWritten(const std::string& path, std::string_view bytes);
  // The file, which was read before, is damaged.
  void NoteDamaged(const std::string& path) { damagedFiles.insert(path); }
  // What the file held when it was read or written last; null if it was neither. Borrowed until the
  // next call.
  const std::string* TextOf(const std::string& path) const;
  // The same, also for a file that the project had only before it was read again.
  const std::string* LastTextOf(const std::string& path) const;
  // All of these, by path.
  const std::map<std::string, std::string>& GetKnown() const { return known; }
  // The file holds what nobody has in memory: it is not to be overwritten.
  void NoteUntouchable(const std::string& path) { untouchable.insert(path); }
  // What was read from `from` is saved to `to` from now on; `text` is what was known of the file,
  // as it reads there.
  void NoteMoved(const std::string& from, const std::string& to, std::string_view text);
  // The text that was noted as read is not from the disk: what `former` knows of the file takes its
  // place.
  void TakeOver(const FileGuard& former, const std::string& path);
  // The text whose form a save of the file follows: the one that was taken over, or TextOf.
  const std::string* FormOf(const std::string& path) const;
  // The project is closed: nothing is remembered any more but for LastTextOf.
  void Forget();
  // Another project follows.
  void ForgetAll();

  // Copies the file aside when it was damaged (".bak") or has been changed by somebody else
  // (".orig"). Fails when the copy does; the file must then not be written. `copy` is the name of
  // the copy, empty when none was needed or made.
  Status PutAside(const std::string& path, std::string& copy, CopyReason& reason);

  // Puts a text that could not be saved into `<path>.unsaved` or, failing that, into the folder
  // `spare` under such a name; an earlier one is never overwritten. The name it lies under, empty
  // when both failed.
  std::string Rescue(const std::string& path, std::string_view bytes, const std::string& spare);
  // The same for the folder `spare` alone.
  std::string RescueTo(const std::string& spare, const std::string& path, std::string_view bytes);

 private:
  FileSystem& files;
  std::map<std::string, std::string> known;  // path -> bytes
  std::map<std::string, std::string> last;   // what was known before the last Forget
  std::map<std::string, std::string> forms;  // of files that were taken over
  std::set<std::string> damagedFiles;
  std::set<std::string> untouchable;
};

}  // namespace tarn
