#include "hosts/core/BuildGaps.h"

#include <algorithm>

#include "hosts/core/LogEntry.h"
#include "platform/text/Text.h"
#include "xml/XmlNode.h"

namespace tarn::host {

namespace {

// Placeholders: %1 is the node, %2 its type or the name of the tool, %3 its application.
struct GapText {
  const char* reason;
  bool isFatal;
  const char* text;
};

constexpr GapText kGapTexts[] = {
    {"no-tool", true,
     "%1 can't be built: it has no tool. Check its option Target.Toolchain, and whether all "
     "definitions of options could be read."},
    {"unknown-tool", true, "%3 can't be built: its tool %2 has no valid definition."},
    {"unknown-library", true,
     "%3 can't be linked: no application of the project is called %2 (option "
     "Linker.Applications)."},
    {"no-tool", false,
     "%1 is not built: it has no tool (option Build.TranslateTool). Exclude it from the build if "
     "that is intended."},
    {"no-file", true, "%1 can't be built: it names no file. Give it a Path, or remove it."},
    {"no-application", true,
     "%1 can't be built: it is in no application. Move it into one, or remove it."},
    {"no-type", true,
     "%1 can't be built: its type %2 is not defined in the configuration file "
     "projectmanager.config."},
    {"no-type", false,
     "%1 is not built: its type %2 is not defined in the configuration file "
     "projectmanager.config."},
};

void ReadNodes(const CXmlNode& parent, const std::string& application, BuildGaps& found) {
  for (const CXmlNode* node : parent.GetChildren()) {
    if (node->NameView() != "Node") continue;
    found.gaps.push_back({application, GetAttribute(node, "Header"), GetAttribute(node, "Path"),
                          GetAttribute(node, "Type"), GetAttribute(node, "Reason"),
                          GetAttribute(node, "IsFatal") == "Yes"});
  }
}

}  // namespace

bool BuildGaps::HasFatal() const {
  return std::any_of(gaps.begin(), gaps.end(), [](const BuildGap& gap) { return gap.isFatal; });
}

BuildGaps ParseBuildGaps(const std::string& xml, const std::string& application) {
  BuildGaps found;
  const auto root = ParseXml(xml);
  if (root == nullptr) return found;
  found.cycle = GetAttribute(root.get(), "Cycle");
  if (application.empty()) ReadNodes(*root, {}, found);
  for (const CXmlNode* entry : root->GetChildren()) {
    if (entry->NameView() != "Application") continue;
    const std::string label = GetAttribute(entry, "Header");
    const bool isWanted = application.empty() || EqualNoCase(label, application) ||
                          GetAttribute(entry, "Path") == application;
    if (!isWanted) continue;
    ++found.applications;
    ReadNodes(*entry, label, found);
  }
  return found;
}

std::string DescribeGap(const BuildGap& gap,
                        const std::function<std::string(const std::string&)>& shorten) {
  for (const GapText& each : kGapTexts) {
    if (gap.reason != each.reason || gap.isFatal != each.isFatal) continue;
    const bool isFile = !gap.isFatal && !gap.path.empty();
    std::string text = ReplaceAll(each.text, "%2", gap.type);
    text = ReplaceAll(text, "%3", gap.application);
    return ReplaceAll(text, "%1", isFile ? shorten(gap.path) : gap.label);
  }
  return gap.label + ": " + gap.reason;
}

}  // namespace tarn::host
