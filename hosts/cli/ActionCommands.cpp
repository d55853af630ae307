#include <algorithm>
#include <nlohmann/json.hpp>

#include "hosts/cli/ActionRun.h"
#include "hosts/cli/Commands.h"
#include "hosts/cli/DisplayText.h"
#include "hosts/core/SignalHandler.h"

namespace tarn::host {

namespace {

struct ActionOptions {
  std::string action;
  std::string timeout;  // seconds; empty: none
  bool builds = false;
  bool isDry = false;
};

int RunActions(CommandContext& context) {
  if (const int code = context.OpenProject(); code != kExitDone) return code;
  ApplicationEntry application;
  if (const int code = ChooseOneApplication(context, application); code != kExitDone) return code;
  nlohmann::json list = nlohmann::json::array();
  const std::vector<ActionEntry> actions = ListActions(context.Session(), application);
  std::size_t width = 0;
  for (const ActionEntry& each : actions) width = std::max(width, ColumnsOf(each.name));
  for (const ActionEntry& each : actions) {
    list.push_back({{"name", each.name},
                    {"title", each.title},
                    {"tool", each.tool},
                    {"problem", each.problem},
                    {"missingProgram", each.missing}});
    if (context.Asked().json) continue;
    std::string line = Padded(each.name, width) + "  " + each.title;
    if (!each.tool.empty()) line += " (" + each.tool + ")";
    Console& out = context.Out();
    out.PrintLine(each.problem.empty() ? ConsoleText(line) : out.Dye(Paint::Dim, line));
    const std::string indent(width + 4, ' ');
    if (!each.problem.empty()) out.PrintLine(out.Dye(Paint::Dim, indent + each.problem));
    if (each.missing.empty()) continue;
    out.PrintLine(indent + each.missing + " was not found. " + each.install);
  }
  if (context.Asked().json) PrintJson(context, list);
  return kExitDone;
}

int ShowCommands(CommandContext& context, const ApplicationEntry& application,
                 const std::string& action) {
  PrintCommands(context, GetActionCommands(context.Session(), application, action).commands);
  return kExitDone;
}

int RunTool(CommandContext& context) {
  const auto& own = context.Own<ActionOptions>();
  BuildSession& session = context.Session();
  const SignalHandler interrupts([&session] { session.RequestStop(); }, WatchedOutput::Standard);
  if (const int code = context.OpenProject(); code != kExitDone) return code;
  ActionRequest request;
  if (const int code = ChooseOneApplication(context, request.application); code != kExitDone) {
    return code;
  }
  ActionEntry action;
  if (const int code = FindAction(context, request.application, own.action, action);
      code != kExitDone && !(own.isDry && code == kExitToolMissing)) {
    return code;
  }
  if (own.isDry) return ShowCommands(context, request.application, action.name);
  if (own.builds) {
    const int code = BuildForAction(context, request.application);
    if (code != kExitDone) return code;
  }
  if (!session.HoldsFile(request.application.output)) {
    context.Complain(context.Show(request.application.output) +
                     " doesn't exist. `tarn build` or the option --build builds it.");
    return kExitBuildFailed;
  }
  request.action = action.name;
  if (!own.timeout.empty()) request.limit = std::chrono::seconds(std::stoi(own.timeout));
  request.echoes = !context.Asked().json;
  const ActionResult result = RunAction(context, request);
  const bool isRefused = !context.ShowRefused().empty();
  const int code = isRefused ? int{kExitCannotOpen} : result.code;
  if (code != kExitDone && !isRefused) context.Complain(action.name + ": " + result.problem);
  if (context.Asked().json) {
    PrintJson(context, {{"action", action.name},
                        {"tool", action.tool},
                        {"exitCode", code},
                        {"programExitCode", result.programCode},
                        {"milliseconds", result.time.count()},
                        {"problem", result.problem},
                        {"output", result.output}});
  }
  return code;
}

void DeclareActions(CommandArguments& arguments) {
  arguments.AddProjectAndApp("The application; without it the active one");
  arguments.AddConfiguration();
}

void DeclareRunTool(CommandArguments& arguments) {
  auto& own = arguments.Own<ActionOptions>();
  arguments.Positional("ACTION", own.action, "What to do, e.g. simulate; see `tarn actions`")
      .Required();
  DeclareActions(arguments);
  arguments.Flag("-b,--build", own.builds, "Build the application first");
  arguments.Flag("--dry-run", own.isDry, "Print the commands, and run nothing");
  arguments.Option("--timeout", own.timeout, "SECONDS", "End it after this time (exit code 124)")
      .Between(1, 1'000'000);
  arguments.AddVerbose("Show every command of the build");
  arguments.AddDamagedOk();
  arguments.AddTrust();
}

}  // namespace

CommandSpec ActionsCommand() {
  return {
      .name = "actions",
      .group = CommandGroup::Building,
      .help = "List what can be done with an application: simulate, upload, ...",
      .declare = DeclareActions,
      .run = RunActions,
  };
}

CommandSpec RunToolCommand() {
  return {
      .name = "run-tool",
      .group = CommandGroup::Building,
      .help = "Do something with an application: simulate, upload, ...",
      .examples = {{"tarn run-tool simulate --build", "run the firmware in its simulator"},
                   {"tarn run-tool upload --dry-run", "show how it would be uploaded"}},
      .access = ProjectAccess::Build,
      .declare = DeclareRunTool,
      .run = RunTool,
  };
}

}  // namespace tarn::host
