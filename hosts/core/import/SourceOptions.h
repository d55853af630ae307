#pragma once

#include <string>
#include <vector>

#include "hosts/core/import/CompilerCommand.h"
#include "hosts/core/import/ImportedProject.h"

namespace tarn::host {

// A source file and the command that compiles it.
struct CompiledSource {
  std::string path;  // absolute
  CompilerCommand command;
};

// Stores the options of the commands: those that most files have in common at the application, in
// its first configuration, and the others at the files. Adds the files to the application, with
// groups like their folders below the project's folder.
void AddCompiledSources(const std::vector<CompiledSource>& sources, const ImportContext& context,
                        ImportedProject& project, ImportedApplication& application);

// Stores the options of a link command at the application's first configuration. Objects and
// libraries among its inputs are left to the caller.
void AddLinkOptions(const CompilerCommand& link, const ImportContext& context,
                    ImportedProject& project, ImportedApplication& application);

}  // namespace tarn::host
