// Status of the nodes before a build: which are out of date and why, inputs and outputs of tools.

#include <algorithm>
#include <memory>
#include <utility>
#include <vector>

#include "automation/ApplicationSearch.h"
#include "automation/BuildGaps.h"
#include "automation/ProjectInspector.h"
#include "automation/StatusSurvey.h"
#include "builder/LinkFiles.h"
#include "builder/OutputIndex.h"
#include "builder/Staleness.h"
#include "platform/paths/Paths.h"
#include "platform/text/Text.h"
#include "project/TreeSearch.h"
#include "xml/XmlNode.h"

namespace tarn {

namespace {

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
  to.AddAttr(as, OrEmpty(from.GetAttrValue(name)));
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
    if (OrEmpty(entry->GetAttrValue("Path")) != OrEmpty(application.GetAttrValue("Path"))) continue;
    if (entry->FindChild("Node") != nullptr) return true;
  }
  return false;
}

bool IsOfMissingFile(const StaleVerdict& verdict) {
  switch (verdict.reason) {
    case StaleReason::OutputMissing:
    case StaleReason::PartMissing:
    case StaleReason::SourceMissing:
    case StaleReason::DependencyMissing:
      return !verdict.file.empty();
    default:
      return false;
  }
}

// Adds the reason of an outdated node. A file that can't be examined only seems to be missing.
void AddReason(FileSystem& files, const StaleVerdict& verdict, CXmlNode& row) {
  const Result<bool> exists =
      IsOfMissingFile(verdict) ? files.CheckExists(verdict.file) : Result<bool>(true);
  row.AddAttr("Reason", exists ? NameOf(verdict.reason) : "unreadable");
  row.AddAttr("File", verdict.file);
  if (!exists) row.AddAttr("Detail", exists.GetError().text);
}

// Describes one source that two applications compile differently into the same file.
std::string DescribeSharedSource(const SharedOutput& shared, const CXmlNode& first,
                                 const CXmlNode& second) {
  return OrEmpty(shared.second->GetAttrValue("Path")) + " has the same output file " +
         OrEmpty(shared.second->GetAttrValue("OutputFile")) + " in the applications " +
         OrEmpty(first.GetAttrValue("Header")) + " and " + OrEmpty(second.GetAttrValue("Header")) +
         ", but different options; set Build.OutputFile of one of them to a different name";
}

}  // namespace

StatusSurvey::StatusSurvey(Builder& builder)
    : builder_(builder),
      treeGeneration_(builder.GetModel().GetTreeGeneration()),
      order_(builder.GetModel().Types(), builder.GetModel().Services().toolManager,
             builder.GetModel().GetProjectRoot()) {
  if (!builder.IsWorkerAlive()) builder.Information().InvalidateMtimes();
  status_.SetName("Status");
  if (!order_.GetProblem().empty()) status_.AddAttr("Problem", order_.GetProblem());
}

bool StatusSurvey::Continue(std::optional<Clock::time_point> deadline) {
  const auto isComplete = [this] {
    return application_ == nullptr && nextApplication_ == order_.GetAll().size();
  };
  while (!isComplete()) {
    if (application_ == nullptr) {
      BeginApplication(*order_.GetAll()[nextApplication_++]);
    } else if (nextNode_ < nodes_.size()) {
      Examine(*nodes_[nextNode_++]);
    } else {
      EndApplication();
    }
    if (deadline && Clock::now() >= *deadline) break;
  }
  return isComplete();
}

void StatusSurvey::BeginApplication(CXmlNode& application) {
  CProjectModel& model = builder_.GetModel();
  application_ = &application;
  entry_ = status_.AddChild("Application");
  CopyAttribute(application, "Header", *entry_, "Header");
  CopyAttribute(application, "Path", *entry_, "Path");
  const char* config = application.GetAttrValue("Config");
  entry_->AddAttr("Config", config == nullptr ? kStandardConfig : config);
  if (&application == model.GetActiveApplication()) entry_->AddAttr("Active", "Yes");
  AddGaps(model.Types(), application, false, *entry_);
  partsAreStale_ = false;
  for (const CXmlNode* used : order_.GetUsed(application)) {
    CopyAttribute(*used, "Header", *entry_->AddChild("Uses"), "Header");
    partsAreStale_ = partsAreStale_ || HasStaleNodes(status_, *used);
  }
  nodes_.clear();
  nextNode_ = 0;
  ForEachBuiltNode(builder_, application, [&](CXmlNode& node) { nodes_.push_back(&node); });
}

void StatusSurvey::EndApplication() {
  AddGaps(builder_.GetModel().Types(), *application_, true, *entry_);
  application_ = nullptr;
}

// Returns true if the node's source is missing, and no other node makes it.
bool StatusSurvey::LacksSource(const CXmlNode& node) const {
  BuildInformation& information = builder_.Information();
  const std::string path = OrEmpty(node.GetAttrValue("Path"));
  if (&node == application_ || path.empty() || information.GetMtimes().Get(path).exists) {
    return false;
  }
  return std::ranges::none_of(order_.GetAll(), [&](CXmlNode* each) {
    const std::string stamp = path + std::string(kStampExtension);
    return information.FindNodeByOutput(*each, path.c_str()) != nullptr ||
           information.FindNodeByOutput(*each, stamp.c_str()) != nullptr;
  });
}

