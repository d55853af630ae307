#pragma once

#include <atomic>
#include <chrono>
#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "hosts/core/BuildGaps.h"
#include "hosts/core/BuildLock.h"
#include "hosts/core/BuildStateManager.h"
#include "hosts/core/HostWindow.h"
#include "hosts/core/LogEntry.h"
#include "hosts/core/LogMirror.h"
#include "hosts/core/RunEvents.h"
#include "hosts/core/SaveReport.h"
#include "hosts/core/ServerConnection.h"
#include "hosts/core/SessionDamage.h"
#include "hosts/core/SessionScripts.h"
#include "hosts/core/SessionTrust.h"

namespace tarn::host {

enum class BuildEnd {
  Succeeded,
  Failed,
  Stopped,  // a stop was requested
  Refused,  // it never started
};

// "succeeded", "failed", "interrupted", "refused"
const char* ToString(BuildEnd end);

struct BuildOutcome {
  BuildEnd end = BuildEnd::Refused;
  int toolsRun = 0;  // number of successful runs
  int toolsFailed = 0;
  // The gaps of a build that ran to completion. A fatal gap makes the build a failed one.
  BuildGaps gaps = {};
  std::string problem = {};  // why nothing could be built, if no tool reported it
};

// Receives the events of a build. Called on the main thread, between two steps of the build.
class BuildObserver {
 public:
  virtual ~BuildObserver() = default;
  virtual void OnToolStarted(const ToolStart& start) = 0;
  virtual void OnToolEnded(bool success, const std::vector<LogEntry>& messages) = 0;
  // Returns true if OnRunEvent is to be called. Queried when the work begins.
  virtual bool WatchesRuns() const { return false; }
  // Receives the events of all tool runs, also of those whose turn has not come. They are delivered
  // by PollRuns and between the other events.
  virtual void OnRunEvent(const RunEvent& /*event*/) {}
};

// The life of one project in a host: the connection to the server, the project, its builds and the
// state stored next to it. One session per frame; all functions on the main thread, except
// RequestStop.
//
// Typical use: Start, Open, choose a configuration, Prepare, Run.
class BuildSession : public ServerConnection {
 public:
  BuildSession(HostWindow& mainFrame, FileSystem& fileSystem, HostFolders hostFolders);
  ~BuildSession();

  // Creates the server and its components. On error the text describes the fault of the
  // installation.
  Status Start();
  // Opens a project and reads its stored state. On error the text is the server's message.
  Status Open(const std::string& projectPath);
  // Publishes all options and restores the build records into the project. Required once before a
  // build or a status query, after the configuration has been chosen.
  void Prepare();
  // Runs the first half of Prepare() for about `time`; returns false if another call is needed.
  // State().BeginRestore() starts the second half.
  bool PublishFor(std::chrono::milliseconds time) {
    return inspector.PublishFor(static_cast<std::int32_t>(time.count())) != 0;
  }

  // Takes the build lock (see BuildLock). Returns false if another process holds it; GetLockHolder
  // then names that process; or if it can't be taken at all; GetLockProblem is then not empty.
  // EndWork and KeepState release the lock.
  bool TryLockBuild();
  bool IsBuildLocked() const { return buildLock_.IsHeld(); }
  const std::string& GetLockHolder() const { return buildLock_.GetHolder(); }
  const std::string& GetLockProblem() const { return buildLock_.GetProblem(); }
  // Waits for the build lock. Returns false if a stop was requested in the meantime, if
  // `endsLockWait` returned true, or if it can't be taken (GetLockProblem).
  bool LockBuild();
  void UnlockBuild() { buildLock_.Release(); }
  // Waits for the build lock before a command of a script. Returns why the command can't be
  // executed; an empty string if it can.
  std::string LockForCommand();
  // Stores the results of a command, and releases the build lock unless the command is running in
  // the background.
  void UnlockUnlessBuilding();
  // Called once per wait, with the process that holds the lock; may be empty.
  std::function<void(const std::string& holder)> onLockWait;
  // Called during a wait each time the message loop wakes; returning true ends the wait. May be
  // empty.
  std::function<bool()> endsLockWait;

  // Builds, and stores the tools' messages even if the build fails or is stopped. `observer` may be
  // null.
  BuildOutcome Run(const BuildRequest& request, BuildObserver* observer);
  // Delivers the events of tool runs since the last call to the observer.
  void PollRuns();
  // Lets other processes build while an action of Run() continues, whose program no longer needs
  // the files of the project: stores log and records, and releases the build lock. At the end of
  // the action they are stored again, unless another process has built since, or is building. No-op
  // if nothing is running.
  void ShareProject();
  // Waits for a build that was started directly by a command, and stores its tools' messages.
  // Returns Refused immediately if no build is running.
  BuildEnd AwaitBuild();
  // Ends a running build or script as soon as possible; a build ends once its tools have exited.
  // May be called from any thread, but not from a signal handler.
  void RequestStop();

  // --- For a host that lets a client drive Manager() directly ---

