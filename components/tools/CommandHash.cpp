#include "components/tools/CommandHash.h"

#include <algorithm>
#include <cstdio>

#include "components/tools/GivenArguments.h"
#include "platform/paths/Paths.h"
#include "platform/text/Hash.h"

namespace tarn::tools {

namespace {

std::string OwnProgram(const ToolCommand& command) {
  return command.launched > 0 ? command.arguments[command.launched - 1] : command.program;
}

std::string FullPath(const ToolEnvironment& world, const std::string& program) {
  std::string found = world.findProgram(program);
  return found.empty() ? program : found;
}

// Returns the header search folders named by the arguments, verbatim and in order. A prefixed one
// without a preceding prefix is a folder of the toolchain.
std::vector<std::string> HeaderFolders(const ToolDefinition& tool,
                                       const std::vector<std::string>& words) {
  std::vector<std::string> flags = tool.search;
  flags.insert(flags.end(), tool.prefixedSearch.begin(), tool.prefixedSearch.end());
  flags.insert(flags.end(), tool.searchPrefix.begin(), tool.searchPrefix.end());
  const std::size_t prefixes = tool.search.size() + tool.prefixedSearch.size();
  std::vector<std::string> folders;
  std::string prefix;
  for (FlagValue& each : FlagValuesOf(flags, words)) {
    if (each.flag >= prefixes) {
      prefix = std::move(each.value);
    } else if (each.flag < tool.search.size()) {
      folders.push_back(std::move(each.value));
    } else if (!prefix.empty()) {
      folders.push_back(prefix + each.value);
    }
  }
  return folders;
}

// Includes the length, so that moving a byte from one string to the next changes the hash.
void Mix(std::uint64_t& hash, std::string_view text) {
  hash = HashBytes(text, hash + 1);
}

// Adds the names and times of the entries of a folder.
void MixEntries(FileSystem& files, const std::string& folder, std::uint64_t& hash) {
  auto entries = files.ListFolder(folder);
  if (!entries) return;
  std::sort(entries->begin(), entries->end(),
            [](const FolderEntry& a, const FolderEntry& b) { return a.name < b.name; });
  for (const FolderEntry& each : *entries) {
    const std::string path = JoinPath(folder, each.name);
    const auto status = each.isFolder ? files.ExamineFolder(path) : files.Examine(path);
    Mix(hash, each.name);
    if (!status) continue;
    Mix(hash, std::to_string(status->modifiedSeconds) + '.' +
                  std::to_string(status->modifiedNanoseconds));
  }
}

}  // namespace

std::vector<std::string> ProgramsOf(const ToolEnvironment& world, const ToolPlan& plan) {
  std::vector<std::string> programs;
  for (const ToolCommand& command : plan.commands) {
    std::string path = FullPath(world, OwnProgram(command));
    if (std::find(programs.begin(), programs.end(), path) == programs.end()) {
      programs.push_back(std::move(path));
    }
  }
  return programs;
}

std::vector<std::string> SearchFolders(FileSystem* disk, const ToolDefinition& tool,
                                       const ToolPlan& plan) {
  std::vector<std::string> folders;
  const auto add = [&folders](std::string folder) {
    if (std::find(folders.begin(), folders.end(), folder) == folders.end()) {
      folders.push_back(std::move(folder));
    }
  };
  if (tool.search.empty()) return folders;
  for (const ToolCommand& command : plan.commands) {
    const GivenArguments given = ExpandArguments(command, disk);
    for (const std::string& folder : HeaderFolders(tool, given.words)) {
      add(AbsolutePath(disk, command.folder, folder));
    }
    if (tool.follows == Follow::Includes) add(command.folder);
  }
  return folders;
}

std::uint64_t HashCommands(const ToolEnvironment& world, const ToolPlan& plan) {
  std::uint64_t hash = HashBytes(plan.output);
  for (const ToolCommand& command : plan.commands) {
    Mix(hash, FullPath(world, OwnProgram(command)));
    Mix(hash, command.folder);
    for (std::size_t i = command.launched; i < command.arguments.size(); ++i) {
      Mix(hash, command.arguments[i]);
    }
    for (const auto& [name, value] : command.environment) {
      Mix(hash, name);
      Mix(hash, value);
    }
  }
  for (const std::string& path : plan.depends) Mix(hash, path);
  for (const std::string& folder : plan.watchedFolders) MixEntries(*world.files, folder, hash);
  // A program that was within the limits may exceed others. Without limits nothing is added.
  for (std::size_t i = 0; i < plan.sizeBounds.size(); ++i) {
    const SizeBound& bound = plan.sizeBounds[i];
    if (bound.total.empty() && bound.max.empty()) continue;
    Mix(hash, std::to_string(i) + ' ' + bound.total + ' ' + bound.max);
  }
  for (const std::string& name : plan.helpers) Mix(hash, world.findProgram(name));
  for (const std::string& name : plan.variables) {
    const std::string value = world.environment(name.c_str());
    if (value.empty()) continue;
    Mix(hash, name);
    Mix(hash, value);
  }
  // A file that another node is about to create may have a name similar to an existing one.
  for (const std::string& path : plan.respelled) Mix(hash, path);
  return hash == 0 ? 1 : hash;
}

std::string HexText(std::uint64_t number) {
  char digits[17];
  std::snprintf(digits, sizeof digits, "%016llx", static_cast<unsigned long long>(number));
  return digits;
}

}  // namespace tarn::tools
