#pragma once

#include <cstdint>
#include <span>

namespace tarn {

class CProjectManager;

enum class EnableRule {
  Always,
  UserProject,  // not in the default project, which stands in where none is open
  WhileBuilding,
};

enum class CommandKind {
  Plain,
  Build,  // has steps ahead and behind, and works in the background
  Tool,   // so does this one, which runs a tool that fits the node
};

// A command that hosts put into their menus, or a run of them that differ by their number alone.
struct CommandRow {
  std::uint32_t id;
  EnableRule rule;
  CommandKind kind;
  const char* name;  // for the documentation: what a menu might say
  const char* help;  // and what it does, in one sentence or several
  std::int32_t (*action)(CProjectManager& manager, std::uint32_t id);
  std::uint32_t last = 0;  // of a run; 0: there is only the one

  std::uint32_t LastId() const { return last == 0 ? id : last; }

  // The whole vocabulary, in the order of the numbers.
  static std::span<const CommandRow> Table();
  // Null for a number that means nothing.
  static const CommandRow* Find(std::uint32_t id);

 private:
  template <void (CProjectManager::*Member)()>
  static std::int32_t Do(CProjectManager& manager, std::uint32_t id);
  template <std::int32_t Work>
  static std::int32_t StartBuild(CProjectManager& manager, std::uint32_t id);
  template <bool KeepsOutputs>
  static std::int32_t Apply(CProjectManager& manager, std::uint32_t id);
};

}  // namespace tarn
