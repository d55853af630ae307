#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "build/BuildRecordStore.h"
#include "platform/files/FileSystem.h"

namespace tarn {

// Finds files that would be included now in place of one that a tool read: a new header earlier in
// the search path.
//
// Such a file can be any name of an include directive, of the source or of what it includes, and
// the path of any header below a folder that the command names, in any folder that headers are
// searched in: the folders of the including files and those that the command names. The tool can
// also list single files that it would have read had they been there, with a "?" before their
// paths. A record holds these folders as they were; while none has gained or lost an entry nothing
// can be shadowed, so an up-to-date project costs one comparison a folder. Otherwise the names are
// looked for again: what was there already when the tool ran is passed over, and what of it is gone
// counts like a new file, since a source can test whether a header exists.
//
// On the main thread.
class ShadowCheck {
 public:
  ShadowCheck(FileSystem& disk, BuildRecordStore& store) : files_(disk), store_(store) {}

  // Fills in the folders of a new record, and the files that its tool passed over. Of one that may
  // have come while the tool ran, by `mayBeNew`, that isn't certain: the record doesn't hold then.
  void Complete(BuildRecord& record, const std::function<bool(const std::string&)>& mayBeNew);
  // No folder of the record has gained or lost an entry.
  bool AreUnchanged(const BuildRecord& record);
  // Returns the file that came or went, or an empty string. Folders that changed without such a
  // file are noted in the record. Folders count as they are at the first look after a Forget.
  std::string Find(std::size_t record);

  void Forget() { isSame_.clear(); }
  // Before the store is loaded again.
  void Clear();

 private:
  struct Listing {
    FileStatus status;
    bool isSettled = false;  // no entry can come without changing the status
    std::unordered_set<std::string> names;
  };
  using Strings = std::vector<std::string>;

  // What the tool reported: folders that headers are searched in, and single files.
  struct Searched {
    Strings folders, files;
  };

  Searched SearchedBy(const BuildRecord& record) const;
  Strings FoldersOf(const BuildRecord& record, Strings named) const;
  Strings NamesOf(const BuildRecord& record, const Strings& named);
  const Strings& IncludesOf(BuildRecord::Number version);
  // Every file that a name could mean, as far as it is there; adds the folders to watch.
  Strings FindCandidates(const BuildRecord& record, std::unordered_set<std::string>& watched);
  bool IsThere(const std::string& path, std::unordered_set<std::string>& watched);
  const Listing* List(const std::string& folder);
  BuildRecord::Number AddFolderSet(const std::unordered_set<std::string>& watched);

  FileSystem& files_;
  BuildRecordStore& store_;
  std::unordered_map<std::string, std::optional<Listing>> listings_;
  std::unordered_map<BuildRecord::Number, Strings> includes_;  // by file version
  std::unordered_map<BuildRecord::Number, bool> isSame_;       // by set of folders
};

}  // namespace tarn
