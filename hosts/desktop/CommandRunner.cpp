#include "hosts/desktop/CommandRunner.h"

#include <tarn/commands.h>

#include <QEventLoop>
#include <algorithm>
#include <iterator>
#include <set>
#include <utility>

#include "platform/files/KeptCopy.h"

namespace tarn::host {

namespace {

constexpr std::uint32_t kBuildCommands[] = {
    TARN_CMD_REBUILD_ALL, TARN_CMD_BUILD_ALL,  TARN_CMD_CLEAN_ALL,      TARN_CMD_REBUILD_NODE,
    TARN_CMD_BUILD_NODE,  TARN_CMD_CLEAN_NODE, TARN_CMD_TRANSLATE_NODE, TARN_CMD_BUILD_APPLICATION,
};

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

std::function<int()> CounterFor(std::uint32_t command, BuildSession& session) {
  for (const WholeBuild& each : kWholeBuilds) {
    if (each.command != command) continue;
    return [&session, work = each.work] { return session.CountWork({work, {}}); };
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

// Duration of one step of work that can be divided.
constexpr std::chrono::milliseconds kPieceTime(20);
// Interval of checks if the user's input has ended.
constexpr std::chrono::milliseconds kOccupiedPause(100);

}  // namespace

CommandRunner::CommandRunner(MainFrame& mainFrame, BuildSession& buildSession,
                             FileSystem& fileSystem)
    : frame(mainFrame), session(buildSession), files(fileSystem) {
  newsTimer.setInterval(kOccupiedPause);
  connect(&newsTimer, &QTimer::timeout, this, [this] { TakeOptionsLoaded(); });
  frame.Watch([this](const HostEvent& event) { OnMessage(event); });
  // Must run before everything else, because a script may build the project immediately.
  frame.Answer(kMsgProjectOpened, [this](const HostEvent& event) {
    if (event.lParam != 0) {
      session.LeaveProject();
    } else if (!isOpening) {
      session.Adopt(event.text);
    }
    return std::intptr_t{1};
  });
}

CommandRunner::~CommandRunner() {
  frame.Answer(kMsgProjectOpened, {});
  frame.Watch({});
}

Status CommandRunner::Open(const std::string& path) {
  isOpening = true;
  Status opened = session.Open(path);
  isOpening = false;
  if (onProjectChanged) onProjectChanged();
  return opened;
}

Status CommandRunner::ReopenWith(const std::vector<FileText>& texts) {
  const std::string path = GetProjectPath();
  if (Status kept = KeepDamaged(texts); !kept) return kept;
  if (Status closed = Close(); !closed) return closed;
  const Status written = files.WriteFiles(AsBytes(texts));
  if (written) RemoveCopies(files, texts);
  const Status opened = Open(path);
  return written ? opened : written;
}

// Ignores the notification of the placeholder project that the server opens after a close.
Status CommandRunner::Close() {
  const std::string path = GetProjectPath();
  isOpening = true;
  const bool isClosed = session.Manager().ProjectClose() != 0;
  isOpening = false;
  return isClosed ? Status() : Error{ErrorCode::Io, "the project can't be closed now", path};
}

Status CommandRunner::OpenWithChanges(const std::string& path, const std::string& texts,
                                      const std::string& bases) {
  if (path == GetProjectPath()) {
    if (Status closed = Close(); !closed) return closed;
  }
  session.Inspector().StageFileTexts(texts, bases);
  Status opened = Open(path);
  // If this open was refused, they must not be used for a later one.
  session.Inspector().StageFileTexts({}, {});
  return opened;
}

// Backs up damaged files, because the part that could not be read exists only there.
Status CommandRunner::KeepDamaged(const std::vector<FileText>& texts) {
  std::set<std::string> damaged;
  for (const DamageEntry& each : session.GetDamage()) damaged.insert(each.file);
  for (const FileText& each : texts) {
    if (damaged.count(each.path) == 0) continue;
    const auto present = files.ReadWholeFile(each.path);
    std::string copy;
    if (!present) return present.GetError();
    if (*present == each.text) continue;
    if (Status kept = KeepCopy(files, each.path, *present, ".bak", copy); !kept) return kept;
  }
  return {};
}

Status CommandRunner::Apply(const FileChanges& changes) {
  isApplying = true;
  const Status applied = ApplyChanges(session.Inspector(), changes);
  isApplying = false;
  if (std::exchange(isReadAgain, false) && onProjectChanged) onProjectChanged();
  return applied;
}

void CommandRunner::SaveProject() {
  if (!session.HasProject() || IsBuilding()) return;
  KeepSelection([this] { session.Manager().ProjectSave(); });
}

// The server makes the active application current when it reloads a project, so the selection is
// restored afterwards.
void CommandRunner::KeepSelection(const std::function<void()>& work) {
  const std::string chosen = currentPath;
  const std::string application = session.Manager().GetSelectedApplication();
  work();
  if (chosen.empty() || chosen == currentPath || !session.HasProject()) return;
  session.Inspector().SelectNodeByKey(chosen, application);
}

bool CommandRunner::Builds(std::uint32_t command) {
  return (command >= TARN_CMD_LIST_TOOLS && command <= TARN_CMD_LAST_TOOL) ||
         std::find(std::begin(kBuildCommands), std::end(kBuildCommands), command) !=
             std::end(kBuildCommands);
}

bool CommandRunner::IsEnabled(std::uint32_t command) {
  if (command == TARN_CMD_STOP) return IsBuilding() && !isStopAsked;
  if (IsBuilding() && Builds(command)) return false;
  return session.Manager().EnableCommand(command) != 0;
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
    session.Manager().Command(command);
    const bool showsOptions =
        command == TARN_CMD_NODE_OPTIONS || command == TARN_CMD_APPLICATION_OPTIONS;
    if (showsOptions && onShowOptions) onShowOptions();
    return;
  }
  repeatable = waiter ? 0 : command;
  session.Inspector().NoteCurrentNode();
  Ask(command);
}

void CommandRunner::Repeat() {
  if (repeatable != 0 && MayRun(repeatable)) Ask(repeatable);
}

void CommandRunner::Ask(std::uint32_t command) {
  waiting = command;
  isStopAsked = false;
  progress.emplace(CounterFor(command, session));
  if (onAsked) onAsked();
  Approach();
}

// Starts the waiting build once its prerequisites are met. Without the stored build records
// everything would be rebuilt, and they can be restored only into nodes whose options are
// published.
void CommandRunner::Approach() {
  if (waiting == 0) return;
  if (!session.TryLockBuild()) {
    if (!session.GetLockProblem().empty()) {
      waiting = 0;
      TellEnd(BuildEnd::Refused);
      return;
    }
    constexpr int kBetweenTries = 100;  // milliseconds
    QTimer::singleShot(kBetweenTries, this, [this] { Approach(); });
    return;
  }
  if (isRestored && !isRestoring && session.State().IsOutdated()) isRestored = false;
  if (!isRestored && session.PublishFor(kPieceTime)) RestoreState();
  if (!isRestored || isRestoring) {
    QTimer::singleShot(0, this, [this] { Approach(); });
    return;
  }
  Start(std::exchange(waiting, 0));
}

void CommandRunner::Start(std::uint32_t command) {
  // The build refers to the node that was current at the request.
  const bool hasNode = IsOfProject(command) || session.Inspector().SelectNotedNode() != 0;
  if (!hasNode || session.Manager().PrologCommand(command) == 0) {
    TellEnd(BuildEnd::Refused);
    return;
  }
  session.BeginWork(&*progress);
  building = command;
  isUnkept = true;
  isCleaning = command == TARN_CMD_CLEAN_ALL || command == TARN_CMD_CLEAN_NODE;
  if (onStarted) onStarted();
  // The result is the same if the user has cancelled the start, but then there is nothing running
  // to be stopped.
  const bool isRunning = session.Manager().Command(command) == 2 &&
                         session.Manager().EnableCommand(TARN_CMD_STOP) != 0;
  if (!isRunning && building == command) FinishBuild(BuildEnd::Refused);
}

BuildOutcome CommandRunner::RunAndWait(const BuildRequest& request) {
  if (IsBuilding()) return {};
  const std::uint32_t command = session.SelectCommand(request);
  if (command == 0) return {};
  return WaitFor([this, command] { Run(command); });
}

BuildEnd CommandRunner::AwaitBuild() {
  if (waiter) return BuildEnd::Refused;
  return WaitFor([this] { TakeOver(); }).end;
}

// The build may already have ended, or been refused, when its start returns.
BuildOutcome CommandRunner::WaitFor(const std::function<void()>& start) {
  BuildOutcome outcome;
  QEventLoop loop;
  waiter = [&](BuildEnd end) {
    outcome = session.GetOutcome();
    outcome.end = end;
    loop.quit();
  };
  start();
  if (IsBuilding()) loop.exec();
  waiter = {};
  return outcome;
}

// Called before the first tool of a build started elsewhere, in the middle of a message. The extent
// of the build is unknown.
void CommandRunner::TakeOver() {
  if (IsBuilding() || session.Manager().EnableCommand(TARN_CMD_STOP) == 0) return;
  progress.emplace(std::function<int()>());
  isStopAsked = false;
  isCleaning = false;
  isUnkept = session.HasProject();
  repeatable = 0;
  building = TARN_CMD_BUILD_ALL;
  session.BeginWork(&*progress);
  if (onAsked) onAsked();
  if (onStarted) onStarted();
}

// Deferred while the user is typing: the server refills its tree, which would abort the input.
void CommandRunner::TakeOptionsLoaded() {
  if (waiting == 0 && isOccupied && isOccupied()) {
    newsTimer.start();
    return;
  }
  newsTimer.stop();
  RestoreState();
  session.Manager().Command(TARN_CMD_OPTIONS_LOADED);
  if (onOptionsLoaded) onOptionsLoaded();
}

// The records of a large project are restored in small steps.
void CommandRunner::RestoreState() {
  if (isRestored) return;
  isRestored = true;
  isRestoring = true;
  session.State().BeginRestore();
  ContinueRestore();
}

void CommandRunner::ContinueRestore() {
  if (!isRestoring) return;
  isRestoring = session.State().ContinueRestore();
  if (isRestoring) QTimer::singleShot(0, this, [this] { ContinueRestore(); });
}

void CommandRunner::Stop() {
  if (!IsBuilding() || isStopAsked) return;
  if (std::exchange(waiting, 0) != 0) {
    TellEnd(BuildEnd::Stopped);
    return;
  }
  isStopAsked = true;
  session.Manager().Command(TARN_CMD_STOP);
  session.Tools().StopTools();
}

void CommandRunner::FollowStop() {
  if (building == 0 || isFinishing || isStopAsked) return;
  if (session.Manager().EnableCommand(TARN_CMD_STOP) != 0) return;
  isStopAsked = true;
  session.Tools().StopTools();
}

// The sender may be in the middle of an operation, so all reactions are deferred.
void CommandRunner::OnMessage(const HostEvent& event) {
  if (event.number == kMsgCommand) {
    QTimer::singleShot(0, this, [this] { ServePosted(); });
  } else if (event.number == kMsgCurrentNodeChanged) {
    currentPath = event.text;
  } else if (event.number == kMsgProjectClosing) {
    KeepResults();
    if (onProjectClosing) onProjectClosing();
  } else if (event.number == kMsgProjectOpened) {
    isRestored = false;
    isRestoring = false;
    repeatable = 0;
    newsTimer.stop();
    if (std::exchange(waiting, 0) != 0) TellEnd(BuildEnd::Refused);
    // The server also opens projects by itself: the wizard's, and the placeholder project.
    if (isOpening) return;
    if (isApplying) {
      isReadAgain = true;
      return;
    }
    QTimer::singleShot(0, this, [this] {
      if (onProjectChanged) onProjectChanged();
    });
  } else if (event.number == kMsgToolStarted) {
    TakeOver();
  } else if (event.number == kMsgWorkerEnded && building != 0) {
    // A build by another process, because of which this one was refused, is ignored.
    const bool isSuccess = event.wParam != 0;
    QTimer::singleShot(0, this, [this, isSuccess] {
      FinishBuild(isSuccess     ? BuildEnd::Succeeded
                  : isStopAsked ? BuildEnd::Stopped
                                : BuildEnd::Failed);
    });
  }
}

// Ends the build in several steps, because storing the results of a large build takes time.
void CommandRunner::FinishBuild(BuildEnd end) {
  if (building == 0 || isFinishing) return;
  isFinishing = true;
  if (end == BuildEnd::Succeeded && !JudgeGaps()) end = BuildEnd::Failed;
  if (isUnkept) {
    session.Manager().EpilogCommand(building);
    session.KeepLog();
  }
  QTimer::singleShot(0, this, [this, end] {
    if (std::exchange(isUnkept, false)) session.KeepState();
    building = 0;
    isFinishing = false;
    // The next build may be started elsewhere.
    if (isStopAsked) session.Tools().ResumeTools();
    session.TakeLogLines();  // shown in the log window
    TellEnd(end);
  });
}

// Logs what a successful build left out. Returns false if an application can't be built.
bool CommandRunner::JudgeGaps() {
  const bool isApplication = building == TARN_CMD_BUILD_APPLICATION;
  if (isCleaning || !session.HasProject() || (!isApplication && !IsOfProject(building)))
    return true;
  return ReportGaps(
      session.FindGaps(isApplication ? session.Manager().GetSelectedApplication() : ""),
      session.Manager());
}

// Stores the results before the tree that they belong to is deleted.
void CommandRunner::KeepResults() {
  if (!std::exchange(isUnkept, false)) return;
  session.KeepState();
}

void CommandRunner::TellEnd(BuildEnd end) {
  session.UnlockBuild();  // also if the build never started
  if (waiter) waiter(end);
  if (onEnded) onEnded(end);
}

void CommandRunner::ServePosted() {
  for (const std::uint32_t command : session.TakePostedCommands()) Run(command);
}

}  // namespace tarn::host
