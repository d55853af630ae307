#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "builder/BuildRecordStore.h"
#include "builder/RunSnapshot.h"
#include "builder/ShadowCheck.h"
#include "builder/StaleVerdict.h"
#include "platform/files/FileSystem.h"

namespace tarn {

class CXmlNode;

// A tool's report about one output.
struct BuildReport {
  std::string infos;
  std::string date;
  std::vector<std::string> dependencies;
  std::vector<std::string> programs;    // full paths of programs that were run
  std::vector<std::string> products;    // further files that were produced
  std::vector<std::string> byProducts;  // produced files that nothing needs
  std::string search;                   // header search folders, quoted
  std::uint64_t command = 0;            // hash of the command lines; 0 if unknown
  bool hasInexactNames = false;         // the command lines depend on the spelling of names on disk
  std::uint32_t milliseconds = 0;       // duration of the run; 0 if unknown
};

// Build records of the open project: for each output, the file versions and the command of the run
// that produced it. A node is bound to the record of its output when a tool has run on it in this
// process or when its record is restored. A node whose report came from another program has no
// record and is judged by file times only.
//
// A journal makes the records persistent: each is appended as soon as its tool ends, so a kill
// loses only the runs in progress. The journal is not trusted: every record is verified against the
// files before it is used.
//
// Nodes are used as keys only and not dereferenced after the call. Main thread only.
class BuildRecords {
 public:
  explicit BuildRecords(FileSystem& disk) : files_(disk), shadows_(disk, store_) {}
  BuildRecords(const BuildRecords&) = delete;
  BuildRecords& operator=(const BuildRecords&) = delete;

  // --- The journal ---

  // Reads the journal at `path` and appends to it from now on. Unless this is the journal already
  // open, or the first one, the records of nodes are withdrawn until Restore finds them in it. If
  // the verdict is Cut, everything after the damage is lost.
  StateVerdict OpenJournal(const std::string& path, const std::string& projectFileName);
  // Stops writing and clears all records.
  void CloseJournal();
  // Returns true if the file at `path` is the journal last read or written.
  bool IsJournalCurrent(const std::string& path) const;
  // Shrinks the journal if much of it is obsolete, and removes it if all is. The caller must hold
  // the build lock.
  void CompactJournal();
  // Appends pending changes. Unnecessary after a run, because EndRun and TakeReport write.
  void WriteJournal();
  bool HasJournal() const { return !journal_.empty(); }
  // Why the open journal could not be read; empty if it was read or if there is none.
  const std::string& GetReadProblem() const { return readProblem_; }
  // Why the journal could not be written; empty on success.
  const std::string& GetProblem() const { return problem_; }

  // --- Runs ---

  // Called before a tool runs on the node. Returns the snapshot to take around the run, containing
  // the sources, the files that the tool read in its previous run and those that were produced in
  // the current clock tick.
  RunSnapshot BeginRun(const CXmlNode& node, std::string_view application, std::string_view output,
                       const std::vector<std::string>& sources, std::uint64_t signature);
  // Called after the run. If it failed, the output is treated as unknown.
  void EndRun(const CXmlNode& node, RunSnapshot snapshot, bool succeeded);
  // Forgets the runs that have begun, whose results are not used.
  void AbandonRuns() { running_.clear(); }
  // Processes a report about the node's output. Without a run since the previous report, it came
  // from elsewhere, and the node is unbound.
  void TakeReport(const CXmlNode& node, const BuildReport& report);

  // --- Records of nodes ---

  // Binds the node to the record of its output. Returns the record, or nullptr if there is none.
  const BuildRecord* Restore(const CXmlNode& node, std::string_view application,
                             std::string_view output);
  const BuildRecordStore& Store() const { return store_; }

  struct Bound {
    std::size_t record = BuildRecordStore::kNone;
    // Why the record is invalid. Once set, the record never becomes valid again.
    StaleVerdict withdrawn;
    std::uint64_t verifiedCommand = 0;  // ToolCommands generation of the last verification
    std::uint64_t verifiedChanges = 0;  // change count of the file times at that time
  };
  // Returns nullptr if the node has no record.
  Bound* Find(const CXmlNode& node);
  const BuildRecord& RecordOf(const Bound& bound) const { return store_.Get(bound.record); }
  // Marks the node's record as invalid.
  void Withdraw(const CXmlNode& node, StaleVerdict why);
  // Deletes the record of an output that was deleted on purpose.
  void Drop(const CXmlNode& node, std::string_view application, std::string_view output);
  // Same, for a record that no node is bound to.
  void DropRecord(std::size_t record) { store_.Drop(record); }
  // See BuildRecordStore.
  void SetSignature(const Bound& bound, std::uint64_t signature);
  ShadowCheck& Shadows() { return shadows_; }
  void RenewChanged(BuildRecord::Number version, std::int64_t changed) {
    store_.RenewChanged(version, changed);
  }

  // Removes the node and its descendants, which are about to be freed.
  void Invalidate(const CXmlNode& node);
  void ClearAll();

 private:
  struct Run {
    std::string application;
    std::string output;
    std::vector<std::string> sources;
    std::uint64_t signature = 0;
    RunSnapshot snapshot;
  };

  // Something that a run has produced.
  struct Product {
    std::string path;
    std::int64_t changed;  // see FileStatus
    std::uint64_t hash;    // of its content; not 0
  };

  void AddRecentProducts(RunSnapshot& snapshot);
  void RememberProducts(const BuildRecord& record);
  std::vector<std::string> RootsOf(const Run& run, const BuildReport& report) const;
  BuildRecord::Number AddInput(const Run& run, const std::string& path, PathChanges& changes);
  BuildRecord::Number AddProgram(const Run& run, const std::string& path, PathChanges& changes);
  void AddProduct(BuildRecord& record, const std::string& path);
  Status AppendNews();
  void WithdrawAll();
  StateVerdict TakeOverJournal(const std::string& path, const std::string& projectFileName);

  FileSystem& files_;
  BuildRecordStore store_;
  ShadowCheck shadows_;
  std::unordered_map<const CXmlNode*, Bound> bound_;
  std::unordered_map<const CXmlNode*, Run> running_;  // begun but not ended
  std::unordered_map<const CXmlNode*, Run> ended_;    // ended but not reported
  std::vector<Product> recent_;                       // at least those of the current clock tick

  std::string journal_;  // path; empty if none
  std::string projectFileName_;
  std::optional<FileStatus> journalStatus_;
  StateVerdict verdict_ = StateVerdict::Good;
  std::string readProblem_;
  std::string problem_;
};

}  // namespace tarn
