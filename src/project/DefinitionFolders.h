#pragma once

#include <string>
#include <vector>

#include "project/ProjectServices.h"
#include "project/ProjectState.h"
#include "project/ProjectTrust.h"

namespace tarn {

// Folders with definitions (options, tools, targets) in addition to those of the installation:
// those of the user, and the one in the folder of the open project, if the project is trusted. Both
// components and the catalogue of targets read them, in this order. Borrows everything; main thread
// only.
class DefinitionFolders {
 public:
  DefinitionFolders(ProjectServices& projectServices, const ProjectState& projectState,
                    const ProjectTrust& projectTrust)
      : services_(projectServices), state_(projectState), trust_(projectTrust) {}

  // `always` are absolute paths. `inProject` is the name of the folder in the project's folder;
  // empty for none. Apply() activates them.
  void Set(std::vector<std::string> always, std::string inProject);
  // Passes the folders that the open project may use to the components. Returns true if this
  // changes their definitions, so nodes have to be published again.
  bool Apply();
  const std::vector<std::string>& GetApplied() const { return applied_; }
  // Returns the definition files of the open project that aren't read because it isn't trusted.
  std::vector<std::string> FindIgnored() const;

 private:
  // Returns an empty string if the open project has none.
  std::string FolderOfProject() const;

  ProjectServices& services_;
  const ProjectState& state_;
  const ProjectTrust& trust_;
  std::vector<std::string> always_, applied_;
  std::string inProject_;
};

}  // namespace tarn
