#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "components/tools/ToolDefinition.h"
#include "components/tools/ToolPaths.h"
#include "components/values/OptionValues.h"
#include "platform/files/FileSystem.h"

namespace tarn::tools {

// What one run of a tool is about.
struct ToolJob {
  std::vector<std::string> files;  // absolute, as the disk spells them
  const OptionValues* values = nullptr;
  std::string baseFolder;           // absolute; what relative names in options are relative to
  std::string environmentLauncher;  // used where a step allows a launcher and the options name none
  FileSystem* disk = nullptr;       // spells the names that tools get; null: names are unchanged
  std::vector<std::string> respelled = {};  // those of `files` that were listed in another spelling
  std::vector<std::string> repeated = {};   // files that were listed again and left out
  std::vector<std::string> conflicts = {};  // why some of these must not be linked
};

// A step with everything filled in.
struct ToolCommand {
  const StepRule* rule = nullptr;
  std::string program;
  std::vector<std::string> arguments;
  std::vector<std::pair<std::string, std::string>> environment;
  std::string folder;        // absolute
  std::size_t launched = 0;  // how many of the arguments belong to a launcher
  // Files that the program writes under another name than their own: scratch file, real name.
  std::vector<std::pair<std::string, std::string>> moves;
};

// A whole run with everything filled in. Paths are absolute.
struct ToolPlan {
  std::string output;        // as the options write it; empty when the tool makes none
  std::string outputOnDisk;  // as the tool gets it
  std::string listing;
  std::string rules;
  std::string furtherRules;  // need not be left
  std::string sizeFile;
  std::string globals;  // empty when the tool leaves none
  std::vector<std::string> products;
  std::vector<std::string> byProducts;  // that a run may leave
  // Products with names that the programs make up, and how these look.
  std::vector<std::pair<std::string, std::vector<std::string>>> randomNames;
  std::vector<std::string> depends;
  std::vector<std::string> variables;  // see ToolDefinition
  std::vector<std::string> helpers;    // programs that those of the commands start, by their names
  std::vector<std::string> helperFiles;        // names of files that these programs take themselves
  std::vector<std::string> implicitLibraries;  // that programs link without a flag, by their names
  std::vector<std::string> respelled;          // files that are on the disk in another spelling
  std::vector<ToolCommand> commands;
  std::vector<std::string> problems;  // why it must not run
  // An option names a file or folder that is not on the disk in this spelling, so that the commands
  // change with what comes and goes there.
  bool hasInexactNames = false;
};

ToolPlan MakePlan(const ToolDefinition& tool, const ToolJob& job);

// The folder that relative names in the options of a node are relative to; `fallback` when the
// values do not say.
std::string BaseFolderOf(const OptionValues& values, const std::string& fallback,
                         FileSystem* disk = nullptr);

// The programs that a tool's steps start, as far as the definition names them without options.
struct ToolProgram {
  std::string name;
  bool isOptional = false;
};
std::vector<ToolProgram> ProgramsOf(const ToolDefinition& tool);

}  // namespace tarn::tools
