#include <algorithm>
#include <nlohmann/json.hpp>

#include "hosts/cli/Commands.h"
#include "hosts/cli/DisplayText.h"
#include "hosts/core/BuildTiming.h"
#include "hosts/core/ProjectFile.h"
#include "platform/paths/Paths.h"
#include "platform/text/Text.h"

namespace tarn::host {

namespace {

struct StatusOptions {
  bool timing = false;
};

constexpr std::size_t kMostSlow = 10;  // slowest tools that are listed

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

nlohmann::json ToJson(const std::vector<OutputTime>& tools, std::size_t most) {
  nlohmann::json list = nlohmann::json::array();
  for (std::size_t i = 0; i < std::min(tools.size(), most); ++i) {
    list.push_back({{"path", tools[i].path},
                    {"output", tools[i].output},
                    {"milliseconds", tools[i].time.count()}});
  }
  return list;
}

nlohmann::json ToJson(const BuildTiming& timing, int jobs) {
  return {{"work", timing.work.count()},
          {"criticalPath", timing.length.count()},
          {"chain", ToJson(timing.chain, timing.chain.size())},
          {"jobs", jobs},
          {"ideal", timing.GetIdeal(jobs).count()},
          {"slowest", ToJson(timing.tools, kMostSlow)},
          {"unknown", timing.unknown}};
}

void PrintTiming(CommandContext& context, const BuildTiming& timing, int jobs) {
  Console& out = context.Out();
  if (timing.tools.empty()) {
    out.PrintLine("No durations are known; a build records them");
    return;
  }
  const auto toolsOf = [&](const std::vector<OutputTime>& tools, std::size_t most) {
    for (std::size_t i = 0; i < std::min(tools.size(), most); ++i) {
      const std::string time = DurationText(tools[i].time);
      const std::string space(time.size() < 8 ? 8 - time.size() : 0, ' ');
      out.PrintLine("  " + space + time + "  " + context.Show(tools[i].path));
    }
  };
  out.PrintLine(out.Dye(Paint::Bold, "Critical path: ") + DurationText(timing.length));
  toolsOf(timing.chain, timing.chain.size());
  out.PrintLine(out.Dye(Paint::Bold, "Slowest tools"));
  toolsOf(timing.tools, kMostSlow);
  const int count = static_cast<int>(timing.tools.size());
  out.PrintLine("Total work: " + DurationText(timing.work) + " (" + CountText(count, "tool") +
                "); ideal time at -j " + std::to_string(jobs) + ": " +
                DurationText(timing.GetIdeal(jobs)));
  if (timing.unknown > 0) {
    out.PrintLine("Durations that are not known and count as 0: " + std::to_string(timing.unknown));
  }
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
  const std::vector<ApplicationStatus> status = context.Session().GetStatus(&problem);
  const auto isWanted = [&chosen](const ApplicationStatus& application) {
    return std::any_of(chosen.begin(), chosen.end(),
                       [&](const auto& each) { return each.path == application.path; });
  };
  for (const ApplicationStatus& application : status) {
    if (!isWanted(application)) continue;
    if (problem.empty()) problem = ProblemOf(context.Session(), application);
    if (context.Asked().json) {
      document.push_back(ToJson(context, application));
    } else {
      PrintApplication(context, application);
    }
  }
  if (context.Own<StatusOptions>().timing) {
    const auto times = ParseBuildTimes(context.Session().Inspector().GetBuildTimes());
    const BuildTiming timing = ComputeTiming(times, status, isWanted);
    const int jobs = std::max(context.Session().Tools().GetJobs(), 1);
    if (context.Asked().json) {
      document = {{"applications", document}, {"timing", ToJson(timing, jobs)}};
    } else {
      PrintTiming(context, timing, jobs);
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
      .examples = {{"tarn status --json", "as JSON, for programs"},
                   {"tarn status --timing -j 8", "what limits the duration of a build"}},
      .declare =
          [](CommandArguments& arguments) {
            arguments.AddProjectAndApp();
            arguments.AddConfiguration();
            arguments.Flag("--timing", arguments.Own<StatusOptions>().timing,
                           "Show the critical path of a build, by the durations of the last runs");
            arguments.AddJobs();
          },
      .run = RunStatus,
  };
}

}  // namespace tarn::host
