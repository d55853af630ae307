#pragma once

#include <string>
#include <string_view>

#include "hosts/cli/CommandEntry.h"
#include "platform/text/Text.h"

// Texts that a shell reads: what the completion scripts need, and commands shown to people.
namespace tarn::host {

// The word for a kind that the scripts and `tarn complete` share; "nothing" for None.
std::string ScriptWord(ValueKind kind);

template <class OnCommand>
void ForEachCommand(const CommandEntry& command, OnCommand&& onCommand) {
  onCommand(command);
  for (const CommandEntry& each : command.children) ForEachCommand(each, onCommand);
}

// "options set"; empty for the program.
inline std::string WordsOf(const CommandEntry& command) {
  std::string text;
  for (const std::string& word : command.words) text += (text.empty() ? "" : " ") + word;
  return text;
}

// Adds a word to a list with blanks between.
inline void AddWord(std::string& list, const std::string& word) {
  list += (list.empty() ? "" : " ") + word;
}

// As one word of a shell; `quote` is how a single quote is written inside of single quotes.
inline std::string ShellQuoted(const std::string& text, const std::string& quote = "'\\''") {
  return "'" + ReplaceAll(text, "'", quote) + "'";
}

// The same, with quotes only where they are needed.
inline std::string ShellWord(const std::string& text) {
  constexpr std::string_view kSpecial = " \t!\"#$&'()*;<>?[\\]^`{|}~";
  return text.empty() || text.find_first_of(kSpecial) != text.npos ? ShellQuoted(text) : text;
}

}  // namespace tarn::host
