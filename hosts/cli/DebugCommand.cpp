#include <atomic>
#include <charconv>
#include <memory>
#include <thread>

#include "hosts/cli/ActionRun.h"
#include "hosts/cli/Commands.h"
#include "hosts/core/Foreground.h"
#include "hosts/core/LocalPort.h"
#include "hosts/core/SignalHandler.h"
#include "platform/process/Process.h"

namespace tarn::host {

namespace {

constexpr const char* kDebugAction = "debug";
constexpr std::chrono::milliseconds kGrace(500);
// A server that doesn't listen after this time is left to the debugger, which waits as well.
constexpr std::chrono::seconds kListenTime(10);
constexpr std::chrono::milliseconds kListenPause(10);

struct DebugOptions {
  std::vector<std::string> commands;
  bool keepsOutput = false;  // doesn't build
  bool isDry = false;
};

// Removes escape sequences, such as those for colours, from the output of a program.
std::string WithoutColors(std::string_view text) {
  std::string plain;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '\033') {
      plain += text[i];
      continue;
    }
    while (i + 1 < text.size() && (text[i] < '@' || text[i] == '[')) ++i;
  }
  return plain;
}

// A simulator or a probe's server, which runs until the object is destroyed. Its output is shown.
class DebugServer {
 public:
  explicit DebugServer(Console& output) : console_(output) {}
  DebugServer(const DebugServer&) = delete;
  DebugServer& operator=(const DebugServer&) = delete;
  ~DebugServer() {
    if (process_) process_->Stop(kGrace);
    if (reader_.joinable()) reader_.join();
  }

  Status Start(const ToolCommand& command) {
    auto started =
        ProcessLauncher::Native().Start({command.program, command.arguments, {}, command.folder});
    if (!started) return started.GetError();
    process_ = std::move(*started);
    reader_ = std::thread([this] {
      process_->WaitWithOutput(
          [this](std::string_view text, bool) { console_.PrintOutput(WithoutColors(text)); });
      hasEnded_ = true;
    });
    return {};
  }
  // All of its output has been shown by then.
  bool HasEnded() const { return hasEnded_; }

 private:
  Console& console_;
  std::unique_ptr<Process> process_;
  std::atomic<bool> hasEnded_ = false;
  std::thread reader_;
};

// Returns 0, or an exit code after printing why no debugger can be started.
int CheckDebugger(CommandContext& context, const ApplicationEntry& application) {
  for (const ActionEntry& each : ListUnofferedActions(context.Session(), application)) {
    if (each.name == kDebugAction) return CheckPossible(context, application, each);
  }
  return kExitDone;
}

// Returns the local port to which the arguments of a debugger connect; 0 if there is none.
int PortOf(const ToolCommand& debugger) {
  constexpr std::string_view kHost = " 127.0.0.1:";
  int port = 0;
  for (const std::string& each : debugger.arguments) {
    const std::size_t at = each.find(kHost);
    if (at == each.npos) continue;
    std::from_chars(each.data() + at + kHost.size(), each.data() + each.size(), port);
  }
  return port;
}

using DebugServers = std::vector<std::unique_ptr<DebugServer>>;

// Waits until a server listens. Returns false if one has ended instead.
bool AwaitListening(const DebugServers& servers, int port) {
  const auto start = std::chrono::steady_clock::now();
  while (!IsLocalPortTaken(port)) {
    for (const auto& each : servers) {
      if (each->HasEnded()) return false;
    }
    if (std::chrono::steady_clock::now() - start > kListenTime) break;
    std::this_thread::sleep_for(kListenPause);
  }
  return true;
}

// The last command is the debugger, the others are servers. The main thread prints nothing while
// the debugger runs.
int RunDebugger(CommandContext& context, std::vector<ToolCommand> commands) {
  ToolCommand debugger = std::move(commands.back());
  commands.pop_back();
  DebugServers servers;
  const int port = commands.empty() ? 0 : PortOf(debugger);
  if (port != 0 && IsLocalPortTaken(port)) {
    context.Complain("The local port " + std::to_string(port) +
                     " is used by another program, such as the server of another debug session. "
                     "The option Debug.Port selects a different one, except for simavr.");
    return kExitBuildFailed;
  }
  for (const ToolCommand& each : commands) {
    servers.push_back(std::make_unique<DebugServer>(context.Out()));
    const Status started = servers.back()->Start(each);
    if (started) continue;
    context.Complain(each.program + " can't be started: " + started.GetError().text);
    return kExitToolMissing;
  }
  if (port != 0 && !AwaitListening(servers, port)) {
    context.Complain(commands.front().program +
                     " has ended before the debugger could connect to it at the local port " +
                     std::to_string(port) + " (Debug.Port).");
    return kExitBuildFailed;
  }
  const auto ended = RunInForeground(debugger);
  if (ended) return *ended;
  context.Complain(debugger.program + " can't be started: " + ended.GetError().text);
  return kExitToolMissing;
}

int RunDebug(CommandContext& context) {
  const auto& own = context.Own<DebugOptions>();
  BuildSession& session = context.Session();
  if (context.Asked().json && !own.isDry) {
    context.Complain("`tarn debug` is interactive; --json needs --dry-run.");
    return kExitUsage;
  }
  if (const int code = context.OpenProject(); code != kExitDone) return code;
  ApplicationEntry application;
  if (const int code = ChooseOneApplication(context, application); code != kExitDone) return code;
  const int possible = CheckDebugger(context, application);
  if (possible != kExitDone && !(own.isDry && possible == kExitToolMissing)) return possible;
  ActionCommands planned = GetActionCommands(context.Session(), application, kDebugAction);
  if (planned.commands.empty()) {
    context.Complain(application.label + ": nothing to run.");
    return kExitBuildFailed;
  }
  std::vector<std::string>& arguments = planned.commands.back().arguments;
  if (!own.commands.empty()) arguments.insert(arguments.begin(), "-batch");
  for (const std::string& each : own.commands) arguments.insert(arguments.end(), {"-ex", each});
  if (own.isDry) {
    PrintCommands(context, planned.commands);
    return kExitDone;
  }
  if (!CheckAction(session, application, kDebugAction).empty()) {
    context.ShowRefused();
    return kExitCannotOpen;
  }
  if (!own.keepsOutput) {
    const SignalHandler interrupts([&session] { session.RequestStop(); }, WatchedOutput::Standard);
    if (const int code = BuildForAction(context, application); code != kExitDone) return code;
  }
  return RunDebugger(context, std::move(planned.commands));
}

void DeclareDebug(CommandArguments& arguments) {
  auto& own = arguments.Own<DebugOptions>();
  arguments.AddProjectAndApp("The application; without it the active one");
  arguments.AddConfiguration();
  arguments.Option("-x,--execute", own.commands, "COMMAND",
                   "Run this command of gdb after the stop in main, and end; may be repeated");
  arguments.Flag("--no-build", own.keepsOutput, "Don't build the application first");
  arguments.Flag("--dry-run", own.isDry, "Print the commands, and run nothing");
  arguments.AddVerbose("Show every command of the build");
  arguments.AddDamagedOk();
  arguments.AddTrust();
}

}  // namespace

CommandSpec DebugCommand() {
  return {
      .name = "debug",
      .group = CommandGroup::Building,
      .help = "Run an application in gdb, with its simulator or debug probe",
      .examples = {{"tarn debug", "stop in main, and wait for commands"},
                   {"tarn debug -x bt -x 'info locals'", "print these, and end"}},
      .access = ProjectAccess::Build,
      .declare = DeclareDebug,
      .run = RunDebug,
  };
}

}  // namespace tarn::host
