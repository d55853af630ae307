#include "hosts/cli/ListedFiles.h"

#include "hosts/cli/OpenedProject.h"
#include "hosts/core/ProjectTree.h"
#include "platform/files/SameName.h"
#include "platform/text/Text.h"
#include "xml/XmlNode.h"

namespace tarn::host {

namespace {

void CollectPaths(const CXmlNode& node, std::unordered_set<std::string>& paths) {
  if (const char* path = node.GetAttrValue("Path")) paths.insert(FoldCase(path));
  for (const CXmlNode* child : node.GetChildren()) CollectPaths(*child, paths);
}

void CollectParents(FileSystem& files, const CXmlNode& node, const std::string& path,
                    std::vector<std::string>& labels) {
  for (const CXmlNode* child : node.GetChildren()) {
    if (!ProjectTree::IsShown(*child)) continue;
    const bool isFile = IsSameName(files, GetAttribute(child, "Path"), path);
    if (isFile) labels.push_back(GetAttribute(&node, "Header"));
    CollectParents(files, *child, path, labels);
  }
}

}  // namespace

bool ListedFiles::Add(const std::string& path) {
  if (!paths_) {
    const ProjectTree tree(context_.Session().Inspector().GetTree());
    paths_.emplace();
    if (tree.GetRoot() != nullptr) CollectPaths(*tree.GetRoot(), *paths_);
  }
  return !paths_->insert(FoldCase(path)).second;
}

std::vector<std::string> ListedFiles::FindRepeated(const std::string& path) const {
  const ProjectTree project(context_.Session().Inspector().GetTree());
  if (project.GetRoot() == nullptr) return {};
  for (const CXmlNode* application : project.GetRoot()->GetChildren()) {
    std::vector<std::string> labels;
    CollectParents(context_.Files(), *application, path, labels);
    if (labels.size() > 1) return labels;
  }
  return {};
}

}  // namespace tarn::host
