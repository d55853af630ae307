#pragma once

#include <optional>
#include <string>

#include "hosts/cli/CommandEntry.h"

namespace tarn::host {

// Scripts that complete the commands of a program in a shell: commands, switches, project files,
// and, by asking the program itself, configurations, applications, nodes and options. A name from
// a project never runs as code, whatever it holds.
std::string MakeBashCompletion(const CommandEntry& program);
std::string MakeZshCompletion(const CommandEntry& program);
std::string MakeFishCompletion(const CommandEntry& program);

// What a script asks `tarn complete` for by this word; nothing when the shell knows by itself.
std::optional<ValueKind> KindOfWord(const std::string& word);

}  // namespace tarn::host
