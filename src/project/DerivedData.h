#pragma once

#include "project/NodeTypes.h"
#include "project/ProjectPaths.h"
#include "project/ProjectState.h"

namespace tarn {

// Removes what publishing and builds have derived from the files of the project and written to the
// nodes: cached values, attributes, absolute paths, dependencies. Borrows everything; main thread
// only. Nothing here fails.
class DerivedData {
 public:
  DerivedData(ProjectState& projectState, const ProjectPaths& projectPaths,
              const NodeTypes& nodeTypes)
      : state_(projectState), paths_(projectPaths), types_(nodeTypes) {}

  // Removes everything derived from the subtree and makes its paths relative.
  void StripForSave(CXmlNode& node, bool dropDependencies);
  // Same for a copy, whose nodes were never published.
  void StripSubtree(CXmlNode& node, bool dropDependencies);
  // Unpublishes the subtree. If `ownOnly`, keeps the derived attributes and the absolute paths.
  void ResetNodeCache(CXmlNode& node, bool ownOnly);
  // The active application's path may be queried at any time, even before it is published again.
  void MakeActivePathAbsolute();

 private:
  void MakeAttributeRelative(CXmlNode& node, const char* name);

  ProjectState& state_;
  const ProjectPaths& paths_;
  const NodeTypes& types_;
};

}  // namespace tarn
