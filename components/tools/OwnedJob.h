#pragma once

#include "components/tools/CommandBuilder.h"
#include "components/tools/ToolWorld.h"

namespace tarn::tools {

// A job made from the arguments of RunTool, together with the option values that it points to.
struct OwnedJob {
  OptionValues values;
  ToolJob job;

  // `files` is a comma-separated list of quoted paths, `options` the values text of the node; null
  // counts as empty.
  OwnedJob(const ToolWorld& world, const char* files, const char* options);
  OwnedJob(const OwnedJob&) = delete;
  OwnedJob& operator=(const OwnedJob&) = delete;
};

}  // namespace tarn::tools
