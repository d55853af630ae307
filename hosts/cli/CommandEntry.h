#pragma once

#include <string>
#include <utility>
#include <vector>

#include "hosts/cli/CommandSpec.h"

namespace CLI {
class App;
}

namespace tarn::host {

// Kind of a value on the command line; determines how a shell completes it.
enum class ValueKind {
  None,  // a flag, or an arbitrary value
  Project,
  Configuration,
  Application,
  Node,
  Option,
  File,
  Target,
  Family,
};

struct ArgumentEntry {
  std::string name;  // "PROJECT"
  std::string help;
  ValueKind kind = ValueKind::None;
  bool required = false;
  bool repeated = false;
};

struct FlagEntry {
  std::vector<std::string> names;  // "-c", "--config"; the short one first
  std::string value;               // "CONFIG"; empty for a switch
  std::string help;
  ValueKind kind = ValueKind::None;
};

// A command as described in the help and the completion scripts.
struct CommandEntry {
  std::vector<std::string> words;  // after "tarn": {"options", "set"}; empty for the program
  std::string help;                // one sentence without full stop
  CommandGroup group = CommandGroup::None;
  std::vector<ArgumentEntry> arguments;
  std::vector<FlagEntry> flags;
  std::vector<CommandEntry> children;
  std::vector<std::pair<std::string, std::string>> examples;  // line, what it does

  // Returns "options set"; an empty string for the program.
  std::string Name() const;
  // "tarn options set OPTION VALUE [PROJECT] [options]"
  std::string Usage() const;
  // Returns "tarn options set", joined by `separator`.
  std::string Title(const std::string& separator = " ") const;
};

// Name of the group of positional arguments that a command checks itself, because their meaning
// depends on the values. They are described as required.
inline constexpr const char* kRequiredGroup = "Required";

// Describes a parser and all its subcommands. Hidden commands are left out.
CommandEntry DescribeCommand(const CLI::App& app);

}  // namespace tarn::host
