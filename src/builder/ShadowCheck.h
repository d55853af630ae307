#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "builder/BuildRecordStore.h"
#include "builder/StaleVerdict.h"
#include "patterns/TestedNames.h"
#include "platform/files/FileSystem.h"

namespace tarn {

// Finds files that would be included now in place of one that a tool read: a new header earlier in
// the search path.
//
// Such a file can be any name of an include directive, of the source or of what it includes, and
// the path of any header below a folder that the command names, in any folder that headers are
// searched in: the folders of the including files and those that the command names. If a file tests
// for another one by a name that macros yield (__has_include), all names that they can yield count,
// with the macros that the command defines; the tool lists those with a "#". The tool can also list
// single files that it would have read had they been there, with a "?" before their paths.
//
// A record holds these folders as they were; while none has gained or lost an entry nothing can be
// shadowed, so an up-to-date project costs one comparison a folder. Otherwise the names are looked
// for again: what was there already when the tool ran is passed over, and what of it is gone counts
// like a new file, since a source can test whether a header exists.
//
// A precompiled header (x.h.gch, a file or a folder of files) is read in place of a header beside
// it or in a later folder, and compilers don't report it: one that is there counts as an input.
//
// On the main thread.
class ShadowCheck {
 public:
  ShadowCheck(FileSystem& disk, BuildRecordStore& store) : files_(disk), store_(store) {}

  // Makes the version of a file as it was when the tool ran.
  using AddVersion = std::function<BuildRecord::Number(const std::string& path)>;
  // Fills in the folders of a new record, and the files that its tool passed over or could have
  // read. Of one that may have come while the tool ran, by `mayBeNew`, that isn't certain: the
  // record doesn't hold then.
  void Complete(BuildRecord& record, const AddVersion& addInput,
                const std::function<bool(const std::string&)>& mayBeNew);
  // No folder of the record has gained or lost an entry.
  bool AreUnchanged(const BuildRecord& record);
  // Returns the file that came or went, as Shadowed, or a file whose tests can't be followed, as
  // UnknownTest; otherwise no reason. Folders that changed without such a file are noted in the
  // record. Folders count as they are at the first look after a Forget.
  StaleVerdict Find(std::size_t record);

  void Forget() { isSame_.clear(); }
  // Before the store is loaded again.
  void Clear();

 private:
  struct Listing {
    FileStatus status;
    bool isSettled = false;  // no entry can come without changing the status
    std::unordered_set<std::string> names;
    bool hasPrecompiled = false;  // a name with the extension of precompiled headers
  };
  using Strings = std::vector<std::string>;

  // What the tool reported: folders that headers are searched in, single files, and the macros that
  // the command defines, as a source.
  struct Searched {
    Strings folders, files;
    std::string macros;
  };

  // What a file of some version names.
  struct SourceScan {
    Strings includes;
    bool hasComputedTest = false;
    std::unique_ptr<MacroScan> macros;  // null until needed
  };

  // Files that could be read, or whose presence could be tested, as far as they are there.
  struct Candidates {
    Strings files;
    Strings precompiled;  // headers, which are read instead of what the names say
    std::unordered_set<std::string> watched;  // folders
    std::string unknownTest;  // the file with a test that can't be followed; empty if there is none
  };

  Searched SearchedBy(const BuildRecord& record) const;
  Strings FoldersOf(const BuildRecord& record, Strings named) const;
  Strings NamesOf(const BuildRecord& record, const Searched& searched, Candidates& found);
  // Returns the names in computed tests; empty if no file has one, which costs nothing.
  Strings TestedBy(const BuildRecord& record, const Searched& searched, Candidates& found);
  SourceScan& Scan(BuildRecord::Number version);
  const MacroScan& ScanMacrosOf(BuildRecord::Number version);
  Candidates FindCandidates(const BuildRecord& record);
  void AddPrecompiled(const std::string& header, Candidates& found);
  bool IsThere(const std::string& path, std::unordered_set<std::string>& watched);
  const Listing* List(const std::string& folder);
  BuildRecord::Number AddFolderSet(const std::unordered_set<std::string>& watched);

  FileSystem& files_;
  BuildRecordStore& store_;
  std::unordered_map<std::string, std::optional<Listing>> listings_;
  std::unordered_map<BuildRecord::Number, SourceScan> scans_;  // by file version
  std::unordered_map<BuildRecord::Number, bool> isSame_;       // by set of folders
};

}  // namespace tarn
