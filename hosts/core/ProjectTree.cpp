#include "hosts/core/ProjectTree.h"

#include <algorithm>
#include <array>

#include "hosts/core/LogEntry.h"
#include "hosts/core/ServerDrivers.h"
#include "platform/files/SameName.h"
#include "platform/paths/Paths.h"
#include "platform/text/Suggest.h"
#include "platform/text/Text.h"
#include "xml/XmlNode.h"

namespace tarn::host {

namespace {

constexpr const char* kUsualConfiguration = "Standard";
constexpr std::array<std::string_view, 5> kHidden = {"Options", "Configs", "Dependencies",
                                                     "PropState", "Info"};

std::vector<std::string> ConfigurationsOf(const CXmlNode& application, const std::string& current) {
  std::vector<std::string> names;
  if (const CXmlNode* configs = application.FindChild("Configs"); configs != nullptr) {
    for (const CXmlNode* config : configs->GetChildren()) {
      if (config->GetType() == XmlElement) names.push_back(GetAttribute(config, "Header"));
    }
  }
  // The standard configuration and the active one need not be listed.
  for (const std::string& name : {current, std::string(kUsualConfiguration)}) {
    const bool isListed = std::any_of(names.begin(), names.end(), [&](const std::string& each) {
      return EqualNoCase(each, name);
    });
    if (!isListed) names.insert(names.begin(), name);
  }
  return names;
}

bool IsMadeBelow(FileSystem& files, const CXmlNode& parent, const std::string& path) {
  for (const CXmlNode* child : parent.GetChildren()) {
    const std::string made = WithoutStamp(GetAttribute(child, "OutputFile"));
    const bool isSame = !made.empty() && IsSameName(files, made, path);
    if (isSame || IsMadeBelow(files, *child, path)) return true;
  }
  return false;
}

using Entries = std::vector<const ApplicationEntry*>;

template <class IsMeant>
Entries Select(const std::vector<ApplicationEntry>& applications, IsMeant isMeant) {
  Entries found;
  for (const ApplicationEntry& each : applications) {
    if (isMeant(each)) found.push_back(&each);
  }
  return found;
}

}  // namespace

FoundApplication FindApplication(const std::vector<ApplicationEntry>& applications,
                                 std::string_view key,
                                 const std::function<std::string(const std::string&)>& shorten) {
  Entries found = Select(applications, [&](const auto& each) { return each.path == key; });
  if (found.empty()) {
    found = Select(applications, [&](const auto& each) { return each.label == key; });
  }
  if (found.empty()) {
    found = Select(applications, [&](const auto& each) { return EqualNoCase(each.label, key); });
  }
  if (found.size() == 1) return {*found.front(), {}};
  const std::string name = "\"" + std::string(key) + "\"";
  if (found.empty()) {
    std::vector<std::string> labels;
    for (const ApplicationEntry& each : applications) labels.push_back(each.label);
    return {{},
            "There is no application " + name + " in this project." + SuggestionText(key, labels)};
  }
  std::string paths;
  for (const ApplicationEntry* each : found) {
    paths += (paths.empty() ? "" : ", ") + shorten(each->path);
  }
  return {{}, "There are several applications " + name + ". Specify one by its path: " + paths};
}

std::vector<std::string> FindUnknownLibraries(const std::string& names,
                                              const std::vector<ApplicationEntry>& applications) {
  std::vector<std::string> unknown;
  for (const std::string_view entry : Split(names, ';')) {
    const std::string name(Trim(entry));
    const bool isKnown = std::ranges::any_of(applications, [&](const ApplicationEntry& each) {
      return each.label == name || FileNameOf(WithoutExtension(each.output)) == name;
    });
    if (!name.empty() && !isKnown) unknown.push_back(name);
  }
  return unknown;
}

std::vector<ApplicationEntry> ListApplications(InspectorDriver& inspector) {
  return ProjectTree(inspector.GetApplications()).GetApplications();
}

ProjectTree::ProjectTree(const std::string& xml) : root_(ParseXml(xml)) {}

ProjectTree::~ProjectTree() = default;

std::vector<ApplicationEntry> ProjectTree::GetApplications() const {
  std::vector<ApplicationEntry> list;
  if (root_ == nullptr) return list;
  const std::string active = GetAttribute(root_.get(), "ActiveApp");
  for (const CXmlNode* node : root_->GetChildren()) {
    if (!IsShown(*node)) continue;
    ApplicationEntry& entry = list.emplace_back();
    entry.label = GetAttribute(node, "Header");
    entry.path = GetAttribute(node, "Path");
    const bool hasTool = !GetAttribute(node, "TranslateTool").empty();
    if (hasTool) entry.output = GetAttribute(node, "OutputFile");
    entry.configuration = GetAttribute(node, "Config");
    if (entry.configuration.empty()) entry.configuration = kUsualConfiguration;
    entry.configurations = ConfigurationsOf(*node, entry.configuration);
  }
  // If several have this label, the server activates the last one.
  const auto named = std::find_if(list.rbegin(), list.rend(), [&active](const auto& each) {
    return EqualNoCase(each.label, active);
  });
  if (named != list.rend()) named->active = true;
  return list;
}

bool ProjectTree::IsShown(const CXmlNode& node) {
  return node.GetType() == XmlElement &&
         std::find(kHidden.begin(), kHidden.end(), node.NameView()) == kHidden.end();
}

bool ProjectTree::Makes(FileSystem& files, const std::string& path) const {
  return root_ != nullptr && IsMadeBelow(files, *root_, path);
}

}  // namespace tarn::host
