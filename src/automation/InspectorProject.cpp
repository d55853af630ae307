// Files of the project: contents, changes, damage, locks, saving, and trust.

#include <string_view>
#include <vector>

#include "automation/ProjectInspector.h"
#include "builder/TrustCheck.h"
#include "platform/paths/Paths.h"
#include "platform/text/Text.h"
#include "xml/XmlNode.h"

namespace tarn {

namespace {

std::string DamageText(const std::vector<FileDamage>& damage) {
  CXmlNode list;
  list.SetName("Damage");
  for (const FileDamage& each : damage) {
    CXmlNode& place = *list.AddChild("Place");
    place.AddAttr("File", each.file);
    place.AddAttr("Line", std::to_string(each.line));
    place.AddAttr("Text", each.what);
    if (each.isUnread) place.AddAttr("Unread", "Yes");
  }
  return list.ToString(g_xmlDisplayOptions);
}

}  // namespace

std::int32_t ProjectInspector::GetChangeCount() {
  const CProjectModel* model = Model();
  return model == nullptr ? 0 : static_cast<std::int32_t>(model->State().changeCount & 0x7FFFFFFF);
}

std::string ProjectInspector::GetDamage() {
  const CProjectModel* model = Model();
  return model == nullptr ? std::string() : DamageText(model->Protection().GetDamage());
}

std::string ProjectInspector::GetFailedDamage() {
  const CProjectModel* model = Model();
  return model == nullptr ? std::string() : DamageText(model->Protection().GetFailedDamage());
}

std::int32_t ProjectInspector::ProtectDamaged(std::int32_t protect) {
  CProjectModel* model = Model();
  if (model == nullptr) return 0;
  model->Protection().SetDamageProtection(protect != 0);
  return 1;
}

std::string ProjectInspector::TryLockProject(const char* path) {
  CProjectModel* model = Model();
  if (model == nullptr) return "no project manager";
  const bool isTaken = model->Protection().TryTakeEdits(OrEmpty(path));
  const std::string problem = model->Protection().GetEditProblem();
  if (!problem.empty()) model->Host().SendHost(kMsgLogLine, problem, 0);
  if (isTaken) return {};
  return problem.empty() ? model->Protection().GetEditor() : problem;
}

std::int32_t ProjectInspector::UnlockProject() {
  CProjectModel* model = Model();
  if (model == nullptr) return 0;
  model->Protection().ReleaseEdits();
  return 1;
}

std::string ProjectInspector::GetSaveReport() {
  const CProjectModel* model = Model();
  if (model == nullptr) return {};
  CXmlNode list;
  list.SetName("Save");
  for (const SavedFile& each : model->Saver().GetSavedFiles()) each.AddTo(list);
  return list.ToString(g_xmlDisplayOptions);
}

std::int32_t ProjectInspector::SaveAllOrNone(std::int32_t wanted) {
  CProjectModel* model = Model();
  if (model == nullptr) return 0;
  model->Saver().SaveAllOrNone(wanted != 0);
  return 1;
}

std::int32_t ProjectInspector::OpenForReading(std::int32_t wanted) {
  CProjectModel* model = Model();
  if (model == nullptr) return 0;
  model->Loader().OpenForReading(wanted != 0);
  return 1;
}

std::int32_t ProjectInspector::SetFailureLimit(std::int32_t limit) {
  Builder* builder = GetBuilder();
  if (builder == nullptr || limit < 0) return 0;
  builder->SetFailureLimit(limit);
  return 1;
}

std::int32_t ProjectInspector::AllowOutside(std::int32_t allow) {
  CProjectModel* model = Model();
  if (model == nullptr) return 0;
  model->Protection().AllowOutside(allow != 0);
  return 1;
}

std::int32_t ProjectInspector::SetTrustedFolders(const char* folders) {
  CProjectModel* model = Model();
  if (model == nullptr) return 0;
  std::vector<std::string> list;
  const std::string lines = OrEmpty(folders);
  for (const std::string_view each : Split(lines, '\n')) {
    if (!each.empty()) list.emplace_back(each);
  }
  model->Protection().GetTrust().LimitTo(std::move(list));
  return 1;
}

std::int32_t ProjectInspector::SetStateFolder(const char* folders) {
  CProjectModel* model = Model();
  if (model == nullptr) return 0;
  model->Services().stateFolder = OrEmpty(folders);
  return 1;
}

std::int32_t ProjectInspector::SetDefinitionFolders(const char* folders, const char* inProject) {
  CProjectModel* model = Model();
  if (model == nullptr) return 0;
  model->Definitions().Set(SplitLines(OrEmpty(folders)), OrEmpty(inProject));
  model->Definitions().Apply();
  return 1;
}

std::string ProjectInspector::GetIgnoredDefinitions() {
  std::string lines;
  if (Model() == nullptr) return lines;
  for (const std::string& each : Model()->Definitions().FindIgnored()) lines += each + "\n";
  return lines;
}

std::string ProjectInspector::TakeRefusedWishes() {
  CProjectModel* model = Model();
  std::string lines;
  if (model == nullptr) return lines;
  for (const TrustRequest& each : model->Protection().GetTrust().TakeRefused()) {
    lines += ToLine(each) + "\n";
  }
  return lines;
}

std::string ProjectInspector::CheckScript(const char* path) {
  auto* object = static_cast<CProjectManager*>(manager_.Get());
  return Model() == nullptr ? std::string() : object->GetFileCalls()->CheckScript(OrEmpty(path));
}

std::string ProjectInspector::CheckTool(const char* tool, const char* files, const char* options) {
  CProjectModel* model = Model();
  if (model == nullptr || model->Services().toolManager == nullptr) return {};
  ProjectTrust& trust = model->Protection().GetTrust();
  if (!trust.IsWithheld()) return {};
  const std::string access =
      model->Services().toolManager->GetAccess(OrEmpty(tool), OrEmpty(files), OrEmpty(options));
  const auto wish = FindUntrusted(trust, OrEmpty(tool), access);
  if (!wish) return {};
  trust.Refuse(*wish);
  return "the project wants to " + Describe(*wish) + ", and its folder is not trusted";
}

std::string ProjectInspector::GetFileTexts() {
  CProjectModel* model = Model();
  if (model == nullptr || model->IsDefaultProject()) return {};
  return JoinFileTexts(model->Saver().RenderFiles());
}

std::string ProjectInspector::ApplyChange(const char* before, const char* after) {
  CProjectModel* model = Model();
  if (model == nullptr) return "no project manager";
  const auto from = SplitFileTexts(OrEmpty(before));
  const auto to = SplitFileTexts(OrEmpty(after));
  if (!from || !to) return "the description of the change is damaged";
  std::string lines;
  for (const std::string& each : model->Lifecycle().ApplyChange(*from, *to)) {
    lines += (lines.empty() ? "" : "\n") + each;
  }
  return lines;
}

std::string ProjectInspector::GetBaseTexts() {
  const CProjectModel* model = Model();
  if (model == nullptr || model->IsDefaultProject()) return {};
  return JoinFileTexts(model->Protection().GetBaseTexts());
}

std::int32_t ProjectInspector::StageFileTexts(const char* texts, const char* bases) {
  CProjectModel* model = Model();
  const auto changed = SplitFileTexts(OrEmpty(texts));
  const auto former = SplitFileTexts(OrEmpty(bases));
  if (model == nullptr || !changed || !former) return 0;
  model->Lifecycle().StageFiles(*changed, *former);
  return 1;
}

std::int32_t ProjectInspector::SetNewProjectFolder(const char* folder) {
  CProjectModel* model = Model();
  if (model == nullptr) return 0;
  const std::string wanted = ToNativeSeparators(OrEmpty(folder));
  if (!wanted.empty()) model->Services().examplesFolder = AddSeparator(wanted);
  return 1;
}

std::int32_t ProjectInspector::IsModified() {
  const CProjectModel* model = Model();
  return model != nullptr && !model->IsDefaultProject() && model->State().HasUnsaved() ? 1 : 0;
}

std::int32_t ProjectInspector::DropChanges() {
  CProjectModel* model = Model();
  if (model == nullptr) return 0;
  model->State().DropChanges();
  return 1;
}

}  // namespace tarn
