#include "hosts/serve/ServedSession.h"

#include <tarn/commands.h>

#include <chrono>

#include "hosts/core/check/ProjectCheck.h"
#include "platform/paths/Paths.h"
#include "platform/text/Text.h"

namespace tarn::host {

namespace {

// Longer than killed tools take to exit.
constexpr std::chrono::milliseconds kEndTime(1'500);

bool IsWhole(std::uint32_t command) {
  return command == TARN_CMD_BUILD_ALL || command == TARN_CMD_REBUILD_ALL;
}

}  // namespace

void WorkStopper::SetSession(BuildSession* buildSession) {
  const std::lock_guard<std::mutex> hold(lock);
  session = buildSession;
  if (stopped && session != nullptr) session->Tools().StopTools();
}

void WorkStopper::Stop() {
  const std::lock_guard<std::mutex> hold(lock);
  stopped = true;
  if (session == nullptr) return;
  session->RequestStop();
  session->Tools().StopTools();
}

void WorkStopper::Confirm() {
  const std::lock_guard<std::mutex> hold(lock);
  if (stopped && session != nullptr) session->Tools().StopTools();
}

bool WorkStopper::IsStopped() {
  const std::lock_guard<std::mutex> hold(lock);
  return stopped;
}

ServedSession::ServedSession(FileSystem& files, const HostFolders& folders,
                             ClientQuestions& clientQuestions, WorkStopper& workStopper,
                             std::function<void(const HostEvent&)> onMessage)
    : session(frame, files, folders),
      questions(clientQuestions),
      stopper(workStopper),
      tellMessage(std::move(onMessage)),
      loop(MessageLoop::ForCurrentThread()),
      history(
          session.Inspector(),
          [this](const FileChanges& changes) { return ApplyChanges(session.Inspector(), changes); },
          [this] { return isBuilding; }) {
  AnswerMessages();
}

ServedSession::~ServedSession() {
  stopper.SetSession(nullptr);
  SetDialogResponder(frame.GetHandle(), nullptr);
  for (const HostMessage each :
       {kMsgBuildStarting, kMsgProjectClosing, kMsgProjectOpened, kMsgRunScript}) {
    frame.Answer(each, {});
  }
  frame.Watch({});
}

void ServedSession::AnswerMessages() {
  SetDialogResponder(frame.GetHandle(), &questions);
  frame.Watch([this](const HostEvent& event) { OnMessage(event); });
  frame.Answer(kMsgBuildStarting,
               [this](const HostEvent& event) { return questions.AskHost(event); });
  frame.Answer(kMsgProjectClosing,
               [this](const HostEvent& event) { return OnProjectClosing(event); });
  frame.Answer(kMsgProjectOpened, [this](const HostEvent& event) {
    OnProjectOpened(event);
    return std::intptr_t{1};
  });
  frame.Answer(kMsgRunScript, [this](const HostEvent& event) {
    OnRunScript(event);
    return std::intptr_t{1};
  });
  session.Scripts().onLine = [this](const std::string& line) { TellLine(line); };
  session.onLockWait = [this](const std::string& holder) {
    TellLine("Waiting for another build of this project (" + holder + ").");
  };
  session.Scripts().runBuild = [this](const BuildRequest& request) {
    return BuildForScript(request);
  };
}

Status ServedSession::Start() {
  Status started = session.Start();
  if (started) stopper.SetSession(&session);
  return started;
}

std::vector<MethodInfo> ServedSession::GetMethods() {
  IDispatch* manager = session.Manager().GetDispatch();
  return manager == nullptr ? std::vector<MethodInfo>() : manager->GetMethods();
}

void ServedSession::OnMessage(const HostEvent& event) {
  if (event.number == kMsgCurrentNodeChanged) currentPath = event.text;
  if (event.number == kMsgWorkerEnded) {
    isBuilding = false;
    mustKeep = true;
    hasBuiltWhole = isWhole && event.wParam != 0;
  }
  tellMessage(event);
}

std::intptr_t ServedSession::OnProjectClosing(const HostEvent& event) {
  // Store the results first: the tree that they belong to may be gone after the question.
  KeepResults();
  if (hasProject) TakeStep();
  const std::intptr_t answer = questions.AskHost(event);
  if (answer != 0) {
    hasClosed = hasClosed || hasProject;
    hasProject = false;
    session.LeaveProject();
  }
  return answer;
}

void ServedSession::OnProjectOpened(const HostEvent& event) {
  hasProject = event.lParam == 0;
  isPrepared = false;
  currentPath.clear();
  if (!hasProject) return;
  session.Adopt(event.text);
  if (historyProject != event.text) history.Clear();
  historyProject = event.text;
  isReadAgain = true;  // but not completely
  if (onDamaged && !session.GetDamage().empty()) onDamaged();
}

void ServedSession::OnRunScript(const HostEvent& event) {
  if (stopper.IsStopped()) return;
  const bool isInner = session.Scripts().IsRunning();
  if (!isInner && !isBuilding) {
    if (!PrepareBuild()) {
      if (!session.GetLockProblem().empty()) TellLine(session.GetLockProblem());
      return;
    }
    BeginWork();
  }
  const ScriptOutcome ended = session.Scripts().Run(event.text, "");
  if (isInner) return;  // the outer script receives an error
  if (!ended.error.empty()) {
    for (const std::string_view line : Split(ended.error, '\n')) TellLine(std::string(line));
  }
  // The script may have left a build running.
  if (!isBuilding) isBuilding = session.Manager().EnableCommand(TARN_CMD_STOP) == 1;
  UnlockUnlessBuilding();
}

void ServedSession::UnlockUnlessBuilding() {
  if (!isBuilding && !mustKeep) session.UnlockBuild();
}

BuildOutcome ServedSession::BuildForScript(const BuildRequest& request) {
  if (isBuilding || stopper.IsStopped() || !PrepareBuild()) return {};
  const BuildOutcome outcome = session.Run(request, nullptr);
  mustKeep = false;  // done by now
  return outcome;
}

// Script output is logged without a host message, so the client is notified here.
void ServedSession::TellLine(const std::string& line) {
  tellMessage({kMsgLogLine, 0, 0, line, {}, true, false});
}

std::string ServedSession::GetProjectFolder() const {
  return hasProject ? FolderOf(session.GetProjectPath()) : std::string();
}

DispatchResult ServedSession::Call(const MethodInfo& method, std::span<const Variant> arguments,
                                   Variant& result) {
  // In a batch, nothing else has processed builds that have ended in the meantime.
  KeepResults();
  if (std::string refusal = session.Damage().CheckCall(method.name, arguments); !refusal.empty()) {
    return {DispatchStatus::Failed, std::move(refusal), -1};
  }
  const bool isCommand = method.name == "Command";
  const bool buildsHere = method.name == "ProjectBuild";
  std::uint32_t command = 0;
  if ((isCommand || method.name == "PrologCommand") && !arguments.empty()) {
    command = static_cast<std::uint32_t>(arguments.front().AsLong());
  }
  if ((buildsHere || StartsTools(command)) && !PrepareBuild()) {
    const std::string& problem = session.GetLockProblem();
    if (!problem.empty()) return {DispatchStatus::Failed, problem, -1};
    result = Variant(std::int32_t{0});
    return {};
  }
  if ((isCommand || buildsHere) && !isBuilding) BeginWork();
  if (StartsTools(command) && !isBuilding) isWhole = IsWhole(command);
  const DispatchPtr manager(session.Manager().GetDispatch());
  DispatchResult outcome = manager->Invoke(method.id, arguments, result);
  if (isCommand) NoteCommand(command);
  if (buildsHere && hasProject && !isBuilding) session.EndWork();
  UnlockUnlessBuilding();
  PassStopOn();
  if (isReadAgain) TakeStep();
  return outcome;
}

Status ServedSession::AddConfiguration(const NewConfiguration& wanted) {
  KeepResults();
  if (isBuilding) return Error{ErrorCode::Io, "A build is running.", wanted.name};
  return tarn::host::AddConfiguration(session, wanted);
}

// Changes made while a project is being opened are not distinguished from its initial state.
void ServedSession::TakeStep() {
  if (std::exchange(isReadAgain, false)) {
    history.Refresh();
  } else {
    history.Note();
  }
}

// Methods that save return the same result whether or not they succeeded.
void ServedSession::TellSaveProblem() {
  if (!std::exchange(hasClosed, false) || !onSaveProblem) return;
  const SaveReport report = GetSaveReport();
  if (!report.problems.empty() || !report.conflicts.empty()) onSaveProblem(report);
}

void ServedSession::NoteChanges() {
  TellSaveProblem();
  if (hasProject) {
    TakeStep();
  } else {
    history.Clear();
    historyProject.clear();
  }
  const HistoryState now = GetHistoryState();
  if (now == toldHistory) return;
  toldHistory = now;
  if (onHistoryChanged) onHistoryChanged();
}

HistoryState ServedSession::GetHistoryState() const {
  const auto label = [](const std::deque<ProjectStep>& steps) {
    return steps.empty() ? std::string() : steps.back().label;
  };
  return {label(GetUndoSteps()), label(GetRedoSteps()), GetUndoSteps().size(),
          GetRedoSteps().size()};
}

Result<ProjectStep> ServedSession::Go(Status (ProjectHistory::*way)(), const std::string& word) {
  KeepResults();
  if (!hasProject) return Error{ErrorCode::NotFound, "No project is open.", {}};
  if (isBuilding) return Error{ErrorCode::Busy, "A build is running.", {}};
  if (session.Damage().RefusesChange()) return Error{ErrorCode::Changed, kDamageRefusal, {}};
  TakeStep();
  const auto& steps = word == "undo" ? GetUndoSteps() : GetRedoSteps();
  if (steps.empty()) {
    return Error{ErrorCode::NotFound, "There is nothing to " + word + ".", {}};
  }
  const ProjectStep step = steps.back();
  const Status gone = (history.*way)();
  isReadAgain = false;
  if (gone) return step;
  return Error{gone.GetError().code, "\"" + step.label + "\": " + gone.GetError().text, {}};
}

Result<std::vector<Finding>> ServedSession::CheckProject(FileSystem& files) {
  KeepResults();
  if (!hasProject) return Error{ErrorCode::NotFound, "No project is open.", {}};
  if (isBuilding) return Error{ErrorCode::Unsupported, "A build is running.", {}};
  ProjectCheck check(session, files);
  while (!check.Continue(std::chrono::seconds(1))) {
  }
  return check.GetFindings();
}

void ServedSession::BeginWork() {
  session.BeginWork();
  stopper.Confirm();
}

// Returns false if the client or the end of the session has ended the wait for another build.
bool ServedSession::PrepareBuild() {
  if (isBuilding || !hasProject) return true;
  if (!session.LockBuild()) return false;
  if (isPrepared && !session.State().IsOutdated()) return true;
  isPrepared = true;
  // Restoring records changes the current node, so the user's selection is restored.
  const std::string chosen = currentPath;
  session.Prepare();
  if (chosen.empty() || chosen == currentPath) return true;
  session.Inspector().SelectNodeByKey(chosen, session.Manager().GetSelectedApplication());
  return true;
}

// Detects whether the call has started a worker. A worker that has already ended was noticed
// through its message.
void ServedSession::NoteCommand(std::uint32_t command) {
  if (command == TARN_CMD_SELECT_CONFIGURATION) isPrepared = false;
  if (isBuilding) return;
  // This query may execute the worker's last task.
  const bool runs = session.Manager().EnableCommand(TARN_CMD_STOP) == 1;
  isBuilding = runs;
}

// A stop can be requested by a command, and by the answer to an operation's question about a
// running build.
void ServedSession::PassStopOn() {
  if (isBuilding && session.Manager().EnableCommand(TARN_CMD_STOP) == 0)
    session.Tools().StopTools();
}

void ServedSession::KeepResults() {
  if (!mustKeep) return;
  mustKeep = false;
  if (hasProject) session.EndWork();
  if (const std::string& problem = session.GetStateProblem(); !problem.empty()) {
    TellLine("warning: The state of this build couldn't be saved: " + problem);
  }
  if (std::exchange(hasBuiltWhole, false) && hasProject) TellGaps();
}

// Reports skipped nodes, because the server reports success for them.
void ServedSession::TellGaps() {
  for (const BuildGap& gap : session.FindGaps({}).gaps) {
    const std::string text = DescribeGap(gap, [](const std::string& path) { return path; });
    TellLine((gap.isFatal ? "error: " : "warning: ") + text);
  }
}

void ServedSession::Attend() {
  KeepResults();
  session.TakeLogLines();  // already sent as messages
  if (!isBuilding && ownWork != 0) {
    const std::uint32_t ended = ownWork;
    ownWork = 0;
    session.Manager().EpilogCommand(ended);
  }
  for (const std::uint32_t command : session.TakePostedCommands()) CarryOut(command);
  if (isBuilding || !onRefused) return;
  const std::vector<std::string> wishes = session.Trust().TakeRefused();
  if (!wishes.empty()) onRefused(wishes);
}

void ServedSession::CarryOut(std::uint32_t command) {
  const Variant number(static_cast<std::int32_t>(command));
  if (!session.Damage().CheckCall("Command", std::span(&number, 1)).empty()) return;
  if (!StartsTools(command)) {
    session.Manager().Command(command);
    return;
  }
  if (isBuilding || !PrepareBuild()) return;
  if (session.Manager().PrologCommand(command) == 0) return;
  BeginWork();
  isWhole = IsWhole(command);
  session.Manager().Command(command);
  NoteCommand(command);
  if (isBuilding || mustKeep) ownWork = command;
  UnlockUnlessBuilding();
}

void ServedSession::StopWork() {
  if (isBuilding) {
    session.Manager().Command(TARN_CMD_STOP);
    session.Tools().StopTools();
    loop->PumpUntil([this] { return !isBuilding; }, kEndTime);
  }
  KeepResults();
}

}  // namespace tarn::host
