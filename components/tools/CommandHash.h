#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "components/tools/CommandBuilder.h"
#include "components/tools/ToolWorld.h"

namespace tarn::tools {

// The programs that a plan starts, with full paths as far as they are found, each once. Launchers
// are left out: they change how a program is started, not what it does.
std::vector<std::string> ProgramsOf(const ToolWorld& world, const ToolPlan& plan);

// Returns the folders that the plan's programs search headers in, in order, each once.
std::vector<std::string> SearchFolders(FileSystem* disk, const ToolDefinition& tool,
                                       const ToolPlan& plan);

// A hash of everything that the plan's programs get: their paths, arguments, folders and
// environment, and where PATH has the programs that they start. Never 0.
std::uint64_t HashCommands(const ToolWorld& world, const ToolPlan& plan);

// Sixteen hexadecimal digits.
std::string HexText(std::uint64_t number);

}  // namespace tarn::tools
