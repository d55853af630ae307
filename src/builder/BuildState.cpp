// The project's build records and their journal.

#include "builder/BuildInformation.h"
#include "builder/RecordRestore.h"
#include "platform/paths/Paths.h"
#include "platform/text/Text.h"

namespace tarn {

StateVerdict BuildInformation::OpenBuildState(const std::string& path) {
  recordRestore.reset();
  return buildRecords.OpenJournal(path, FileNameOf(state.projectPath));
}

bool BuildInformation::RestoreFor(std::chrono::milliseconds time) {
  if (!state.isOpen || services.build.IsWorkerAlive()) return true;
  const TreeUpdate update(views, UpdateScope::Told);
  if (recordRestore == nullptr)
    recordRestore = std::make_unique<RecordRestore>(*this, state, types);
  const bool isMore = recordRestore->Step(time);
  fileTimes.Forget();
  if (isMore) return false;
  recordRestore.reset();
  if (state.activeApplication != nullptr)
    views.LoadGlobals(paths.GlobalsFileOf(*state.activeApplication));
  return true;
}

void BuildInformation::RestoreRecords(CXmlNode& application) {
  RecordRestore restore(*this, state, application);
  while (restore.Step(std::chrono::hours(1))) {
  }
  fileTimes.Forget();
}

void BuildInformation::RestoreRecord(CXmlNode& node, const std::string& owner) {
  const std::string made = TextOf(node.GetAttrValue("OutputFile"));
  if (made.empty()) return;
  const BuildRecord* const record = buildRecords.Restore(node, owner, made);
  if (record == nullptr) return;
  if (const StaleVerdict changed = recordCheck.CheckCommand(node)) {
    recordCheck.Withdraw(node, changed);
    return;
  }
  const BuildRecordStore& store = buildRecords.Store();
  RecordBuildInfo(&node, std::string(store.Text(record->infos)).c_str(),
                  std::string(store.Text(record->date)).c_str());
  auto dependencies = CXmlNode::CreateNode("Dependencies");
  dependencies->AddAttr("Header", "Dependencies");
  for (const BuildRecord::Number each : record->Dependencies()) {
    const std::string_view file = store.PathOf(each);
    const CXmlNode* const type = extensions.Find(file);
    dependencies->AddChild(type == nullptr ? "D" : type->NameView())->AddAttr("Header", file);
  }
  ReplaceDependencies(node, std::move(dependencies));
  views.TellUpdated(node);
}

std::string BuildInformation::FinishBuildState(bool mayShrink) {
  buildRecords.WriteJournal();
  if (mayShrink) buildRecords.CompactJournal();
  return buildRecords.GetProblem();
}

}  // namespace tarn
