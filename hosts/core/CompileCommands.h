#pragma once

#include <set>
#include <string>
#include <vector>

#include "hosts/core/BuildSession.h"
#include "hosts/core/ProjectTree.h"

namespace tarn::host {

// How one source file is compiled.
struct CompileCommand {
  std::string configuration;
  std::string directory;               // absolute; working folder of the compiler
  std::string file;                    // absolute, in the spelling used on disk
  std::string output;                  // absolute
  std::vector<std::string> arguments;  // starting with the compiler's full path
};

struct CompileCommandList {
  std::vector<CompileCommand> commands;
  std::set<std::string> missingPrograms;  // not installed; as spelled in the tool definition
};

// The commands that produce one output.
struct OutputCommands {
  std::vector<std::string> sources;  // absolute
  std::string commands;              // the tool manager's reply; empty if there is no such output
};

// Returns the commands for an output of the application with this path, whose options must have
// been published. Runs nothing.
OutputCommands GetOutputCommands(BuildSession& session, const std::string& application,
                                 const std::string& output);

// Collects how the sources of these applications would be compiled, without running anything: in
// every configuration, or only in those listed in `configurations`. Editors use the first of
// several commands for a file, so the active application and configuration come first. Linking is
// left out because it has no source file, and launchers are removed from the command lines.
//
// Switches configurations temporarily and restores the active ones; the project isn't saved.
CompileCommandList CollectCompileCommands(BuildSession& session, FileSystem& files,
                                          const std::vector<ApplicationEntry>& applications,
                                          const std::vector<std::string>& configurations);

}  // namespace tarn::host
