#include "automation/ProjectInspector.h"

#include <tarn/methods.h>

#include <charconv>
#include <string_view>
#include <vector>

#include "automation/ApplicationSearch.h"
#include "automation/BuildGaps.h"
#include "automation/NodeSearch.h"
#include "automation/TargetList.h"
#include "builder/ApplicationOrder.h"
#include "builder/LinkFiles.h"
#include "builder/OutputIndex.h"
#include "builder/Staleness.h"
#include "platform/paths/Paths.h"
#include "platform/text/Text.h"
#include "project/TreeSearch.h"

namespace tarn {

namespace {

bool IsOptionCache(const CXmlNode& node) {
  const std::string_view name = node.NameView();
  return name == "PropState" || name == "#CDATA" || name == "Info";
}

// Copies the node without its children.
void CopyNode(const CXmlNode& from, CXmlNode& to) {
  to.SetName(from.NameView());
  to.SetValue(Trim(from.ValueText()));
  to.CopyAttrs(from);
}

bool IsCopied(const CXmlNode& node) {
  return node.GetType() == XmlElement && !IsOptionCache(node);
}

void CopyShown(const CXmlNode& from, CXmlNode& to) {
  CopyNode(from, to);
  for (const CXmlNode* child : from.GetChildren()) {
    if (IsCopied(*child)) CopyShown(*child, *to.AddChild(child->NameView()));
  }
}

// Copies the project with its direct children and their configurations.
void CopyApplications(const CXmlNode& project, CXmlNode& to) {
  CopyNode(project, to);
  for (const CXmlNode* child : project.GetChildren()) {
    if (!IsCopied(*child)) continue;
    CXmlNode& application = *to.AddChild(child->NameView());
    CopyNode(*child, application);
    const CXmlNode* const configurations = child->FindChild("Configs");
    if (configurations != nullptr) CopyShown(*configurations, *application.AddChild("Configs"));
  }
}

const char* NameOf(StaleReason reason) {
  switch (reason) {
    case StaleReason::None:
      return "";
    case StaleReason::NoOutputName:
      return "no-output-name";
    case StaleReason::OutputMissing:
      return "output-missing";
    case StaleReason::NeverBuilt:
      return "never-built";
    case StaleReason::OutputChanged:
      return "output-changed";
    case StaleReason::PartMissing:
      return "part-missing";
    case StaleReason::PartNewer:
      return "part-newer";
    case StaleReason::SourceMissing:
      return "source-missing";
    case StaleReason::SourceNewer:
      return "source-newer";
    case StaleReason::SourceRenamed:
      return "source-renamed";
    case StaleReason::DependencyMissing:
      return "dependency-missing";
    case StaleReason::DependencyNewer:
      return "dependency-newer";
    case StaleReason::CommandChanged:
      return "command-changed";
    case StaleReason::RunFailed:
      return "run-failed";
    case StaleReason::SourceChanged:
      return "source-changed";
    case StaleReason::DependencyChanged:
      return "dependency-changed";
    case StaleReason::ProgramChanged:
      return "program-changed";
    case StaleReason::ChangedDuringRun:
      return "changed-during-run";
    case StaleReason::Shadowed:
      return "shadowed";
    case StaleReason::UnknownTest:
      return "unknown-test";
  }
  return "";
}

void CopyAttribute(const CXmlNode& from, const char* name, CXmlNode& to, const char* as) {
  to.AddAttr(as, TextOf(from.GetAttrValue(name)));
}

// Visits the nodes below an application that take part in its build, in build order.
template <class OnNode>
void ForEachBuiltNode(const NodeTypes& types, const std::unordered_set<const CXmlNode*>& repeated,
                      CXmlNode& node, const OnNode& onNode) {
  const bool isBuildable = (types.FlagsOf(node) & kTypeBuild) != 0 && !repeated.contains(&node);
  if (!isBuildable || IsExactlyYes(node, "Exclude")) return;
  for (int i = 0; i < node.GetChildCount(); ++i) {
    CXmlNode& child = *node.GetChild(i);
    if (IsContentNode(child)) ForEachBuiltNode(types, repeated, child, onNode);
  }
  const char* tool = node.GetAttrValue("TranslateTool");
  if (tool != nullptr && *tool != '\0') onNode(node);
}

template <class OnNode>
void ForEachBuiltNode(Builder& builder, CXmlNode& application, const OnNode& onNode) {
  ForEachBuiltNode(builder.GetModel().Types(), builder.Information().FindRepeatedNodes(application),
                   application, onNode);
}

// Adds rows for build gaps: those of the application itself, or those below it.
void AddGaps(const NodeTypes& types, const CXmlNode& application, bool isItself, CXmlNode& entry) {
  FindBuildGaps(types, application, [&](const BuildGap& gap) {
    if ((&gap.node == &application) != isItself) return;
    CXmlNode& row = *entry.AddChild("Node");
    CopyAttribute(gap.node, "Header", row, "Header");
    CopyAttribute(gap.node, "Path", row, "Path");
    CopyAttribute(gap.node, "OutputFile", row, "OutputFile");
    row.AddAttr("Reason", gap.reason);
  });
}

// Considers only applications whose status has been determined.
bool HasStaleNodes(const CXmlNode& status, const CXmlNode& application) {
  for (const CXmlNode* entry : status.GetChildren()) {
    if (TextOf(entry->GetAttrValue("Path")) != TextOf(application.GetAttrValue("Path"))) continue;
    if (entry->FindChild("Node") != nullptr) return true;
  }
  return false;
}

// Adds the reason of an outdated node. A file that can't be examined only seems to be missing.
void AddReason(FileSystem& files, const StaleVerdict& verdict, CXmlNode& row) {
  const Result<bool> exists =
      verdict.file.empty() ? Result<bool>(true) : files.CheckExists(verdict.file);
  row.AddAttr("Reason", exists ? NameOf(verdict.reason) : "unreadable");
  row.AddAttr("File", verdict.file);
  if (!exists) row.AddAttr("Detail", exists.GetError().text);
}

// Adds the status of an application. The applications that it uses are listed by label, in build
// order.
void AddStatus(Builder& builder, const ApplicationOrder& order, CXmlNode& application,
               CXmlNode& status) {
  CProjectModel& model = builder.GetModel();
  CXmlNode& entry = *status.AddChild("Application");
  CopyAttribute(application, "Header", entry, "Header");
  CopyAttribute(application, "Path", entry, "Path");
  const char* config = application.GetAttrValue("Config");
  entry.AddAttr("Config", config == nullptr ? kStandardConfig : config);
  if (&application == model.GetActiveApplication()) entry.AddAttr("Active", "Yes");
  AddGaps(model.Types(), application, false, entry);
  bool partsAreStale = false;
  for (const CXmlNode* used : order.GetUsed(application)) {
    CopyAttribute(*used, "Header", *entry.AddChild("Uses"), "Header");
    partsAreStale = partsAreStale || HasStaleNodes(status, *used);
  }
  ForEachBuiltNode(builder, application, [&](CXmlNode& node) {
    const StaleVerdict verdict = builder.ExamineNode(node);
    const bool waitsForParts = !verdict && &node == &application && partsAreStale;
    if (!verdict && !waitsForParts) return;
    partsAreStale = true;
    CXmlNode& row = *entry.AddChild("Node");
    CopyAttribute(node, "Header", row, "Header");
    CopyAttribute(node, "Path", row, "Path");
    CopyAttribute(node, "OutputFile", row, "OutputFile");
    CopyAttribute(node, "TranslateTool", row, "Tool");
    if (verdict) {
      AddReason(model.GetFiles(), verdict, row);
    } else {
      row.AddAttr("Reason", "parts-stale");
      row.AddAttr("File", "");
    }
  });
  AddGaps(model.Types(), application, true, entry);
}

}  // namespace

const DispatchTable<CProjectInspector>& CProjectInspector::Table() {
  using I = CProjectInspector;
  static const DispatchTable<CProjectInspector> table({
      Method<&I::Attach>("Attach", TARN_INS_ATTACH, {"manager"}),
      Method<&I::PublishAll>("PublishAll", TARN_INS_PUBLISH_ALL, {}),
      Method<&I::GetTree>("GetTree", TARN_INS_GET_TREE, {}),
      Method<&I::GetStatus>("GetStatus", TARN_INS_GET_STATUS, {}),
      Method<&I::GetBuildInputs>("GetBuildInputs", TARN_INS_GET_BUILD_INPUTS, {}),
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
      Method<&I::TakeRefusedWishes>("TakeRefusedWishes", TARN_INS_TAKE_REFUSED_WISHES, {}),
      Method<&I::CheckScript>("CheckScript", TARN_INS_CHECK_SCRIPT, {"path"}),
      Method<&I::SetNewProjectFolder>("SetNewProjectFolder", TARN_INS_SET_NEW_PROJECT_FOLDER,
                                      {"folder"}),
      Method<&I::GetBuildStateProblem>("GetBuildStateProblem", TARN_INS_GET_BUILD_STATE_PROBLEM,
                                       {}),
      Method<&I::OpenForReading>("OpenForReading", TARN_INS_OPEN_FOR_READING, {"wanted"}),
  });
  return table;
}

CProjectModel* CProjectInspector::Model() const {
  auto* object = static_cast<CProjectManager*>(manager.Get());
  return object == nullptr ? nullptr : object->GetModel();
}

Builder* CProjectInspector::GetBuilder() const {
  auto* object = static_cast<CProjectManager*>(manager.Get());
  return object == nullptr ? nullptr : object->GetBuilder();
}

std::int32_t CProjectInspector::Attach(IDispatch* managerObject) {
  if (dynamic_cast<CProjectManager*>(managerObject) == nullptr) return 0;
  manager = DispatchPtr(managerObject);
  notedNode = nullptr;
  return 1;
}

std::int32_t CProjectInspector::PublishAll() {
  CProjectModel* model = Model();
  if (model == nullptr) return 0;
  model->PublishAll();
  return 1;
}

std::int32_t CProjectInspector::PublishFor(std::int32_t milliseconds) {
  CProjectModel* model = Model();
  return model == nullptr || model->Publishing().PublishFor(std::chrono::milliseconds(milliseconds))
             ? 1
             : 0;
}

std::string CProjectInspector::GetTree() {
  return CopyOfTree(CopyShown);
}

std::string CProjectInspector::GetApplications() {
  return CopyOfTree(CopyApplications);
}

std::string CProjectInspector::CopyOfTree(void (*fill)(const CXmlNode& root, CXmlNode& copy)) {
  CProjectModel* model = Model();
  if (model == nullptr) return {};
  CXmlNode copy;
  fill(model->GetProjectRoot(), copy);
  // The absolute path is the key of an application: it is the same before and after publishing.
  for (CXmlNode* child : copy.GetChildren()) {
    if ((model->Types().FlagsOf(*child) & kTypeApplication) == 0) continue;
    std::string path;
    if (model->Paths().MakeAbsolutePath(TextOf(child->GetAttrValue("Path")), path, nullptr)) {
      child->SetAttrValue("Path", path);
    }
  }
  return copy.ToString(g_xmlDisplayOptions);
}

std::string CProjectInspector::GetStatus() {
  CProjectModel* model = Model();
  if (model == nullptr) return {};
  if (!GetBuilder()->IsWorkerAlive()) GetBuilder()->Information().ForgetFileTimes();
  CXmlNode status;
  status.SetName("Status");
  const ApplicationOrder order(model->Types(), model->Services().toolManager,
                               model->GetProjectRoot());
  for (CXmlNode* application : order.GetAll())
    AddStatus(*GetBuilder(), order, *application, status);
  if (!order.GetProblem().empty()) status.AddAttr("Problem", order.GetProblem());
  return status.ToString(g_xmlDisplayOptions);
}

std::string CProjectInspector::GetBuildInputs() {
  CProjectModel* model = Model();
  if (model == nullptr) return {};
  std::string lines;
  ForEachApplication(*model, [&](CXmlNode& application) {
    lines += "A " + TextOf(application.GetAttrValue("Path")) + "\n";
    ForEachBuiltNode(*GetBuilder(), application, [&](CXmlNode& node) {
      if (FindStoredValues(node) == nullptr) return;
      lines += "N " + TextOf(node.GetAttrValue("OutputFile")) + "\n";
    });
  });
  return lines;
}

std::string CProjectInspector::GetSharedOutputs(const char* application) {
  CProjectModel* model = Model();
  const std::string wanted = TextOf(application);
  std::string lines;
  if (model == nullptr) return lines;
  const CXmlNode* const only = wanted.empty() ? nullptr : FindApplication(*model, wanted);
  const auto isWanted = [&](const CXmlNode& node) { return wanted.empty() || &node == only; };
  const auto add = [&](const SharedOutput& each) {
    if (!each.isSameSource) lines += DescribeSharedOutput(each) + "\n";
  };
  std::vector<CXmlNode*> applications;
  ForEachApplication(*model, [&](CXmlNode& node) {
    applications.push_back(&node);
    if (!isWanted(node)) return;
    for (const SharedOutput& each : GetBuilder()->Information().FindSharedOutputs(node)) add(each);
  });
  if (applications.size() < 2) return lines;
  FindOutputsOfSeveral(
      applications, [&](const CXmlNode& first, const CXmlNode& second, const SharedOutput& each) {
        if (isWanted(first) || isWanted(second)) add(each);
      });
  return lines;
}

std::string CProjectInspector::GetToolInput(const char* application, const char* outputFile) {
  CProjectModel* model = Model();
  if (model == nullptr || application == nullptr || outputFile == nullptr) return {};
  CXmlNode* const owner = FindApplication(*model, application);
  const CXmlNode* node =
      owner == nullptr ? nullptr : GetBuilder()->Information().FindNodeByOutput(*owner, outputFile);
  const CXmlNode* values = node == nullptr ? nullptr : FindStoredValues(*node);
  if (values == nullptr) return {};
  std::string tool;
  std::string files;
  tarn::GetToolInput(model->Types(), *node, tool, files);
  CXmlNode input;
  input.SetName("Input");
  input.AddAttr("Tool", tool);
  input.AddAttr("Files", files);
  input.AddCData(values->ValueText());
  return input.ToString(g_xmlDisplayOptions);
}

DispatchPtr CProjectInspector::GetPropertyManager() {
  auto* object = static_cast<CProjectManager*>(manager.Get());
  if (object == nullptr || object->GetPropertyManager() == nullptr) return {};
  return DispatchPtr(object->GetPropertyManager()->GetDispatch());
}

std::int32_t CProjectInspector::SelectNodeByKey(const char* key, const char* application) {
  CProjectModel* model = Model();
  const std::string scope = TextOf(application);
  if (model == nullptr || key == nullptr || (*key == '\0' && scope.empty())) return 0;
  CXmlNode* start = scope.empty() ? &model->GetProjectRoot() : FindApplication(*model, scope);
  if (start == nullptr) return 0;
  if (*key == '\0') return model->SetCurrentNode(start), 1;
  const NodeSearch search(*model, static_cast<CProjectManager*>(manager.Get())->GetCurrentFolder());
  const std::vector<CXmlNode*> found = search.FindNumbered(*start, key);
  if (found.size() == 1) model->SetCurrentNode(found.front());
  return static_cast<std::int32_t>(found.size());
}

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

bool IsShown(const CXmlNode& node) {
  return node.GetType() == XmlElement && IsContentNode(node);
}

CXmlNode* ShownChild(CXmlNode& node, int number) {
  for (int i = 0; i < node.GetChildCount(); ++i) {
    CXmlNode* const child = node.GetChild(i);
    if (IsShown(*child) && number-- == 0) return child;
  }
  return nullptr;
}

}  // namespace

