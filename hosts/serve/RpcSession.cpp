#include "hosts/serve/RpcSession.h"

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

void CancelToken::SetSession(BuildSession* buildSession) {
  const std::lock_guard<std::mutex> hold(lock_);
  session_ = buildSession;
  if (stopped_ && session_ != nullptr) session_->Tools().StopTools();
}

void CancelToken::Stop() {
  const std::lock_guard<std::mutex> hold(lock_);
  stopped_ = true;
  if (session_ == nullptr) return;
  session_->RequestStop();
  session_->Tools().StopTools();
}

void CancelToken::Confirm() {
  const std::lock_guard<std::mutex> hold(lock_);
  if (stopped_ && session_ != nullptr) session_->Tools().StopTools();
}

bool CancelToken::IsStopped() {
  const std::lock_guard<std::mutex> hold(lock_);
  return stopped_;
}

RpcSession::RpcSession(FileSystem& files, const HostFolders& folders,
                       ClientRequests& clientRequests, CancelToken& cancelToken,
                       std::function<void(const HostMessageEvent&)> onMessage)
    : session_(frame_, files, folders),
      questions_(clientRequests),
      stopper_(cancelToken),
      notifyMessage_(std::move(onMessage)),
      loop_(MessageLoop::ForCurrentThread()),
      history_(
          session_.Inspector(),
          [this](const FileChanges& changes) {
            return ApplyChanges(session_.Inspector(), changes);
          },
          [this] { return isBuilding_; }) {
  SetHandlers();
}

RpcSession::~RpcSession() {
  stopper_.SetSession(nullptr);
  SetDialogResponder(frame_.GetHandle(), nullptr);
  for (const HostMessage each :
       {kMsgBuildStarting, kMsgProjectClosing, kMsgProjectOpened, kMsgRunScript}) {
    frame_.SetHandler(each, {});
  }
  frame_.SetObserver({});
}

void RpcSession::SetHandlers() {
  SetDialogResponder(frame_.GetHandle(), &questions_);
  frame_.SetObserver([this](const HostMessageEvent& event) { OnMessage(event); });
  frame_.SetHandler(kMsgBuildStarting,
                    [this](const HostMessageEvent& event) { return questions_.QueryHost(event); });
  frame_.SetHandler(kMsgProjectClosing,
                    [this](const HostMessageEvent& event) { return OnProjectClosing(event); });
  frame_.SetHandler(kMsgProjectOpened, [this](const HostMessageEvent& event) {
    OnProjectOpened(event);
    return std::intptr_t{1};
  });
  frame_.SetHandler(kMsgRunScript, [this](const HostMessageEvent& event) {
    OnRunScript(event);
    return std::intptr_t{1};
  });
  session_.Scripts().onLine = [this](const std::string& line) { NotifyLine(line); };
  session_.onLockWait = [this](const std::string& holder) {
    NotifyLine("Waiting for another build of this project (" + holder + ").");
  };
  session_.Scripts().runBuild = [this](const BuildRequest& request) {
    return BuildForScript(request);
  };
}

Status RpcSession::Start() {
  Status started = session_.Start();
  if (started) stopper_.SetSession(&session_);
  return started;
}

std::vector<MethodInfo> RpcSession::GetMethods() {
  IDispatch* manager = session_.Manager().GetDispatch();
  return manager == nullptr ? std::vector<MethodInfo>() : manager->GetMethods();
}

void RpcSession::OnMessage(const HostMessageEvent& event) {
  if (event.number == kMsgCurrentNodeChanged) currentPath_ = event.text;
  if (event.number == kMsgWorkerEnded) {
    isBuilding_ = false;
    mustStore_ = true;
    hasBuiltWhole_ = isWhole_ && event.wParam != 0;
  }
  notifyMessage_(event);
}

std::intptr_t RpcSession::OnProjectClosing(const HostMessageEvent& event) {
  // Store the results first: the tree that they belong to may be gone after the question.
  StoreResults();
  if (hasProject_) TakeStep();
  const std::intptr_t answer = questions_.QueryHost(event);
  if (answer != 0) {
    hasClosed_ = hasClosed_ || hasProject_;
    hasProject_ = false;
    session_.LeaveProject();
  }
  return answer;
}

void RpcSession::OnProjectOpened(const HostMessageEvent& event) {
  hasProject_ = event.lParam == 0;
  isPrepared_ = false;
  loading_ = Loading::Options;
  currentPath_.clear();
  if (!hasProject_) return;
  session_.Adopt(event.text);
  if (historyProject_ != event.text) history_.Clear();
  historyProject_ = event.text;
  isReadAgain_ = true;  // but not completely
  if (onDamaged && !session_.GetDamage().empty()) onDamaged();
}