  // Call this after the server has opened a project: reads the project's state. The only server
  // methods that it calls are GetDamage and ProtectDamaged.
  void Adopt(const std::string& openedPath);
  // Call this after the project was closed, or after a project was opened for which no state is
  // stored. Run then has nothing to build.
  void LeaveProject() { OnProjectChanged({}); }
  // Makes the node to be built current, and returns the command that builds it; 0 if there is no
  // such application.
  std::uint32_t SelectCommand(const BuildRequest& request);
  // Number of tools that have ended since BeginWork.
  const BuildOutcome& GetOutcome() const { return outcome_; }
  // Call this before a call that may start tools, or before the first tool of a running build.
  // `observer` may be null; it receives events until EndWork.
  void BeginWork(BuildObserver* observer = nullptr);
  // Call this after the worker has ended, or after a call that ran tools itself.
  void EndWork();
  // The two halves of EndWork, in this order, for a host whose windows must stay responsive.
  void KeepLog();
  void KeepState();
  // Returns the commands that the server has posted since the last call.
  std::vector<std::uint32_t> TakePostedCommands();
  bool HasPostedCommands() const { return !postedCommands_.empty(); }

  // Calls `onTick` periodically while a build is running, until ClearTicker with the same id.
  void SetTicker(std::int32_t id, std::chrono::milliseconds period, std::function<void()> onTick);
  void ClearTicker(std::int32_t id);

  // Runs a script, waits for builds that it leaves running, and completes the log of the last
  // build. Changes to the project are saved only if the script saves them.
  ScriptOutcome RunScript(const std::string& text, const std::string& name);
  SessionScripts& Scripts() { return scripts_; }
  // Called before a script that the server sends; may be empty.
  std::function<void()> beforeScript;

  // Damage of the project's files. Run refuses to build a project whose damage is held.
  SessionDamage& Damage() { return damage_; }
  // Shortcuts; see SessionDamage.
  std::vector<DamageEntry> GetDamage() { return damage_.Get(); }
  std::vector<DamageEntry> GetFailedDamage() { return damage_.GetFailed(); }
  bool IsDamageHeld() { return damage_.IsHeld(); }
  void AcceptAllDamage() { damage_.AcceptAll(); }
  bool HasRefusedDamage() const { return damage_.HasRefused(); }

  // Returns the lines logged outside of builds since the last call.
  std::vector<std::string> TakeLogLines();
  // Returns the report of the last save, and drops the log lines written since then.
  SaveReport TakeSaveReport();
  // Why the state couldn't be written after the last build; empty if it could.
  const std::string& GetStateProblem() const { return stateProblem_; }

  // Returns true if the open project is the one whose state is stored.
  bool HasProject() const { return !projectPath_.empty() && !isOtherProject_; }
  const std::string& GetProjectPath() const { return projectPath_; }
  // Returns the path of the project that is open now, which a script may have opened; empty if it
  // is the placeholder project.
  const std::string& GetOpenPath() const { return isOtherProject_ ? otherProject_ : projectPath_; }
  bool HoldsFile(const std::string& path) const { return files.Exists(path); }
  BuildStateManager& State() { return state_; }
  SessionTrust& Trust() { return trust_; }

 private:
  void SetHandlers();
  std::intptr_t OnToolStarted(const HostMessageEvent& event);
  std::intptr_t OnToolEnded(const HostMessageEvent& event);
  std::intptr_t OnProjectChanged(const std::string& path);
  std::intptr_t OnRunScript(const HostMessageEvent& event);
  bool FollowProject();
  bool RunCommand(std::uint32_t command);
  // Shows the build's findings about the project itself.
  void ShowNotices();
  void WaitForWorker();
  bool RefusesSharedOutputs(const BuildRequest& request);
  void ServePostedCommands();
  void JudgeGaps(const BuildRequest& request);
  void RecordSizes();
  bool TakeBackProject();

  HostWindow& frame_;
  std::shared_ptr<MessageLoop> loop_;

  SessionTrust trust_;
  SessionDamage damage_;
  BuildStateManager state_;
  LogMirror log_;

  SessionScripts scripts_;

  BuildLock buildLock_;

  std::string projectPath_;
  // A script may have opened a different project, or reopened the same one.
  bool isOtherProject_ = false;
  std::string otherProject_;  // empty: the placeholder project
  std::vector<std::string> logLines_;
  std::string stateProblem_;

  std::atomic<bool> stopRequested_ = false;
  bool isRunning_ = false;
  bool isShared_ = false;  // the running action has released the build lock
  bool workerEnded_ = false;
  bool workerSucceeded_ = false;
  std::deque<std::uint32_t> postedCommands_;
  BuildObserver* watcher_ = nullptr;
  bool watchesRuns_ = false;
  BuildOutcome outcome_;
};

// Adds the gaps to the server's log. Returns false if one of them is fatal.
bool ReportGaps(const BuildGaps& gaps, ProjectManagerDriver& manager);

}  // namespace tarn::host
