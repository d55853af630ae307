#pragma once

#include <string>
#include <vector>

namespace tarn::host {

// A command line as a tool runs it.
struct ToolCommand {
  std::string program;
  std::string folder;  // working folder
  std::vector<std::string> arguments;

  bool operator==(const ToolCommand&) const = default;
};

// Parses the commands in the tool manager's reply, in order.
std::vector<ToolCommand> ParseCommands(const std::string& xml);

}  // namespace tarn::host