std::int32_t CProjectInspector::SelectNodeByPlace(const char* place) {
  CProjectModel* model = Model();
  if (model == nullptr || !model->IsOpen() || place == nullptr) return 0;
  CXmlNode* node = &model->GetProjectRoot();
  for (const std::string_view number : Split(place, '/')) {
    if (number.empty()) continue;
    int value = 0;
    const auto read = std::from_chars(number.data(), number.data() + number.size(), value);
    const bool isNumber = read.ec == std::errc() && read.ptr == number.data() + number.size();
    node = isNumber ? ShownChild(*node, value) : nullptr;
    if (node == nullptr) return 0;
  }
  model->SetCurrentNode(node);
  return model->GetCurrentNode() == node ? 1 : 0;
}

std::string CProjectInspector::GetMissedSelection() {
  const auto* const object = static_cast<CProjectManager*>(manager.Get());
  const std::optional<std::string> key = object == nullptr ? std::nullopt : object->GetMissedKey();
  return key ? "\"" + *key + "\"" : std::string();
}

std::int32_t CProjectInspector::NoteCurrentNode() {
  CProjectModel* model = Model();
  if (model == nullptr) return 0;
  notedNode = model->GetCurrentNode();
  notedEpoch = model->GetTreeEpoch();
  return 1;
}

