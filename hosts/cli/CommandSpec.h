#pragma once

#include <string>
#include <utility>
#include <vector>

namespace tarn::host {

class CommandArguments;
class CommandContext;
struct Invocation;

// Heading under which the program's help lists a command.
enum class CommandGroup {
  None,  // a subcommand, listed by its parent
  Building,
  Files,
  Settings,
  Integration,
  Hidden,  // for scripts only; not shown to users
};

// How a command uses the project that it opens.
enum class ProjectAccess {
  Read,
  Build,     // refuses a damaged project, unless the user agreed
  Edit,      // like Build, and no other program changes the project until the command ends
  Script,    // reads, and may save
  Complete,  // like Read, but prints no errors, which would disturb the shell's command line
};

// Everything about a command of the program: the parser, the help, the manual page, the completion
// scripts and the dispatch are made from it. It is defined in the file of the command and listed in
// CommandList.h.
struct CommandSpec {
  const char* name = "";  // words after "tarn", e.g. "options set"; the parent is listed before it
  CommandGroup group = CommandGroup::None;
  const char* help = "";                                           // one sentence without full stop
  std::vector<std::pair<std::string, std::string>> examples = {};  // line, what it does
  ProjectAccess access = ProjectAccess::Read;
  // False if the peer of the command is a program, so that --quiet, --json and --no-color don't
  // apply.
  bool hasDisplayOptions = true;
  // Declares the arguments and options. Null if there are none.
  void (*declare)(CommandArguments& arguments) = nullptr;
  // Returns true if the command line asks for no more than to do what is out of date, so that a
  // repetition may be answered by IdleBuild. Null if the command always runs.
  bool (*mayBeIdle)(const Invocation& asked) = nullptr;
  // Runs the command and returns the exit code. Null if the command only has subcommands.
  int (*run)(CommandContext& context) = nullptr;
};

}  // namespace tarn::host
