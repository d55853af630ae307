#pragma once

#include <cstdint>
#include <deque>
#include <map>
#include <memory_resource>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "builder/StateText.h"
#include "platform/files/FileSystem.h"

namespace tarn {

// Identity of a file at the time a tool read or wrote it. Time, size and inode can't distinguish an
// output from its predecessor if its time was advanced to that of an input from the future and its
// inode was reused; the time of its last status change can. A change time of 0 is not compared.
struct FileVersion {
  std::uint32_t path = 0;  // string number of its path in the store
  FileStatus status;
  std::uint64_t hash = 0;  // of the content; 0 if not computed

  // A status that no file has, for a file that changed while the tool ran.
  static FileStatus Unsettled() { return {INT64_MIN, 0, 0, 0, 0, 0}; }
  bool IsSettled() const { return status.modifiedSeconds != INT64_MIN; }
  // Returns true if the file has this version; false also if only its content could decide.
  bool IsCertainly(const FileStatus& now) const {
    return IsSameVersion(status, now) && (status.changed == 0 || status.changed == now.changed);
  }
};

// Record of what an output file was made from.
struct BuildRecord {
  using Number = std::uint32_t;

  Number application = 0;  // string: path of the application's file
  Number output = 0;       // file version number
  Number infos = 0;        // string number: symbols for the views
  Number date = 0;         // string: modification time of the output as reported by the tool
  // Hash of tool, files, options and the tool's definition; kNoSignature if the command lines may
  // change even though none of these does.
  static constexpr std::uint64_t kNoSignature = 0;
  std::uint64_t signature = kNoSignature;
  std::uint64_t command = 0;  // hash of the command lines that were run; 0 if unknown
  Number milliseconds = 0;    // duration of the run; 0 if unknown
  // String number; may be empty: the header search folders, quoted; paths prefixed with "?" of
  // files that would have been read if they existed; and macro definitions prefixed with "#".
  Number search = 0;
  Number folders = 0;  // set of folders in which a new header could shadow one that was read
  // File versions: first sources, then reported dependencies, then programs and further products.
  std::vector<Number> inputs;
  Number sources = 0;
  Number programs = 0;  // includes products: only their version matters, not their time
  // Strings: files earlier in the search path than the ones that were read, which the tool
  // nevertheless did not use.
  std::vector<Number> passedOver;
  // File versions of everything else that the run produced. Files that are not further products,
  // such as a dependency file, may change or disappear.
  std::vector<Number> byProducts;

  std::span<const Number> Dependencies() const {
    return std::span(inputs).subspan(sources, inputs.size() - sources - programs);
  }
};

// The build records of one project, indexed by application and output, and their journal on disk.
// An append-only log with string interning: designed for many thousands of records that share most
// of their headers, it stores every string and file version once, in memory and in the journal, and
// a record consists of numbers. Lookups take constant time; loading is linear in the journal.
//
// Each block of the journal consists of lines:
//
//   T text                                    next string, numbered from 0
//   F path seconds nanos size device inode changed hash
//                                             next file version, numbered from 0
//   A application                             the application of the records that follow
//   G version...                              next set of folders, numbered from 1; 0 is empty
//   R output infos date search folders sources programs signature command
//                                             a record; replaces that of the same output
//   D milliseconds                            the duration of its run, if known
//   I version...                              its inputs
//   P text...                                 the files that were passed over
//   B version...                              other files that the run produced
//   X output                                  deletes the record of this output path
//   C version changed                         the file was touched without a change of content
//
// Not thread-safe.
class BuildRecordStore {
 public:
  using Number = BuildRecord::Number;

  BuildRecordStore() = default;
  BuildRecordStore(const BuildRecordStore&) = delete;
  BuildRecordStore& operator=(const BuildRecordStore&) = delete;

  // Replaces everything with the content of the journal, up to the first corrupt block. The store
  // is empty unless the verdict is Good. A journal cut short yields Good and a GetJournalLength()
  // below its size.
  StateVerdict Load(std::string_view bytes, std::string_view projectFileName);
  // Returns a journal of the live records only.
  std::string Save(std::string_view projectFileName) const;
  // Returns true if the journal lacks changes.
  bool HasNews() const { return !news_.empty() || !dropped_.empty() || !renewed_.empty(); }
  // Returns the block of changes that the journal lacks, and marks them as written.
  std::string TakeNews();
  // Returns a complete journal to which further blocks can be appended.
  std::string RestartJournal(std::string_view projectFileName);
  // Length of the valid part of the loaded journal plus the blocks taken since; 0 before Load.
  std::size_t GetJournalLength() const { return journalLength_; }
  // Returns true if the journal holds far more than the live records.
  bool IsWasteful() const;

