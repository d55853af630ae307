#pragma once

#include <cstdint>
#include <deque>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "builder/StateText.h"
#include "platform/files/FileSystem.h"

namespace tarn {

// A file as it was when a tool read or wrote it. Time, size and inode don't tell an output from the
// one before if it was brought forward to the time of an input from the future, and its inode was
// used again: then the time of its last change does. One of 0 is not compared.
struct FileVersion {
  std::uint32_t path = 0;  // number of its path in the store
  FileStatus status;
  std::uint64_t hash = 0;  // of its content; 0 if it was not taken

  // A version that no file has: the file changed while the tool ran.
  static FileStatus Unsettled() { return {INT64_MIN, 0, 0, 0, 0, 0}; }
  bool IsSettled() const { return status.modifiedSeconds != INT64_MIN; }
  // The file is this version; false also if only its content could tell.
  bool IsCertainly(const FileStatus& now) const {
    return IsSameVersion(status, now) && (status.changed == 0 || status.changed == now.changed);
  }
};

// What an output file was made from.
struct BuildRecord {
  using Number = std::uint32_t;

  Number application = 0;  // string: path of the application's file
  Number output = 0;       // file version
  Number infos = 0;        // string for the views
  Number date = 0;         // string: modification time of the output as the tool reported it
  // Of tool, files, options and the tool's definition. None if the command lines may change while
  // all of these stay.
  static constexpr std::uint64_t kNoSignature = 0;
  std::uint64_t signature = kNoSignature;
  std::uint64_t command = 0;  // of the command lines that were run; 0 if unknown
  // String: folders that headers are searched in, quoted, "?" with the path of a file that would be
  // read if it were there, and "#" with the definition of a macro; may be empty.
  Number search = 0;
  Number folders = 0;  // set of the folders in which a header could shadow one that was read
  // File versions: sources, then reported dependencies, then programs and further products.
  std::vector<Number> inputs;
  Number sources = 0;
  Number programs = 0;  // and products: files whose version counts, and not their age
  // Strings: files earlier in the search path than the ones that were read, which the tool passed
  // over all the same.
  std::vector<Number> passedOver;
  // File versions: everything that the run left besides the output. What is no further product,
  // such as a rule file, may change or go.
  std::vector<Number> byProducts;

  std::span<const Number> Dependencies() const {
    return std::span(inputs).subspan(sources, inputs.size() - sources - programs);
  }
};

// The build records of one project, by application and output, and their journal on disk.
//
// Written for projects of many thousand records that share most of their headers: every string and
// every version of a file is stored once, in memory and in the journal, and records are numbers.
// The blocks of the journal hold lines:
//
//   T text                                    next string, numbered from 0
//   F path seconds nanos size device inode changed hash
//                                             next file version, numbered from 0
//   A application                             the records that follow are this application's
//   G version...                              next set of folders, numbered from 1; 0 is empty
//   R output infos date search folders sources programs signature command
//                                             a record; replaces that of the same output
//   I version...                              its inputs
//   P text...                                 the files that were passed over
//   B version...                              what else the run left
//   X output                                  no record of this output path any more
//   C version changed                         the file was touched without a change of content
//
// Not for use by two threads at once.
class BuildRecordStore {
 public:
  using Number = BuildRecord::Number;

  BuildRecordStore() = default;
  BuildRecordStore(const BuildRecordStore&) = delete;
  BuildRecordStore& operator=(const BuildRecordStore&) = delete;

  // Replaces everything by the journal's content, up to the first block that is not as it was
  // written; empty unless the verdict is Good.
  StateVerdict Load(std::string bytes, std::string_view projectFileName);
  // A journal with just what is in use.
  std::string Save(std::string_view projectFileName) const;
  bool HasNews() const { return !news_.empty() || !dropped_.empty() || !renewed_.empty(); }
  // The block that the journal lacks. Counts as written from then on.
  std::string TakeNews();
  // A journal with everything, to which further news can be appended.
  std::string RestartJournal(std::string_view projectFileName);
  // Length of the good part of the loaded journal with the news taken since; 0 before a Load.
  std::size_t GetJournalLength() const { return journalLength_; }
  // The journal holds much more than is in use.
  bool IsWasteful() const;

