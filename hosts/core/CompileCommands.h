#pragma once

#include <set>
#include <string>
#include <vector>

#include "hosts/core/BuildSession.h"
#include "hosts/core/ProjectTree.h"

namespace tarn::host {

// How one source is compiled.
struct CompileCommand {
  std::string configuration;
  std::string directory;               // absolute; where the compiler is started
  std::string file;                    // absolute, as the disk spells it
  std::string output;                  // absolute
  std::vector<std::string> arguments;  // the compiler itself first, by its full path
};

struct CompileCommandList {
  std::vector<CompileCommand> commands;
  std::set<std::string> missingPrograms;  // that this machine hasn't got; named as they stand
};

// What makes one output.
struct OutputCommands {
  std::vector<std::string> sources;  // absolute
  std::string commands;              // the tool manager's reply; empty if there is no such output
};

// Of an output of the application with this path, whose options are known. Runs nothing.
OutputCommands GetOutputCommands(BuildSession& session, const std::string& application,
                                 const std::string& output);

// Collects how the sources of these applications would be compiled, without running anything: in
// every configuration, or in those of `configurations` alone. Editors take the first of several
// commands for a file, so what is active and in force comes first. Linking, which has no source, is
// left out, and so is a launcher in front of a compiler.
//
// Switches configurations and leaves those in force that were; the project isn't saved.
CompileCommandList CollectCompileCommands(BuildSession& session, FileSystem& files,
                                          const std::vector<ApplicationEntry>& applications,
                                          const std::vector<std::string>& configurations);

}  // namespace tarn::host
