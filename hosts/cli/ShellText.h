#pragma once

#include <string>
#include <string_view>

#include "hosts/cli/CommandEntry.h"
#include "platform/text/Text.h"

// Strings for shells, used by the completion scripts and by commands shown to users.
namespace tarn::host {

// Returns the keyword for a kind that the scripts pass to `tarn complete`; "nothing" for None.
std::string ScriptWord(ValueKind kind);

template <class OnCommand>
void ForEachCommand(const CommandEntry& command, OnCommand&& onCommand) {
  onCommand(command);
  for (const CommandEntry& each : command.children) ForEachCommand(each, onCommand);
}

// Appends a word to a list separated by spaces.
inline void AddWord(std::string& list, const std::string& word) {
  list += (list.empty() ? "" : " ") + word;
}

// Quotes a string as one shell word; `quote` is the shell's form of a single quote inside single
// quotes.
inline std::string ShellQuoted(const std::string& text, const std::string& quote = "'\\''") {
  return "'" + ReplaceAll(text, "'", quote) + "'";
}

// Like ShellQuoted(), but quotes only if necessary.
inline std::string ShellWord(const std::string& text) {
  constexpr std::string_view kSpecial = " \t!\"#$&'()*;<>?[\\]^`{|}~";
  return text.empty() || text.find_first_of(kSpecial) != text.npos ? ShellQuoted(text) : text;
}

}  // namespace tarn::host
