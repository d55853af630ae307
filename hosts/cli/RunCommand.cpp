#include <nlohmann/json.hpp>

#include "hosts/cli/BuildReporter.h"
#include "hosts/cli/Commands.h"
#include "hosts/cli/DisplayText.h"
#include "hosts/core/SignalHandler.h"
#include "platform/paths/Paths.h"
#include "platform/text/Text.h"

namespace tarn::host {

namespace {

struct RunOptions {
  std::string script;  // file
};

// Shows a running script to the user.
class ScriptDisplay {
 public:
  explicit ScriptDisplay(CommandContext& commandContext)
      : context_(commandContext), session_(commandContext.Session()) {
    session_.Scripts().onLine = [this](const std::string& line) { ShowLine(line); };
    session_.Scripts().runBuild = [this](const BuildRequest& request) { return Build(request); };
    session_.onLockWait = [this](const std::string& holder) {
      context_.Remark("Waiting for another build of this project (" + holder + ") to finish ...");
    };
  }
  ScriptDisplay(const ScriptDisplay&) = delete;
  ScriptDisplay& operator=(const ScriptDisplay&) = delete;
  ~ScriptDisplay() {
    session_.Scripts().onLine = {};
    session_.Scripts().runBuild = {};
    session_.onLockWait = {};
  }

  // Prints the server's messages since the last call, e.g. about a file that it couldn't write.
  void ShowLog() {
    for (const std::string& line : session_.TakeLogLines()) context_.Complain(line);
  }
  const std::vector<std::string>& GetLines() const { return lines_; }

 private:
  void ShowLine(const std::string& line) {
    if (context_.Asked().json) {
      lines_.push_back(line);
    } else {
      context_.Out().PrintLine(Printable(line));
    }
  }

  BuildOutcome Build(const BuildRequest& request) {
    ShowLog();
    BuildReporter reporter(context_.Out(), context_.StartFolder(), DetailOf(context_.Asked()),
                           [&] { return session_.CountWork(request); });
    const BuildOutcome outcome = reporter.Watch(session_, request);
    std::vector<ApplicationSummary> summaries;
    if (outcome.toolsRun > 0) summaries = session_.GetSummaries();
    reporter.Finish(outcome, request.work, summaries);
    return outcome;
  }

  CommandContext& context_;
  BuildSession& session_;
  std::vector<std::string> lines_;
};

// A refused operation or a failed save was not carried out, even if the script ignored that.
int ExitCodeOf(ScriptEnd end, bool wasRefused) {
  if (wasRefused) return kExitCannotOpen;
  if (end == ScriptEnd::Stopped) return kExitInterrupted;
  return end == ScriptEnd::Done ? kExitDone : kExitBuildFailed;
}

const char* ToString(ScriptEnd end) {
  if (end == ScriptEnd::Stopped) return "interrupted";
  return end == ScriptEnd::Done ? "succeeded" : "failed";
}

// Closes the project, which stores what could not be saved in a copy, and reports both.
void KeepUnsaved(CommandContext& context) {
  context.Session().Manager().ProjectClose();
  const SaveReport report = context.Session().TakeSaveReport();
  std::vector<std::string> lines;
  for (const std::string& line : report.problems) lines.push_back(Printable(line));
  if (report.isOutside) lines.emplace_back("Use --outside-ok to write it anyway.");
  context.Complain(
      lines.empty() ? "The project couldn't be saved." : "The project couldn't be saved:", lines);
}

int RunScript(CommandContext& context) {
  // Read first, because opening the project changes the working folder.
  std::string script = context.Own<RunOptions>().script;
  if (IsRelativePath(script)) script = JoinPath(context.StartFolder(), script);
  const auto text = context.Files().ReadWholeFile(context.Own<RunOptions>().script);
  if (!text) {
    context.Complain("The script " + context.ShowFailure(script, "read", text.GetError().text));
    return kExitUsage;
  }
  BuildSession& session = context.Session();
  const SignalHandler interrupts([&session] { session.RequestStop(); }, WatchedOutput::Standard);
  if (const int code = context.OpenProject(); code != kExitDone) return code;
  if (!session.Inspector().CheckScript(script).empty()) {
    context.ShowRefused();
    return kExitCannotOpen;
  }
  if (const int code = context.ChooseNode(); code != kExitDone) return code;
  session.Prepare();

  ScriptDisplay display(context);
  const ScriptOutcome outcome = session.RunScript(*text, context.Own<RunOptions>().script);
  context.Out().ClearProgress();
  display.ShowLog();
  const bool isRefused = session.HasRefusedDamage() || !context.ShowRefused().empty();
  const bool isUnsaved = session.Scripts().HasFailedSave();
  const int exitCode = ExitCodeOf(outcome.end, isRefused || isUnsaved);
  const std::vector<std::string> error = SplitLines(outcome.error);
  if (!error.empty()) context.Complain(error.front(), {error.begin() + 1, error.end()});
  if (session.HasRefusedDamage()) {
    context.Complain(std::string(kDamageRefusal) +
                     " Use --damaged-ok to continue with what was read.");
  }
  if (isUnsaved) KeepUnsaved(context);
  if (context.Asked().json) {
    const bool isDone = outcome.end == ScriptEnd::Done && isUnsaved;
    PrintJson(context, {{"result", isDone ? ToString(ScriptEnd::Failed) : ToString(outcome.end)},
                        {"exitCode", exitCode},
                        {"error", isDone ? context.GetLastComplaint() : outcome.error},
                        {"lines", display.GetLines()}});
  }
  return exitCode;
}

}  // namespace

CommandSpec RunCommand() {
  return {
      .name = "run",
      .group = CommandGroup::Integration,
      .help = "Run a Lua script on a project",
      .examples = {{"tarn run release.lua", "on the project in the current folder"}},
      .access = ProjectAccess::Script,
      .declare =
          [](CommandArguments& arguments) {
            RunOptions& own = arguments.Own<RunOptions>();
            arguments.Positional("FILE", own.script, "The script, e.g. release.lua").Required();
            arguments.AddProjectAndApp();
            arguments.AddConfiguration();
            arguments.AddJobs();
            arguments.AddKeepGoing();
            arguments.AddLoadLimits();
            arguments.AddVerbose("Show every command of its builds");
            arguments.AddDamagedOk();
            arguments.AddOutsideOk();
          },
      .run = RunScript,
  };
}

}  // namespace tarn::host
