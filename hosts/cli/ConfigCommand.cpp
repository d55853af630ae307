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

struct ConfigOptions {
  std::string name;
  std::string from;    // --from
  bool empty = false;  // --empty
};

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
  NewConfiguration wanted{context.Own<ConfigOptions>().name, {}};
  if (context.Own<ConfigOptions>().empty) wanted.from = "";
  if (!context.Own<ConfigOptions>().from.empty()) wanted.from = context.Own<ConfigOptions>().from;
  const Status added = AddConfiguration(context.Session(), wanted, &application);
  if (added) return context.SaveProject();
  const Error& error = added.GetError();
  const bool isUnknown = error.code == ErrorCode::NotFound;
  context.Complain(error.text + (isUnknown ? SuggestionText(error.place, application.configurations)
                                           : std::string()));
  return error.code == ErrorCode::Io ? kExitCannotOpen : kExitUsage;
}

int SelectConfiguration(CommandContext& context, const ApplicationEntry& application) {
  const std::string& name = context.Own<ConfigOptions>().name;
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

int RunList(CommandContext& context) {
  if (const int code = context.OpenProject(); code != kExitDone) return code;
  std::vector<ApplicationEntry> chosen;
  if (const int code = context.ChooseApplications(chosen); code != kExitDone) return code;
  return ListConfigurations(context, chosen);
}

// Applies `change` to the chosen application, by default the active one.
int RunChange(CommandContext& context, int (*change)(CommandContext&, const ApplicationEntry&)) {
  if (const int code = context.OpenProject(); code != kExitDone) return code;
  std::vector<ApplicationEntry> chosen;
  if (const int code = context.ChooseApplications(chosen); code != kExitDone) return code;
  if (chosen.empty()) {
    context.Complain("This project has no application.");
    return kExitUsage;
  }
  const auto active = std::find_if(chosen.begin(), chosen.end(),
                                   [](const ApplicationEntry& each) { return each.active; });
  return change(context, active == chosen.end() ? chosen.front() : *active);
}

void DeclareChange(CommandArguments& arguments, const char* word) {
  arguments.Positional(word, arguments.Own<ConfigOptions>().name, "Name of the configuration")
      .Required();
  arguments.AddProjectAndApp();
  arguments.AddEditing();
}

}  // namespace

CommandSpec ConfigCommand() {
  return {
      .name = "config",
      .group = CommandGroup::Settings,
      .help = "Show, add and select configurations",
  };
}

CommandSpec ConfigListCommand() {
  return {
      .name = "config list",
      .help = "Show the configurations",
      .declare = [](CommandArguments& arguments) { arguments.AddProjectAndApp(); },
      .run = RunList,
  };
}

CommandSpec ConfigAddCommand() {
  return {
      .name = "config add",
      .help = "Add a configuration",
      .examples = {{"tarn config add Debug", "with the current options"},
                   {"tarn config add Debug --from Fast", "with the options of another one"}},
      .access = ProjectAccess::Edit,
      .declare =
          [](CommandArguments& arguments) {
            ConfigOptions& own = arguments.Own<ConfigOptions>();
            DeclareChange(arguments, "NAME");
            const Argument from =
                arguments
                    .Option("--from", own.from, "CONFIG",
                            "Copy the options of this configuration instead of the current one")
                    .NotEmpty();
            arguments.Flag("--empty", own.empty, "Copy no options").Excludes(from);
          },
      .run = [](CommandContext& context) { return RunChange(context, AddConfiguration); },
  };
}

CommandSpec ConfigSelectCommand() {
  return {
      .name = "config select",
      .help = "Select the active configuration",
      .examples = {{"tarn config select Debug", "until another one is selected"}},
      .access = ProjectAccess::Edit,
      .declare = [](CommandArguments& arguments) { DeclareChange(arguments, "CONFIG"); },
      .run = [](CommandContext& context) { return RunChange(context, SelectConfiguration); },
  };
}

}  // namespace tarn::host
