// Actions: what can be done with a node, and the tools that perform it.

#include <algorithm>

#include "components/tools/OwnedJob.h"
#include "components/tools/ToolActions.h"
#include "components/tools/ToolManager.h"
#include "components/tools/XmlAttributes.h"
#include "platform/text/Text.h"

namespace tarn::tools {

namespace {

bool IsFor(const ActionRule& action, std::string_view extension) {
  if (extension.empty()) return action.extensions.empty();
  return std::ranges::find(action.extensions, FoldCase(extension)) != action.extensions.end();
}

}  // namespace

std::shared_ptr<const ToolDefinition> ToolManager::FindTool(const std::string& name,
                                                            const ToolInvocation& job) {
  const auto set = Tools();
  if (set->FindAction(name) == nullptr) return FindTool(name);
  return {set, ChooseTool(*set, name, job)};
}

std::string ToolManager::DescribeMissing(const std::string& tool, const ToolInvocation& job) {
  const auto set = Tools();
  if (const ActionRule* const action = set->FindAction(tool)) {
    return DescribeNoTool(*set, *action, job);
  }
  const std::string fault = set->FindFault(tool);
  return fault.empty() ? "unknown tool " + tool + " in " + set->Folder()
                       : "the definition of a tool is faulty: " + fault;
}

// An action is described with the programs that it would start for these options.
std::string ToolManager::GetActions(const char* extension, const char* files, const char* options) {
  const auto set = Tools();
  const OwnedJob owned(world_, set->ConfigFolder(), files, options);
  std::string text = "<Actions>";
  for (const ActionRule& action : set->Actions()) {
    if (!IsFor(action, OrEmpty(extension))) continue;
    text += "<Action" + XmlAttribute("Header", action.name) + XmlAttribute("Title", action.title);
    const ToolDefinition* const tool = ChooseTool(*set, action.name, owned.job);
    std::string problem = DescribeNoTool(*set, action, owned.job);
    if (tool != nullptr) {
      const ToolPlan plan = MakePlan(*tool, owned.job);
      problem = plan.problems.empty() ? "" : plan.problems.front();
      text += XmlAttribute("Tool", tool->name) + XmlAttribute("Install", tool->hint);
      for (const ToolCommand& command : plan.commands) {
        const bool isMissing = world_.findProgram(command.program).empty();
        // A program of the project may not have been built yet.
        if (!isMissing || command.rule->program.HasOwnMacros() || command.rule->isOptional)
          continue;
        text += XmlAttribute("Missing", command.program);
        break;
      }
    }
    text += XmlAttribute("Problem", problem) + "/>";
  }
  return text + "</Actions>";
}

}  // namespace tarn::tools
