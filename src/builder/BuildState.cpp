// The project's build records and their journal.

#include "builder/BuildInformation.h"
#include "builder/RecordRestore.h"
#include "platform/paths/Paths.h"
#include "platform/text/Text.h"
#include "xml/XmlNode.h"

namespace tarn {

StateVerdict BuildInformation::OpenBuildState(const std::string& path) {
  recordRestore_.reset();
  return buildRecords_.OpenJournal(path, FileNameOf(state_.projectPath));
}

bool BuildInformation::RestoreFor(std::chrono::milliseconds time) {
  if (!state_.isOpen || services_.build.IsWorkerAlive()) return true;
  const TreeUpdate update(views_, UpdateScope::ReportedNodes);
  if (recordRestore_ == nullptr || recordRestore_->IsTreeStale())
    recordRestore_ = std::make_unique<RecordRestore>(*this, state_, types_);
  const bool isMore = recordRestore_->Step(time);
  mtimes_.Invalidate();
  if (isMore) return false;
  recordRestore_.reset();
  if (state_.activeApplication != nullptr)
    views_.LoadGlobals(paths_.GlobalsFileOf(*state_.activeApplication));
  return true;
}

void BuildInformation::RestoreRecords(CXmlNode& application) {
  RecordRestore restore(*this, state_, application);
  while (restore.Step(std::chrono::hours(1))) {
  }
  mtimes_.Invalidate();
}

void BuildInformation::RestoreRecord(CXmlNode& node, const std::string& owner) {
  const std::string made = OrEmpty(node.GetAttrValue("OutputFile"));
  if (made.empty()) return;
  const BuildRecord* const record = buildRecords_.Restore(node, owner, made);
  if (record == nullptr) return;
  if (const StaleVerdict changed = recordCheck_.CheckCommand(node)) {
    recordCheck_.Withdraw(node, changed);
    return;
  }
  const BuildRecordStore& store = buildRecords_.Store();
  RecordBuildInfo(&node, std::string(store.Text(record->infos)).c_str(),
                  std::string(store.Text(record->date)).c_str());
  auto dependencies = CXmlNode::CreateNode("Dependencies");
  dependencies->AddAttr("Header", "Dependencies");
  for (const BuildRecord::Number each : record->Dependencies()) {
    const std::string_view file = store.PathOf(each);
    const CXmlNode* const type = extensions_.Find(file);
    dependencies->AddChild(type == nullptr ? "D" : type->NameView())->AddAttr("Header", file);
  }
  ReplaceDependencies(node, std::move(dependencies));
  views_.NotifyNodeUpdated(node);
}

std::string BuildInformation::FinishBuildState(bool mayShrink) {
  buildRecords_.WriteJournal();
  if (mayShrink) buildRecords_.CompactJournal();
  return buildRecords_.GetProblem();
}

}  // namespace tarn
