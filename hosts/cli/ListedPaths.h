#pragma once

#include <string>
#include <unordered_set>
#include <vector>

#include "platform/files/FileSystem.h"

namespace tarn::host {

// Paths of the files in a project, so that new files are added without a search of the whole tree
// for each.
class ListedPaths {
 public:
  // `tree` is the project's tree as XML.
  explicit ListedPaths(const std::string& tree);

  // Adds the path. Returns true if it was listed before, in whatever letter case.
  bool Take(const std::string& path);

 private:
  std::unordered_set<std::string> folded_;  // in lower case
};

// Returns the groups and applications that contain the file, for an application that lists it more
// than once.
std::vector<std::string> ParentsOfRepeated(FileSystem& files, const std::string& tree,
                                           const std::string& path);

}  // namespace tarn::host