std::int32_t CProjectInspector::SelectNotedNode() {
  CProjectModel* model = Model();
  if (model == nullptr || notedNode == nullptr || model->GetTreeEpoch() != notedEpoch) return 0;
  if (model->GetCurrentNode() != notedNode) model->SetCurrentNode(notedNode);
  return model->GetCurrentNode() == notedNode ? 1 : 0;
}

std::int32_t CProjectInspector::RefreshDefinitions() {
  CProjectModel* model = Model();
  return model == nullptr ? 0 : model->Options().RefreshDefinitions();
}

std::int32_t CProjectInspector::CopyConfiguration(const char* from, const char* to) {
  CProjectModel* model = Model();
  return model == nullptr ? 0 : model->Options().CopyConfiguration(TextOf(from), TextOf(to));
}

std::int32_t CProjectInspector::GetChangeCount() {
  const CProjectModel* model = Model();
  return model == nullptr ? 0 : static_cast<std::int32_t>(model->State().changeCount & 0x7FFFFFFF);
}

std::string CProjectInspector::GetDamage() {
  const CProjectModel* model = Model();
  return model == nullptr ? std::string() : DamageText(model->Protection().GetDamage());
}

std::string CProjectInspector::GetFailedDamage() {
  const CProjectModel* model = Model();
  return model == nullptr ? std::string() : DamageText(model->Protection().GetFailedDamage());
}

