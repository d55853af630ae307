#pragma once

#include <string>
#include <vector>

#include "project/ProjectModel.h"

namespace tarn {

// Finds the nodes of the open project that a user means by a path or a label. The first of these
// rules that finds anything decides: the exact path, the path in another letter case unless that is
// another file on the disk, the same file by another way (symbolic links), the label, a group's or
// application's label with a slash and one of these, and any of these with "#" and the number of
// one of several.
class NodeSearch {
 public:
  // Relative paths count from `currentFolder`, then from the project's folder.
  NodeSearch(CProjectModel& projectModel, std::string currentFolder)
      : model(projectModel), folders{std::move(currentFolder), projectModel.GetProjectFolder()} {}

  // The nodes from `start` on, in document order; `start` itself only if nothing below is meant.
  std::vector<CXmlNode*> FindNumbered(CXmlNode& start, const std::string& key) const;

 private:
  std::vector<CXmlNode*> Find(CXmlNode& start, const std::string& key) const;
  std::vector<CXmlNode*> FindPlain(CXmlNode& start, const std::string& key) const;
  std::vector<CXmlNode*> FindByPath(CXmlNode& start, const std::string& path, bool exactly) const;
  std::vector<CXmlNode*> FindByFile(CXmlNode& start, const std::string& path) const;

  CProjectModel& model;
  const std::string folders[2];
};

}  // namespace tarn
