#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "hosts/desktop/UnsavedText.h"
#include "platform/Result.h"
#include "platform/files/FileSystem.h"

namespace tarn::host {

// The content of a window that would be lost in a crash, and what was open in it.
struct JournalContent {
  std::int64_t seconds = 0;  // time since 1970
  std::string project;       // project file; empty if none
  // The project's files with the unsaved changes, and the saved versions that they are based on,
  // both in the format of InspectorDriver::GetFileTexts. Null if the project has no changes.
  std::shared_ptr<const std::string> projectTexts;
  std::shared_ptr<const std::string> projectBases;
  std::vector<UnsavedText> texts;
  std::vector<std::string> tabs;  // as returned by EditorTabs::Describe

  bool IsEmpty() const { return projectTexts == nullptr && texts.empty(); }
};

struct JournalReading {
  enum class State { Good, Damaged, OtherVersion };

  State state = State::Good;  // otherwise nothing of it is readable
  std::string file;           // index file of the journal
  std::string reason;         // why it is damaged
  JournalContent content;
  std::vector<std::string> lost;  // files with damaged texts
};

// Crash journal: a folder that outlives its process, with an index that is replaced atomically and
// the texts that it refers to. If the process is killed at any moment, the journal has the state
// before or after a write. The folder and its files are readable by the user only.
//
// A journal is locked by the process that has taken it, until the object is destroyed or the
// process ends. Usable on any thread, but only for one operation at a time.
class Journal {
 public:
  // Locks the journal in a folder, which is created if missing. Fails with Busy if another process
  // has locked it.
  static Result<std::unique_ptr<Journal>> Take(FileSystem& files, const std::string& folder);

  bool IsEmpty() const;
  JournalReading Read() const;
  // Replaces the content. Texts that are shared with the last write (same pointer) are not written
  // again.
  Status Write(const JournalContent& content);
  Status Clear();
  const std::string& GetFolder() const { return folder_; }

 private:
  struct StoredText {
    std::shared_ptr<const std::string> text;  // keeps the address from being reused
    std::string reference;                    // name, size and hash, as in the index
  };
  using StoredTexts = std::map<const std::string*, StoredText>;

  Journal(FileSystem& files, std::string folder, std::unique_ptr<FileLock> lock);
  void ReadField(const std::string& name, const std::string& value, JournalReading& reading) const;
  Status WriteIndex(const std::string& fields);
  Status Store(const std::shared_ptr<const std::string>& text, StoredTexts& now);
  std::shared_ptr<const std::string> Fetch(const std::string& reference) const;
  void RemoveAllBut(const std::set<std::string>& names);

  FileSystem& files_;
  std::string folder_;
  std::unique_ptr<FileLock> lock_;
  StoredTexts stored_;
};

struct TakenJournals {
  std::unique_ptr<Journal> own;                // empty; null if it could not be created
  std::vector<std::unique_ptr<Journal>> left;  // by processes that ended without clearing theirs
  Error problem;                               // why there is no own one; its place is a path
};

// Takes a new journal for this process below `root`, and all journals not locked by a living
// process.
TakenJournals TakeJournals(FileSystem& files, const std::string& root);

}  // namespace tarn::host
