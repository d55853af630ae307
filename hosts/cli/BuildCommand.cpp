#include <algorithm>
#include <nlohmann/json.hpp>
#include <optional>

#include "hosts/cli/BuildEvents.h"
#include "hosts/cli/BuildReporter.h"
#include "hosts/cli/BuildTrace.h"
#include "hosts/cli/Commands.h"
#include "hosts/cli/DisplayText.h"
#include "hosts/core/ProjectFile.h"
#include "hosts/core/SignalHandler.h"
#include "platform/paths/Paths.h"
#include "platform/text/Text.h"

namespace tarn::host {

namespace {

// Of builds and rebuilds.
struct BuildOptions {
  bool events = false;
  std::string trace;  // file; empty: none
};

int ExitCodeOf(CommandContext& context, const BuildOutcome& outcome, bool isRefused) {
  if (isRefused) return kExitCannotOpen;
  const bool isKept = context.Session().GetStateProblem().empty();
  if (outcome.end == BuildEnd::Succeeded) return isKept ? kExitDone : kExitCannotOpen;
  if (outcome.end == BuildEnd::Stopped) return kExitInterrupted;
  if (outcome.toolsFailed == 0) return kExitBuildFailed;
  const std::string program = context.Session().FindMissingProgram(context.Session().GetStatus());
  if (program.empty()) return kExitBuildFailed;
  const char* const remedy = HasNativeSeparator(program)
                                 ? "correct the folder of its toolchain; see `tarn toolchains`."
                                 : "add its folder to PATH.";
  context.Complain("The program " + program + " was not found. Install it, or " + remedy);
  return kExitToolMissing;
}

std::string GapText(CommandContext& context, const BuildGap& gap) {
  return DescribeGap(gap, [&context](const std::string& path) { return context.Show(path); });
}

nlohmann::json ToJson(CommandContext& context, const BuildGap& gap) {
  return {{"application", gap.application},
          {"label", gap.label},
          {"path", gap.path},
          {"reason", gap.reason},
          {"text", GapText(context, gap)},
          {"severity", gap.isFatal ? "error" : "warning"}};
}

// Prints what the build has left out: a warning, or an error if a required part is missing. Printed
// even with --quiet, because otherwise the build would look complete.
void ComplainOfGaps(CommandContext& context, const BuildOutcome& outcome) {
  for (const BuildGap& gap : outcome.gaps.gaps) {
    const std::string text = GapText(context, gap);
    context.Complain(gap.isFatal ? text : "warning: " + text);
  }
}

void PrintOutcome(CommandContext& context, const BuildOutcome& outcome,
                  const BuildReporter& reporter, const std::vector<ApplicationSummary>& summaries,
                  int exitCode, const std::vector<std::string>& refused) {
  nlohmann::json applications = nlohmann::json::array();
  for (const ApplicationSummary& each : summaries) {
    applications.push_back({{"name", each.label}, {"size", each.infos}});
  }
  nlohmann::json gaps = nlohmann::json::array();
  for (const BuildGap& each : outcome.gaps.gaps) gaps.push_back(ToJson(context, each));
  nlohmann::json document = {{"result", refused.empty() ? ToString(outcome.end) : "refused"},
                             {"exitCode", exitCode},
                             {"untrusted", refused},
                             {"toolsRun", outcome.toolsRun},
                             {"toolsFailed", outcome.toolsFailed},
                             {"errors", reporter.GetErrors()},
                             {"warnings", reporter.GetWarnings()},
                             {"milliseconds", reporter.GetElapsed().count()},
                             {"applications", applications},
                             {"notBuilt", gaps},
                             {"diagnostics", ToJson(reporter.GetDiagnostics())}};
  PrintJson(context, document, context.Own<BuildOptions>().events ? -1 : 2);
}

// Creates the file of --trace before the build, and reports why that fails. A path that the project
// uses isn't replaced, even if nothing exists there.
int BeginTrace(CommandContext& context, std::optional<BuildTrace>& trace) {
  std::string path = context.Own<BuildOptions>().trace;
  if (path.empty()) return kExitDone;
  if (IsRelativePath(path)) path = JoinPath(context.StartFolder(), path);
  trace.emplace(context.Files(), path);
  const std::string wanted = context.Files().Canonical(path);
  const auto isSame = [&](const std::string& other) {
    return context.Files().Canonical(other) == wanted;
  };
  bool isUsed = isSame(context.Session().GetProjectPath());
  for (const ApplicationTimes& each :
       ParseBuildTimes(context.Session().Inspector().GetBuildTimes())) {
    isUsed = isUsed || isSame(each.application) ||
             std::ranges::any_of(each.tools, [&](const OutputTime& tool) {
               return isSame(tool.output) || isSame(tool.path);
             });
  }
  if (isUsed || !trace->MayReplace()) {
    context.Complain("--trace would replace " + context.Show(path) + ", which is not a trace.");
    return kExitUsage;
  }
  const Status written = trace->Begin();
  if (written) return kExitDone;
  context.Complain(context.ShowFailure(path, "written", written.GetError().text));
  return kExitCannotOpen;
}

// Reports a problem with the stored state.
void RemarkState(CommandContext& context) {
  if (context.Session().State().IsUsable() || !context.Asked().verbose) {
    return;
  }
  context.Remark(context.ShowResolved(StatePathOf(context.Session().GetProjectPath())) +
                 " is unusable or incomplete; what it lacks is treated as not built.");
}

// Ends a build that was never started.
int EndUnstarted(CommandContext& context, BuildEnd end, int code, const std::string& why) {
  if (context.Asked().json) {
    PrintJson(context, {{"result", ToString(end)}, {"exitCode", code}, {"error", why}},
              context.Own<BuildOptions>().events ? -1 : 2);
  }
  return code;
}

// Takes the build lock: two simultaneous builds of a project would each decide by outputs that the
// other is about to replace.
int LockBuild(CommandContext& context) {
  BuildSession& session = context.Session();
  const auto refuse = [&] {
    const std::string why = Printable(session.GetLockProblem()) + ".";
    context.Complain(why);
    return EndUnstarted(context, BuildEnd::Refused, kExitCannotOpen, why);
  };
  if (context.Asked().noWait && !session.TryLockBuild()) {
    if (!session.GetLockProblem().empty()) return refuse();
    const std::string why =
        "Another build of this project is running (" + session.GetLockHolder() + ").";
    context.Complain(why);
    return EndUnstarted(context, BuildEnd::Refused, kExitCannotOpen, why);
  }
  session.onLockWait = [&context](const std::string& holder) {
    context.Remark("Waiting for another build of this project (" + holder + ") to finish ...");
  };
  if (session.LockBuild()) return kExitDone;
  if (!session.GetLockProblem().empty()) return refuse();
  return EndUnstarted(context, BuildEnd::Stopped, kExitInterrupted,
                      "Interrupted while waiting for another build.");
}

BuildRequest RequestOf(CommandContext& context, BuildWork work,
                       const std::vector<ApplicationEntry>& chosen) {
  BuildRequest request;
  request.work = work;
  const bool isOne = !context.Asked().application.empty() && !chosen.empty();
  if (isOne) request.application = chosen.front().path;
  return request;
}

// Durations are looked up only if the remaining time is shown.
WorkEstimate EstimateWork(CommandContext& context, const BuildRequest& request) {
  const bool showsTime = context.Own<BuildOptions>().events || context.Out().Redraws();
  return showsTime ? context.Session().EstimateWork(request)
                   : WorkEstimate(context.Session().CountWork(request));
}

int RunBuild(CommandContext& context, BuildWork work) {
  BuildSession& session = context.Session();
  const SignalHandler interrupts([&session] { session.RequestStop(); }, WatchedOutput::Standard);
  if (const int code = context.OpenProject(); code != kExitDone) return code;
  std::vector<ApplicationEntry> chosen;
  const Invocation& asked = context.Asked();
  if (!asked.application.empty() || !asked.configuration.empty()) {
    if (const int code = context.ChooseApplications(chosen); code != kExitDone) return code;
  }
  if (const int code = LockBuild(context); code != kExitDone) return code;
  const BuildRequest request = RequestOf(context, work, chosen);
  session.Prepare();
  RemarkState(context);

  std::optional<BuildTrace> trace;
  if (const int code = BeginTrace(context, trace); code != kExitDone) {
    return EndUnstarted(context, BuildEnd::Refused, code, "The trace can't be written.");
  }
  BuildReporter reporter(context.Out(), context.StartFolder(), DetailOf(asked),
                         [&] { return EstimateWork(context, request); });
  BuildEvents events(context.Out(), reporter.GetProgress());
  if (context.Own<BuildOptions>().events) {
    reporter.AddRunObserver([&](const RunEvent& event) { events.OnRunEvent(event); });
  }
  if (trace) reporter.AddRunObserver([&](const RunEvent& event) { trace->OnRunEvent(event); });
  const BuildOutcome outcome = reporter.Watch(session, request);
  const Status traced = trace ? trace->Write(ToString(outcome.end)) : Status();

  const bool hasNews = outcome.toolsRun > 0;
  std::vector<ApplicationSummary> summaries;
  if (hasNews || asked.json) summaries = session.GetSummaries();
  reporter.Finish(outcome, request.work, summaries);
  if (!session.GetStateProblem().empty()) {
    context.Complain("The state of this build couldn't be saved: " +
                     Printable(session.GetStateProblem()));
  }
  if (!traced) {
    context.Complain(context.ShowFailure(trace->GetPath(), "written", traced.GetError().text));
  }
  ComplainOfGaps(context, outcome);
  const std::vector<std::string> refused = context.ShowRefused();
  int exitCode = ExitCodeOf(context, outcome, !refused.empty());
  if (!traced && exitCode == kExitDone) exitCode = kExitCannotOpen;
  if (asked.json) PrintOutcome(context, outcome, reporter, summaries, exitCode, refused);
  const bool isWhole = outcome.gaps.applications > 0 && outcome.gaps.gaps.empty();
  const bool isQuiet = reporter.GetErrors() == 0 && reporter.GetWarnings() == 0;
  if (exitCode == kExitDone && !hasNews && isWhole && isQuiet) context.NoteIdle();
  return exitCode;
}

void DeclareCommon(CommandArguments& arguments) {
  arguments.AddProjectAndApp();
  arguments.AddConfiguration();
  arguments.AddJobs();
  arguments.AddVerbose("Show every command and its output");
  arguments.Flag("--no-wait", arguments.Common().noWait,
                 "Fail (exit code 3) if another build of the project is running");
  arguments.AddDamagedOk();
  arguments.AddTrust();
}

void DeclareClean(CommandArguments& arguments) {
  arguments.Own<BuildOptions>();
  DeclareCommon(arguments);
}

void DeclareBuild(CommandArguments& arguments) {
  auto& own = arguments.Own<BuildOptions>();
  DeclareCommon(arguments);
  arguments
      .Flag("--events", own.events,
            "Print a JSON object per line for each tool that starts or is retired")
      .Needs(arguments.Find("--json"));
  arguments.Option("--trace", own.trace, "FILE", "Write a timeline of the tools in Chrome's format")
      .NotEmpty();
  arguments.AddKeepGoing();
  arguments.AddLoadLimits();
}

}  // namespace

CommandSpec BuildCommand() {
  return {
      .name = "build",
      .group = CommandGroup::Building,
      .help = "Build what is out of date",
      .examples = {{"tarn build", "the project in the current folder"},
                   {"tarn build blinky --config Debug", "a different project and configuration"},
                   {"tarn build --app boot -v", "one application, showing its commands"}},
      .access = ProjectAccess::Build,
      .declare = DeclareBuild,
      .mayBeIdle =
          [](const Invocation& asked) {
            return !asked.json && !asked.verbose && asked.Own<BuildOptions>().trace.empty();
          },
      .run = [](CommandContext& context) { return RunBuild(context, BuildWork::Build); },
  };
}

CommandSpec RebuildCommand() {
  return {
      .name = "rebuild",
      .group = CommandGroup::Building,
      .help = "Rebuild everything",
      .examples = {{"tarn rebuild --config Debug", "everything in a configuration"}},
      .access = ProjectAccess::Build,
      .declare = DeclareBuild,
      .run = [](CommandContext& context) { return RunBuild(context, BuildWork::Rebuild); },
  };
}

CommandSpec CleanCommand() {
  return {
      .name = "clean",
      .group = CommandGroup::Building,
      .help = "Delete what was built",
      .access = ProjectAccess::Build,
      .declare = DeclareClean,
      .run = [](CommandContext& context) { return RunBuild(context, BuildWork::Clean); },
  };
}

}  // namespace tarn::host
