#include "hosts/frame/ProjectTree.h"

#include <algorithm>
#include <array>

#include "hosts/frame/LogEntry.h"
#include "platform/text/Text.h"

namespace tarn::host {

namespace {

constexpr const char* kUsualConfiguration = "Standard";
constexpr std::array<std::string_view, 5> kHidden = {"Options", "Configs", "Dependencies",
                                                     "PropState", "Info"};

std::vector<std::string> ConfigurationsOf(const CXmlNode& application, const std::string& current) {
  std::vector<std::string> names;
  if (const CXmlNode* configs = application.FindChild("Configs"); configs != nullptr) {
    for (const CXmlNode* config : configs->GetChildren()) {
      if (config->GetType() == XmlElement) names.push_back(AttributeOf(config, "Header"));
    }
  }
  // The usual one and the one in force need no entry.
  for (const std::string& name : {current, std::string(kUsualConfiguration)}) {
    const bool isListed = std::any_of(names.begin(), names.end(), [&](const std::string& each) {
      return EqualNoCase(each, name);
    });
    if (!isListed) names.insert(names.begin(), name);
  }
  return names;
}

}  // namespace

ProjectTree::ProjectTree(const std::string& xml) : root(ParseXml(xml)) {}

std::vector<ApplicationEntry> ProjectTree::GetApplications() const {
  std::vector<ApplicationEntry> list;
  if (root == nullptr) return list;
  const std::string active = AttributeOf(root.get(), "ActiveApp");
  for (const CXmlNode* node : root->GetChildren()) {
    if (!IsShown(*node)) continue;
    ApplicationEntry& entry = list.emplace_back();
    entry.label = AttributeOf(node, "Header");
    entry.path = AttributeOf(node, "Path");
    const bool hasTool = !AttributeOf(node, "TranslateTool").empty();
    if (hasTool) entry.output = AttributeOf(node, "OutputFile");
    entry.configuration = AttributeOf(node, "Config");
    if (entry.configuration.empty()) entry.configuration = kUsualConfiguration;
    entry.configurations = ConfigurationsOf(*node, entry.configuration);
    entry.active = EqualNoCase(entry.label, active);
  }
  return list;
}

bool ProjectTree::IsShown(const CXmlNode& node) {
  return node.GetType() == XmlElement &&
         std::find(kHidden.begin(), kHidden.end(), node.NameView()) == kHidden.end();
}

}  // namespace tarn::host
