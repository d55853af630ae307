#include "hosts/cli/CommandList.h"

#include <algorithm>

namespace tarn::host {

const std::vector<CommandSpec>& Commands() {
#define TARN_CALL_COMMAND(name) name(),
  static const std::vector<CommandSpec> commands = {TARN_COMMANDS(TARN_CALL_COMMAND)};
#undef TARN_CALL_COMMAND
  return commands;
}

const CommandSpec* FindCommand(const std::string& name) {
  const auto found = std::find_if(Commands().begin(), Commands().end(),
                                  [&name](const CommandSpec& each) { return each.name == name; });
  return found == Commands().end() ? nullptr : &*found;
}

}  // namespace tarn::host
