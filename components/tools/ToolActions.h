#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "components/tools/CommandBuilder.h"
#include "components/tools/ToolDefinition.h"

namespace tarn {
class CXmlNode;
}

namespace tarn::tools {

class ToolSet;

// What can be done with a node after it was built, such as running it in a simulator. The action
// itself only has a name; the tools that name it in their attribute `Action` perform it, and the
// options of the node choose among them.
struct ActionRule {
  std::string name;
  std::string title;
  std::string hint;                     // options to set if no tool is chosen
  std::vector<std::string> extensions;  // of the nodes; with dots, in lower case
};

using ActionRules = std::vector<ActionRule>;

// Reads an element `Action`. A later one of the same name replaces the earlier one.
void ReadAction(const CXmlNode& node, const std::string& file, ActionRules& into,
                std::vector<std::string>& errors);

// Returns the tool that performs the action for these options: the last one whose conditions hold,
// so that users' definitions, which are read later, take precedence. Returns nullptr if there is
// none.
const ToolDefinition* ChooseTool(const ToolSet& tools, std::string_view action,
                                 const ToolInvocation& job);
// Returns why no tool performs the action for these options.
std::string DescribeNoTool(const ToolSet& tools, const ActionRule& action,
                           const ToolInvocation& job);

}  // namespace tarn::tools
