#include <nlohmann/json.hpp>

#include "hosts/cli/Commands.h"
#include "hosts/cli/DisplayText.h"
#include "hosts/core/check/ProjectCheck.h"
#include "hosts/serve/FindingJson.h"

namespace tarn::host {

namespace {

PathShortener Shortener(const CommandContext& context) {
  return [&context](const std::string& path) { return context.Show(path); };
}

std::string LineOf(const CommandContext& context, const Finding& finding) {
  std::string position;
  if (!finding.file.empty()) {
    position = context.Show(finding.file) + ":";
    if (finding.line > 0) position += std::to_string(finding.line) + ":";
    position += " ";
  }
  return position + Printable(DescribeFinding(finding, Shortener(context)));
}

// Returns the findings of the chosen applications, and those that concern the whole project.
std::vector<Finding> Collect(CommandContext& context) {
  ProjectCheck check(context.Session(), context.Files());
  while (!check.Continue(std::chrono::seconds(1))) {
  }
  std::vector<Finding> findings = check.GetFindings();
  const std::string& wanted = context.Scope();
  std::erase_if(findings, [&wanted](const Finding& each) {
    return !wanted.empty() && !each.application.empty() && each.applicationPath != wanted;
  });
  return findings;
}

void PrintFindings(CommandContext& context, const std::vector<Finding>& findings) {
  for (const FindingKind kind : AllFindingKinds()) {
    bool isFirst = true;
    for (const Finding& each : findings) {
      if (each.kind != kind) continue;
      if (isFirst) context.Out().PrintLine(context.Out().Dye(Paint::Bold, HeadingOf(kind)));
      isFirst = false;
      context.Out().PrintLine("  " + LineOf(context, each));
    }
  }
  if (findings.empty() && context.Asked().quiet) return;
  context.Out().PrintLine(
      findings.empty() ? "No findings" : CountText(static_cast<int>(findings.size()), "finding"));
}

int RunCheck(CommandContext& context) {
  if (const int code = context.OpenProject(); code != kExitDone) return code;
  std::vector<ApplicationEntry> chosen;
  if (const int code = context.ChooseApplications(chosen); code != kExitDone) return code;
  const std::vector<Finding> findings = Collect(context);
  if (context.Asked().json) {
    nlohmann::json list = nlohmann::json::array();
    for (const Finding& each : findings) list.push_back(ToJson(each, Shortener(context)));
    PrintJson(context, {{"findings", list}});
  } else {
    PrintFindings(context, findings);
  }
  return findings.empty() ? kExitDone : kExitBuildFailed;
}

}  // namespace

CommandSpec CheckCommand() {
  return {
      .name = "check",
      .group = CommandGroup::Building,
      .help = "Find mistakes and missing items in a project",
      .examples = {{"tarn check", "the project in the current folder"},
                   {"tarn check --json", "as JSON, for programs"}},
      .declare =
          [](CommandArguments& arguments) {
            arguments.AddProjectAndApp("Check only this application");
            arguments.AddConfiguration();
          },
      .run = RunCheck,
  };
}

}  // namespace tarn::host
