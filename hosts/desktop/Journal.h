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

// What a window holds that would be lost in a crash, and what was open around it.
struct JournalContent {
  std::int64_t seconds = 0;  // of the moment, since 1970
  std::string project;       // its file; empty for none
  // The project's files with its changes, and as they were without them, both in the form of
  // InspectorDriver::GetFileTexts. Null if the project has no changes.
  std::shared_ptr<const std::string> projectTexts;
  std::shared_ptr<const std::string> projectBases;
  std::vector<UnsavedText> texts;
  std::vector<std::string> tabs;  // as EditorTabs::Describe has them

  bool IsEmpty() const { return projectTexts == nullptr && texts.empty(); }
};

struct JournalReading {
  enum class State { Good, Damaged, OtherVersion };

  State state = State::Good;  // otherwise nothing of it can be read
  std::string file;           // index of the journal
  std::string reason;         // why it is damaged
  JournalContent content;
  std::vector<std::string> lost;  // files whose texts are damaged
};

// A folder on the disk that outlives its process: an index, which is replaced in one step, and the
// texts that it names. A process that is killed at any moment leaves the journal of before or after
// a write. The folder and its files can be read by the user alone.
//
// A journal belongs to the process that has taken it, until the object or the process goes. One
// operation at a time, on any thread.
class Journal {
 public:
  // Fails with Busy if another process has it. The folder is made if it isn't there.
  static Result<std::unique_ptr<Journal>> Take(FileSystem& files, const std::string& folder);

  bool IsEmpty() const;
  JournalReading Read() const;
  // Texts that the last write had as well, by the same pointers, are not written again.
  Status Write(const JournalContent& content);
  Status Clear();
  const std::string& GetFolder() const { return folder_; }

 private:
  struct StoredText {
    std::shared_ptr<const std::string> text;  // keeps the pointer from being used for another
    std::string reference;                    // name, size and hash, for the index
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
  std::unique_ptr<Journal> own;                // empty; null if there can't be one
  std::vector<std::unique_ptr<Journal>> left;  // by processes that ended without clearing theirs
  Error problem;                               // why there is no own one; its place is a path
};

// Takes a journal for this process below `root`, and all that no living process has.
TakenJournals TakeJournals(FileSystem& files, const std::string& root);

}  // namespace tarn::host
