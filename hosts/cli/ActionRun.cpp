#include "hosts/cli/ActionRun.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "hosts/cli/BuildReporter.h"
#include "hosts/cli/Commands.h"
#include "hosts/cli/DisplayText.h"
#include "hosts/cli/ShellText.h"
#include "hosts/core/Printable.h"
#include "platform/text/Suggest.h"
#include "platform/text/Text.h"

namespace tarn::host {

namespace {

// 1 and 2 are used for the progress line and the log.
constexpr std::int32_t kOutputTimer = 3;
constexpr std::chrono::milliseconds kOutputPeriod(40);
// A simulator has read the program by then; from then on the project may be built.
constexpr std::chrono::seconds kReadTime(2);
constexpr const char* kSharingAction = "simulate";
// More output is shown, but not stored.
constexpr std::size_t kMostStored = 1 << 20;

// Shows the output of an action while it runs.
class ActionWatch : public BuildObserver {
 public:
  ActionWatch(CommandContext& context, const ActionRequest& request)
      : context_(context), request_(request), start_(Clock::now()) {}

  void OnToolStarted(const ToolStart&) override {}
  void OnToolEnded(bool success, const std::vector<LogEntry>& messages) override {
    if (success) return;
    for (const LogEntry& each : messages) {
      if (each.kind == LogKind::Error) problem_ = each.message.empty() ? each.text : each.message;
    }
  }
  bool WatchesRuns() const override { return true; }
  void OnRunEvent(const RunEvent& event) override {
    isStarted_ = isStarted_ || event.kind == RunEvent::Kind::Started;
    if (event.kind == RunEvent::Kind::Ended) exitCode_ = event.exitCode;
    if (event.kind != RunEvent::Kind::Output) return;
    pending_ += event.text;
    output_ += event.text.substr(0, kMostStored - std::min(kMostStored, output_.size()));
  }

  void OnTick(BuildSession& session) {
    session.PollRuns();
    Show(WholeCharacters(pending_));
    const bool isRead = isStarted_ && Clock::now() - start_ > kReadTime;
    if (isRead && EqualNoCase(request_.action, kSharingAction)) session.ShareProject();
    const bool isOver = request_.limit.count() > 0 && Clock::now() - start_ > request_.limit;
    if (!isOver || isLate_) return;
    isLate_ = true;
    session.RequestStop();
  }

  ActionResult Finish(const BuildOutcome& outcome) {
    Show(pending_.size());
    if (request_.echoes && !output_.empty() && !endsLine_) context_.Out().PrintOutput("\n");
    ActionResult result;
    result.isStarted = isStarted_;
    result.programCode = exitCode_;
    result.isLate = isLate_ && outcome.end != BuildEnd::Succeeded;
    result.output = std::move(output_);
    result.time = std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - start_);
    if (outcome.end == BuildEnd::Succeeded) return result;
    result.problem = problem_.empty() ? outcome.problem : problem_;
    result.code = result.isLate                      ? kExitLate
                  : outcome.end == BuildEnd::Stopped ? kExitInterrupted
                  : outcome.end == BuildEnd::Refused ? kExitCannotOpen
                  : exitCode_ > 0 && exitCode_ < 256 ? exitCode_
                                                     : int{kExitBuildFailed};
    if (result.isLate) {
      result.problem = "ended after " + DurationText(request_.limit) + ", the time limit";
    } else if (outcome.end == BuildEnd::Stopped) {
      result.problem = "interrupted";
    } else if (result.problem.empty()) {
      result.problem = "it couldn't be started";
    }
    return result;
  }

 private:
  using Clock = std::chrono::steady_clock;

  void Show(std::size_t length) {
    const std::string text = pending_.substr(0, length);
    pending_.erase(0, length);
    if (text.empty() || !request_.echoes) return;
    context_.Out().PrintOutput(text);
    endsLine_ = text.back() == '\n';
  }

