#include "components/tools/ToolActions.h"

#include <algorithm>

#include "components/tools/CommandBuilder.h"
#include "components/tools/ElementReader.h"
#include "components/tools/FileList.h"
#include "components/tools/ToolSet.h"
#include "components/values/OptionValues.h"
#include "platform/text/Text.h"
#include "xml/XmlNode.h"

namespace tarn::tools {

namespace {

class ActionReader : public ElementReader {
 public:
  ActionRule Read(const CXmlNode& node) {
    CheckAttributes(node, {"Name", "Title", "Hint", "Extensions"});
    ActionRule rule{Text(node, "Name"), Text(node, "Title"), Text(node, "Hint"), {}};
    if (rule.name.empty()) Fail("an Action has no Name");
    for (const std::string& each : SplitOptionList(Text(node, "Extensions"))) {
      rule.extensions.push_back(FoldCase(each.front() == '.' ? each : "." + each));
    }
    return rule;
  }
};

}  // namespace

void ReadAction(const CXmlNode& node, const std::string& file, ActionRules& into,
                std::vector<std::string>& errors) {
  ActionReader reader;
  ActionRule rule = reader.Read(node);
  if (!reader.Error().empty()) {
    errors.push_back(file + ": action " + rule.name + ": " + reader.Error());
    return;
  }
  const auto same = std::ranges::find_if(
      into, [&](const ActionRule& each) { return EqualNoCase(each.name, rule.name); });
  if (same == into.end()) {
    into.push_back(std::move(rule));
  } else {
    *same = std::move(rule);
  }
}

const ToolDefinition* ChooseTool(const ToolSet& tools, std::string_view action,
                                 const ToolInvocation& job) {
  const ToolDefinition* chosen = nullptr;
  for (const ToolDefinition* each : tools.ToolsForAction(action)) {
    if (Holds(*each, job)) chosen = each;
  }
  return chosen;
}

std::string DescribeNoTool(const ToolSet& tools, const ActionRule& action,
                           const ToolInvocation& job) {
  const std::string fault = tools.FindFault(action.name);
  if (!fault.empty()) return "the definition of a tool is faulty: " + fault;
  for (const ToolDefinition* each : tools.ToolsForAction(action.name)) {
    const std::vector<std::string> unset = FindUnsetOptions(*each, job);
    if (unset.empty()) continue;
    return each->title + " needs the option " + unset.front() +
           ", which is not set; `tarn options set " + unset.front() + " VALUE` sets it" +
           (each->needs.empty() ? "" : ". " + each->needs);
  }
  return "no tool is chosen for the action " + action.name +
         (action.hint.empty() ? "" : ". " + action.hint);
}

}  // namespace tarn::tools