std::int32_t CProjectInspector::ProtectDamaged(std::int32_t protect) {
  CProjectModel* model = Model();
  if (model == nullptr) return 0;
  model->Protection().SetDamageProtection(protect != 0);
  return 1;
}

std::string CProjectInspector::TryLockProject(const char* path) {
  CProjectModel* model = Model();
  if (model == nullptr) return "no project manager";
  const bool isTaken = model->Protection().TryTakeEdits(TextOf(path));
  const std::string problem = model->Protection().GetEditProblem();
  if (!problem.empty()) model->Host().SendHost(kMsgLogLine, problem, 0);
  if (isTaken) return {};
  return problem.empty() ? model->Protection().GetEditor() : problem;
}

std::int32_t CProjectInspector::UnlockProject() {
  CProjectModel* model = Model();
  if (model == nullptr) return 0;
  model->Protection().ReleaseEdits();
  return 1;
}

std::string CProjectInspector::GetSaveReport() {
  const CProjectModel* model = Model();
  if (model == nullptr) return {};
  CXmlNode list;
  list.SetName("Save");
  for (const SavedFile& each : model->Saver().GetSavedFiles()) each.AddTo(list);
  return list.ToString(g_xmlDisplayOptions);
}

std::string CProjectInspector::TakeBuildNotices() {
  CProjectModel* model = Model();
  CXmlNode list;
  list.SetName("Notices");
  if (model == nullptr) return {};
  for (const HostLink::BuildNotice& each : model->Host().TakeBuildNotices()) {
    CXmlNode& notice = *list.AddChild("Notice");
    notice.AddAttr("Kind", each.kind == LineKind::Error ? "error" : "warning");
    notice.AddAttr("Text", each.text);
  }
  return list.ToString(g_xmlDisplayOptions);
}

