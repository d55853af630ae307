#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "xml/XmlNode.h"

namespace tarn::host {

class InspectorDriver;

// An application of the open project, as a host talks about it.
struct ApplicationEntry {
  std::string label;
  std::string path;
  std::string output;                       // that its own tool makes; empty without a tool
  std::string configuration;                // in force
  std::vector<std::string> configurations;  // that can be chosen
  bool active = false;
};

struct FoundApplication {
  std::optional<ApplicationEntry> entry;
  std::string problem;  // a sentence for the user; empty if there is exactly one
};

// Returns the application with the path or the label `key`, else the one whose label differs from
// it in letter case only. None if several could be meant. `shorten` makes a path fit for a person.
FoundApplication FindApplication(const std::vector<ApplicationEntry>& applications,
                                 std::string_view key,
                                 const std::function<std::string(const std::string&)>& shorten);

// The applications of the open project.
std::vector<ApplicationEntry> ListApplications(InspectorDriver& inspector);

// The project's tree as the inspector gave it.
class ProjectTree {
 public:
  explicit ProjectTree(const std::string& xml);

  // The project's root; null when there was no tree.
  const CXmlNode* GetRoot() const { return root.get(); }
  std::vector<ApplicationEntry> GetApplications() const;

  // True for what a tree shows: applications, groups and files; false for stored options,
  // configurations, dependencies and comments.
  static bool IsShown(const CXmlNode& node);

 private:
  std::unique_ptr<CXmlNode> root;
};

}  // namespace tarn::host