void RpcSession::OnRunScript(const HostMessageEvent& event) {
  if (stopper_.IsStopped()) return;
  const bool isInner = session_.Scripts().IsRunning();
  if (!isInner && !isBuilding_) {
    if (!PrepareBuild()) {
      if (!session_.GetLockProblem().empty()) NotifyLine(session_.GetLockProblem());
      return;
    }
    BeginWork();
  }
  const ScriptOutcome ended = session_.Scripts().Run(event.text, "");
  if (isInner) return;  // the outer script receives an error
  if (!ended.error.empty()) {
    for (const std::string_view line : Split(ended.error, '\n')) NotifyLine(std::string(line));
  }
  // The script may have left a build running.
  if (!isBuilding_) isBuilding_ = session_.Manager().EnableCommand(TARN_CMD_STOP) == 1;
  UnlockUnlessBuilding();
}

void RpcSession::UnlockUnlessBuilding() {
  if (!isBuilding_ && !mustStore_) session_.UnlockBuild();
}

BuildOutcome RpcSession::BuildForScript(const BuildRequest& request) {
  if (isBuilding_ || stopper_.IsStopped() || !PrepareBuild()) return {};
  const BuildOutcome outcome = session_.Run(request, nullptr);
  mustStore_ = false;  // done by now
  return outcome;
}

// Script output is logged without a host message, so the client is notified here.
void RpcSession::NotifyLine(const std::string& line) {
  notifyMessage_({kMsgLogLine, 0, 0, line, {}, true, false});
}

std::string RpcSession::GetProjectFolder() const {
  return hasProject_ ? FolderOf(session_.GetProjectPath()) : std::string();
}

DispatchResult RpcSession::Call(const MethodInfo& method, std::span<const Variant> arguments,
                                Variant& result) {
  // In a batch, nothing else has processed builds that have ended in the meantime.
  StoreResults();
  if (std::string refusal = session_.Damage().CheckCall(method.name, arguments); !refusal.empty()) {
    return {DispatchStatus::Failed, std::move(refusal), -1};
  }
  const bool isCommand = method.name == "Command";
  const bool buildsHere = method.name == "ProjectBuild";
  std::uint32_t command = 0;
  if ((isCommand || method.name == "PrologCommand") && !arguments.empty()) {
    command = static_cast<std::uint32_t>(arguments.front().AsLong());
  }
  if ((buildsHere || StartsTools(command)) && !PrepareBuild()) {
    const std::string& problem = session_.GetLockProblem();
    if (!problem.empty()) return {DispatchStatus::Failed, problem, -1};
    result = Variant(std::int32_t{0});
    return {};
  }
  if ((isCommand || buildsHere) && !isBuilding_) BeginWork();
  if (StartsTools(command) && !isBuilding_) isWhole_ = IsWhole(command);
  const DispatchPtr manager(session_.Manager().GetDispatch());
  DispatchResult outcome = manager->Invoke(method.id, arguments, result);
  if (isCommand) RecordCommand(command);
  if (buildsHere && hasProject_ && !isBuilding_) session_.EndWork();
  UnlockUnlessBuilding();
  PassStopOn();
  if (isReadAgain_) TakeStep();
  return outcome;
}

Status RpcSession::AddConfiguration(const NewConfiguration& wanted) {
  StoreResults();
  if (isBuilding_) return Error{ErrorCode::Io, "A build is running.", wanted.name};
  return tarn::host::AddConfiguration(session_, wanted);
}

// Changes made while a project is being opened are not distinguished from its initial state.
void RpcSession::TakeStep() {
  if (std::exchange(isReadAgain_, false)) {
    history_.Refresh();
  } else {
    history_.Note();
  }
}

// Methods that save return the same result whether or not they succeeded.
void RpcSession::NotifySaveProblem() {
  if (!std::exchange(hasClosed_, false) || !onSaveProblem) return;
  const SaveReport report = GetSaveReport();
  if (!report.problems.empty() || !report.conflicts.empty()) onSaveProblem(report);
}

void RpcSession::RecordChanges() {
  NotifySaveProblem();
  if (hasProject_) {
    TakeStep();
  } else {
    history_.Clear();
    historyProject_.clear();
  }
  const HistoryState now = GetHistoryState();
  if (now == notifiedHistory_) return;
  notifiedHistory_ = now;
  if (onHistoryChanged) onHistoryChanged();
}

HistoryState RpcSession::GetHistoryState() const {
  const auto label = [](const std::deque<ProjectStep>& steps) {
    return steps.empty() ? std::string() : steps.back().label;
  };
  return {label(GetUndoSteps()), label(GetRedoSteps()), GetUndoSteps().size(),
          GetRedoSteps().size()};
}

Result<ProjectStep> RpcSession::Go(Status (ProjectHistory::*way)(), const std::string& word) {
  StoreResults();
  if (!hasProject_) return Error{ErrorCode::NotFound, "No project is open.", {}};
  if (isBuilding_) return Error{ErrorCode::Busy, "A build is running.", {}};
  if (session_.Damage().RefusesChange()) return Error{ErrorCode::Changed, kDamageRefusal, {}};
  TakeStep();
  const auto& steps = word == "undo" ? GetUndoSteps() : GetRedoSteps();
  if (steps.empty()) {
    return Error{ErrorCode::NotFound, "There is nothing to " + word + ".", {}};
  }
  const ProjectStep step = steps.back();
  const Status gone = (history_.*way)();
  isReadAgain_ = false;
  if (gone) return step;
  return Error{gone.GetError().code, "\"" + step.label + "\": " + gone.GetError().text, {}};
}