std::int32_t CProjectInspector::SaveAllOrNone(std::int32_t wanted) {
  CProjectModel* model = Model();
  if (model == nullptr) return 0;
  model->Saver().SaveAllOrNone(wanted != 0);
  return 1;
}

std::int32_t CProjectInspector::OpenForReading(std::int32_t wanted) {
  CProjectModel* model = Model();
  if (model == nullptr) return 0;
  model->Loader().OpenForReading(wanted != 0);
  return 1;
}

std::int32_t CProjectInspector::AllowOutside(std::int32_t allow) {
  CProjectModel* model = Model();
  if (model == nullptr) return 0;
  model->Protection().AllowOutside(allow != 0);
  return 1;
}

std::int32_t CProjectInspector::SetTrustedFolders(const char* folders) {
  CProjectModel* model = Model();
  if (model == nullptr) return 0;
  std::vector<std::string> list;
  const std::string lines = TextOf(folders);
  for (const std::string_view each : Split(lines, '\n')) {
    if (!each.empty()) list.emplace_back(each);
  }
  model->Protection().GetTrust().LimitTo(std::move(list));
  return 1;
}

std::int32_t CProjectInspector::SetStateFolder(const char* folders) {
  CProjectModel* model = Model();
  if (model == nullptr) return 0;
  model->Services().stateFolder = TextOf(folders);
  return 1;
}

