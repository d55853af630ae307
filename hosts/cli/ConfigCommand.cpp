#include <tarn/commands.h>

#include <algorithm>
#include <nlohmann/json.hpp>

#include "hosts/cli/Commands.h"
#include "hosts/cli/DisplayText.h"
#include "hosts/core/NewConfiguration.h"
#include "platform/text/Suggest.h"
#include "platform/text/Text.h"

namespace tarn::host {

namespace {

int ListConfigurations(CommandContext& context, const std::vector<ApplicationEntry>& chosen) {
  nlohmann::json document = nlohmann::json::array();
  for (const ApplicationEntry& application : chosen) {
    if (context.Asked().json) {
      document.push_back({{"application", application.label},
                          {"current", application.configuration},
                          {"configurations", application.configurations}});
      continue;
    }
    context.Out().PrintLine(context.Out().Dye(Paint::Bold, Printable(application.label)));
    for (const std::string& name : application.configurations) {
      const bool isCurrent = EqualNoCase(name, application.configuration);
      context.Out().PrintLine((isCurrent ? "* " : "  ") + Printable(name));
    }
  }
  if (context.Asked().json) PrintJson(context, document);
  return kExitDone;
}

int AddConfiguration(CommandContext& context, const ApplicationEntry& application) {
  NewConfiguration wanted{context.Asked().name, {}};
  if (context.Asked().empty) wanted.from = "";
  if (!context.Asked().from.empty()) wanted.from = context.Asked().from;
  const Status added = AddConfiguration(context.Session(), wanted, &application);
  if (added) return context.SaveProject();
  const Error& error = added.GetError();
  const bool isUnknown = error.code == ErrorCode::NotFound;
  context.Complain(error.text + (isUnknown ? SuggestionText(error.place, application.configurations)
                                           : std::string()));
  return error.code == ErrorCode::Io ? kExitCannotOpen : kExitUsage;
}

int SelectConfiguration(CommandContext& context, const ApplicationEntry& application) {
  const std::string& name = context.Asked().name;
  const std::string known = FindConfiguration(application, name);
  if (known.empty()) {
    context.Complain(application.label + " has no configuration \"" + name + "\"." +
                     SuggestionText(name, application.configurations) +
                     " `tarn config add` adds one.");
    return kExitUsage;
  }
  context.Session().Inspector().SelectApplication(application.path);
  context.Session().Options().SetNewConfigName(known);
  context.Session().Manager().Command(TARN_CMD_SELECT_CONFIGURATION);
  return context.SaveProject();
}

}  // namespace

int RunConfig(CommandContext& context) {
  if (const int code = context.OpenProject(); code != kExitDone) return code;
  std::vector<ApplicationEntry> chosen;
  if (const int code = context.ChooseApplications(chosen); code != kExitDone) return code;
  if (context.Asked().command == "config list") return ListConfigurations(context, chosen);
  if (chosen.empty()) {
    context.Complain("This project has no application.");
    return kExitUsage;
  }
  const auto active = std::find_if(chosen.begin(), chosen.end(),
                                   [](const ApplicationEntry& each) { return each.active; });
  const ApplicationEntry& application = active == chosen.end() ? chosen.front() : *active;
  return context.Asked().command == "config add" ? AddConfiguration(context, application)
                                                 : SelectConfiguration(context, application);
}

}  // namespace tarn::host