void StatusSurvey::Examine(CXmlNode& node) {
  StaleVerdict verdict = builder_.ExamineNode(node);
  // Before the source is restored, no other reason matters.
  if (verdict && LacksSource(node))
    verdict = {StaleReason::SourceMissing, node.GetAttrValue("Path")};
  const bool waitsForParts = !verdict && &node == application_ && partsAreStale_;
  if (!verdict && !waitsForParts) return;
  partsAreStale_ = true;
  CXmlNode& row = *entry_->AddChild("Node");
  CopyAttribute(node, "Header", row, "Header");
  CopyAttribute(node, "Path", row, "Path");
  CopyAttribute(node, "OutputFile", row, "OutputFile");
  CopyAttribute(node, "TranslateTool", row, "Tool");
  if (verdict) {
    AddReason(builder_.GetModel().GetFiles(), verdict, row);
  } else {
    row.AddAttr("Reason", "parts-stale");
    row.AddAttr("File", "");
  }
}

std::string ProjectInspector::GetStatus() {
  if (Model() == nullptr) return {};
  StatusSurvey survey(*GetBuilder());
  survey.Continue(std::nullopt);
  return survey.ToText();
}

std::string ProjectInspector::GetStatusFor(std::int32_t milliseconds, std::int32_t begins) {
  CProjectModel* model = Model();
  if (model == nullptr) return {};
  const auto deadline = StatusSurvey::Clock::now() + std::chrono::milliseconds(milliseconds);
  const bool isValid = survey_ && survey_->GetTreeGeneration() == model->GetTreeGeneration();
  if (begins != 0 || !isValid) survey_ = std::make_unique<StatusSurvey>(*GetBuilder());
  if (!survey_->Continue(deadline)) return {};
  return std::exchange(survey_, nullptr)->ToText();
}

std::string ProjectInspector::GetBuildInputs() {
  CProjectModel* model = Model();
  if (model == nullptr) return {};
  std::string lines;
  ForEachApplication(*model, [&](CXmlNode& application) {
    lines += "A " + OrEmpty(application.GetAttrValue("Path")) + "\n";
    ForEachBuiltNode(*GetBuilder(), application, [&](CXmlNode& node) {
      if (FindStoredValues(node) == nullptr) return;
      lines += "N " + OrEmpty(node.GetAttrValue("OutputFile")) + "\n";
    });
  });
  return lines;
}

std::string ProjectInspector::GetBuildTimes() {
  CProjectModel* model = Model();
  if (model == nullptr) return {};
  const BuildRecordStore& store = GetBuilder()->Information().GetBuildRecords().Store();
  std::string lines;
  ForEachApplication(*model, [&](CXmlNode& application) {
    const std::string owner = OrEmpty(application.GetAttrValue("Path"));
    lines += "A " + owner + "\n";
    ForEachBuiltNode(*GetBuilder(), application, [&](CXmlNode& node) {
      if (FindStoredValues(node) == nullptr) return;
      const std::string output = OrEmpty(node.GetAttrValue("OutputFile"));
      const std::size_t record = store.Find(owner, output);
      const bool isKnown = record != BuildRecordStore::kNone;
      lines += "N " + std::to_string(isKnown ? store.Get(record).milliseconds : 0) + " " + output +
               "\nP " + OrEmpty(node.GetAttrValue("Path")) + "\n";
    });
  });
  return lines;
}

std::string ProjectInspector::GetSharedOutputs(const char* application) {
  CProjectModel* model = Model();
  const std::string wanted = OrEmpty(application);
  std::string lines;
  if (model == nullptr) return lines;
  const CXmlNode* const only = wanted.empty() ? nullptr : FindApplication(*model, wanted);
  const auto isWanted = [&](const CXmlNode& node) { return wanted.empty() || &node == only; };
  std::vector<CXmlNode*> applications;
  ForEachApplication(*model, [&](CXmlNode& node) {
    applications.push_back(&node);
    if (!isWanted(node)) return;
    for (const SharedOutput& each : GetBuilder()->Information().FindSharedOutputs(node)) {
      if (!each.isSameSource) lines += DescribeSharedOutput(each) + "\n";
    }
  });
  if (applications.size() < 2) return lines;
  ToolCommands& commands = GetBuilder()->Information().GetToolCommands();
  FindOutputsOfSeveral(
      applications, [&](const CXmlNode& first, const CXmlNode& second, const SharedOutput& each) {
        if (!isWanted(first) && !isWanted(second)) return;
        if (!each.isSameSource) {
          lines += DescribeSharedOutput(each) + "\n";
        } else if (commands.HashOf(*each.first) != commands.HashOf(*each.second)) {
          lines += DescribeSharedSource(each, first, second) + "\n";
        }
      });
  return lines;
}

std::string ProjectInspector::GetToolInput(const char* application, const char* outputFile) {
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
  input.AddCData(values->GetValue());
  return input.ToString(g_xmlDisplayOptions);
}

std::string ProjectInspector::TakeBuildNotices() {
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

}  // namespace tarn
