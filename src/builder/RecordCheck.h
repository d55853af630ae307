#pragma once

#include <cstdint>
#include <vector>

#include "builder/BuildRecords.h"
#include "builder/MtimeCache.h"
#include "builder/Prefetch.h"
#include "builder/StaleVerdict.h"
#include "builder/ToolCommands.h"

namespace tarn {

// Compares the build record of a node with the current files and command: output and inputs must be
// exactly the versions of the recorded run, so older files are detected as well as newer ones.
// Costs a few comparisons per file; reads a file's content only if apparently nothing but its mode
// or links changed.
class RecordCheck {
 public:
  RecordCheck(BuildRecords& buildRecords, ToolCommands& toolCommands, FileSystem& disk,
              MtimeCache& fileTimes)
      : records_(buildRecords), commands_(toolCommands), files_(disk), times_(fileTimes) {}

  // Returns why the record is invalid; no reason if it is valid or missing. If `mayStat` is false,
  // a file whose status is not cached ends the check without a reason and sets `hasMissed`.
  StaleVerdict Check(const CXmlNode& node, bool mayStat, bool& hasMissed);
  // The part of Check that accesses no files.
  StaleVerdict CheckCommand(const CXmlNode& node);
  // Returns why an earlier check found the record invalid; no reason if none did.
  StaleVerdict GetWithdrawn(const CXmlNode& node);
  void Withdraw(const CXmlNode& node, const StaleVerdict& why) { records_.Withdraw(node, why); }

  // Returns the record of a node whose command has been verified, or nullptr.
  const BuildRecord* FindVerified(const CXmlNode& node);
  // Returns true even if the record was withdrawn.
  bool HasRecord(const CXmlNode& node);
  // Returns true if no new header can take precedence over one that was read.
  bool AreFoldersUnchanged(const BuildRecord& record);
  const FileVersion& Version(BuildRecord::Number number) const {
    return records_.Store().Version(number);
  }
  std::string_view PathOf(BuildRecord::Number version) const {
    return records_.Store().PathOf(version);
  }
  // Requests the file of a version, like StatBatch::Add for a path, but with a cache, because many
  // nodes share their inputs.
  const MtimeCache::Entry& RequestStat(BuildRecord::Number version, MtimeCache::StatBatch& batch);
  // Adds the inputs named in the record to a batch.
  void CollectRecordedInputs(const CXmlNode& node, MtimeCache::StatBatch& batch);

 private:
  StaleVerdict CheckCommand(const CXmlNode& node, BuildRecords::Bound& bound);
  bool IsCommandVerified(const BuildRecords::Bound& bound) const;
  // Returns the place of the version in `entries_`.
  const MtimeCache::Entry*& EntryOf(BuildRecord::Number version);
  // Compares a file with a recorded version, by content if the status is inconclusive.
  bool IsCurrent(BuildRecord::Number version, const FileStatus& now);

  BuildRecords& records_;
  ToolCommands& commands_;
  FileSystem& files_;
  MtimeCache& times_;
  std::uint64_t folderChanges_ = 0;  // change count of the file times at the last check of folders
  // Files found in the cache of file times so far, by version number; valid for one epoch and one
  // loaded journal.
  std::vector<const MtimeCache::Entry*> entries_;
  std::uint64_t looksEpoch_ = 0;
  std::uint64_t looksJournal_ = 0;
};

}  // namespace tarn
