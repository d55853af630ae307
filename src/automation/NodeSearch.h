#pragma once

#include <string>
#include <vector>

#include "project/ProjectModel.h"

namespace tarn {

// Finds the nodes of the open project that a user denotes by a path or a label. The first of these
// rules with a match decides: the exact path; the path in a different letter case, unless that is a
// different file on disk; a different path to the same file (symbolic links); the label; the label
// of a group or application, a slash, and one of these; any of these with "#" and the number of one
// of several matches. Linear in the number of nodes.
class NodeSearch {
 public:
  // Relative paths are resolved against `currentFolder`, then against the project's folder.
  NodeSearch(CProjectModel& projectModel, std::string currentFolder)
      : model_(projectModel), folders_{std::move(currentFolder), projectModel.GetProjectFolder()} {}

  // Returns the matches in the subtree of `start`, in document order. `start` itself is returned
  // only if nothing below it matches.
  std::vector<CXmlNode*> FindNumbered(CXmlNode& start, const std::string& key) const;

 private:
  std::vector<CXmlNode*> Find(CXmlNode& start, const std::string& key) const;
  std::vector<CXmlNode*> FindPlain(CXmlNode& start, const std::string& key) const;
  std::vector<CXmlNode*> FindByPath(CXmlNode& start, const std::string& path, bool exactly) const;
  std::vector<CXmlNode*> FindByFile(CXmlNode& start, const std::string& path) const;

  CProjectModel& model_;
  const std::string folders_[2];
};

}  // namespace tarn
