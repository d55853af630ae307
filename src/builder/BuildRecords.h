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
#include "xml/XmlNode.h"

namespace tarn {

// What a tool reported of one output.
struct BuildReport {
  std::string infos;
  std::string date;
  std::vector<std::string> dependencies;
  std::vector<std::string> programs;    // that were run, with full paths
  std::vector<std::string> products;    // further files that were made
  std::vector<std::string> byProducts;  // further files that nothing needs
  std::string search;                   // folders that headers are searched in, quoted
  std::uint64_t command = 0;            // hash of the command lines; 0 if unknown
  bool hasInexactNames = false;         // the command lines depend on how the disk spells names
};

// What the outputs of the open project were made from: file versions and command of the run that
// made each. A node is bound to the record of its output once a tool ran on it in this process, or
// once its record was restored. A node that another program reported about has none, and is judged
// by the times of files alone.
//
// With a journal the records outlive the process: each is appended as its tool ends, so a kill
// loses only what was running. The journal is not needed to be right: every record is compared with
// the files before it is believed.
//
// Nodes are keys, not dereferenced after the call. On the main thread.
class BuildRecords {
 public:
  explicit BuildRecords(FileSystem& disk) : files_(disk), shadows_(disk, store_) {}
  BuildRecords(const BuildRecords&) = delete;
  BuildRecords& operator=(const BuildRecords&) = delete;

  // --- The journal ---

  // Reads the journal at `path` and appends to it from now on. Unless it is the journal that is
  // open already, or the first one, the records of nodes are withdrawn until Restore finds them in
  // it. Cut: what stands after the damage is not known.
  StateVerdict OpenJournal(const std::string& path, const std::string& projectFileName);
  // Nothing is written any more, and nothing is known.
  void CloseJournal();
  // The journal file is the one that was read or written last.
  bool IsJournalCurrent(const std::string& path) const;
  // Makes the journal smaller if much of it is not in use, and removes it if nothing is. For the
  // holder of the build lock.
  void CompactJournal();
  // Appends what is not in the journal yet. Not needed after a run, which does it by itself.
  void WriteJournal();
  bool HasJournal() const { return !journal_.empty(); }
  // Why the journal that was opened could not be read; empty if it could, or if there is none.
  const std::string& GetReadProblem() const { return readProblem_; }
  // Why the journal could not be written; empty if it could.
  const std::string& GetProblem() const { return problem_; }

  // --- Runs ---

  // A tool is about to run on the node. Returns the snapshot to take around the run: the sources,
  // and what the tool read the last time.
  RunSnapshot BeginRun(const CXmlNode& node, std::string_view application, std::string_view output,
                       const std::vector<std::string>& sources, std::uint64_t signature);
  // The run has ended. After a failure nothing is known of the output.
  void EndRun(const CXmlNode& node, RunSnapshot snapshot, bool succeeded);
  // A report about the node's output arrived. Without a run since the last report it came from
  // elsewhere, and the node is not bound any more.
  void TakeReport(const CXmlNode& node, const BuildReport& report);

  // --- Records of nodes ---

  // Binds the node to the record of its output, if there is one, and returns that or null.
  const BuildRecord* Restore(const CXmlNode& node, std::string_view application,
                             std::string_view output);
  const BuildRecordStore& Store() const { return store_; }

  struct Bound {
    std::size_t record = BuildRecordStore::kNone;
    // Why the record holds no more; with a reason here it never holds again.
    StaleVerdict withdrawn;
    std::uint64_t verifiedCommand = 0;  // generation of ToolCommands in which the command held
    std::uint64_t verifiedLook = 0;     // epoch of the file times then
  };
  // Null for a node without a record.
  Bound* Find(const CXmlNode& node);
  const BuildRecord& RecordOf(const Bound& bound) const { return store_.Get(bound.record); }
  void Withdraw(const CXmlNode& node, StaleVerdict why);
  // The output was deleted on purpose.
  void Drop(const CXmlNode& node, std::string_view application, std::string_view output);
  void SetSignature(const Bound& bound, std::uint64_t signature);
  ShadowCheck& Shadows() { return shadows_; }
  void RenewChanged(BuildRecord::Number version, std::int64_t changed) {
    store_.RenewChanged(version, changed);
  }

  // The node and all below it are freed.
  void Forget(const CXmlNode& node);
  void ForgetAll();

 private:
  struct Run {
    std::string application;
    std::string output;
    std::vector<std::string> sources;
    std::uint64_t signature = 0;
    RunSnapshot snapshot;
  };

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
  std::unordered_map<const CXmlNode*, Run> running_;  // begun, not ended
  std::unordered_map<const CXmlNode*, Run> ended_;    // not reported yet

  std::string journal_;  // path; empty: none
  std::string projectFileName_;
  std::optional<FileStatus> journalStatus_;
  StateVerdict verdict_ = StateVerdict::Good;
  std::string readProblem_;
  std::string problem_;
};

}  // namespace tarn