  // Returns the number of this string, adding it if it is new.
  Number Intern(std::string_view text);
  // Returns the number of this version. If the version exists already, it keeps its hash.
  Number AddVersion(std::string_view path, const FileStatus& status, std::uint64_t hash);
  // Returns the number of the set of these folders, given by their versions.
  Number AddFolders(std::vector<Number> versions);
  const std::vector<Number>& Folders(Number set) const { return folderSets_[set]; }
  void SetFolders(std::size_t record, Number set);
  // Updates FileStatus::changed, the one part of a version that may change although the content
  // doesn't.
  void RenewChanged(Number version, std::int64_t changed);
  // Returns the latest recorded version of this path, or nullptr.
  const FileVersion* FindLatest(std::string_view path);

  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);
  // Returns the index of a record, or kNone. The index is valid until Load.
  std::size_t Find(std::string_view application, std::string_view output) const;
  // Returns the indices of the records of an application, in their order. Linear in all records.
  std::vector<std::size_t> RecordsOf(std::string_view application) const;
  // Returns the application and output of a record.
  std::pair<std::string, std::string> KeyText(std::size_t record) const {
    const Key key = KeyOf(records_[record]);
    return {std::string(key.application), std::string(key.output)};
  }
  // Adds a record or replaces that of the same application and output. Returns its index.
  std::size_t Put(BuildRecord record);
  // Copies the other store's records for outputs without a record here.
  void Adopt(const BuildRecordStore& other);
  // Deletes a record. Other indices stay valid.
  void Drop(std::size_t record);
  // Updates the signature after a change of inputs that left the commands the same.
  void SetSignature(std::size_t record, std::uint64_t signature);

  const BuildRecord& Get(std::size_t record) const { return records_[record]; }
  std::string_view Text(Number number) const { return texts_[number]; }
  // The reference is valid until Load.
  const FileVersion& Version(Number number) const { return versions_[number]; }
  std::string_view PathOf(Number version) const { return texts_[versions_[version].path]; }
  std::size_t GetCount() const { return index_.size(); }
  std::size_t GetVersionCount() const { return versions_.size(); }
  // Changes with each Load, which renumbers everything.
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
  // Appends a copy of the text, which has no number yet.
  void AddText(std::string_view text);
  std::size_t Index(BuildRecord record);
  Key KeyOf(const BuildRecord& record) const;
  static std::size_t NumbersOf(const BuildRecord& record);

  std::uint64_t loads_ = 0;
  std::pmr::monotonic_buffer_resource characters_;  // memory of the strings
  std::vector<std::string_view> texts_;
  std::unordered_map<std::string_view, Number> interned_;  // filled by the first Intern
  std::deque<FileVersion> versions_;
  std::vector<Number> latest_;  // by string: latest version of this path, or kNoVersion
  std::deque<std::vector<Number>> folderSets_ = {{}};
  std::map<std::vector<Number>, Number> folderSetNumbers_;  // filled as sets are added
  std::vector<BuildRecord> records_;
  std::unordered_map<Key, std::size_t, KeyHash> index_;

  // State of the journal.
  std::size_t writtenTexts_ = 0;
  std::size_t writtenVersions_ = 0;
  std::size_t writtenFolderSets_ = 1;
  std::size_t writtenRecords_ = 0;                  // record lines, including replaced ones
  std::size_t writtenNumbers_ = 0;                  // files that these list, and renewed versions
  std::vector<std::size_t> news_;                   // records to be written
  std::vector<std::pair<Number, Number>> dropped_;  // application and output to be written
  std::vector<Number> renewed_;                     // versions whose `changed` is to be written
  // Checksum that seeds the next block, see StateText.h.
  std::uint64_t chain_ = 0;
  std::size_t journalLength_ = 0;
};

}  // namespace tarn
