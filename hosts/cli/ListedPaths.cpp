#include "hosts/cli/ListedPaths.h"

#include "hosts/core/LogEntry.h"
#include "hosts/core/ProjectTree.h"
#include "platform/files/SameName.h"
#include "platform/text/Text.h"
#include "xml/XmlNode.h"

namespace tarn::host {

namespace {

void CollectParents(FileSystem& files, const CXmlNode& node, const std::string& path,
                    std::vector<std::string>& labels) {
  for (const CXmlNode* child : node.GetChildren()) {
    if (!ProjectTree::IsShown(*child)) continue;
    const bool isFile = IsSameName(files, GetAttribute(child, "Path"), path);
    if (isFile) labels.push_back(GetAttribute(&node, "Header"));
    CollectParents(files, *child, path, labels);
  }
}

void CollectPaths(const CXmlNode& node, std::unordered_set<std::string>& paths) {
  if (const char* path = node.GetAttrValue("Path")) paths.insert(FoldCase(path));
  for (const CXmlNode* child : node.GetChildren()) CollectPaths(*child, paths);
}

}  // namespace

ListedPaths::ListedPaths(const std::string& tree) {
  const ProjectTree project(tree);
  if (project.GetRoot() != nullptr) CollectPaths(*project.GetRoot(), folded_);
}

bool ListedPaths::Take(const std::string& path) {
  return !folded_.insert(FoldCase(path)).second;
}

std::vector<std::string> ParentsOfRepeated(FileSystem& files, const std::string& tree,
                                           const std::string& path) {
  const ProjectTree project(tree);
  if (project.GetRoot() == nullptr) return {};
  for (const CXmlNode* application : project.GetRoot()->GetChildren()) {
    std::vector<std::string> labels;
    CollectParents(files, *application, path, labels);
    if (labels.size() > 1) return labels;
  }
  return {};
}

}  // namespace tarn::host