std::string CProjectInspector::TakeRefusedWishes() {
  CProjectModel* model = Model();
  std::string lines;
  if (model == nullptr) return lines;
  for (const std::string& each : model->Protection().GetTrust().TakeRefused()) lines += each + "\n";
  return lines;
}

std::string CProjectInspector::CheckScript(const char* path) {
  auto* object = static_cast<CProjectManager*>(manager.Get());
  return Model() == nullptr ? std::string() : object->CheckScript(TextOf(path));
}

std::string CProjectInspector::GetFileTexts() {
  CProjectModel* model = Model();
  if (model == nullptr || model->IsDefaultProject()) return {};
  return JoinFileTexts(model->Saver().MakeFileTexts());
}

std::string CProjectInspector::ApplyChange(const char* before, const char* after) {
  CProjectModel* model = Model();
  if (model == nullptr) return "no project manager";
  const auto from = SplitFileTexts(TextOf(before));
  const auto to = SplitFileTexts(TextOf(after));
  if (!from || !to) return "the description of the change is damaged";
  std::string lines;
  for (const std::string& each : model->Lifecycle().ApplyChange(*from, *to)) {
    lines += (lines.empty() ? "" : "\n") + each;
  }
  return lines;
}

std::string CProjectInspector::GetBaseTexts() {
  const CProjectModel* model = Model();
  if (model == nullptr || model->IsDefaultProject()) return {};
  return JoinFileTexts(model->Protection().GetBaseTexts());
}

std::int32_t CProjectInspector::StageFileTexts(const char* texts, const char* bases) {
  CProjectModel* model = Model();
  const auto changed = SplitFileTexts(TextOf(texts));
  const auto former = SplitFileTexts(TextOf(bases));
  if (model == nullptr || !changed || !former) return 0;
  model->Lifecycle().StageFiles(*changed, *former);
  return 1;
}

