// Tool reports about outputs, and the queries that a host may make around a build.

#include "builder/BuildInformation.h"

#include <algorithm>
#include <charconv>

#include "builder/LinkFiles.h"
#include "builder/RecordRestore.h"
#include "builder/Staleness.h"
#include "output/MessageTable.h"
#include "platform/files/SameName.h"
#include "platform/text/Hash.h"
#include "platform/text/Text.h"
#include "project/TreeSearch.h"
#include "xml/XmlNode.h"

namespace tarn {

namespace {

bool HoldsOutput(const CXmlNode& node) {
  if (node.GetAttr("OutputFile") != nullptr) return true;
  for (int i = 0; i < node.GetChildCount(); ++i) {
    if (HoldsOutput(*node.GetChild(i))) return true;
  }
  return false;
}

void HashOutputs(const CXmlNode& node, std::vector<std::uint64_t>& hashes) {
  const char* output = node.GetAttrValue("OutputFile");
  if (output != nullptr && *output != '\0') hashes.push_back(HashBytes(output));
  for (int i = 0; i < node.GetChildCount(); ++i) {
    const CXmlNode& child = *node.GetChild(i);
    if (IsContentNode(child)) HashOutputs(child, hashes);
  }
}

void CountListings(const CXmlNode& node, std::unordered_map<std::string, int>& counts) {
  const std::string listing = OrEmpty(node.GetAttrValue("ListingFile"));
  const std::string tool = OrEmpty(node.GetAttrValue("TranslateTool"));
  if (!listing.empty() && !tool.empty()) ++counts[listing];
  for (const CXmlNode* child : node.GetChildren()) {
    if (IsContentNode(*child)) CountListings(*child, counts);
  }
}

// Returns true if several nodes may have the same output. Compares sorted hashes, which is cheaper
// than an index; the result is nearly always false.
bool MayShareOutputs(const CXmlNode& application) {
  std::vector<std::uint64_t> hashes;
  HashOutputs(application, hashes);
  std::sort(hashes.begin(), hashes.end());
  return std::adjacent_find(hashes.begin(), hashes.end()) != hashes.end();
}

// Detaches the children from the node and returns them in order.
std::vector<std::unique_ptr<CXmlNode>> TakeChildren(CXmlNode& node) {
  std::vector<std::unique_ptr<CXmlNode>> children;
  for (int i = node.GetChildCount() - 1; i >= 0; --i) {
    children.push_back(node.DetachChild(node.GetChild(i)));
  }
  std::reverse(children.begin(), children.end());
  return children;
}

BuildReport ReadReport(const CXmlNode& record) {
  BuildReport report;
  report.infos = OrEmpty(record.GetAttrValue("Infos"));
  report.date = OrEmpty(record.GetAttrValue("Date"));
  report.command = ParseCommandHash(OrEmpty(record.GetAttrValue("Command")));
  report.programs = SplitQuotedList(OrEmpty(record.GetAttrValue("Programs")));
  report.products = SplitQuotedList(OrEmpty(record.GetAttrValue("Products")));
  report.byProducts = SplitQuotedList(OrEmpty(record.GetAttrValue("ByProducts")));
  report.search = OrEmpty(record.GetAttrValue("Search"));
  report.hasInexactNames = IsExactlyYes(record, "InexactNames");
  const std::string duration = OrEmpty(record.GetAttrValue("Duration"));
  std::from_chars(duration.data(), duration.data() + duration.size(), report.milliseconds);
  for (int i = 0; i < record.GetChildCount(); ++i) {
    const char* file = record.GetChild(i)->GetAttrValue("Header");
    if (file != nullptr) report.dependencies.emplace_back(file);
  }
  return report;
}

}  // namespace

BuildInformation::BuildInformation(ProjectServices& projectServices, ProjectState& projectState,
                                   const ProjectPaths& projectPaths,
                                   TypesByExtension& typesByExtension)
    : services_(projectServices),
      state_(projectState),
      paths_(projectPaths),
      extensions_(typesByExtension),
      files_(projectServices.files),
      types_(projectServices.types),
      views_(projectServices.views),
      mtimes_(files_),
      buildRecords_(files_),
      toolCommands_(services_.toolManager,
                    [this](const CXmlNode& node, std::string& tool, std::string& fileList) {
                      return GetToolInput(types_, node, tool, fileList);
                    }),
      recordCheck_(buildRecords_, toolCommands_, files_, mtimes_) {}

BuildInformation::~BuildInformation() = default;

std::int32_t BuildInformation::SetBuildInfo(const char* /*filepath*/, const char* xmlinfo) {
  if (!TakeBuildRecords(OrEmpty(xmlinfo))) return 0;
  if (state_.activeApplication != nullptr)
    views_.LoadGlobals(paths_.GlobalsFileOf(*state_.activeApplication));
  return 1;
}

bool BuildInformation::TakeBuildRecords(const std::string& xmlinfo) {
  const TreeUpdate update(views_, UpdateScope::ReportedNodes);
  CXmlNode records;
  records.Load(xmlinfo, g_xmlParseInfo);
  CXmlNode* const application =
      walkApplication_ != nullptr ? walkApplication_ : state_.activeApplication;
  if (application == nullptr) return false;
  for (std::unique_ptr<CXmlNode>& record : TakeChildren(records)) {
    CXmlNode* node = FindNodeByOutput(*application, record->GetAttrValue("Header"));
    if (node == nullptr) continue;
    const std::string infos = OrEmpty(record->GetAttrValue("Infos"));
    const std::string date = OrEmpty(record->GetAttrValue("Date"));
    RecordBuildInfo(node, infos.c_str(), date.c_str());
    BuildReport report = ReadReport(*record);
    // A listing shared by several nodes is replaced by each run, so it can't be tracked as a
    // product.
    std::erase_if(report.products, [&](const std::string& each) {
      return each == OrEmpty(node->GetAttrValue("ListingFile")) && IsSharedListing(each);
    });
    buildRecords_.TakeReport(*node, report);
    ReplaceDependencies(*node, TakeDependencies(std::move(record)));
    // The report may have changed which nodes are up to date.
    if (node != reportingNode_) mtimes_.Invalidate();
    views_.NotifyNodeUpdated(*node);
  }
  return true;
}

void BuildInformation::ClearOldOutputs() {
  if (outputIndexEpoch_ == state_.outputGeneration) return;
  outputIndexes_.clear();
  listings_.reset();
  withoutShared_.clear();
  outputIndexEpoch_ = state_.outputGeneration;
}

const OutputIndex& BuildInformation::IndexOutputs(CXmlNode& application) {
  ClearOldOutputs();
  return outputIndexes_.try_emplace(&application, application).first->second;
}

CXmlNode* BuildInformation::FindNodeByOutput(CXmlNode& application, const char* outputFile) {
  if (outputFile == nullptr) return nullptr;
  const OutputIndex& index = IndexOutputs(application);
  CXmlNode* found = index.FindAmongSimilar(outputFile);
  if (found == nullptr) found = index.Find(outputFile);
  // A node that is excluded from the build did not produce this output.
  const auto& shared = index.GetShared();
  for (auto pair = shared.rbegin(); pair != shared.rend(); ++pair) {
    if (pair->second != found || IsBuilt(*found, application)) continue;
    if (IsBuilt(*pair->first, application)) found = pair->first;
  }
  return found;
}

bool BuildInformation::IsSharedListing(const std::string& path) {
  ClearOldOutputs();
  if (!listings_) CountListings(*state_.projectRoot, listings_.emplace());
  const auto found = listings_->find(path);
  return found != listings_->end() && found->second > 1;
}

std::vector<SharedOutput> BuildInformation::FindSharedOutputs(CXmlNode& application) {
  std::vector<SharedOutput> found;
  ClearOldOutputs();
  if (withoutShared_.contains(&application)) return found;
  if (!MayShareOutputs(application)) {
    withoutShared_.insert(&application);
    return found;
  }
  const auto& shared = IndexOutputs(application).GetShared();
  for (auto pair = shared.begin(); pair != shared.end(); ++pair) {
    const CXmlNode* const second = pair->second;
    const CXmlNode* first = pair->first;
    // The pairs with the same output form a chain, some of whose nodes may be excluded from the
    // build.
    for (auto before = pair; before != shared.begin() && !IsBuilt(*first, application);) {
      if ((--before)->second == first) first = before->first;
    }
    if (!IsBuilt(*first, application) || !IsBuilt(*second, application)) continue;
    const auto source = [this](const CXmlNode& node) {
      return RealName(files_, OrEmpty(node.GetAttrValue("Path")));
    };
    const bool isSameSource = source(*first) == source(*second);
    found.push_back({first, second, isSameSource && first != &application});
  }
  return found;
}

// Converts the report element itself to the new list, because projects have about ten dependencies
// per file and all of them are in it already.
std::unique_ptr<CXmlNode> BuildInformation::TakeDependencies(std::unique_ptr<CXmlNode> record) {
  record->SetName("Dependencies");
  record->SetValue("");
  while (CXmlAttr* attribute = record->GetFirstAttr()) record->RemoveAttr(attribute);
  record->AddAttr("Header", "Dependencies");
  for (int i = 0; i < record->GetChildCount(); ++i) {
    CXmlNode* dependency = record->GetChild(i);
    const char* file = dependency->GetAttrValue("Header");
    const CXmlNode* type = extensions_.Find(file == nullptr ? "" : file);
    if (type != nullptr) dependency->SetName(type->NameView());
    if (HoldsOutput(*dependency)) ++state_.outputGeneration;
  }
  return record;
}

void BuildInformation::ReplaceDependencies(CXmlNode& node, std::unique_ptr<CXmlNode> list) {
  for (int i = node.GetChildCount() - 1; i >= 0; --i) {
    CXmlNode* child = node.GetChild(i);
    if (child->NameView() != "Dependencies") continue;
    if (HoldsOutput(*child)) ++state_.outputGeneration;
    state_.InvalidatePointersInto(*child);
    node.RemoveChild(child);
    break;
  }
  if (list->GetChildCount() > 0) node.AppendChild(std::move(list));
}

std::unordered_set<const CXmlNode*> BuildInformation::FindRepeatedNodes(CXmlNode& application) {
  std::unordered_set<const CXmlNode*> repeated;
  for (const SharedOutput& each : FindSharedOutputs(application)) {
    if (each.isSameSource) repeated.insert(each.first);
  }
  return repeated;
}

std::int32_t BuildInformation::RecordBuildInfo(CXmlNode* node, const char* infos,
                                               const char* date) {
  if (node == nullptr) return 0;
  const char* path = node->GetAttrValue("Path");
  std::string desc;
  const auto describe = [&desc](const auto&... parts) { (desc.append(parts), ...); };
  if ((types_.FlagsOf(*node) & kTypeApplication) != 0) {
    describe(GetMessageText(kRowApplicationInformation));
  } else if (path != nullptr) {
    describe(GetMessageText(kRowLabelPath));
  }
  describe(" \t ", path == nullptr ? "" : path);
  std::string info = " ";
  if (infos != nullptr) {
    const char* output = node->GetAttrValue("OutputFile");
    describe("\n", GetMessageText(kRowLabelOutputFile), " \t\t ", output == nullptr ? "" : output,
             "\n");
    if (const char* config = node->GetAttrValue("Config")) {
      describe(GetMessageText(kRowLabelConfiguration), " \t ", config, "\n");
    }
    const auto saysYes = [node](const char* name) {
      const char* value = node->GetAttrValue(name);
      return value != nullptr && EqualNoCase(value, "Yes");
    };
    if (saysYes("Exclude")) info += "[Excluded from Build] ";
    if (saysYes("LinkExclude")) info += "[Excluded from Link] ";
    info += infos;
    describe(GetMessageText(kRowLabelInformation), " \t ", infos, "\n");
    if (date != nullptr) {
      describe(GetMessageText(kRowLabelDate), " \t\t ",
               FormatLocalTime(ParseInt64(date).value_or(0)));
      node->SetAttrValue("LastBuilt", date);
    }
  }
  node->SetAttrValue("Info", info);
  node->SetAttrValue("Desc", desc);
  return 1;
}

void BuildInformation::InvalidateMtimes() {
  mtimes_.Invalidate();
  toolCommands_.RefreshTools();
}

void BuildInformation::InvalidateNode(const CXmlNode& node) {
  buildRecords_.Invalidate(node);
  if (IsAtOrBelow(walkApplication_, node)) walkApplication_ = nullptr;
}

}  // namespace tarn
