#include "builder/RecordCheck.h"

#include <utility>

#include "builder/RunSnapshot.h"

namespace tarn {

namespace {

StaleReason ReasonOf(const BuildRecord& record, std::size_t input) {
  if (input < record.sources) return StaleReason::SourceChanged;
  const bool isProgram = input + record.programs >= record.inputs.size();
  return isProgram ? StaleReason::ProgramChanged : StaleReason::DependencyChanged;
}

}  // namespace

StaleVerdict RecordCheck::GetWithdrawn(const CXmlNode& node) {
  const BuildRecords::Bound* const bound = records_.Find(node);
  return bound == nullptr ? StaleVerdict() : bound->withdrawn;
}

bool RecordCheck::HasRecord(const CXmlNode& node) {
  return records_.Find(node) != nullptr;
}

const BuildRecord* RecordCheck::FindVerified(const CXmlNode& node) {
  const BuildRecords::Bound* const bound = records_.Find(node);
  const bool holds = bound != nullptr && !bound->withdrawn &&
                     bound->record != BuildRecordStore::kNone && IsCommandVerified(*bound);
  return holds ? &records_.RecordOf(*bound) : nullptr;
}

StaleVerdict RecordCheck::Check(const CXmlNode& node, bool mayStat, bool& hasMissed) {
  BuildRecords::Bound* const bound = records_.Find(node);
  if (bound == nullptr) return {};
  if (bound->withdrawn || bound->record == BuildRecordStore::kNone) return bound->withdrawn;
  if (StaleVerdict changed = CheckCommand(node, *bound)) return changed;
  const BuildRecord& record = records_.RecordOf(*bound);
  const auto find = [&](BuildRecord::Number version) {
    const MtimeCache::Entry*& entry = EntryOf(version);
    if (entry == nullptr || !entry->IsKnown()) {
      const std::string_view path = PathOf(version);
      entry = mayStat ? &times_.Get(path) : times_.Find(path);
    }
    hasMissed |= entry == nullptr;
    return entry;
  };
  const MtimeCache::Entry* const output = find(record.output);
  if (output != nullptr && (!output->exists || !IsCurrent(record.output, output->status))) {
    return {StaleReason::OutputChanged, std::string(PathOf(record.output))};
  }
  for (std::size_t i = 0; i < record.inputs.size(); ++i) {
    const BuildRecord::Number input = record.inputs[i];
    const MtimeCache::Entry* const entry = find(input);
    if (entry == nullptr) continue;
    if (!Version(input).IsSettled()) {
      return {StaleReason::ChangedDuringRun, std::string(PathOf(input))};
    }
    if (!entry->exists || !IsCurrent(input, entry->status)) {
      return {ReasonOf(record, i), std::string(PathOf(input))};
    }
  }
  if (hasMissed || AreFoldersUnchanged(record)) return {};
  return records_.Shadows().Find(bound->record);
}

// Checks folders again after each tool, which may have created a file.
bool RecordCheck::AreFoldersUnchanged(const BuildRecord& record) {
  if (record.folders == 0) return true;
  if (std::exchange(folderChanges_, times_.GetChangeCount()) != times_.GetChangeCount()) {
    records_.Shadows().Invalidate();
  }
  return records_.Shadows().AreUnchanged(record);
}

StaleVerdict RecordCheck::CheckCommand(const CXmlNode& node) {
  BuildRecords::Bound* const bound = records_.Find(node);
  const bool hasRecord = bound != nullptr && bound->record != BuildRecordStore::kNone;
  return hasRecord ? CheckCommand(node, *bound) : StaleVerdict();
}

// A command that depends on the spelling of names on disk is verified again after each tool.
bool RecordCheck::IsCommandVerified(const BuildRecords::Bound& bound) const {
  if (bound.verifiedCommand != commands_.GetGeneration()) return false;
  return records_.RecordOf(bound).signature != BuildRecord::kNoSignature ||
         bound.verifiedChanges == times_.GetChangeCount();
}

// Compares the command lines themselves only if one of their inputs has changed. Without option
// values a node can't be judged.
StaleVerdict RecordCheck::CheckCommand(const CXmlNode& node, BuildRecords::Bound& bound) {
  if (IsCommandVerified(bound)) return {};
  const std::uint64_t signature = commands_.SignatureOf(node);
  if (signature == 0) return {};
  const BuildRecord& record = records_.RecordOf(bound);
  if (signature != record.signature) {
    const bool isSame = record.command != 0 && commands_.HashOf(node) == record.command;
    if (!isSame) return {StaleReason::CommandChanged, {}};
    if (record.signature != BuildRecord::kNoSignature) records_.SetSignature(bound, signature);
  }
  bound.verifiedCommand = commands_.GetGeneration();
  bound.verifiedChanges = times_.GetChangeCount();
  return {};
}

bool RecordCheck::IsCurrent(BuildRecord::Number number, const FileStatus& now) {
  const FileVersion& version = Version(number);
  if (version.IsCertainly(now)) return true;
  if (!IsSameVersion(version.status, now) || version.hash == 0) return false;
  if (HashFile(files_, std::string(PathOf(number))) != version.hash) return false;
  records_.RenewChanged(number, now.changed);
  return true;
}

const MtimeCache::Entry*& RecordCheck::EntryOf(BuildRecord::Number version) {
  const BuildRecordStore& store = records_.Store();
  if (looksEpoch_ != times_.GetEpoch() || looksJournal_ != store.GetLoadCount()) {
    entries_.clear();
    looksEpoch_ = times_.GetEpoch();
    looksJournal_ = store.GetLoadCount();
  }
  if (version >= entries_.size()) entries_.resize(store.GetVersionCount());
  return entries_[version];
}

const MtimeCache::Entry& RecordCheck::RequestStat(BuildRecord::Number version,
                                                  MtimeCache::StatBatch& batch) {
  const MtimeCache::Entry*& entry = EntryOf(version);
  if (entry == nullptr || entry->state == MtimeCache::Entry::State::Open) {
    entry = &batch.Add(times_, PathOf(version));
  }
  return *entry;
}

void RecordCheck::CollectRecordedInputs(const CXmlNode& node, MtimeCache::StatBatch& batch) {
  const BuildRecords::Bound* const bound = records_.Find(node);
  if (bound == nullptr || bound->record == BuildRecordStore::kNone) return;
  for (const BuildRecord::Number input : records_.RecordOf(*bound).inputs) {
    RequestStat(input, batch);
  }
}

}  // namespace tarn
