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

// Finds files that would now be included instead of one that a tool read: new headers earlier in
// the search path.
//
// Candidates are: any name in an include directive of the source or of the files it includes, and
// the path of any header below a folder that the command names, in any folder searched for headers
// (the folders of the including files, and those named by the command). If a file tests for the
// existence of a name produced by macros (__has_include), all names that the macros can produce are
// candidates, taking into account macros defined by the command, which the tool reports with a "#".
// The tool can also report single files that it would have read if they had existed, prefixed with
// "?".
//
// A record stores the state of these folders; as long as none has gained or lost an entry nothing
// can be shadowed, so an up-to-date project costs one comparison per folder. Otherwise the search
// is repeated: files that existed during the run are ignored, and those of them that have
// disappeared count as changes, because a source can test if a header exists.
//
// A precompiled header (x.h.gch, a file or a folder of files) is read instead of a header next to
// it or in a later folder, and compilers don't report it; an existing one is treated as an input.
//
// Main thread only.
class ShadowCheck {
 public:
  ShadowCheck(FileSystem& disk, BuildRecordStore& store) : files_(disk), store_(store) {}

  // Adds the version of a file as it was during the run.
  using AddVersion = std::function<BuildRecord::Number(const std::string& path)>;
  // Fills in the folders of a new record, and the files that its tool passed over or could have
  // read. If one of these may have been created during the run, according to `mayBeNew`, the result
  // is uncertain and the record becomes invalid.
  void Complete(BuildRecord& record, const AddVersion& addInput,
                const std::function<bool(const std::string&)>& mayBeNew);
  // Returns true if no folder of the record has gained or lost an entry.
  bool AreUnchanged(const BuildRecord& record);
  // Returns Shadowed with the file that appeared or disappeared, UnknownTest with a file whose
  // existence tests can't be evaluated, or no reason. In the last case updates the record with the
  // changed state of its folders. The state of a folder is cached until Invalidate.
  StaleVerdict Find(std::size_t record);

  // Invalidates the cached state of folders.
  void Invalidate() { isSame_.clear(); }
  // Must be called before the store is reloaded.
  void Clear();

 private:
  struct Listing {
    FileStatus status;
    bool isSettled = false;  // no entry can be added without changing the status
    std::unordered_set<std::string> names;
    bool hasPrecompiled = false;  // contains a precompiled header
  };
  using Strings = std::vector<std::string>;

  // Data reported by the tool: header search folders, single files, and the macros defined by the
  // command, as source text.
  struct Searched {
    Strings folders, files;
    std::string macros;
  };

  // Names found in one version of a file.
  struct SourceScan {
    Strings includes;
    bool hasComputedTest = false;
    std::unique_ptr<MacroScan> macros;  // nullptr until needed
  };

  // Existing files that could be read or tested for.
  struct Candidates {
    Strings files;
    Strings precompiled;                      // headers read instead of the named ones
    std::unordered_set<std::string> watched;  // folders
    std::string unknownTest;  // file with a test that can't be evaluated; empty if none
  };

  Searched SearchedBy(const BuildRecord& record) const;
  Strings FoldersOf(const BuildRecord& record, Strings named) const;
  Strings NamesOf(const BuildRecord& record, const Searched& searched, Candidates& found);
  // Returns the names in computed existence tests; empty, at no cost, if no file has any.
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
