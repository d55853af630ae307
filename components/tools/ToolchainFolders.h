#pragma once

#include <string>
#include <vector>

#include "components/tools/CommandBuilder.h"
#include "components/tools/ToolWorld.h"

namespace tarn::tools {

// The folders of the headers that come with the compiler of a plan, or with the system. They change
// with the toolchain alone, whose program is a dependency itself.
class ToolchainFolders {
 public:
  ToolchainFolders(const ToolWorld& world, const ToolPlan& plan);

  bool Has(const std::string& path) const;

 private:
  void AddInstallation(FileSystem& files, const std::string& program);

  std::vector<std::string> folders;  // with separators at their ends
};

}  // namespace tarn::tools