  CommandContext& context_;
  const ActionRequest& request_;
  Clock::time_point start_;
  std::string pending_;  // not shown yet
  std::string output_;
  std::string problem_;
  int exitCode_ = 0;
  bool isStarted_ = false;
  bool isLate_ = false;
  bool endsLine_ = true;
};

}  // namespace

int ChooseOneApplication(CommandContext& context, ApplicationEntry& chosen) {
  std::vector<ApplicationEntry> applications;
  if (const int code = context.ChoosePreparedApplications(applications); code != kExitDone) {
    return code;
  }
  for (const ApplicationEntry& each : applications) {
    if (each.active || &each == &applications.front()) chosen = each;
  }
  if (!applications.empty()) return kExitDone;
  context.Complain("The project has no application.");
  return kExitUsage;
}

int BuildForAction(CommandContext& context, const ApplicationEntry& application) {
  BuildSession& session = context.Session();
  const BuildRequest request{BuildWork::Build, application.path};
  const ReportDetail detail = context.Asked().verbose
                                  ? DetailOf(context.Asked())
                                  : std::min(DetailOf(context.Asked()), ReportDetail::Diagnostics);
  BuildReporter reporter(context.Out(), context.StartFolder(), detail,
                         [&] { return session.CountWork(request); });
  const BuildOutcome outcome = reporter.Watch(session, request);
  reporter.Finish(outcome, BuildWork::Build, {});
  if (!context.ShowRefused().empty()) return kExitCannotOpen;
  if (outcome.end == BuildEnd::Succeeded) return kExitDone;
  if (outcome.end == BuildEnd::Stopped) return kExitInterrupted;
  context.Complain("The build of " + application.label + " has failed.");
  return kExitBuildFailed;
}

int FindAction(CommandContext& context, const ApplicationEntry& application,
               const std::string& name, ActionEntry& found) {
  const std::vector<ActionEntry> actions = ListActions(context.Session(), application);
  std::vector<std::string> names;
  for (const ActionEntry& each : actions) {
    names.push_back(each.name);
    if (EqualNoCase(each.name, name)) found = each;
  }
  if (found.name.empty()) {
    const std::string hint = SuggestionText(name, names);
    context.Complain("Unknown action \"" + name + "\"." +
                     (hint.empty() ? " See `tarn actions`." : hint));
    return kExitUsage;
  }
  return CheckPossible(context, application, found);
}

int CheckPossible(CommandContext& context, const ApplicationEntry& application,
                  const ActionEntry& action) {
  if (!action.problem.empty()) {
    context.Complain(application.label + ": " + action.problem + ".");
    return kExitBuildFailed;
  }
  if (!action.missing.empty()) {
    context.Complain("The program " + action.missing + " was not found. " + action.install);
    return kExitToolMissing;
  }
  return kExitDone;
}

void PrintCommands(CommandContext& context, const std::vector<ToolCommand>& commands) {
  nlohmann::json list = nlohmann::json::array();
  for (const ToolCommand& each : commands) {
    std::vector<std::string> words{each.program};
    words.insert(words.end(), each.arguments.begin(), each.arguments.end());
    list.push_back({{"folder", each.folder}, {"arguments", words}});
    std::string line;
    for (const std::string& word : words) line += (line.empty() ? "" : " ") + ShellWord(word);
    if (!context.Asked().json) context.Out().PrintLine(line);
  }
  if (context.Asked().json) PrintJson(context, list);
}

ActionResult RunAction(CommandContext& context, const ActionRequest& request) {
  BuildSession& session = context.Session();
  ActionWatch watch(context, request);
  session.SetTicker(kOutputTimer, kOutputPeriod, [&] { watch.OnTick(session); });
  BuildRequest work{BuildWork::Build, request.application.path};
  work.action = request.action;
  const BuildOutcome outcome = session.Run(work, &watch);
  session.ClearTicker(kOutputTimer);
  return watch.Finish(outcome);
}

}  // namespace tarn::host
