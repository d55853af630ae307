#pragma once

#include <string>
#include <utility>
#include <vector>

namespace CLI {
class App;
}

namespace tarn::host {

// What a value on the command line is; tells how a shell completes it.
enum class ValueKind {
  None,  // a flag, or anything at all
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

// A command as the help, the manual page and the completion scripts describe it.
struct CommandEntry {
  std::vector<std::string> words;  // behind "tarn": {"options", "set"}; none for the program
  std::string help;                // one sentence without its dot
  std::string group;               // heading under which the program lists it
  std::vector<ArgumentEntry> arguments;
  std::vector<FlagEntry> flags;
  std::vector<CommandEntry> children;
  std::vector<std::pair<std::string, std::string>> examples;  // line, what it does

  // "tarn options set OPTION VALUE [PROJECT] [options]"
  std::string Usage() const;
  // "tarn options set", with another text between the words if wanted.
  std::string Title(const std::string& separator = " ") const;
};

// The group of positional arguments that a command checks itself, since which word is which shows
// only when it looks at them. They are described as required.
inline constexpr const char* kRequiredGroup = "Required";

// Describes a parser and everything below it. Hidden commands are left out.
CommandEntry DescribeCommand(const CLI::App& app);

}  // namespace tarn::host
