#pragma once

#include <string>
#include <utility>
#include <vector>

#include "hosts/cli/CommandSpec.h"

namespace tarn::host {

// Texts of the help that don't belong to a single command: term, explanation.
using TextTable = std::vector<std::pair<std::string, std::string>>;
const TextTable& ProgramExamples();
const TextTable& ExitCodeTexts();

// Returns an empty string for commands that the program's help doesn't list.
const char* HeadingOf(CommandGroup group);

}  // namespace tarn::host
