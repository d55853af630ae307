#pragma once

#include <nlohmann/json_fwd.hpp>

#include "hosts/cli/OpenedProject.h"
#include "hosts/core/TargetEntry.h"

namespace tarn::host {

// The commands of the program. Each gives the exit code.
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

// Writes a document for programs, with what was lost of the project as "damage"; bytes that are no
// UTF-8 are replaced.
void PrintJson(CommandContext& context, nlohmann::json document);
// Names that somebody can ask for.
std::vector<std::string> TargetNames(const std::vector<TargetEntry>& targets);
std::vector<std::string> FamilyNames(const std::vector<TargetEntry>& targets);
// 0, or an exit code with everything said if a file of the listed targets was read only in part.
int CheckTargetFiles(CommandContext& context, const std::string& list);
// Messages of a build as a list.
nlohmann::json ToJson(const std::vector<LogEntry>& entries);

}  // namespace tarn::host
