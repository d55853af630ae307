#pragma once

#include "components/tools/CommandBuilder.h"
#include "components/tools/ToolEnvironment.h"

namespace tarn::tools {

// A job made from the arguments of RunTool, together with the option values that it points to.
struct OwnedJob {
  OptionValues values;
  ToolInvocation job;

  // `files` is a comma-separated list of quoted paths, `options` the values text of the node; null
  // counts as empty. `configFolder` is the value of $(Install.ConfigFolder).
  OwnedJob(const ToolEnvironment& world, const std::string& configFolder, const char* files,
           const char* options);
  OwnedJob(const OwnedJob&) = delete;
  OwnedJob& operator=(const OwnedJob&) = delete;
};

}  // namespace tarn::tools
