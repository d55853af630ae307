#include "hosts/desktop/CommandRunner.h"

#include <tarn/commands.h>

#include <QEventLoop>
#include <algorithm>
#include <chrono>
#include <iterator>
#include <set>
#include <utility>

#include "hosts/core/ProjectTree.h"
#include "platform/files/KeptCopy.h"

namespace tarn::host {

namespace {

constexpr std::uint32_t kBuildCommands[] = {
    TARN_CMD_REBUILD_ALL, TARN_CMD_BUILD_ALL,  TARN_CMD_CLEAN_ALL,      TARN_CMD_REBUILD_NODE,
    TARN_CMD_BUILD_NODE,  TARN_CMD_CLEAN_NODE, TARN_CMD_TRANSLATE_NODE, TARN_CMD_BUILD_APPLICATION,
};

// Duration of one step of work that can be divided.
constexpr std::chrono::milliseconds kPieceTime(20);

// Builds with a known number of tools; others may be of any part of the project.
struct WholeBuild {
  std::uint32_t command;
  BuildWork work;
};
constexpr WholeBuild kWholeBuilds[] = {
    {TARN_CMD_BUILD_ALL, BuildWork::Build},
    {TARN_CMD_REBUILD_ALL, BuildWork::Rebuild},
};

// All other commands refer to the current node.
bool IsOfProject(std::uint32_t command) {
  return command == TARN_CMD_BUILD_ALL || command == TARN_CMD_REBUILD_ALL ||
         command == TARN_CMD_CLEAN_ALL;
}

// Divides the work into steps: for a large project the window must respond in the meantime.
BuildProgress::Estimator EstimatorFor(std::uint32_t command, BuildSession& session) {
  for (const WholeBuild& each : kWholeBuilds) {
    if (each.command != command) continue;
    return [&session, work = each.work, begins = true]() mutable {
      return session.EstimateWorkFor({work, {}}, kPieceTime, std::exchange(begins, false));
    };
  }
  return {};
}

// Removes backups made by the server that are identical to the file after it was written.
void RemoveCopies(FileSystem& files, const std::vector<FileText>& texts) {
  for (const FileText& each : texts) {
    const std::string aside = each.path + ".orig";
    const auto kept = files.ReadWholeFile(aside);
    if (kept && *kept == each.text) static_cast<void>(files.RemoveFile(aside));
  }
}

// Interval of checks if the user's input has ended.
constexpr std::chrono::milliseconds kOccupiedPause(100);

}  // namespace

CommandRunner::CommandRunner(HostWindow& mainFrame, BuildSession& buildSession,
                             FileSystem& fileSystem)
    : frame_(mainFrame), session_(buildSession), files_(fileSystem) {
  newsTimer_.setInterval(kOccupiedPause);
  connect(&newsTimer_, &QTimer::timeout, this, [this] { TakeOptionsLoaded(); });
  frame_.SetObserver([this](const HostMessageEvent& event) { OnMessage(event); });
  // Must run before everything else, because a script may build the project immediately.
  frame_.SetHandler(kMsgProjectOpened, [this](const HostMessageEvent& event) {
    if (event.lParam != 0) {
      session_.LeaveProject();
    } else if (!isOpening_) {
      session_.Adopt(event.text);
    }
    return std::intptr_t{1};
  });
}

CommandRunner::~CommandRunner() {
  frame_.SetHandler(kMsgProjectOpened, {});
  frame_.SetObserver({});
}

Status CommandRunner::Open(const std::string& path) {
  isOpening_ = true;
  Status opened = session_.Open(path);
  isOpening_ = false;
  if (onProjectChanged) onProjectChanged();
  return opened;
}

Status CommandRunner::ReopenWith(const std::vector<FileText>& texts) {
  const std::string path = GetProjectPath();
  if (Status kept = KeepDamaged(texts); !kept) return kept;
  if (Status closed = Close(); !closed) return closed;
  const Status written = files_.WriteFiles(AsBytes(texts));
  if (written) RemoveCopies(files_, texts);
  const Status opened = Open(path);
  return written ? opened : written;
}

// Ignores the notification of the placeholder project that the server opens after a close.
Status CommandRunner::Close() {
  const std::string path = GetProjectPath();
  isOpening_ = true;
  const bool isClosed = session_.Manager().ProjectClose() != 0;
  isOpening_ = false;
  return isClosed ? Status() : Error{ErrorCode::Io, "the project can't be closed now", path};
}

Status CommandRunner::OpenWithChanges(const std::string& path, const std::string& texts,
                                      const std::string& bases) {
  if (path == GetProjectPath()) {
    if (Status closed = Close(); !closed) return closed;
  }
  session_.Inspector().StageFileTexts(texts, bases);
  Status opened = Open(path);
  // If this open was refused, they must not be used for a later one.
  session_.Inspector().StageFileTexts({}, {});
  return opened;
}

// Backs up damaged files, because the part that could not be read exists only there.
Status CommandRunner::KeepDamaged(const std::vector<FileText>& texts) {
  std::set<std::string> damaged;
  for (const DamageEntry& each : session_.GetDamage()) damaged.insert(each.file);
  for (const FileText& each : texts) {
    if (damaged.count(each.path) == 0) continue;
    const auto present = files_.ReadWholeFile(each.path);
    std::string copy;
    if (!present) return present.GetError();
    if (*present == each.text) continue;
    if (Status kept = KeepCopy(files_, each.path, *present, ".bak", copy); !kept) return kept;
  }
  return {};
}

Status CommandRunner::Apply(const FileChanges& changes) {
  isApplying_ = true;
  const Status applied = ApplyChanges(session_.Inspector(), changes);
  isApplying_ = false;
  if (std::exchange(isReadAgain_, false) && onProjectChanged) onProjectChanged();
  return applied;
}

void CommandRunner::SaveProject() {
  if (!session_.HasProject() || IsBuilding()) return;
  KeepSelection([this] { session_.Manager().ProjectSave(); });
}

// The server makes the active application current when it reloads a project, so the selection is
// restored afterwards.
void CommandRunner::KeepSelection(const std::function<void()>& work) {
  const std::string chosen = currentPath_;
  const std::string application = session_.Manager().GetSelectedApplication();
  work();
  if (chosen.empty() || chosen == currentPath_ || !session_.HasProject()) return;
  session_.Inspector().SelectNodeByKey(chosen, application);
}

bool CommandRunner::Builds(std::uint32_t command) {
  return (command >= TARN_CMD_LIST_TOOLS && command <= TARN_CMD_LAST_TOOL) ||
         std::find(std::begin(kBuildCommands), std::end(kBuildCommands), command) !=
             std::end(kBuildCommands);
}

bool CommandRunner::IsEnabled(std::uint32_t command) {
  if (command == TARN_CMD_STOP) return IsBuilding() && !isStopAsked_;
  if (IsBuilding() && Builds(command)) return false;
  if (command == TARN_CMD_SET_ACTIVE_APPLICATION && !CanActivate()) return false;
  return session_.Manager().EnableCommand(command) != 0;
}

// Returns true if the current node is an application, but not the active one.
bool CommandRunner::CanActivate() {
  const std::string path = session_.Manager().GetPropertyValue({}, "General", "Path");
  return std::ranges::any_of(
      ListApplications(session_.Inspector()),
      [&path](const ApplicationEntry& each) { return !each.active && each.path == path; });
}

bool CommandRunner::MayRun(std::uint32_t command) {
  return IsEnabled(command) && (!ChangesProject(command) || !mayChange || mayChange());
}

void CommandRunner::Run(std::uint32_t command) {
  if (!MayRun(command)) return;
  if (command == TARN_CMD_STOP) {
    Stop();
    return;
  }
  if (command == TARN_CMD_OPTIONS_LOADED) {
    TakeOptionsLoaded();
    return;
  }
  if (!Builds(command)) {
    session_.Manager().Command(command);
    const bool showsOptions =
        command == TARN_CMD_NODE_OPTIONS || command == TARN_CMD_APPLICATION_OPTIONS;
    if (showsOptions && onShowOptions) onShowOptions();
    return;
  }
  repeatable_ = waiter_ ? 0 : command;
  session_.Inspector().NoteCurrentNode();
  Ask(command);
}

void CommandRunner::Repeat() {
  if (repeatable_ != 0 && MayRun(repeatable_)) Ask(repeatable_);
}

void CommandRunner::Ask(std::uint32_t command) {
  waiting_ = command;
  isStopAsked_ = false;
  BeginProgress(EstimatorFor(command, session_));
  const bool isTool = command >= TARN_CMD_FIRST_TOOL && command <= TARN_CMD_LAST_TOOL;
  toolTitle_ = isTool && queryToolTitle ? queryToolTitle(command) : std::string();
  if (onAsked) onAsked();
  Approach();
}

void CommandRunner::BeginProgress(BuildProgress::Estimator estimator) {
  progress_.emplace(std::move(estimator), true);
  progress_->onOutput = [this](const std::string& text) {
    if (onOutput) onOutput(text);
  };
}

void CommandRunner::PollProgress() {
  session_.PollRuns();
  if (progress_) progress_->Poll();
}

// Starts the waiting build once its prerequisites are met. Without the stored build records
// everything would be rebuilt, and they can be restored only into nodes whose options are
// published.
void CommandRunner::Approach() {
  if (waiting_ == 0) return;
  if (!session_.TryLockBuild()) {
    if (!session_.GetLockProblem().empty()) {
      waiting_ = 0;
      NotifyEnd(BuildEnd::Refused);
      return;
    }
    constexpr int kBetweenTries = 100;  // milliseconds
    QTimer::singleShot(kBetweenTries, this, [this] { Approach(); });
    return;
  }
  if (isRestored_ && !isRestoring_ && session_.State().IsOutdated()) isRestored_ = false;
  if (!isRestored_ && session_.PublishFor(kPieceTime)) RestoreState();
  if (!isRestored_ || isRestoring_) {
    QTimer::singleShot(0, this, [this] { Approach(); });
    return;
  }
  Start(std::exchange(waiting_, 0));
}

void CommandRunner::Start(std::uint32_t command) {
  // The build refers to the node that was current at the request.
  const bool hasNode = IsOfProject(command) || session_.Inspector().SelectNotedNode() != 0;
  if (!hasNode || session_.Manager().PrologCommand(command) == 0) {
    NotifyEnd(BuildEnd::Refused);
    return;
  }
  session_.BeginWork(&*progress_);
  building_ = command;
  isUnkept_ = true;
  isCleaning_ = command == TARN_CMD_CLEAN_ALL || command == TARN_CMD_CLEAN_NODE;
  if (onStarted) onStarted();
  // The result is the same if the user has cancelled the start, but then there is nothing running
  // to be stopped.
  const bool isRunning = session_.Manager().Command(command) == 2 &&
                         session_.Manager().EnableCommand(TARN_CMD_STOP) != 0;
  if (!isRunning && building_ == command) FinishBuild(BuildEnd::Refused);
}

BuildOutcome CommandRunner::RunAndWait(const BuildRequest& request) {
  if (IsBuilding()) return {};
  const std::uint32_t command = session_.SelectCommand(request);
  if (command == 0) return {};
  return WaitFor([this, command] { Run(command); });
}

BuildEnd CommandRunner::AwaitBuild() {
  if (waiter_) return BuildEnd::Refused;
  return WaitFor([this] { TakeOver(); }).end;
}

// The build may already have ended, or been refused, when its start returns.
BuildOutcome CommandRunner::WaitFor(const std::function<void()>& start) {
  BuildOutcome outcome;
  QEventLoop loop;
  waiter_ = [&](BuildEnd end) {
    outcome = session_.GetOutcome();
    outcome.end = end;
    loop.quit();
  };
  start();
  if (IsBuilding()) loop.exec();
  waiter_ = {};
  return outcome;
}

// Called before the first tool of a build started elsewhere, in the middle of a message. The extent
// of the build is unknown.
void CommandRunner::TakeOver() {
  if (IsBuilding() || session_.Manager().EnableCommand(TARN_CMD_STOP) == 0) return;
  BeginProgress({});
  toolTitle_.clear();
  isStopAsked_ = false;
  isCleaning_ = false;
  isUnkept_ = session_.HasProject();
  repeatable_ = 0;
  building_ = TARN_CMD_BUILD_ALL;
  session_.BeginWork(&*progress_);
  if (onAsked) onAsked();
  if (onStarted) onStarted();
}

// Deferred while the user is typing, because the server refills its tree, which would abort the
// input, and during a build that a script has started, because records can't be restored then.
void CommandRunner::TakeOptionsLoaded() {
  const bool isTyping = waiting_ == 0 && isOccupied && isOccupied();
  if (isTyping || session_.Manager().EnableCommand(TARN_CMD_STOP) != 0) {
    newsTimer_.start();
    return;
  }
  newsTimer_.stop();
  // The command may have been posted for a project that was closed in the meantime. The server
  // posts another one when all nodes of this project are published. If its publishing was stopped,
  // the next build restores the records.
  const auto milliseconds = static_cast<std::int32_t>(kPieceTime.count());
  const std::int32_t progress = session_.Inspector().ContinuePublishing(milliseconds);
  if (progress == 0) return;
  if (progress == 1) RestoreState();
  session_.Manager().Command(TARN_CMD_OPTIONS_LOADED);
  if (onOptionsLoaded) onOptionsLoaded();
}

// The records of a large project are restored in small steps.
void CommandRunner::RestoreState() {
  if (isRestored_) return;
  isRestored_ = true;
  isRestoring_ = true;
  session_.State().BeginRestore();
  ContinueRestore();
}

void CommandRunner::ContinueRestore() {
  if (!isRestoring_) return;
  isRestoring_ = session_.State().ContinueRestore();
  if (isRestoring_) QTimer::singleShot(0, this, [this] { ContinueRestore(); });
}

void CommandRunner::Stop() {
  if (!IsBuilding() || isStopAsked_) return;
  if (std::exchange(waiting_, 0) != 0) {
    NotifyEnd(BuildEnd::Stopped);
    return;
  }
  isStopAsked_ = true;
  session_.Manager().Command(TARN_CMD_STOP);
  session_.Tools().StopTools();
}

void CommandRunner::FollowStop() {
  if (building_ == 0 || isFinishing_ || isStopAsked_) return;
  if (session_.Manager().EnableCommand(TARN_CMD_STOP) != 0) return;
  isStopAsked_ = true;
  session_.Tools().StopTools();
}

// The sender may be in the middle of an operation, so all reactions are deferred.
void CommandRunner::OnMessage(const HostMessageEvent& event) {
  if (event.number == kMsgCommand) {
    QTimer::singleShot(0, this, [this] { ServePosted(); });
  } else if (event.number == kMsgCurrentNodeChanged) {
    currentPath_ = event.text;
  } else if (event.number == kMsgProjectClosing) {
    KeepResults();
    if (onProjectClosing) onProjectClosing();
  } else if (event.number == kMsgProjectOpened) {
    isRestored_ = false;
    isRestoring_ = false;
    repeatable_ = 0;
    newsTimer_.stop();
    if (std::exchange(waiting_, 0) != 0) NotifyEnd(BuildEnd::Refused);
    // The server also opens projects by itself: the wizard's, and the placeholder project.
    if (isOpening_) return;
    if (isApplying_) {
      isReadAgain_ = true;
      return;
    }
    QTimer::singleShot(0, this, [this] {
      if (onProjectChanged) onProjectChanged();
    });
  } else if (event.number == kMsgToolStarted) {
    TakeOver();
  } else if (event.number == kMsgWorkerEnded && building_ != 0) {
    // A build by another process, because of which this one was refused, is ignored.
    const bool isSuccess = event.wParam != 0;
    QTimer::singleShot(0, this, [this, isSuccess] {
      FinishBuild(isSuccess      ? BuildEnd::Succeeded
                  : isStopAsked_ ? BuildEnd::Stopped
                                 : BuildEnd::Failed);
    });
  }
}

// Ends the build in several steps, because storing the results of a large build takes time.
void CommandRunner::FinishBuild(BuildEnd end) {
  if (building_ == 0 || isFinishing_) return;
  isFinishing_ = true;
  if (end == BuildEnd::Succeeded && !JudgeGaps()) end = BuildEnd::Failed;
  if (isUnkept_) {
    session_.Manager().EpilogCommand(building_);
    session_.KeepLog();
  }
  QTimer::singleShot(0, this, [this, end] {
    if (std::exchange(isUnkept_, false)) session_.KeepState();
    building_ = 0;
    isFinishing_ = false;
    // The next build may be started elsewhere.
    if (isStopAsked_) session_.Tools().ResumeTools();
    session_.TakeLogLines();  // shown in the log window
    NotifyEnd(end);
  });
}

// Logs what a successful build left out. Returns false if an application can't be built.
bool CommandRunner::JudgeGaps() {
  const bool isApplication = building_ == TARN_CMD_BUILD_APPLICATION;
  if (isCleaning_ || !session_.HasProject() || (!isApplication && !IsOfProject(building_)))
    return true;
  return ReportGaps(
      session_.FindGaps(isApplication ? session_.Manager().GetSelectedApplication() : ""),
      session_.Manager());
}

// Stores the results before the tree that they belong to is deleted.
void CommandRunner::KeepResults() {
  if (!std::exchange(isUnkept_, false)) return;
  session_.KeepState();
}

void CommandRunner::NotifyEnd(BuildEnd end) {
  session_.UnlockBuild();  // also if the build never started
  if (waiter_) waiter_(end);
  if (onEnded) onEnded(end);
}

void CommandRunner::ServePosted() {
  for (const std::uint32_t command : session_.TakePostedCommands()) Run(command);
}

}  // namespace tarn::host
