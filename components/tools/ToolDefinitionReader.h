#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "components/tools/ToolActions.h"
#include "components/tools/ToolDefinition.h"

namespace tarn::tools {

// Name and content of a definition file.
struct DefinitionFile {
  std::string name;
  std::string text;
  // Number of its folder. A tool of one folder may replace one of an earlier folder.
  std::size_t folder = 0;
};

// A tool whose last definition has an error.
struct FaultyTool {
  std::string action;  // that it performs; may be empty
  std::string error;   // "file: tool: what is wrong"
};

using FaultyTools = std::map<std::string, FaultyTool, std::less<>>;  // by lower-case name
using NamedHarmlessFlags = std::map<std::string, HarmlessFlags, std::less<>>;
using NamedMessageRules = std::map<std::string, std::shared_ptr<const MessageRules>, std::less<>>;

// Result of reading definition files.
struct ReadDefinitions {
  std::vector<std::unique_ptr<ToolDefinition>> tools;
  FaultyTools faulty;
  ActionRules actions;
  NamedHarmlessFlags harmless;
  std::map<std::string, std::string> toolchains;  // folders of those that have one, or empty
  NamedMessageRules messages;       // if two lists have the same name, the later one wins
  std::vector<std::string> errors;  // usually "file: tool: what is wrong"
  std::string lostFile;             // the first error that lost a whole file; empty if none
};

// Finds the programs of toolchains. Both functions are set, or neither is.
struct ToolchainLocator {
  // Returns the folder of the programs; an empty string if they are searched for in PATH.
  std::function<std::string(const std::string& toolchain)> findFolder;
  std::function<bool(const std::string& path)> hasProgram;
};

// Parses all files; a tool may refer to message lists of any file. A tool or message list with any
// fault is omitted, so that a partially understood command line is never run; the others remain
// valid. A faulty tool also removes an earlier one of the same name, which it was meant to change.
ReadDefinitions ReadDefinitionFiles(const std::vector<DefinitionFile>& files,
                                    const ToolchainLocator& locate = {});

}  // namespace tarn::tools