  Number Intern(std::string_view text);
  // The number of this version; one that is known already keeps its hash.
  Number AddVersion(std::string_view path, const FileStatus& status, std::uint64_t hash);
  // The number of the set of these folders, each a version.
  Number AddFolders(std::vector<Number> versions);
  const std::vector<Number>& Folders(Number set) const { return folderSets_[set]; }
  void SetFolders(std::size_t record, Number set);
  // Replaces the part of a version that changes without the content: FileStatus::changed.
  void RenewChanged(Number version, std::int64_t changed);
  // The latest version of this path that any record holds; null if there is none.
  const FileVersion* FindLatest(std::string_view path);

  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);
  // A position stays valid until Load.
  std::size_t Find(std::string_view application, std::string_view output) const;
  // Application and output of a record.
  std::pair<std::string, std::string> KeyText(std::size_t record) const {
    const Key key = KeyOf(records_[record]);
    return {std::string(key.application), std::string(key.output)};
  }
  std::size_t Put(BuildRecord record);
  // Takes the records of another store for outputs that this one has none of.
  void Adopt(const BuildRecordStore& other);
  void Drop(std::size_t record);
  // The tool would be run with the same commands, whatever else changed of its inputs.
  void SetSignature(std::size_t record, std::uint64_t signature);

  const BuildRecord& Get(std::size_t record) const { return records_[record]; }
  std::string_view Text(Number number) const { return texts_[number]; }
  // Stays where it is until Load.
  const FileVersion& Version(Number number) const { return versions_[number]; }
  std::string_view PathOf(Number version) const { return texts_[versions_[version].path]; }
  std::size_t GetCount() const { return index_.size(); }
  std::size_t GetVersionCount() const { return versions_.size(); }
  // Changes with each Load, which numbers everything anew.
  std::uint64_t GetLoadCount() const { return loads_; }

 private:
  struct Key {
    std::string_view application, output;
    bool operator==(const Key&) const = default;
  };
  struct KeyHash {
    std::size_t operator()(const Key& key) const {
      const std::hash<std::string_view> hash;
      return hash(key.application) * 31 + hash(key.output);
    }
  };
  class Reader;
  class Writer;

  void Clear();
  void FillInterned();
  std::size_t Index(BuildRecord record);
  Key KeyOf(const BuildRecord& record) const;

  std::uint64_t loads_ = 0;
  std::string file_;                  // what the strings of a loaded journal borrow from
  std::deque<std::string> ownTexts_;  // what the others borrow from
  std::vector<std::string_view> texts_;
  std::unordered_map<std::string_view, Number> interned_;  // filled at the first Intern
  std::deque<FileVersion> versions_;
  std::vector<Number> latest_;  // by string: its latest version, or kNoVersion
  std::deque<std::vector<Number>> folderSets_ = {{}};
  std::map<std::vector<Number>, Number> folderSetNumbers_;  // filled as sets are added
  std::vector<BuildRecord> records_;
  std::unordered_map<Key, std::size_t, KeyHash> index_;

  // What the journal holds.
  std::size_t writtenTexts_ = 0;
  std::size_t writtenVersions_ = 0;
  std::size_t writtenFolderSets_ = 1;
  std::size_t writtenRecords_ = 0;                  // lines, the replaced ones included
  std::vector<std::size_t> news_;                   // records to write
  std::vector<std::pair<Number, Number>> dropped_;  // application and output to write
  std::vector<Number> renewed_;                     // versions whose `changed` is to write
  std::uint64_t chain_ = 0;
  std::size_t journalLength_ = 0;
};

}  // namespace tarn
