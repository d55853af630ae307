#pragma once

#include <nlohmann/json_fwd.hpp>

#include "hosts/cli/CommandArguments.h"
#include "hosts/cli/CommandList.h"
#include "hosts/cli/OpenedProject.h"
#include "hosts/core/TargetEntry.h"

// What the files of the commands need.
namespace tarn::host {

// Prints a JSON document, to which damage of the project is added as "damage"; bytes that are not
// UTF-8 are replaced. `indent` is -1 for a single line.
void PrintJson(CommandContext& context, nlohmann::json document, int indent = 2);
// Names by which a user can select targets or families.
std::vector<std::string> TargetNames(const std::vector<TargetEntry>& targets);
std::vector<std::string> FamilyNames(const std::vector<TargetEntry>& targets);
// Returns 0, or an exit code after printing the error if a target file was read only partially.
int CheckTargetFiles(CommandContext& context, const std::string& list);
// Returns the messages of a build as a JSON array.
nlohmann::json ToJson(const std::vector<LogEntry>& entries);

}  // namespace tarn::host
