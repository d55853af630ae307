#pragma once

#include <cstdint>
#include <string>

#include "project/ProjectServices.h"
#include "project/ProjectState.h"

namespace tarn {

// Paths of the open project: relative as stored in its files, absolute in memory. Every path is
// relative to a base folder: that of the application that owns the node, else the project's. Only
// looks names up on the disk. Borrows everything; main thread only.
class ProjectPaths {
 public:
  ProjectPaths(const ProjectServices& projectServices, const ProjectState& projectState)
      : files_(projectServices.files), types_(projectServices.types), state_(projectState) {}

  // Makes `path` absolute. Returns 0 for an empty path and leaves `result` unchanged. A null base
  // means the project's folder.
  std::int32_t MakeAbsolutePath(const std::string& path, std::string& result,
                                const char* baseFolder) const;
  // Makes `path` relative, as stored in files. A path that is relative already, or that has no
  // relative form, is returned unchanged.
  std::int32_t MakeRelativePath(const std::string& path, std::string& result,
                                const char* baseFolder) const;
  // Makes the paths in the subtree absolute; `base` is the folder of the node's own.
  void MakePathsAbsolute(CXmlNode& node, const std::string& base) const;

  // Returns the folder that the node's path is relative to; empty means the project's folder.
  std::string PathBaseOf(const CXmlNode& node) const;
  // Returns the folder that the paths of the node's children are relative to.
  std::string PathBaseBelow(const CXmlNode& parent) const;
  // Finds the application at or above `node`; leaves `found` unchanged if there is none.
  void FindEnclosingApplication(CXmlNode* node, CXmlNode*& found) const;
  // Returns the path of the application's globals file in the active configuration; empty if there
  // is none.
  std::string GlobalsFileOf(const CXmlNode& application) const;

  // Returns the absolute path of the project file that a path passed by a caller refers to.
  std::string FullProjectPath(const std::string& path) const;
  // Returns true if a project is open and `path` refers to it.
  bool IsOpenAs(const std::string& path) const;

 private:
  // Returns the owner of a node's paths: its nearest proper ancestor that is an application or
  // project.
  CXmlNode* FindPathOwner(const CXmlNode& node) const;
  std::string FolderOfOwner(const CXmlNode* owner) const;

  FileSystem& files_;
  const NodeTypes& types_;
  const ProjectState& state_;
};

}  // namespace tarn
