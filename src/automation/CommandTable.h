#pragma once

#include <cstdint>
#include <span>

namespace tarn {

class CommandActions;

// Condition for a command to be enabled.
enum class EnableRule {
  Always,
  UserProject,  // not in the default project, which is used when none is open
  WhileBuilding,
};

enum class CommandKind {
  Plain,
  Build,  // has a prolog and an epilog, and runs in the background
  Tool,   // like Build, but runs a tool that is suitable for the node
};

// Command that hosts put into their menus, or a range of commands that differ only in their id.
struct CommandRow {
  std::uint32_t id;
  EnableRule rule;
  CommandKind kind;
  const char* name;  // for the documentation: suggested menu text
  const char* help;  // and a description of one or more sentences
  std::int32_t (*action)(CommandActions& actions, std::uint32_t id);
  std::uint32_t last = 0;  // last id of a range; 0 for a single command

  std::uint32_t LastId() const { return last == 0 ? id : last; }

  // All commands, ordered by id.
  static std::span<const CommandRow> Table();
  // Returns nullptr if the id isn't a command. Linear search.
  static const CommandRow* Find(std::uint32_t id);
};

}  // namespace tarn
