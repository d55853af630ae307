#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "components/tools/CommandBuilder.h"
#include "components/tools/ToolEnvironment.h"

namespace tarn::tools {

// Returns the programs that a plan starts, without duplicates, as full paths if they are found.
// Excludes launchers, because they only affect how a program is started, not what it does.
std::vector<std::string> ProgramsOf(const ToolEnvironment& world, const ToolPlan& plan);

// Returns the folders that the plan's programs search for headers, in order and without duplicates.
std::vector<std::string> SearchFolders(FileSystem* disk, const ToolDefinition& tool,
                                       const ToolPlan& plan);

// Returns a hash of everything passed to the plan's programs (paths, arguments, folders,
// environment) and of the locations in PATH of the programs that they start. Never 0.
std::uint64_t HashCommands(const ToolEnvironment& world, const ToolPlan& plan);

// Returns sixteen hexadecimal digits.
std::string HexText(std::uint64_t number);

}  // namespace tarn::tools