std::int32_t CProjectInspector::SetNewProjectFolder(const char* folder) {
  CProjectModel* model = Model();
  if (model == nullptr) return 0;
  const std::string wanted = ToNativeSeparators(TextOf(folder));
  if (!wanted.empty()) model->Services().examplesFolder = AddSeparator(wanted);
  return 1;
}

std::int32_t CProjectInspector::IsModified() {
  const CProjectModel* model = Model();
  return model != nullptr && !model->IsDefaultProject() && model->State().HasUnsaved() ? 1 : 0;
}

std::int32_t CProjectInspector::DropChanges() {
  CProjectModel* model = Model();
  if (model == nullptr) return 0;
  model->State().DropChanges();
  return 1;
}

std::string CProjectInspector::ExplainOption(const char* set, const char* section,
                                             const char* property) {
  CProjectModel* model = Model();
  CXmlNode* node = model == nullptr ? nullptr : model->GetCurrentNode();
  if (node == nullptr) return {};
  const std::string setName = TextOf(set).empty() ? node->GetName() : TextOf(set);
  CXmlNode explanation;
  explanation.SetName("Option");
  explanation.AddAttr("Node", TextOf(node->GetAttrValue("Header")));
  explanation.AddAttr("Value", static_cast<CProjectManager*>(manager.Get())
                                   ->GetPropertyValue(setName.c_str(), section, property));
  const std::string current = model->Publishing().GetCurrentConfigName();
  std::vector<CXmlNode*> chain;
  model->Publishing().CollectOptionChain(chain, node);
  for (const CXmlNode* level : chain) {
    const CXmlNode* options = level->FindChild("Options");
    for (int i = 0; options != nullptr && i < options->GetChildCount(); ++i) {
      const CXmlNode* config = options->GetChild(i);
      CXmlNode* found = nullptr;
      FindChildNode(setName.c_str(), "Header", config, found);
      CXmlNode* inSection = nullptr;
      FindChildNode(section, "Header", found, inSection);
      CXmlNode* value = nullptr;
      FindChildNode(property, "Header", inSection, value);
      if (value == nullptr) continue;
      const std::uint32_t flags = model->Types().FlagsOf(*level);
      CXmlNode& from = *explanation.AddChild("From");
      from.AddAttr("Kind", (flags & kTypeApplication) != 0 ? "application"
                           : (flags & kTypeProject) != 0   ? "project"
                           : (flags & kTypeIsLeaf) != 0    ? "node"
                                                           : "group");
      from.AddAttr("Header", TextOf(level->GetAttrValue("Header")));
      const std::string configName = TextOf(config->GetAttrValue("Header"));
      from.AddAttr("Config", configName);
      const bool counts =
          EqualNoCase(configName, current) ||
          (EqualNoCase(TextOf(section), "General") && EqualNoCase(configName, kStandardConfig));
      from.AddAttr("Current", counts ? "Yes" : "No");
      from.AddAttr("Text", value->ToString(g_xmlDisplayOptions));
    }
  }
  return explanation.ToString(g_xmlDisplayOptions);
}

std::string CProjectInspector::MissingImportProgram() {
  const CProjectModel* model = Model();
  return model == nullptr ? std::string() : model->Import().MissingImportProgram();
}

std::string CProjectInspector::GetTargets() {
  if (Model() == nullptr) return {};
  const auto* object = static_cast<CProjectManager*>(manager.Get());
  return DescribeTargets(*object->GetTargetCatalogue().Read());
}

std::string CProjectInspector::GetLogFile() {
  const CProjectModel* model = Model();
  const bool hasOutput = model != nullptr && model->Services().output != nullptr;
  return hasOutput ? model->Services().output->GetLogFile() : std::string();
}

}  // namespace tarn