Result<std::vector<Finding>> RpcSession::CheckProject(FileSystem& files) {
  StoreResults();
  if (!hasProject_) return Error{ErrorCode::NotFound, "No project is open.", {}};
  if (isBuilding_) return Error{ErrorCode::Unsupported, "A build is running.", {}};
  ProjectCheck check(session_, files);
  while (!check.Continue(std::chrono::seconds(1))) {
  }
  return check.GetFindings();
}

void RpcSession::BeginWork() {
  session_.BeginWork();
  stopper_.Confirm();
}

// Returns false if the client or the end of the session has ended the wait for another build.
bool RpcSession::PrepareBuild() {
  if (isBuilding_ || !hasProject_) return true;
  if (!session_.LockBuild()) return false;
  if (isPrepared_ && !session_.State().IsOutdated()) return true;
  isPrepared_ = true;
  // Restoring records changes the current node, so the user's selection is restored.
  const std::string chosen = currentPath_;
  session_.Prepare();
  if (chosen.empty() || chosen == currentPath_) return true;
  session_.Inspector().SelectNodeByKey(chosen, session_.Manager().GetSelectedApplication());
  return true;
}

// Detects whether the call has started a worker. A worker that has already ended was noticed
// through its message.
void RpcSession::RecordCommand(std::uint32_t command) {
  if (command == TARN_CMD_SELECT_CONFIGURATION) {
    isPrepared_ = false;
    loading_ = Loading::Options;
  }
  if (isBuilding_) return;
  // This query may execute the worker's last task.
  const bool runs = session_.Manager().EnableCommand(TARN_CMD_STOP) == 1;
  isBuilding_ = runs;
}

// A stop can be requested by a command, and by the answer to an operation's question about a
// running build.
void RpcSession::PassStopOn() {
  if (isBuilding_ && session_.Manager().EnableCommand(TARN_CMD_STOP) == 0)
    session_.Tools().StopTools();
}

void RpcSession::StoreResults() {
  if (!mustStore_) return;
  mustStore_ = false;
  if (hasProject_) session_.EndWork();
  if (const std::string& problem = session_.GetStateProblem(); !problem.empty()) {
    NotifyLine("warning: The state of this build couldn't be saved: " + problem);
  }
  if (std::exchange(hasBuiltWhole_, false) && hasProject_) NotifyGaps();
}

// Reports skipped nodes, because the server reports success for them.
void RpcSession::NotifyGaps() {
  for (const BuildGap& gap : session_.FindGaps({}).gaps) {
    const std::string text = DescribeGap(gap, [](const std::string& path) { return path; });
    NotifyLine((gap.isFatal ? "error: " : "warning: ") + text);
  }
}

void RpcSession::Attend() {
  StoreResults();
  session_.TakeLogLines();  // already sent as messages
  if (!isBuilding_ && ownWork_ != 0) {
    const std::uint32_t ended = ownWork_;
    ownWork_ = 0;
    session_.Manager().EpilogCommand(ended);
  }
  for (const std::uint32_t command : session_.TakePostedCommands()) CarryOut(command);
  if (isBuilding_ || !onRefused) return;
  const std::vector<std::string> wishes = session_.Trust().TakeRefused();
  if (!wishes.empty()) onRefused(wishes);
}

void RpcSession::ContinueLoading() {
  constexpr std::int32_t kPieceMilliseconds = 3;
  if (loading_ == Loading::Options) {
    const std::int32_t progress = session_.Inspector().ContinuePublishing(kPieceMilliseconds);
    if (progress == 0) return;
    const bool takesRecords = progress == 1 && !isPrepared_ && session_.GetDamage().empty();
    loading_ = takesRecords ? Loading::Records : Loading::Done;
    if (takesRecords) session_.State().BeginRestore();
    return;
  }
  if (isPrepared_) {
    loading_ = Loading::Done;  // a build didn't wait for it
  } else if (!session_.State().ContinueRestore()) {
    loading_ = Loading::Done;
    isPrepared_ = true;
  }
}

void RpcSession::CarryOut(std::uint32_t command) {
  const Variant number(static_cast<std::int32_t>(command));
  if (!session_.Damage().CheckCall("Command", std::span(&number, 1)).empty()) return;
  if (!StartsTools(command)) {
    session_.Manager().Command(command);
    return;
  }
  if (isBuilding_ || !PrepareBuild()) return;
  if (session_.Manager().PrologCommand(command) == 0) return;
  BeginWork();
  isWhole_ = IsWhole(command);
  session_.Manager().Command(command);
  RecordCommand(command);
  if (isBuilding_ || mustStore_) ownWork_ = command;
  UnlockUnlessBuilding();
}

void RpcSession::StopWork() {
  if (isBuilding_) {
    session_.Manager().Command(TARN_CMD_STOP);
    session_.Tools().StopTools();
    loop_->PumpUntil([this] { return !isBuilding_; }, kEndTime);
  }
  StoreResults();
}

}  // namespace tarn::host
