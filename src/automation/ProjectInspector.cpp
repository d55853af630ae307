#include "automation/ProjectInspector.h"

#include <tarn/methods.h>

#include "automation/StatusSurvey.h"
#include "automation/TargetList.h"
#include "platform/text/Text.h"
#include "xml/XmlNode.h"

namespace tarn {

const DispatchTable<ProjectInspector>& ProjectInspector::Table() {
  using I = ProjectInspector;
  static const DispatchTable<ProjectInspector> table({
      Method<&I::Attach>("Attach", TARN_INS_ATTACH, {"manager"}),
      Method<&I::PublishAll>("PublishAll", TARN_INS_PUBLISH_ALL, {}),
      Method<&I::GetTree>("GetTree", TARN_INS_GET_TREE, {}),
      Method<&I::GetStatus>("GetStatus", TARN_INS_GET_STATUS, {}),
      Method<&I::GetStatusFor>("GetStatusFor", TARN_INS_GET_STATUS_FOR, {"milliseconds", "begins"}),
      Method<&I::GetBuildInputs>("GetBuildInputs", TARN_INS_GET_BUILD_INPUTS, {}),
      Method<&I::GetBuildTimes>("GetBuildTimes", TARN_INS_GET_BUILD_TIMES, {}),
      Method<&I::GetToolInput>("GetToolInput", TARN_INS_GET_TOOL_INPUT,
                               {"application", "outputFile"}),
      Method<&I::GetPropertyManager>("GetPropertyManager", TARN_INS_GET_PROPERTY_MANAGER, {}),
      Method<&I::SelectNodeByKey>("SelectNodeByKey", TARN_INS_SELECT_NODE_BY_KEY,
                                  {"key", "application"}),
      Method<&I::ExplainOption>("ExplainOption", TARN_INS_EXPLAIN_OPTION,
                                {"setname", "sectionname", "propertyname"}),
      Method<&I::MissingImportProgram>("MissingImportProgram", TARN_INS_MISSING_IMPORT_PROGRAM, {}),
      Method<&I::GetTargets>("GetTargets", TARN_INS_GET_TARGETS, {}),
      Method<&I::GetLogFile>("GetLogFile", TARN_INS_GET_LOG_FILE, {}),
      Method<&I::GetGlobals>("GetGlobals", TARN_INS_GET_GLOBALS, {"application", "column"}),
      Method<&I::GetReport>("GetReport", TARN_INS_GET_REPORT, {"log"}),
      Method<&I::SelectNodeByPlace>("SelectNodeByPlace", TARN_INS_SELECT_NODE_BY_PLACE, {"place"}),
      Method<&I::GetChangeCount>("GetChangeCount", TARN_INS_GET_CHANGE_COUNT, {}),
      Method<&I::GetFileTexts>("GetFileTexts", TARN_INS_GET_FILE_TEXTS, {}),
      Method<&I::PublishFor>("PublishFor", TARN_INS_PUBLISH_FOR, {"milliseconds"}),
      Method<&I::ContinuePublishing>("ContinuePublishing", TARN_INS_CONTINUE_PUBLISHING,
                                     {"milliseconds"}),
      Method<&I::NoteCurrentNode>("NoteCurrentNode", TARN_INS_NOTE_CURRENT_NODE, {}),
      Method<&I::SelectNotedNode>("SelectNotedNode", TARN_INS_SELECT_NOTED_NODE, {}),
      Method<&I::GetMissedSelection>("GetMissedSelection", TARN_INS_GET_MISSED_SELECTION, {}),
      Method<&I::GetDamage>("GetDamage", TARN_INS_GET_DAMAGE, {}),
      Method<&I::ProtectDamaged>("ProtectDamaged", TARN_INS_PROTECT_DAMAGED, {"protect"}),
      Method<&I::GetFailedDamage>("GetFailedDamage", TARN_INS_GET_FAILED_DAMAGE, {}),
      Method<&I::OpenBuildState>("OpenBuildState", TARN_INS_OPEN_BUILD_STATE, {"path"}),
      Method<&I::IsBuildStateCurrent>("IsBuildStateCurrent", TARN_INS_IS_BUILD_STATE_CURRENT,
                                      {"path"}),
      Method<&I::RestoreFor>("RestoreFor", TARN_INS_RESTORE_FOR, {"milliseconds"}),
      Method<&I::FinishBuildState>("FinishBuildState", TARN_INS_FINISH_BUILD_STATE, {"mayShrink"}),
      Method<&I::GetBuildInfos>("GetBuildInfos", TARN_INS_GET_BUILD_INFOS,
                                {"application", "outputFile"}),
      Method<&I::GetBuildGaps>("GetBuildGaps", TARN_INS_GET_BUILD_GAPS, {}),
      Method<&I::GetInstallationProblem>("GetInstallationProblem",
                                         TARN_INS_GET_INSTALLATION_PROBLEM, {}),
      Method<&I::GetBuildProblem>("GetBuildProblem", TARN_INS_GET_BUILD_PROBLEM, {}),
      Method<&I::CopyConfiguration>("CopyConfiguration", TARN_INS_COPY_CONFIGURATION,
                                    {"from", "to"}),
      Method<&I::RefreshDefinitions>("RefreshDefinitions", TARN_INS_REFRESH_DEFINITIONS, {}),
      Method<&I::TryLockProject>("TryLockProject", TARN_INS_TRY_LOCK_PROJECT, {"path"}),
      Method<&I::UnlockProject>("UnlockProject", TARN_INS_UNLOCK_PROJECT, {}),
      Method<&I::GetSaveReport>("GetSaveReport", TARN_INS_GET_SAVE_REPORT, {}),
      Method<&I::AllowOutside>("AllowOutside", TARN_INS_ALLOW_OUTSIDE, {"allow"}),
      Method<&I::GetApplications>("GetApplications", TARN_INS_GET_APPLICATIONS, {}),
      Method<&I::ApplyChange>("ApplyChange", TARN_INS_APPLY_CHANGE, {"before", "after"}),
      Method<&I::MergeTexts>("MergeTexts", TARN_INS_MERGE_TEXTS, {"base", "theirs", "ours"}),
      Method<&I::GetBaseTexts>("GetBaseTexts", TARN_INS_GET_BASE_TEXTS, {}),
      Method<&I::StageFileTexts>("StageFileTexts", TARN_INS_STAGE_FILE_TEXTS, {"texts", "bases"}),
      Method<&I::IsModified>("IsModified", TARN_INS_IS_MODIFIED, {}),
      Method<&I::TakeBuildNotices>("TakeBuildNotices", TARN_INS_TAKE_BUILD_NOTICES, {}),
      Method<&I::DropChanges>("DropChanges", TARN_INS_DROP_CHANGES, {}),
      Method<&I::SaveAllOrNone>("SaveAllOrNone", TARN_INS_SAVE_ALL_OR_NONE, {"wanted"}),
      Method<&I::GetSharedOutputs>("GetSharedOutputs", TARN_INS_GET_SHARED_OUTPUTS,
                                   {"application"}),
      Method<&I::SetTrustedFolders>("SetTrustedFolders", TARN_INS_SET_TRUSTED_FOLDERS, {"folders"}),
      Method<&I::SetStateFolder>("SetStateFolder", TARN_INS_SET_STATE_FOLDER, {"folders"}),
      Method<&I::SetDefinitionFolders>("SetDefinitionFolders", TARN_INS_SET_DEFINITION_FOLDERS,
                                       {"folders", "inProject"}),
      Method<&I::GetIgnoredDefinitions>("GetIgnoredDefinitions", TARN_INS_GET_IGNORED_DEFINITIONS,
                                        {}),
      Method<&I::TakeRefusedWishes>("TakeRefusedWishes", TARN_INS_TAKE_REFUSED_WISHES, {}),
      Method<&I::CheckScript>("CheckScript", TARN_INS_CHECK_SCRIPT, {"path"}),
      Method<&I::CheckTool>("CheckTool", TARN_INS_CHECK_TOOL, {"tool", "files", "options"}),
      Method<&I::SetNewProjectFolder>("SetNewProjectFolder", TARN_INS_SET_NEW_PROJECT_FOLDER,
                                      {"folder"}),
      Method<&I::GetBuildStateProblem>("GetBuildStateProblem", TARN_INS_GET_BUILD_STATE_PROBLEM,
                                       {}),
      Method<&I::OpenForReading>("OpenForReading", TARN_INS_OPEN_FOR_READING, {"wanted"}),
      Method<&I::SetFailureLimit>("SetFailureLimit", TARN_INS_SET_FAILURE_LIMIT, {"limit"}),
  });
  return table;
}

ProjectInspector::ProjectInspector() = default;
ProjectInspector::~ProjectInspector() = default;

CProjectModel* ProjectInspector::Model() const {
  auto* object = static_cast<CProjectManager*>(manager_.Get());
  return object == nullptr ? nullptr : object->GetModel();
}

Builder* ProjectInspector::GetBuilder() const {
  auto* object = static_cast<CProjectManager*>(manager_.Get());
  return object == nullptr ? nullptr : object->GetBuilder();
}

std::int32_t ProjectInspector::Attach(IDispatch* managerObject) {
  if (dynamic_cast<CProjectManager*>(managerObject) == nullptr) return 0;
  manager_ = DispatchPtr(managerObject);
  savedNode_ = nullptr;
  return 1;
}

std::int32_t ProjectInspector::PublishAll() {
  CProjectModel* model = Model();
  if (model == nullptr) return 0;
  model->PublishAll();
  return 1;
}

std::int32_t ProjectInspector::ContinuePublishing(std::int32_t milliseconds) {
  CProjectModel* model = Model();
  if (model == nullptr) return 2;
  switch (model->Publishing().ContinueFor(std::chrono::milliseconds(milliseconds))) {
    case Publisher::Progress::More:
      return 0;
    case Publisher::Progress::Done:
      return 1;
    case Publisher::Progress::Stopped:
      break;
  }
  return 2;
}

std::int32_t ProjectInspector::PublishFor(std::int32_t milliseconds) {
  CProjectModel* model = Model();
  return model == nullptr || model->Publishing().PublishFor(std::chrono::milliseconds(milliseconds))
             ? 1
             : 0;
}

DispatchPtr ProjectInspector::GetPropertyManager() {
  auto* object = static_cast<CProjectManager*>(manager_.Get());
  if (object == nullptr || object->GetPropertyManager() == nullptr) return {};
  return DispatchPtr(object->GetPropertyManager()->GetDispatch());
}

std::int32_t ProjectInspector::RefreshDefinitions() {
  CProjectModel* model = Model();
  return model == nullptr ? 0 : model->Options().RefreshDefinitions();
}

std::int32_t ProjectInspector::CopyConfiguration(const char* from, const char* to) {
  CProjectModel* model = Model();
  return model == nullptr ? 0 : model->Options().CopyConfiguration(OrEmpty(from), OrEmpty(to));
}

std::string ProjectInspector::MissingImportProgram() {
  const CProjectModel* model = Model();
  return model == nullptr ? std::string() : model->Import().MissingImportProgram();
}

std::string ProjectInspector::GetTargets() {
  if (Model() == nullptr) return {};
  const auto* object = static_cast<CProjectManager*>(manager_.Get());
  const TargetCatalogue catalogue =
      object->GetInstallation().GetTargetCatalogue(&Model()->Definitions().GetApplied());
  return DescribeTargets(*catalogue.Read());
}

std::string ProjectInspector::GetLogFile() {
  const CProjectModel* model = Model();
  const bool hasOutput = model != nullptr && model->Services().output != nullptr;
  return hasOutput ? model->Services().output->GetLogFile() : std::string();
}

}  // namespace tarn
