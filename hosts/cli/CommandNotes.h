#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tarn::host {

// What the definitions of the commands don't hold, for help and manual page.
struct CommandNote {
  std::string command;                                        // "tarn options set"
  std::string group;                                          // heading in the program's help
  std::vector<std::pair<std::string, std::string>> examples;  // line, what it does
};

// The note of a command; one without examples in the last group when there is none.
const CommandNote& NoteOf(const std::string& command);
// The headings in the order in which they are shown.
const std::vector<std::string>& CommandGroups();
// Whether every command has this switch, so that it is listed behind a command's own.
bool IsCommonFlag(std::string_view name);

using TextTable = std::vector<std::pair<std::string, std::string>>;
const TextTable& ExitCodeTexts();
const TextTable& EnvironmentTexts();
const TextTable& FileTexts();

}  // namespace tarn::host
