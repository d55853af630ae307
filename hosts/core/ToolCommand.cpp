#include "hosts/core/ToolCommand.h"

#include "hosts/core/LogEntry.h"
#include "xml/XmlNode.h"

namespace tarn::host {

std::vector<ToolCommand> ParseCommands(const std::string& xml) {
  std::vector<ToolCommand> commands;
  const auto root = ParseXml(xml);
  if (root == nullptr) return commands;
  for (const CXmlNode* node : root->GetChildren()) {
    if (node->NameView() != "Command") continue;
    ToolCommand& command = commands.emplace_back();
    command.program = GetAttribute(node, "Program");
    command.folder = GetAttribute(node, "Folder");
    for (const CXmlNode* argument : node->GetChildren()) {
      if (argument->NameView() == "A") command.arguments.push_back(GetAttribute(argument, "V"));
    }
  }
  return commands;
}

}  // namespace tarn::host
