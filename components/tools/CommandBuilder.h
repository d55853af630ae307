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

// Input of a single tool run.
struct ToolInvocation {
  std::vector<std::string> files;  // absolute, as spelled on disk
  const OptionValues* values = nullptr;
  std::string baseFolder;           // absolute; base of relative names in options
  std::string environmentLauncher;  // for steps that allow a launcher, if the options name none
  FileSystem* disk = nullptr;       // provides the spelling of names for tools; nullptr: unchanged
  std::vector<std::string> respelled = {};  // those of `files` that were listed with a different
                                            // spelling
  std::vector<std::string> repeated = {};   // files that were listed repeatedly and dropped
  std::vector<std::string> conflicts = {};  // reasons why some of these must not be linked
};

// A step with all templates expanded.
struct ToolCommand {
  const StepRule* rule = nullptr;
  std::string program;
  std::vector<std::string> arguments;
  std::vector<std::pair<std::string, std::string>> environment;
  std::string folder;        // absolute
  std::size_t launched = 0;  // number of leading arguments that belong to a launcher
  // Files that the program writes under a temporary name: temporary path, final path.
  std::vector<std::pair<std::string, std::string>> moves;
};

// A complete run with all templates expanded. Paths are absolute.
struct ToolPlan {
  std::string output;        // as written in the options; empty if the tool produces none
  std::string outputOnDisk;  // as passed to the tool
  std::string listing;
  std::string rules;
  std::string furtherRules;  // optional: the tool may not write it
  std::string sizeFile;
  std::string mapFile;
  std::vector<SizeBound> sizeBounds;  // of the sums
  std::string globals;                // empty if the tool produces none
  std::vector<std::string> products;
  std::vector<std::string> requiredProducts, keptProducts;  // some of these, see ProductRule
  std::vector<std::string> byProducts;                      // files that a run may produce
  std::vector<std::string> byProductStarts;  // beginnings of paths of further such files
  // Products that contain names generated at random by the programs, and the patterns of these
  // names.
  std::vector<std::pair<std::string, std::vector<std::string>>> randomNames;
  std::vector<std::string> depends;
  std::vector<std::string> watchedFolders;
  std::vector<std::string> variables;    // see ToolDefinition
  std::vector<std::string> helpers;      // names of the programs started by those of the commands
  std::vector<std::string> helperFiles;  // names of files that these programs load implicitly
  std::vector<std::string> implicitLibraries;  // names of libraries that are linked without a flag
  std::vector<std::string> respelled;          // files whose name on disk is spelled differently
  std::vector<ToolCommand> commands;
  std::vector<std::string> problems;  // reasons why the plan must not be run
  // An option names a file or folder that does not exist with exactly this spelling, so that the
  // commands depend on which files exist.
  bool hasInexactNames = false;
};

// Expands a definition for a job. Never fails: errors are listed in the plan's `problems`. Starts
// no process and writes nothing.
ToolPlan MakePlan(const ToolDefinition& tool, const ToolInvocation& job);

// Returns true if the conditions under which the tool performs its action hold.
bool Holds(const ToolDefinition& tool, const ToolInvocation& job);

// Returns the options, as Section.Property, that the tool's conditions need and that are not set.
// An empty list if other conditions fail too, or if none of them compares an option with the tool.
std::vector<std::string> FindUnsetOptions(const ToolDefinition& tool, const ToolInvocation& job);

// Returns the files whose absolute paths start so. Returns none if their folder can't be listed.
std::vector<std::string> FindFilesThatStart(FileSystem& disk, const std::string& start);

// Returns the folder that relative names in a node's options refer to, or `fallback` if the values
// do not specify it.
std::string BaseFolderOf(const OptionValues& values, const std::string& fallback,
                         FileSystem* disk = nullptr);

// A program started by a tool's step, if the definition names it without using options.
struct ToolProgram {
  std::string name;
  bool isOptional = false;
};
std::vector<ToolProgram> ProgramsOf(const ToolDefinition& tool);

}  // namespace tarn::tools
