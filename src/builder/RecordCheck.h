#pragma once

#include <cstdint>
#include <vector>

#include "builder/BuildRecords.h"
#include "builder/FileTimes.h"
#include "builder/NodesAhead.h"
#include "builder/StaleVerdict.h"
#include "builder/ToolCommands.h"

namespace tarn {

// Compares the build record of a node with the files and the command of now: its output and inputs
// have to be the very files that the tool was run on, in either direction of time. Costs a few
// comparisons a file; the content of a file is read only if nothing but its mode or links seem to
// have changed.
class RecordCheck {
 public:
  RecordCheck(BuildRecords& buildRecords, ToolCommands& toolCommands, FileSystem& disk,
              FileTimes& fileTimes)
      : records_(buildRecords), commands_(toolCommands), files_(disk), times_(fileTimes) {}

  // No reason for a node without a record. With `mayLook` false a file whose status is not known
  // yet ends the check without a reason, and sets `hasMissed`.
  StaleVerdict Check(const CXmlNode& node, bool mayLook, bool& hasMissed);
  // The part of that which looks at no file.
  StaleVerdict CheckCommand(const CXmlNode& node);
  // Why an earlier check found that the record holds no more; no reason if none did.
  StaleVerdict GetWithdrawn(const CXmlNode& node);
  void Withdraw(const CXmlNode& node, const StaleVerdict& why) { records_.Withdraw(node, why); }

  // The record of a node whose command is known to hold; null otherwise.
  const BuildRecord* FindVerified(const CXmlNode& node);
  // Also if the record was withdrawn.
  bool HasRecord(const CXmlNode& node);
  // No header can have come that would be included in place of one that was read.
  bool AreFoldersUnchanged(const BuildRecord& record);
  const FileVersion& Version(BuildRecord::Number number) const {
    return records_.Store().Version(number);
  }
  std::string_view PathOf(BuildRecord::Number version) const {
    return records_.Store().PathOf(version);
  }
  // Asks for the file of a version, as Inquiry::Add does for a path: many nodes share their inputs.
  const FileTimes::Look& AskFor(BuildRecord::Number version, FileTimes::Inquiry& inquiry);
  // Puts the inputs that the record names into an inquiry.
  void AskForInputs(const CXmlNode& node, FileTimes::Inquiry& inquiry);

 private:
  StaleVerdict CheckCommand(const CXmlNode& node, BuildRecords::Bound& bound);
  bool IsCommandVerified(const BuildRecords::Bound& bound) const;
  bool IsCurrent(BuildRecord::Number version, const FileStatus& now);

  BuildRecords& records_;
  ToolCommands& commands_;
  FileSystem& files_;
  FileTimes& times_;
  std::uint64_t folderEpoch_ = 0;  // of the file times when folders were looked at
  // Where the file times keep the file of a version, in one epoch and of one journal.
  std::vector<const FileTimes::Look*> looks_;
  std::uint64_t looksEpoch_ = 0;
  std::uint64_t looksJournal_ = 0;
};

}  // namespace tarn
