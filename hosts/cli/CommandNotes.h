#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tarn::host {

// Help texts of a command that are not part of its definition, for the help and the manual page.
struct CommandNote {
  std::string command;                                        // "tarn options set"
  std::string group;                                          // heading in the program's help
  std::vector<std::pair<std::string, std::string>> examples;  // line, what it does
};

// Returns the note of a command; by default one without examples in the last group.
const CommandNote& NoteOf(const std::string& command);
// Returns the headings in display order.
const std::vector<std::string>& CommandGroups();
// Returns true if every command has this option, so that it is listed after a command's own ones.
bool IsCommonFlag(std::string_view name);

using TextTable = std::vector<std::pair<std::string, std::string>>;
const TextTable& ExitCodeTexts();
const TextTable& EnvironmentTexts();
const TextTable& FileTexts();

}  // namespace tarn::host
