#pragma once

#include <string>
#include <vector>

#include "components/tools/CommandBuilder.h"
#include "components/tools/ToolEnvironment.h"

namespace tarn::tools {

// Folders of the headers that belong to a plan's compiler or to the system. They only change with
// the toolchain, whose program is itself a dependency.
class ToolchainFolders {
 public:
  ToolchainFolders(const ToolEnvironment& world, const ToolPlan& plan);

  bool Has(const std::string& path) const;

 private:
  void AddInstallation(FileSystem& files, const std::string& program);

  std::vector<std::string> folders_;  // with trailing separators
};

}  // namespace tarn::tools
