#pragma once

#include <string>
#include <vector>

namespace tarn::host {

// One program as a tool starts it.
struct ToolCommand {
  std::string program;
  std::string folder;  // working folder
  std::vector<std::string> arguments;

  bool operator==(const ToolCommand&) const = default;
};

// The commands of the tool manager's reply, in order.
std::vector<ToolCommand> ParseCommands(const std::string& xml);

}  // namespace tarn::host
