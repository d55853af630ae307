#pragma once

#include <optional>
#include <string>

#include "hosts/cli/CommandEntry.h"

namespace tarn::host {

// Create scripts with which a shell completes the program's commands, options and project files.
// The scripts call the program itself to complete configurations, applications, nodes and options.
// A name from a project is never executed as code, whatever characters it contains.
std::string MakeBashCompletion(const CommandEntry& program);
std::string MakeZshCompletion(const CommandEntry& program);
std::string MakeFishCompletion(const CommandEntry& program);

// Returns the kind that a script requests with this argument of `tarn complete`; nullopt if the
// shell completes it by itself.
std::optional<ValueKind> KindOfWord(const std::string& word);

}  // namespace tarn::host
