#include <algorithm>
#include <nlohmann/json.hpp>

#include "hosts/cli/Commands.h"
#include "hosts/cli/DisplayText.h"
#include "hosts/cli/Suggest.h"
#include "hosts/frame/ProjectTemplate.h"
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
  const std::string& name = context.Asked().name;
  const bool isKnown =
      std::any_of(application.configurations.begin(), application.configurations.end(),
                  [&name](const std::string& each) { return EqualNoCase(each, name); });
  const std::string problem =
      isKnown ? application.label + " has a configuration \"" + name + "\" already."
              : CheckFileTitle(name, "configuration");
  if (!problem.empty()) {
    context.Complain(problem);
    return kExitUsage;
  }
  context.Session().Manager().SelectApplication(application.label);
  context.Session().Options().SetNewConfigName(name);
  context.Session().Manager().Command(kCmdAddConfiguration);
  return context.SaveProject();
}

int SelectConfiguration(CommandContext& context, const ApplicationEntry& application) {
  const std::string& name = context.Asked().name;
  const auto known =
      std::find_if(application.configurations.begin(), application.configurations.end(),
                   [&name](const std::string& each) { return EqualNoCase(each, name); });
  if (known == application.configurations.end()) {
    context.Complain(application.label + " has no configuration \"" + name + "\"." +
                     SuggestionText(name, application.configurations) +
                     " `tarn config add` makes one.");
    return kExitUsage;
  }
  context.Session().Manager().SelectApplication(application.label);
  context.Session().Options().SetNewConfigName(*known);
  context.Session().Manager().Command(kCmdSelectConfiguration);
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
