#include <algorithm>
#include <set>

#include "hosts/core/LogEntry.h"
#include "hosts/core/check/CheckScope.h"
#include "hosts/core/check/ProjectCheck.h"
#include "platform/paths/Paths.h"
#include "platform/text/Text.h"
#include "xml/XmlNode.h"

namespace tarn::host {

namespace {

constexpr int kSearchDepth = 2;  // levels of subfolders

// Adds the paths of the files with one of these extensions in a folder and its subfolders.
void CollectFiles(FileSystem& files, const std::string& folder, int depth,
                  std::vector<std::string>& applications, std::vector<std::string>& projects) {
  const auto entries = files.ListFolder(folder);
  if (!entries) return;
  for (const FolderEntry& each : *entries) {
    const std::string path = JoinPath(folder, each.name);
    if (each.name.starts_with('.') || files.ExamineLink(path)) continue;
    if (each.isFolder) {
      if (depth > 0) CollectFiles(files, path, depth - 1, applications, projects);
      continue;
    }
    const std::string extension = ExtensionOf(path);
    if (EqualNoCase(extension, ".tapp")) applications.push_back(path);
    if (EqualNoCase(extension, ".tprj")) projects.push_back(path);
  }
}

}  // namespace

// Reports the former file of an application that has moved. Version control leaves it if a branch
// that moves an application is merged with one that changes it, and the change is then only there.
void ProjectCheck::CheckLeftovers() {
  const std::string project = session_.GetProjectPath();
  std::vector<std::string> applications;
  std::vector<std::string> projects;
  CollectFiles(files_, FolderOf(project), kSearchDepth, applications, projects);
  std::set<std::string> own;
  for (const CheckedNode& node : scope_->nodes) {
    if (node.node == node.application) own.insert(GetAttribute(node.node, "Path"));
  }
  // The files of other projects.
  std::string others;
  for (const std::string& each : projects) {
    if (each == project) continue;
    if (const auto text = files_.ReadWholeFile(each)) others += *text;
  }
  for (const std::string& path : applications) {
    const std::string name = FileNameOf(path);
    if (own.contains(path) || others.find(name) != others.npos) continue;
    for (const CheckedNode& node : scope_->nodes) {
      if (node.node != node.application) continue;
      const std::string present = GetAttribute(node.node, "Path");
      const std::string label = GetAttribute(node.node, "Header");
      const bool isNamed =
          EqualNoCase(name, FileNameOf(present)) || EqualNoCase(SplitPath(name).title, label);
      if (!isNamed || present == path) continue;
      const auto text = files_.ReadWholeFile(path);
      const auto root = text ? ParseXml(*text) : nullptr;
      if (root == nullptr || !EqualNoCase(GetAttribute(root.get(), "Header"), label)) continue;
      Finding& finding = scope_->Add(FindingKind::LeftoverApplication, node);
      finding.subject = path;
      finding.detail = present;
      break;
    }
  }
}

}  // namespace tarn::host
