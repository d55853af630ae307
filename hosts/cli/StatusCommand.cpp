#include <algorithm>
#include <nlohmann/json.hpp>

#include "hosts/cli/Commands.h"
#include "hosts/cli/DisplayText.h"
#include "hosts/core/ProjectFile.h"
#include "platform/paths/Paths.h"
#include "platform/text/Text.h"

namespace tarn::host {

namespace {

struct StatusLine {
  std::string name;
  std::string reason;
};

std::string NameOf(CommandContext& context, const StaleNode& node, bool isApplication) {
  return isApplication || node.path.empty() ? node.label : context.Show(node.path);
}

StatusLine LineOf(CommandContext& context, const ApplicationStatus& application,
                  const StaleNode& node) {
  const bool isApplication = node.path == application.path;
  const auto show = [&context](const std::string& path) { return context.Show(path); };
  return {NameOf(context, node, isApplication), DescribeReason(node, isApplication, show)};
}

void PrintApplication(CommandContext& context, const ApplicationStatus& application) {
  const ConsoleText title =
      context.Out().Dye(Paint::Bold, application.label) + "  [" + application.configuration + "]";
  if (application.stale.empty()) {
    context.Out().PrintLine(title + "  " + context.Out().Dye(Paint::Green, "up to date"));
    return;
  }
  context.Out().PrintLine(title + "  " + std::to_string(application.stale.size()) + " out of date");
  std::vector<StatusLine> lines;
  std::size_t width = 0;
  for (const StaleNode& node : application.stale) {
    lines.push_back(LineOf(context, application, node));
    width = std::max(width, ColumnsOf(lines.back().name));
  }
  width = std::min<std::size_t>(width, 40);
  for (const StatusLine& line : lines) {
    context.Out().PrintLine("  " + Padded(line.name, width) + "  " + line.reason);
  }
}

nlohmann::json ToJson(CommandContext& context, const ApplicationStatus& application) {
  nlohmann::json nodes = nlohmann::json::array();
  for (const StaleNode& node : application.stale) {
    nodes.push_back({{"label", node.label},
                     {"path", node.path},
                     {"output", node.outputFile},
                     {"tool", node.tool},
                     {"reason", node.reason},
                     {"file", node.file},
                     {"text", LineOf(context, application, node).reason}});
  }
  return {{"application", application.label},
          {"path", application.path},
          {"configuration", application.configuration},
          {"active", application.active},
          {"uses", application.uses},
          {"outOfDate", nodes}};
}

// Returns why the first tool that a build would run can't be started.
std::string ProblemOf(BuildSession& session, const ApplicationStatus& application) {
  for (const StaleNode& node : application.stale) {
    if (node.tool.empty()) continue;
    const std::string problem = session.FindCommandProblem(application.label, node.outputFile);
    return problem.empty() ? problem : problem + ".";
  }
  return {};
}

std::string DescribeState(const CommandContext& context, const BuildStateManager& state) {
  const std::string& verdict = state.GetVerdict();
  const std::string path = context.ShowResolved(state.GetPath());
  if (verdict == "cut") {
    return path + " is damaged; what follows the damage is treated as not built.";
  }
  const std::string fault =
      verdict == "unreadable"      ? context.ShowFailure(state.GetPath(), "read", state.GetReason())
      : verdict == "other-version" ? path + " was written by another version of this program"
      : verdict == "foreign"       ? path + " belongs to another project"
                                   : path + " is damaged";
  return fault + ", so everything is treated as not built.";
}

int RunStatus(CommandContext& context) {
  if (const int code = context.OpenProject(); code != kExitDone) return code;
  std::vector<ApplicationEntry> chosen;
  if (const int code = context.ChooseApplications(chosen); code != kExitDone) return code;
  context.Session().Prepare();
  const BuildStateManager& state = context.Session().State();
  if (!state.IsUsable()) context.Remark(DescribeState(context, state));
  nlohmann::json document = nlohmann::json::array();
  std::string problem;
  for (const ApplicationStatus& application : context.Session().GetStatus(&problem)) {
    const bool wanted = std::any_of(chosen.begin(), chosen.end(), [&](const auto& each) {
      return each.path == application.path;
    });
    if (!wanted) continue;
    if (problem.empty()) problem = ProblemOf(context.Session(), application);
    if (context.Asked().json) {
      document.push_back(ToJson(context, application));
    } else {
      PrintApplication(context, application);
    }
  }
  if (context.Asked().json) PrintJson(context, document);
  if (chosen.empty() && !context.Asked().json) {
    context.Out().PrintLine("The project has no application: there is nothing to build");
  }
  if (!problem.empty()) context.Complain(problem);
  return problem.empty() ? kExitDone : kExitBuildFailed;
}

}  // namespace

CommandSpec StatusCommand() {
  return {
      .name = "status",
      .group = CommandGroup::Building,
      .help = "Explain what is out of date and why",
      .examples = {{"tarn status --json", "as JSON, for programs"}},
      .declare =
          [](CommandArguments& arguments) {
            arguments.AddProjectAndApp();
            arguments.AddConfiguration();
          },
      .run = RunStatus,
  };
}

}  // namespace tarn::host
