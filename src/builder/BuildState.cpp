// The project's build records and their journal.

#include "builder/RecordRestore.h"
#include "platform/paths/Paths.h"
#include "platform/text/Text.h"
#include "project/ProjectModel.h"

namespace tarn {

StateVerdict CProjectModel::OpenBuildState(const std::string& path) {
  recordRestore.reset();
  return buildRecords.OpenJournal(path, FileNameOf(projectPath));
}

bool CProjectModel::RestoreFor(std::chrono::milliseconds time) {
  if (!isOpen || IsWorkerAlive()) return true;
  const TreeUpdate update(views, UpdateScope::Told);
  if (recordRestore == nullptr) recordRestore = std::make_unique<RecordRestore>(*this);
  const bool isMore = recordRestore->Step(time);
  fileTimes.Forget();
  if (isMore) return false;
  recordRestore.reset();
  if (activeApplication != nullptr) views.LoadGlobals(GlobalsFileOf(*activeApplication));
  return true;
}

void CProjectModel::RestoreRecords(CXmlNode& application) {
  RecordRestore restore(*this, application);
  while (restore.Step(std::chrono::hours(1))) {
  }
  fileTimes.Forget();
}

void CProjectModel::RestoreRecord(CXmlNode& node, const std::string& owner) {
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
    const CXmlNode* const type = FindTypeByFileExtension(file);
    dependencies->AddChild(type == nullptr ? "D" : type->NameView())->AddAttr("Header", file);
  }
  ReplaceDependencies(node, std::move(dependencies));
  views.TellUpdated(node);
}

std::string CProjectModel::FinishBuildState(bool mayShrink) {
  buildRecords.WriteJournal();
  if (mayShrink) buildRecords.CompactJournal();
  return buildRecords.GetProblem();
}

}  // namespace tarn
