#include "hosts/core/BuildSession.h"

#include <tarn/commands.h>

#include <algorithm>
#include <chrono>
#include <iterator>

#include "hosts/core/Actions.h"
#include "hosts/core/Printable.h"
#include "hosts/core/ProjectFile.h"
#include "hosts/core/SharedProducts.h"
#include "hosts/core/SizeHistory.h"
#include "hosts/core/SizeReading.h"
#include "platform/text/Text.h"
#include "xml/XmlNode.h"

namespace tarn::host {

namespace {

// The command for a whole project, and the one for the current application.
struct WorkCommands {
  BuildWork work;
  std::uint32_t project;
  std::uint32_t application;
};

constexpr WorkCommands kWorkCommands[] = {
    {BuildWork::Build, TARN_CMD_BUILD_ALL, TARN_CMD_BUILD_APPLICATION},
    {BuildWork::Rebuild, TARN_CMD_REBUILD_ALL, TARN_CMD_REBUILD_NODE},
    {BuildWork::Clean, TARN_CMD_CLEAN_ALL, TARN_CMD_CLEAN_NODE},
};

}  // namespace

const char* ToString(BuildEnd end) {
  switch (end) {
    case BuildEnd::Succeeded:
      return "succeeded";
    case BuildEnd::Failed:
      return "failed";
    case BuildEnd::Stopped:
      return "interrupted";
    case BuildEnd::Refused:
      break;
  }
  return "refused";
}

BuildSession::BuildSession(HostWindow& mainFrame, FileSystem& fileSystem, HostFolders hostFolders)
    : ServerConnection(fileSystem, std::move(hostFolders)),
      frame_(mainFrame),
      loop_(MessageLoop::ForCurrentThread()),
      trust_(fileSystem, inspector, folders.state),
      damage_(inspector, fileSystem),
      state_(manager, inspector, tools),
      log_(fileSystem, mainFrame.GetHandle()),
      scripts_(*this),
      buildLock_(fileSystem, inspector) {
  SetHandlers();
}

BuildSession::~BuildSession() {
  for (const std::uint32_t number :
       {std::uint32_t{kMsgToolSucceeded}, std::uint32_t{kMsgToolStarted},
        std::uint32_t{kMsgToolEnded}, std::uint32_t{kMsgWorkerEnded}, std::uint32_t{kMsgLogLine},
        std::uint32_t{kMsgCommand}, std::uint32_t{kMsgProjectOpened},
        std::uint32_t{kMsgProjectClosing}, std::uint32_t{kMsgRunScript}}) {
    frame_.SetHandler(number, {});
  }
  if (manager.GetDispatch() != nullptr) manager.Clean();
}

void BuildSession::SetHandlers() {
  frame_.SetHandler(kMsgToolSucceeded, [this](const HostMessageEvent& event) {
    state_.TakeBuildInformation(event.text);
    return std::intptr_t{1};
  });
  frame_.SetHandler(kMsgToolStarted,
                    [this](const HostMessageEvent& event) { return OnToolStarted(event); });
  frame_.SetHandler(kMsgToolEnded,
                    [this](const HostMessageEvent& event) { return OnToolEnded(event); });
  frame_.SetHandler(kMsgWorkerEnded, [this](const HostMessageEvent& event) {
    workerEnded_ = true;
    workerSucceeded_ = event.wParam != 0;
    return std::intptr_t{1};
  });
  frame_.SetHandler(kMsgProjectOpened, [this](const HostMessageEvent& event) {
    return OnProjectChanged(event.lParam == 0 ? event.text : std::string());
  });
  frame_.SetHandler(kMsgProjectClosing,
                    [this](const HostMessageEvent&) { return OnProjectChanged({}); });
  frame_.SetHandler(kMsgRunScript,
                    [this](const HostMessageEvent& event) { return OnRunScript(event); });
  frame_.SetHandler(kMsgLogLine, [this](const HostMessageEvent& event) {
    logLines_.push_back(event.text);
    return std::intptr_t{1};
  });
  frame_.SetHandler(kMsgCommand, [this](const HostMessageEvent& event) {
    // Executed later, because the sender may be in the middle of an operation.
    postedCommands_.push_back(static_cast<std::uint32_t>(event.wParam));
    return std::intptr_t{1};
  });
}

Status BuildSession::Start() {
  logLines_.clear();
  Status created = CreateServer(frame_.GetHandle(), [this] { return TakeLogLines(); });
  if (!created) return created;
  damage_.ProtectAll();
  trust_.Refresh();
  return CheckInstallation();
}

Status BuildSession::Open(const std::string& path) {
  logLines_.clear();
  if (manager.ProjectOpen(path) == 0) {
    std::string text;
    for (const std::string& line : TakeLogLines()) {
      text.append(text.empty() ? "" : "\n") += Printable(line);
    }
    return Error{ErrorCode::Io, text, path};
  }
  Adopt(path);
  return {};
}

void BuildSession::Adopt(const std::string& openedPath) {
  projectPath_ = openedPath;
  isOtherProject_ = false;
  damage_.SetProject(openedPath);
  damage_.ProtectProject();
  state_.SetProject(openedPath);
}

void BuildSession::Prepare() {
  inspector.PublishAll();
  state_.Restore();
}

bool BuildSession::TryLockBuild() {
  const std::string& path = GetOpenPath();
  return path.empty() || buildLock_.Try(path, trust_.IsTrusted(FolderOf(path)));
}

std::string BuildSession::LockForCommand() {
  if (LockBuild()) {
    if (isOtherProject_ || !state_.IsOutdated()) return {};
    inspector.NoteCurrentNode();  // restoring changes it
    state_.Restore();
    inspector.SelectNotedNode();
    return {};
  }
  return GetLockProblem().empty() ? "interrupted while waiting for another build"
                                  : GetLockProblem();
}

void BuildSession::UnlockUnlessBuilding() {
  if (manager.EnableCommand(TARN_CMD_STOP) == 0) KeepState();
}

bool BuildSession::LockBuild() {
  constexpr std::chrono::milliseconds kBetweenTries(50);
  const auto isOver = [this] { return stopRequested_ || (endsLockWait && endsLockWait()); };
  bool isWaiting = false;
  while (!TryLockBuild()) {
    if (!GetLockProblem().empty()) return false;
    if (!isWaiting && onLockWait) onLockWait(GetLockHolder());
    isWaiting = true;
    loop_->PumpUntil(isOver, kBetweenTries);
    if (isOver()) return false;
  }
  return true;
}

BuildOutcome BuildSession::Run(const BuildRequest& request, BuildObserver* observer) {
  // A script that was started by a build can't build.
  if (isRunning_) return {};
  outcome_ = {};
  stateProblem_.clear();
  if (damage_.RefusesChange()) return {};
  if (!stopRequested_ && FollowProject() && LockBuild()) {
    if (state_.IsOutdated()) state_.Restore();
    isRunning_ = true;
    BeginWork(observer);
    const bool isDone = RefusesSharedOutputs(request) || RunCommand(SelectCommand(request));
    if (!isDone && !stopRequested_) ServePostedCommands();
    isRunning_ = false;
    ShowNotices();
    JudgeGaps(request);
    EndWork();
  } else {
    outcome_.problem = GetLockProblem();
  }
  if (stopRequested_ && outcome_.end != BuildEnd::Succeeded) outcome_.end = BuildEnd::Stopped;
  if (outcome_.end == BuildEnd::Failed && outcome_.toolsFailed == 0 && outcome_.problem.empty()) {
    outcome_.problem = ParseStatusProblem(inspector.GetStatus());
  }
  // The definitions were read again; a build is impossible without them.
  if (outcome_.end == BuildEnd::Refused && outcome_.problem.empty()) {
    const std::vector<std::string> errors = GetDefinitionErrors();
    if (!errors.empty()) outcome_.problem = errors.front();
  }
  stopRequested_ = false;
  if (!scripts_.IsRunning()) scripts_.ClearStop();
  logLines_.clear();
  return outcome_;
}

void BuildSession::BeginWork(BuildObserver* observer) {
  watcher_ = observer;
  outcome_ = {};
  stateProblem_.clear();
  log_.Stop();
  // The build is already running and can't be made to wait, so a failure to lock is ignored.
  static_cast<void>(TryLockBuild());
  if (HasProject()) state_.Open();
  tools.ResumeTools();
  watchesRuns_ = observer != nullptr && observer->WatchesRuns();
  tools.WatchRuns(watchesRuns_);
  trust_.Refresh();
  if (!isOtherProject_) inspector.RefreshDefinitions();
  AdoptLauncher();
}

void BuildSession::EndWork() {
  PollRuns();
  if (!isShared_ || TakeBackProject()) {
    KeepLog();
    KeepState();
  }
  watcher_ = nullptr;
}

void BuildSession::ShareProject() {
  if (!isRunning_ || isShared_ || !HasProject()) return;
  KeepLog();
  log_.Stop();
  const std::string problem = state_.Finish();
  if (!problem.empty()) stateProblem_ = problem;
  UnlockBuild();
  isShared_ = true;
}

// Returns false if log and records are those of another process by now.
bool BuildSession::TakeBackProject() {
  isShared_ = false;
  if (!TryLockBuild()) return false;
  if (state_.IsOutdated()) {
    UnlockBuild();
    return false;
  }
  log_.Follow(inspector.GetLogFile(), LogPathOf(projectPath_));
  return true;
}

void BuildSession::PollRuns() {
  if (watcher_ == nullptr || !watchesRuns_) return;
  for (const RunEvent& event : ParseRunEvents(tools.TakeRunEvents())) watcher_->OnRunEvent(event);
}

void BuildSession::KeepState() {
  PollRuns();
  watcher_ = nullptr;
  const std::string problem = state_.Finish();
  if (!problem.empty()) stateProblem_ = problem;
  RecordSizes();
  UnlockBuild();
}

// Records the sizes of the programs that were linked, for the comparison with the next build. They
// are of no use for building, so a failure is ignored.
void BuildSession::RecordSizes() {
  constexpr std::uint64_t kLargestProgram = 16 << 20;  // larger ones would delay the end of a build
  const std::vector<std::string> outputs = state_.TakeOutputs();
  if (outputs.empty() || !HasProject()) return;
  std::optional<SizeHistory> history;
  for (const ApplicationEntry& each : ListApplications(inspector)) {
    if (std::ranges::find(outputs, each.output) == outputs.end()) continue;
    const auto status = files.ExamineExactly(each.output);
    const auto source = FindSizeSource(inspector, each);
    if (!status || !source) continue;
    const SizeReading reading = ReadSizes(files, *source, kLargestProgram);
    if (!reading.problem.empty()) continue;
    if (!history) history.emplace(files, projectPath_).Load();
    history->RecordBuild(each, *status, TakeSnapshot(reading.sizes));
  }
  if (history) static_cast<void>(history->Save());
}

BuildEnd BuildSession::AwaitBuild() {
  if (isRunning_ || manager.EnableCommand(TARN_CMD_STOP) == 0) return BuildEnd::Refused;
  workerEnded_ = false;
  workerSucceeded_ = false;
  WaitForWorker();
  EndWork();
  logLines_.clear();
  const bool isStopped = stopRequested_.exchange(false);
  if (workerSucceeded_) return BuildEnd::Succeeded;
  return isStopped ? BuildEnd::Stopped : BuildEnd::Failed;
}

// Reads the state of the project that is open now. Returns false if there is none to build.
bool BuildSession::FollowProject() {
  if (!isOtherProject_) return true;
  if (otherProject_.empty()) return false;
  isOtherProject_ = false;
  projectPath_ = otherProject_;
  damage_.SetProject(projectPath_);
  state_.SetProject(projectPath_);
  Prepare();
  return true;
}

ScriptOutcome BuildSession::RunScript(const std::string& text, const std::string& name) {
  outcome_ = {};
  const ScriptOutcome ended = scripts_.Run(text, name);
  AwaitBuild();
  KeepLog();  // including lines printed by the script after its last build
  stopRequested_ = false;
  return ended;
}

std::vector<std::uint32_t> BuildSession::TakePostedCommands() {
  std::vector<std::uint32_t> commands(postedCommands_.begin(), postedCommands_.end());
  postedCommands_.clear();
  return commands;
}

std::uint32_t BuildSession::SelectCommand(const BuildRequest& request) {
  if (!request.application.empty() && !inspector.SelectApplication(request.application)) return 0;
  if (!request.action.empty()) return FindActionCommand(manager, request.action);
  for (const WorkCommands& each : kWorkCommands) {
    if (each.work == request.work) {
      return request.application.empty() ? each.project : each.application;
    }
  }
  return TARN_CMD_BUILD_ALL;
}

// Returns true if the sequence ends here; false if the server has posted a follow-up command.
bool BuildSession::RunCommand(std::uint32_t command) {
  workerEnded_ = false;
  workerSucceeded_ = false;
  if (command == 0 || manager.PrologCommand(command) == 0) {
    outcome_.end = BuildEnd::Refused;
    return true;
  }
  postedCommands_.clear();
  logLines_.clear();
  const bool isStarted = manager.Command(command) == 2;
  // A worker does nothing until it is waited for, so one that has already ended failed to start.
  if (workerEnded_ && !logLines_.empty()) outcome_.problem = logLines_.back();
  if (isStarted) WaitForWorker();
  outcome_.end = workerSucceeded_ ? BuildEnd::Succeeded : BuildEnd::Failed;
  return manager.EpilogCommand(command) != 0;
}

// Refuses a build in which two nodes have the same output: with two sources the program would lack
// one of them, and with two applications each build would make the other outdated.
bool BuildSession::RefusesSharedOutputs(const BuildRequest& request) {
  if (request.work == BuildWork::Clean || !request.action.empty()) return false;
  std::vector<LogEntry> errors;
  std::vector<std::string> lines = SplitLines(inspector.GetSharedOutputs(request.application));
  std::ranges::move(FindSharedProducts(inspector, tools, files, request.application),
                    std::back_inserter(lines));
  for (const std::string& line : lines) {
    errors.push_back({LogKind::Error, "error: " + line, line, {}, 0});
    manager.ReportMessage(errors.back().text);
  }
  if (errors.empty()) return false;
  if (watcher_ != nullptr) watcher_->OnToolEnded(false, errors);
  outcome_.end = BuildEnd::Failed;
  return true;
}

void BuildSession::ShowNotices() {
  const auto list = ParseXml(inspector.TakeBuildNotices());
  if (list == nullptr || list->GetChildCount() == 0) return;
  // Even if no tool was run, this build has something to report.
  if (!isOtherProject_ && !isShared_) {
    log_.Follow(inspector.GetLogFile(), LogPathOf(projectPath_));
  }
  std::vector<LogEntry> entries;
  for (const CXmlNode* each : list->GetChildren()) {
    const bool isError = GetAttribute(each, "Kind") == "error";
    const std::string text = GetAttribute(each, "Text");
    entries.push_back({isError ? LogKind::Error : LogKind::Warning,
                       (isError ? "error: " : "warning: ") + text,
                       text,
                       {},
                       0});
  }
  const bool hasError = std::ranges::any_of(
      entries, [](const LogEntry& each) { return each.kind == LogKind::Error; });
  if (hasError && outcome_.end == BuildEnd::Succeeded) outcome_.end = BuildEnd::Failed;
  if (watcher_ != nullptr) watcher_->OnToolEnded(outcome_.end == BuildEnd::Succeeded, entries);
}

void BuildSession::WaitForWorker() {
  bool stopSent = false;
  const auto somethingToDo = [&] { return workerEnded_ || (stopRequested_ && !stopSent); };
  while (!workerEnded_) {
    loop_->PumpUntil(somethingToDo, std::chrono::seconds(1));
    if (workerEnded_ || !stopRequested_ || stopSent) continue;
    stopSent = true;
    manager.Command(TARN_CMD_STOP);
    tools.StopTools();
  }
}

// A build that succeeded has built everything, or reports what it left out.
void BuildSession::JudgeGaps(const BuildRequest& request) {
  const bool hasEnded = outcome_.end == BuildEnd::Succeeded || outcome_.end == BuildEnd::Failed;
  if (!hasEnded || stopRequested_ || request.work == BuildWork::Clean) return;
  if (!request.action.empty()) return;
  outcome_.gaps = FindGaps(request.application);
  if (outcome_.end == BuildEnd::Failed) AddUnknownLibraries(request.application, outcome_.gaps);
  if (!ReportGaps(outcome_.gaps, manager)) outcome_.end = BuildEnd::Failed;
}

// Executes commands posted at the end of a build. If the build has changed options, everything is
// built once more.
void BuildSession::ServePostedCommands() {
  loop_->Pump();
  std::deque<std::uint32_t> commands;
  commands.swap(postedCommands_);
  for (const std::uint32_t command : commands) {
    if (command == TARN_CMD_REBUILD_ALL) {
      RunCommand(command);
    } else {
      manager.Command(command);
    }
  }
}

void BuildSession::RequestStop() {
  scripts_.RequestStop();
  stopRequested_ = true;
  loop_->Wake();
}

void BuildSession::SetTicker(std::int32_t id, std::chrono::milliseconds period,
                             std::function<void()> onTick) {
  SetWindowTimer(frame_.GetHandle(), id, period, std::move(onTick));
}

void BuildSession::ClearTicker(std::int32_t id) {
  KillWindowTimer(frame_.GetHandle(), id);
}

std::intptr_t BuildSession::OnToolStarted(const HostMessageEvent& event) {
  const auto element = ParseXml(event.text);
  const ToolStart start = ReadToolStart(element.get());
  // From here on tools run, so this build's log replaces the stored one.
  log_.Renew(inspector.GetLogFile());
  if (!isOtherProject_) log_.Follow(inspector.GetLogFile(), LogPathOf(projectPath_));
  PollRuns();
  if (watcher_ != nullptr) watcher_->OnToolStarted(start);
  return 1;
}

std::intptr_t BuildSession::OnToolEnded(const HostMessageEvent& event) {
  const bool success = event.lParam != 0;
  ++(success ? outcome_.toolsRun : outcome_.toolsFailed);
  PollRuns();
  if (watcher_ != nullptr) watcher_->OnToolEnded(success, ReadLogEntries(event.text));
  return 1;
}

std::intptr_t BuildSession::OnProjectChanged(const std::string& path) {
  isOtherProject_ = true;
  otherProject_ = path;
  damage_.LeaveProject();
  buildLock_.ClearPaths();
  // The server clears its log together with the project.
  static_cast<void>(log_.Sync());
  log_.Stop();
  return 1;
}

std::intptr_t BuildSession::OnRunScript(const HostMessageEvent& event) {
  if (beforeScript) beforeScript();
  const ScriptOutcome ended = scripts_.Run(event.text, "");
  // A script that started this one receives the failure as an error.
  if (!ended.error.empty() && !scripts_.IsRunning()) logLines_.push_back(ended.error);
  return 1;
}

// Stores the log of the last build that ran a tool; an up-to-date build leaves the stored log
// alone.
void BuildSession::KeepLog() {
  log_.Renew(inspector.GetLogFile());
  const Status written = log_.Sync();
  if (!written) stateProblem_ = written.GetError().place + ": " + written.GetError().text;
}

std::vector<std::string> BuildSession::TakeLogLines() {
  std::vector<std::string> lines;
  lines.swap(logLines_);
  return lines;
}

SaveReport BuildSession::TakeSaveReport() {
  TakeLogLines();
  return ParseSaveReport(inspector.GetSaveReport());
}

bool ReportGaps(const BuildGaps& gaps, ProjectManagerDriver& manager) {
  for (const BuildGap& gap : gaps.gaps) {
    manager.ReportMessage(DescribeGap(gap, [](const std::string& path) { return path; }));
  }
  return !gaps.HasFatal();
}

}  // namespace tarn::host
