#include "automation/BuildGaps.h"

#include <set>
#include <string_view>

#include "builder/ApplicationOrder.h"
#include "builder/Staleness.h"
#include "platform/text/Text.h"
#include "xml/XmlNode.h"

namespace tarn {

namespace {

constexpr const char* kNoFile = "no-file";

bool HasText(const CXmlNode& node, const char* name) {
  const char* value = node.GetAttrValue(name);
  return value != nullptr && *value != '\0';
}

template <class OnChild>
void ForEachContentChild(const CXmlNode& node, OnChild&& onChild) {
  for (int i = 0; i < node.GetChildCount(); ++i) {
    const CXmlNode& child = *node.GetChild(i);
    if (child.GetType() == XmlElement && IsContentNode(child)) onChild(child);
  }
}

bool HasFile(const CXmlNode& node) {
  bool found = HasText(node, "Path");
  ForEachContentChild(node, [&](const CXmlNode& child) { found = found || HasFile(child); });
  return found;
}

// Returns true if the node, or a descendant of it, has a file that would be compiled if the node
// were of a usual type and in the position of an application or below one.
bool HasSource(CProjectModel& model, const CXmlNode& node) {
  const auto isSource = [&model](const CXmlNode& type) {
    constexpr std::uint32_t kSource = kTypeBuild | kTypePath;
    return (model.Types().FlagsOf(type) & (kSource | kTypeApplication)) == kSource;
  };
  if (IsExactlyYes(node, "Exclude")) return false;
  bool found = false;
  if (HasText(node, "Path")) {
    const CXmlNode* type = model.Extensions().Find(node.GetAttrValue("Path"));
    found = isSource(node) || (type != nullptr && isSource(*type));
  }
  ForEachContentChild(node,
                      [&](const CXmlNode& child) { found = found || HasSource(model, child); });
  return found;
}

void AddGap(const BuildGap& gap, std::string_view type, bool isFatal, CXmlNode& list) {
  CXmlNode& row = *list.AddChild("Node");
  row.AddAttr("Header", OrEmpty(gap.node.GetAttrValue("Header")));
  row.AddAttr("Path", OrEmpty(gap.node.GetAttrValue("Path")));
  row.AddAttr("Type", type);
  row.AddAttr("Reason", gap.reason);
  row.AddAttr("IsFatal", isFatal ? "Yes" : "No");
}

void ListApplication(CProjectModel& model, const CXmlNode& application,
                     const HasToolFunction& hasTool, CXmlNode& list) {
  const NodeTypes& types = model.Types();
  if (IsExactlyYes(application, "Exclude")) return;
  CXmlNode& entry = *list.AddChild("Application");
  entry.AddAttr("Header", OrEmpty(application.GetAttrValue("Header")));
  entry.AddAttr("Path", OrEmpty(application.GetAttrValue("Path")));
  std::set<std::string_view> tools;
  std::string_view last;
  FindBuildGaps(
      types, application,
      [&](const BuildGap& gap) {
        const bool lacksSource =
            types.GetNodeType(gap.node) == nullptr && HasSource(model, gap.node);
        const bool isFatal =
            &gap.node == &application || lacksSource || std::string_view(gap.reason) == kNoFile;
        AddGap(gap, gap.node.NameView(), isFatal, entry);
      },
      [&](std::string_view tool) {
        if (tool != last) tools.emplace(last = tool);
      });
  for (const std::string_view tool : tools) {
    if (!hasTool(std::string(tool))) AddGap({application, "unknown-tool"}, tool, true, entry);
  }
}

}  // namespace

void FindBuildGaps(const NodeTypes& types, const CXmlNode& node,
                   const std::function<void(const BuildGap&)>& onGap,
                   const std::function<void(std::string_view)>& onTool) {
  if (types.GetNodeType(node) == nullptr) {
    if (HasFile(node) && !IsExactlyYes(node, "Exclude")) onGap({node, "no-type"});
    return;
  }
  const std::uint32_t flags = types.FlagsOf(node);
  if ((flags & kTypeBuild) == 0 || IsExactlyYes(node, "Exclude")) return;
  const bool isApplication = (flags & kTypeApplication) != 0;
  // A missing attribute means that the node hasn't been published yet.
  const char* tool = node.GetAttrValue("TranslateTool");
  const bool hasNoTool = tool != nullptr && *tool == '\0';
  // Without a toolchain no node has a tool; that is reported as one gap.
  if (isApplication && hasNoTool) return onGap({node, "no-tool"});
  ForEachContentChild(node,
                      [&](const CXmlNode& child) { FindBuildGaps(types, child, onGap, onTool); });
  if (tool != nullptr && !hasNoTool && onTool) onTool(tool);
  const bool isBuiltFromFile = (flags & kTypePath) != 0 && (flags & kTypeProject) == 0;
  if (!isBuiltFromFile) return;
  if (hasNoTool) onGap({node, "no-tool"});
  if (!isApplication && !hasNoTool && !HasText(node, "Path")) onGap({node, kNoFile});
}

std::unique_ptr<CXmlNode> ListBuildGaps(CProjectModel& model, const HasToolFunction& hasTool) {
  auto list = std::make_unique<CXmlNode>();
  list->SetName("BuildGaps");
  const CXmlNode& root = model.GetProjectRoot();
  ForEachContentChild(root, [&](const CXmlNode& child) {
    if (model.Types().GetNodeType(child) == nullptr) {
      if (HasFile(child)) AddGap({child, "no-type"}, child.NameView(), true, *list);
    } else if ((model.Types().FlagsOf(child) & kTypeApplication) == 0 && HasSource(model, child)) {
      AddGap({child, "no-application"}, child.NameView(), true, *list);
    }
  });
  ForEachContentChild(root, [&](const CXmlNode& child) {
    constexpr std::uint32_t kWanted = kTypeApplication | kTypeBuild;
    if ((model.Types().FlagsOf(child) & kWanted) == kWanted) {
      ListApplication(model, child, hasTool, *list);
    }
  });
  const ApplicationOrder order(model.Types(), model.Services().toolManager, model.GetProjectRoot());
  if (!order.GetCycle().empty()) list->AddAttr("Cycle", order.GetCycle());
  return list;
}

std::string DescribeMissingTypes(const NodeTypes& types) {
  bool hasProject = false;
  bool hasApplication = false;
  const CXmlNode& records = types.GetRoot();
  for (int i = 0; i < records.GetChildCount(); ++i) {
    const std::uint32_t flags = types.FlagsOf(*records.GetChild(i));
    hasProject = hasProject || (flags & kTypeProject) != 0;
    hasApplication = hasApplication || ((flags & kTypeApplication) && (flags & kTypeBuild));
  }
  if (hasProject && hasApplication) return {};
  return hasProject ? "no type of applications that can be built is defined"
                    : "no type of projects is defined";
}

}  // namespace tarn
