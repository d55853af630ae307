#include "builder/BuildRecords.h"

#include <utility>

#include "platform/paths/Paths.h"
#include "platform/text/Text.h"
#include "xml/XmlNode.h"

namespace tarn {

StateVerdict BuildRecords::OpenJournal(const std::string& path,
                                       const std::string& projectFileName) {
  if (IsJournalCurrent(path)) return verdict_;
  // Adds reports received before the journal was opened.
  if (journal_.empty() && store_.GetCount() > 0) return TakeOverJournal(path, projectFileName);
  WithdrawAll();
  shadows_.Clear();
  journal_ = path;
  projectFileName_ = projectFileName;
  problem_.clear();
  journalStatus_ = files_.Examine(path);
  auto bytes = files_.ReadOwnFile(path);
  const bool isMissing = !bytes && bytes.GetError().code == ErrorCode::NotFound;
  const bool isUnreadable = !bytes && !isMissing;
  readProblem_ = isUnreadable ? bytes.GetError().text : std::string();
  const std::string_view journal = bytes ? std::string_view(*bytes) : std::string_view();
  verdict_ = store_.Load(journal, projectFileName);
  const bool isCut = verdict_ == StateVerdict::Good && store_.GetJournalLength() < journal.size();
  if (isCut) verdict_ = StateVerdict::Cut;
  if (isMissing) verdict_ = StateVerdict::Good;
  if (isUnreadable) verdict_ = StateVerdict::Unreadable;
  return verdict_;
}

StateVerdict BuildRecords::TakeOverJournal(const std::string& path,
                                           const std::string& projectFileName) {
  BuildRecords written(files_);
  verdict_ = written.OpenJournal(path, projectFileName);
  readProblem_ = written.readProblem_;
  store_.Adopt(written.store_);
  journal_ = path;
  projectFileName_ = projectFileName;
  problem_.clear();
  const Status replaced = files_.WriteOwnFile(path, store_.RestartJournal(projectFileName));
  if (!replaced) problem_ = path + ": " + replaced.GetError().text;
  journalStatus_ = files_.Examine(path);
  return verdict_;
}

// A node's history is in the other journal or lost: another process failed to build it, or the file
// was deleted. So its output must not be judged by file times alone.
void BuildRecords::WithdrawAll() {
  for (auto& [node, bound] : bound_) {
    if (!bound.withdrawn) bound.withdrawn = {StaleReason::NeverBuilt, {}};
    bound.record = BuildRecordStore::kNone;
  }
}

void BuildRecords::CloseJournal() {
  ClearAll();
  shadows_.Clear();
  journal_.clear();
  store_.Load({}, {});
}

bool BuildRecords::IsJournalCurrent(const std::string& path) const {
  if (path != journal_) return false;
  const std::optional<FileStatus> now = files_.Examine(path);
  return now.has_value() == journalStatus_.has_value() &&
         (!now || IsSameVersion(*now, *journalStatus_));
}

// Drops records whose outputs no longer exist, for example those of removed sources.
void BuildRecords::CompactJournal() {
  if (journal_.empty()) return;
  if (store_.GetCount() == 0 && files_.RemoveFile(journal_)) {
    store_.Load({}, projectFileName_);
    journalStatus_.reset();
    return;
  }
  if (!store_.IsWasteful()) return;
  const std::string bytes = store_.Save(projectFileName_);
  if (!files_.WriteOwnFile(journal_, bytes)) return;  // keep the longer journal
  journalStatus_ = files_.Examine(journal_);
  // The indices of the records have changed.
  std::vector<std::pair<std::string, std::string>> keys;
  for (const auto& [node, bound] : bound_) {
    const bool hasRecord = bound.record != BuildRecordStore::kNone;
    keys.push_back(hasRecord ? store_.KeyText(bound.record)
                             : std::pair<std::string, std::string>());
  }
  store_.Load(bytes, projectFileName_);
  shadows_.Clear();
  auto key = keys.begin();
  for (auto& [node, bound] : bound_) {
    bound.record = store_.Find(key->first, key->second);
    const bool isLost = bound.record == BuildRecordStore::kNone && !bound.withdrawn;
    if (isLost) bound.withdrawn = {StaleReason::NeverBuilt, {}};
    ++key;
  }
}

RunSnapshot BuildRecords::BeginRun(const CXmlNode& node, std::string_view application,
                                   std::string_view output, const std::vector<std::string>& sources,
                                   std::uint64_t signature) {
  Run& run = running_[&node];
  run = {std::string(application), std::string(output), sources, signature, {}};
  RunSnapshot snapshot;
  snapshot.SetOutput(run.output);
  snapshot.Reserve(sources.size());
  for (const std::string& source : sources) snapshot.AddInput(source, false);
  AddRecentProducts(snapshot);
  const std::size_t before = store_.Find(application, output);
  if (before == BuildRecordStore::kNone) return snapshot;
  for (const BuildRecord::Number input : store_.Get(before).inputs) {
    snapshot.AddInput(store_.PathOf(input), !store_.Version(input).IsSettled());
  }
  for (const BuildRecord::Number path : store_.Get(before).passedOver) {
    snapshot.AddInput(store_.Text(path), false);
  }
  return snapshot;
}

void BuildRecords::AddRecentProducts(RunSnapshot& snapshot) {
  if (recent_.empty()) return;
  const std::int64_t now = files_.Clock();
  std::erase_if(recent_, [now](const Product& each) { return each.changed < now; });
  for (const Product& each : recent_) snapshot.AddProduced(each.path, each.hash);
}

// Its output and products whose content is known.
void BuildRecords::RememberProducts(const BuildRecord& record) {
  const auto remember = [this](BuildRecord::Number number) {
    const FileVersion& version = store_.Version(number);
    if (version.hash == 0) return;
    recent_.push_back({std::string(store_.PathOf(number)), version.status.changed, version.hash});
  };
  remember(record.output);
  for (const BuildRecord::Number each : record.byProducts) remember(each);
}

void BuildRecords::EndRun(const CXmlNode& node, RunSnapshot snapshot, bool succeeded) {
  const auto found = running_.find(&node);
  if (found == running_.end()) return;
  Run run = std::move(found->second);
  running_.erase(found);
  if (succeeded) {
    run.snapshot = std::move(snapshot);
    ended_[&node] = std::move(run);
    return;
  }
  ended_.erase(&node);
  const std::size_t before = store_.Find(run.application, run.output);
  if (before == BuildRecordStore::kNone) return;
  Withdraw(node, {StaleReason::RunFailed, {}});
  store_.Drop(before);
  WriteJournal();
}

void BuildRecords::TakeReport(const CXmlNode& node, const BuildReport& report) {
  bound_.erase(&node);
  const auto found = ended_.find(&node);
  if (found == ended_.end()) return;
  const Run run = std::move(found->second);
  ended_.erase(found);
  const std::optional<FileStatus>& output = run.snapshot.GetOutputStatus();
  if (!output) return;

  BuildRecord record;
  record.application = store_.Intern(run.application);
  record.output = store_.AddVersion(run.output, *output, run.snapshot.GetOutputHash());
  record.infos = store_.Intern(report.infos);
  record.date = store_.Intern(report.date);
  record.search = store_.Intern(report.search);
  record.signature = report.hasInexactNames ? BuildRecord::kNoSignature : run.signature;
  record.command = report.command;
  record.milliseconds = report.milliseconds;
  record.sources = static_cast<BuildRecord::Number>(run.sources.size());
  record.programs =
      static_cast<BuildRecord::Number>(report.programs.size() + report.products.size());
  record.inputs.reserve(record.sources + report.dependencies.size() + record.programs);
  PathChanges changes = run.snapshot.WatchPaths(files_, RootsOf(run, report));
  const auto addInput = [&](const std::string& path) { return AddInput(run, path, changes); };
  for (const std::string& path : run.sources) record.inputs.push_back(addInput(path));
  for (const std::string& path : report.dependencies) record.inputs.push_back(addInput(path));
  for (const std::string& path : report.programs) {
    record.inputs.push_back(AddProgram(run, path, changes));
  }
  for (const std::string& path : report.products) {
    AddProduct(record, path);
    record.byProducts.push_back(record.inputs.back());
  }
  for (const std::string& path : report.byProducts) {
    const std::optional<FileStatus> status = files_.Examine(path);
    if (status) record.byProducts.push_back(store_.AddVersion(path, *status, 0));
  }
  shadows_.Complete(record, addInput, [&](const std::string& path) {
    return !run.snapshot.Settle(files_, path, changes).isSettled;
  });
  RememberProducts(record);
  bound_[&node] = {store_.Put(std::move(record)), {}, 0};
  WriteJournal();
}

// Returns the folders in which files are looked up by name.
std::vector<std::string> BuildRecords::RootsOf(const Run& run, const BuildReport& report) const {
  std::vector<std::string> roots = SplitQuotedList(report.search);
  roots.push_back(FolderOf(run.application));
  if (!journal_.empty()) roots.push_back(FolderOf(journal_));
  for (const std::string& program : report.programs) roots.push_back(FolderOf(program));
  return roots;
}

// Doesn't read a version again whose hash is known, however many outputs depend on it.
BuildRecord::Number BuildRecords::AddInput(const Run& run, const std::string& path,
                                           PathChanges& changes) {
  const RunSnapshot::Settled settled = run.snapshot.Settle(files_, path, changes);
  const FileVersion* const known = store_.FindLatest(path);
  const bool isKnown = known != nullptr && IsSameVersion(known->status, settled.status) &&
                       known->status.changed == settled.status.changed;
  // A version that was recorded under its name before is not new there.
  const bool isSettled = settled.isSettled || (settled.isOlder && isKnown);
  if (!settled.exists || !isSettled) {
    return store_.AddVersion(path, FileVersion::Unsettled(), 0);
  }
  const std::uint64_t hash = isKnown             ? known->hash
                             : settled.hash != 0 ? settled.hash
                                                 : HashVersion(files_, path, settled.status);
  return store_.AddVersion(path, settled.status, hash);
}

// A program edited in place may keep its size and get its old time back, but then its change time
// differs. Scripts and small programs are compared by content; reading a large program would cost
// more than it saves.
BuildRecord::Number BuildRecords::AddProgram(const Run& run, const std::string& path,
                                             PathChanges& changes) {
  constexpr std::uint64_t kMaxCompared = 1 << 20;
  const RunSnapshot::Settled settled = run.snapshot.Settle(files_, path, changes);
  if (settled.exists && settled.status.size <= kMaxCompared) return AddInput(run, path, changes);
  const bool isKnown = settled.exists && settled.isSettled;
  return store_.AddVersion(path, isKnown ? settled.status : FileVersion::Unsettled(), 0);
}

void BuildRecords::AddProduct(BuildRecord& record, const std::string& path) {
  const std::optional<FileStatus> status = files_.Examine(path);
  record.inputs.push_back(status
                              ? store_.AddVersion(path, *status, HashVersion(files_, path, *status))
                              : store_.AddVersion(path, FileVersion::Unsettled(), 0));
}

const BuildRecord* BuildRecords::Restore(const CXmlNode& node, std::string_view application,
                                         std::string_view output) {
  const std::size_t record = store_.Find(application, output);
  if (record == BuildRecordStore::kNone) return nullptr;
  bound_[&node] = {record, {}};
  return &store_.Get(record);
}

BuildRecords::Bound* BuildRecords::Find(const CXmlNode& node) {
  const auto found = bound_.find(&node);
  return found == bound_.end() ? nullptr : &found->second;
}

void BuildRecords::Withdraw(const CXmlNode& node, StaleVerdict why) {
  bound_[&node].withdrawn = std::move(why);
}

void BuildRecords::Drop(const CXmlNode& node, std::string_view application,
                        std::string_view output) {
  bound_.erase(&node);
  const std::size_t record = store_.Find(application, output);
  if (record != BuildRecordStore::kNone) store_.Drop(record);
}

void BuildRecords::SetSignature(const Bound& bound, std::uint64_t signature) {
  store_.SetSignature(bound.record, signature);
}

void BuildRecords::Invalidate(const CXmlNode& node) {
  if (bound_.empty() && running_.empty() && ended_.empty()) return;
  bound_.erase(&node);
  running_.erase(&node);
  ended_.erase(&node);
  for (int i = 0; i < node.GetChildCount(); ++i) Invalidate(*node.GetChild(i));
}

void BuildRecords::ClearAll() {
  bound_.clear();
  running_.clear();
  ended_.clear();
}

// Retries a failed write; the problem remains until it succeeds.
void BuildRecords::WriteJournal() {
  if (journal_.empty() || (!store_.HasNews() && problem_.empty())) return;
  const Status written = AppendNews();
  problem_ = written ? std::string() : journal_ + ": " + written.GetError().text;
}

Status BuildRecords::AppendNews() {
  const std::size_t end = store_.GetJournalLength();
  if (end != 0 && journalStatus_ && problem_.empty()) {
    const Status appended =
        files_.WriteTail(journal_, journalStatus_->size, end, store_.TakeNews());
    journalStatus_ = files_.Examine(journal_);
    if (appended || appended.GetError().code != ErrorCode::Changed) return appended;
  }
  // The journal is missing or was changed by another program: replaces the whole file.
  const Status written = files_.WriteOwnFile(journal_, store_.RestartJournal(projectFileName_));
  journalStatus_ = files_.Examine(journal_);
  return written;
}

}  // namespace tarn
