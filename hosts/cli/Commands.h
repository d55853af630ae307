#pragma once

#include <nlohmann/json_fwd.hpp>

#include "hosts/cli/OpenedProject.h"
#include "hosts/core/TargetEntry.h"

namespace tarn::host {

// The commands of the program. Each returns the exit code.
int RunBuild(CommandContext& context);       // build, rebuild, clean
int RunStatus(CommandContext& context);      // status
int RunCheck(CommandContext& context);       // check
int RunTree(CommandContext& context);        // tree
int RunOptions(CommandContext& context);     // options get, set, reset, explain, list
int RunConfig(CommandContext& context);      // config list, add, select
int RunGlobals(CommandContext& context);     // globals
int RunLog(CommandContext& context);         // log
int RunReport(CommandContext& context);      // report
int RunNew(CommandContext& context);         // new
int RunImport(CommandContext& context);      // import
int RunCompletion(CommandContext& context);  // completion bash, zsh, fish
int RunMan(CommandContext& context);         // man
int RunComplete(CommandContext& context);    // complete
int RunEdit(CommandContext& context);        // add, remove, move, rename, select
int RunUndo(CommandContext& context);        // undo, redo
int RunRelocate(CommandContext& context);    // relocate
int RunExport(CommandContext& context);      // export compile-commands, sarif
int RunScript(CommandContext& context);      // run
int RunTargets(CommandContext& context);     // targets
int RunTrust(CommandContext& context);       // trust
int RunServe(CommandContext& context);       // serve
int RunRegister(CommandContext& context);    // register, unregister

// Prints a JSON document, to which damage of the project is added as "damage"; bytes that are not
// UTF-8 are replaced.
void PrintJson(CommandContext& context, nlohmann::json document);
// Names by which a user can select targets or families.
std::vector<std::string> TargetNames(const std::vector<TargetEntry>& targets);
std::vector<std::string> FamilyNames(const std::vector<TargetEntry>& targets);
// Returns 0, or an exit code after printing the error if a target file was read only partially.
int CheckTargetFiles(CommandContext& context, const std::string& list);
// Returns the messages of a build as a JSON array.
nlohmann::json ToJson(const std::vector<LogEntry>& entries);

}  // namespace tarn::host
