#include "hosts/core/Actions.h"

#include <tarn/commands.h>

#include <charconv>

#include "hosts/core/BuildSession.h"
#include "hosts/core/LogEntry.h"
#include "platform/paths/Paths.h"
#include "platform/text/Text.h"
#include "xml/XmlNode.h"

namespace tarn::host {

namespace {

struct ToolInput {
  std::string files;
  std::string options;
};

ToolInput InputOf(BuildSession& session, const ApplicationEntry& application) {
  const auto input =
      ParseXml(session.Inspector().GetToolInput(application.path, application.output));
  if (input == nullptr) return {};
  const CXmlNode* const options = input->FindChild("#CDATA");
  return {GetAttribute(input.get(), "Files"), options == nullptr ? "" : options->GetValue()};
}

}  // namespace

std::vector<ActionEntry> ParseActions(const std::string& xml) {
  std::vector<ActionEntry> actions;
  const auto list = ParseXml(xml);
  if (list == nullptr) return actions;
  for (const CXmlNode* each : list->GetChildren()) {
    actions.push_back({GetAttribute(each, "Header"), GetAttribute(each, "Title"),
                       GetAttribute(each, "Tool"), GetAttribute(each, "Problem"),
                       GetAttribute(each, "Missing"), GetAttribute(each, "Install")});
  }
  return actions;
}

std::vector<ActionEntry> ListActions(BuildSession& session, const ApplicationEntry& application) {
  const ToolInput input = InputOf(session, application);
  return ParseActions(
      session.Tools().GetActions(ExtensionOf(application.path), input.files, input.options));
}

std::vector<ActionEntry> ListUnofferedActions(BuildSession& session,
                                              const ApplicationEntry& application) {
  const ToolInput input = InputOf(session, application);
  return ParseActions(session.Tools().GetActions("", input.files, input.options));
}

ActionCommands GetActionCommands(BuildSession& session, const ApplicationEntry& application,
                                 const std::string& action) {
  const ToolInput input = InputOf(session, application);
  return {ParseCommands(session.Tools().GetCommandLines(action, input.files, input.options)),
          SplitLines(session.Tools().GetCommandProblems(action, input.files, input.options))};
}

std::string CheckAction(BuildSession& session, const ApplicationEntry& application,
                        const std::string& action) {
  const ToolInput input = InputOf(session, application);
  return session.Inspector().CheckTool(action, input.files, input.options);
}

std::uint32_t FindActionCommand(ProjectManagerDriver& manager, const std::string& action) {
  const auto list = ParseXml(manager.GetToolCommands());
  if (list == nullptr) return 0;
  for (const CXmlNode* each : list->GetChildren()) {
    if (!EqualNoCase(GetAttribute(each, "Header"), action)) continue;
    const std::string number = GetAttribute(each, "Id");
    std::uint32_t command = 0;
    std::from_chars(number.data(), number.data() + number.size(), command);
    return command;
  }
  return 0;
}

}  // namespace tarn::host
