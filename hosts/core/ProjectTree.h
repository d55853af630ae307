#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tarn {
class CXmlNode;
class FileSystem;
}  // namespace tarn

namespace tarn::host {

class InspectorDriver;

// An application of the open project, as presented to the user.
struct ApplicationEntry {
  std::string label;
  std::string path;
  std::string output;                       // of its own tool; empty if it has no tool
  std::string configuration;                // active configuration
  std::vector<std::string> configurations;  // available ones
  bool active = false;
};

struct FoundApplication {
  std::optional<ApplicationEntry> entry;
  std::string problem;  // a sentence for the user; empty if there is exactly one
};

// Finds the application with the path or the label `key`, else the one whose label differs only in
// letter case. Returns no entry if the key is ambiguous. `shorten` abbreviates a path for display.
FoundApplication FindApplication(const std::vector<ApplicationEntry>& applications,
                                 std::string_view key,
                                 const std::function<std::string(const std::string&)>& shorten);

// Returns the applications of the open project.
std::vector<ApplicationEntry> ListApplications(InspectorDriver& inspector);

// Returns the names in a value of the option Linker.Applications that are not the label or the
// output file, without its extension, of an application.
std::vector<std::string> FindUnknownLibraries(const std::string& names,
                                              const std::vector<ApplicationEntry>& applications);

// The project's tree as returned by the inspector.
class ProjectTree {
 public:
  explicit ProjectTree(const std::string& xml);
  ProjectTree(const ProjectTree&) = delete;
  ProjectTree& operator=(const ProjectTree&) = delete;
  ~ProjectTree();

  // Returns the root of the project; nullptr if no tree was returned.
  const CXmlNode* GetRoot() const { return root_.get(); }
  std::vector<ApplicationEntry> GetApplications() const;
  // Returns true if the tool of a node makes the file.
  bool Makes(FileSystem& files, const std::string& path) const;

  // Returns true for nodes that a tree view shows: applications, groups and files; false for stored
  // options, configurations, dependencies and comments.
  static bool IsShown(const CXmlNode& node);

 private:
  std::unique_ptr<CXmlNode> root_;
};

}  // namespace tarn::host
