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

// Makes sure that saving a project never destroys content that Tarn did not read itself. Records
// the content of each file at its last read or write, and makes a backup before different content
// is overwritten. All paths are absolute. Keeps one copy of every file of the project in memory.
class BackupGuard {
 public:
  explicit BackupGuard(FileSystem& fileSystem) : files_(fileSystem) {}

  // Records that the file was read; `damaged` if part of it did not become part of the tree.
  void RecordRead(const std::string& path, std::string_view bytes, bool damaged);
  void RecordWritten(const std::string& path, std::string_view bytes);
  // Marks a file that was read before as damaged.
  void MarkDamaged(const std::string& path) { damagedFiles_.insert(path); }
  // Returns the content of the file when it was last read or written, or nullptr if it was neither.
  // Valid until the next call.
  const std::string* ContentOf(const std::string& path) const;
  // Same as `ContentOf()`, but falls back to the content known before the last Clear, when the
  // project may have had a file that it no longer has.
  const std::string* LastContentOf(const std::string& path) const;
  // All recorded contents, by path.
  const std::map<std::string, std::string>& GetKnown() const { return known_; }
  // Protects a file whose content is not in memory from being overwritten.
  void Protect(const std::string& path) { protected_.insert(path); }
  // The node that was read from `from` is saved to `to` from now on. `text` is the recorded content
  // of `from` with its paths adapted to the new location.
  void RecordMoved(const std::string& from, const std::string& to, std::string_view text);
  // The content that was recorded as read did not come from disk: replaces it with the content that
  // `former` has recorded for the file.
  void TakeOver(const BackupGuard& former, const std::string& path);
  // Returns the text whose formatting a save of the file follows: the one recorded as read before
  // TakeOver, or else ContentOf.
  const std::string* FormOf(const std::string& path) const;
  // The project was closed: clears all records, which stay available to LastContentOf only.
  void Clear();
  // Clears everything, before a different project is opened.
  void ClearAll();

  // Copies the file to a backup if it was damaged (".bak") or if another program has changed it
  // (".orig"). If the copy fails, returns an error, and the caller must not write the file. `copy`
  // receives the name of the backup, empty if none was needed or made.
  Status BackUp(const std::string& path, std::string& copy, CopyReason& reason);

  // Saves content that could not be written to `<path>.unsaved` or, if that fails, under a similar
  // name in the folder `spare`. Never overwrites an earlier copy. Returns the name of the copy, or
  // an empty string if both attempts failed.
  std::string Rescue(const std::string& path, std::string_view bytes, const std::string& spare);
  // Records that `copy` has content of the file that is also in memory: it is superseded by the
  // next save of the file.
  void RecordRescued(const std::string& path, const std::string& copy, std::string_view bytes);
  // Removes the copies of a file that has been saved, except those that were changed since.
  void RemoveRescued(const std::string& path);
  // The content in memory is discarded: the copies are no longer superseded.
  void RetainRescued() { rescued_.clear(); }
  // Same as `Rescue()`, but uses the folder `spare` only.
  std::string RescueTo(const std::string& spare, const std::string& path, std::string_view bytes);

 private:
  FileSystem& files_;
  std::map<std::string, std::string> known_;  // path -> bytes
  std::map<std::string, std::string> last_;   // contents recorded before the last Clear
  std::map<std::string, std::string> forms_;  // as read, for files taken over
  std::map<std::string, std::map<std::string, std::string>> rescued_;  // path -> copy -> bytes
  std::set<std::string> damagedFiles_;
  std::set<std::string> protected_;
};

}  // namespace tarn
