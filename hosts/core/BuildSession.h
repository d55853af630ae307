#pragma once

#include <atomic>
#include <chrono>
#include <deque>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "hosts/core/BuildGaps.h"
#include "hosts/core/BuildLock.h"
#include "hosts/core/Damage.h"
#include "hosts/core/HostFolders.h"
#include "hosts/core/LogEntry.h"
#include "hosts/core/LogKeeper.h"
#include "hosts/core/MainFrame.h"
#include "hosts/core/ProjectStatus.h"
#include "hosts/core/SaveReport.h"
#include "hosts/core/ServerDrivers.h"
#include "hosts/core/SessionScripts.h"
#include "hosts/core/SessionTrust.h"
#include "hosts/core/StateKeeper.h"

namespace tarn::host {

enum class BuildWork { Build, Rebuild, Clean };

struct BuildRequest {
  BuildWork work = BuildWork::Build;
  std::string application;  // path; empty: the whole project
};

enum class BuildEnd {
  Succeeded,
  Failed,
  Stopped,  // a stop was requested
  Refused,  // it never started
};

// "succeeded", "failed", "interrupted", "refused"
const char* WordOf(BuildEnd end);

struct BuildOutcome {
  BuildEnd end = BuildEnd::Refused;
  int toolsRun = 0;  // number of successful runs
  int toolsFailed = 0;
  // The gaps of a build that ran to completion. A fatal gap makes the build a failed one.
  BuildGaps gaps = {};
  std::string problem = {};  // why nothing could be built, if no tool reported it
};

struct ApplicationSummary {
  std::string label;
  std::string infos;
};

// The inputs and outputs of a tool that is being started.
struct ToolStart {
  std::string tool;
  std::vector<std::string> files;
  std::string output;
  std::string command;
  std::string subject = {};  // file that identifies the run; empty: its only file, or its output
};

// Receives the events of a build. Called on the main thread, between two steps of the build.
class BuildObserver {
 public:
  virtual ~BuildObserver() = default;
  virtual void OnToolStarted(const ToolStart& start) = 0;
  virtual void OnToolEnded(bool success, const std::vector<LogEntry>& messages) = 0;
};

// The life of one project in a host: the server with its components, the project, its builds and
// the state stored next to it. One session per frame; all functions on the main thread, except
// RequestStop.
//
// Typical use: Start, Open, choose a configuration, Prepare, Run.
class BuildSession {
 public:
  BuildSession(MainFrame& mainFrame, FileSystem& fileSystem, HostFolders hostFolders);
  BuildSession(const BuildSession&) = delete;
  BuildSession& operator=(const BuildSession&) = delete;
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
  bool IsBuildLocked() const { return buildLock.IsHeld(); }
  const std::string& GetLockHolder() const { return buildLock.GetHolder(); }
  const std::string& GetLockProblem() const { return buildLock.GetProblem(); }
  // Waits for the build lock. Returns false if a stop was requested in the meantime, if
  // `endsLockWait` returned true, or if it can't be taken (GetLockProblem).
  bool LockBuild();
  void UnlockBuild() { buildLock.Release(); }
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
  // Waits for a build that was started directly by a command, and stores its tools' messages.
  // Returns Refused immediately if no build is running.
  BuildEnd AwaitBuild();
  // Returns what a build of the application with this label or path would leave out; an empty key
  // means the whole project. All options must have been published.
  BuildGaps FindGaps(const std::string& application);
  // Adds the gaps to the log. Returns false if one of them is fatal.
  bool ReportGaps(const BuildGaps& gaps);
  // Returns the number of tools that a build would run now. Expensive: the server checks every
  // file.
  int CountWork(const BuildRequest& request);
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
  const BuildOutcome& GetOutcome() const { return outcome; }
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
  bool HasPostedCommands() const { return !postedCommands.empty(); }

  // Calls `onTick` periodically while a build is running, until ClearTicker with the same id.
  void SetTicker(std::int32_t id, std::chrono::milliseconds period, std::function<void()> onTick);
  void ClearTicker(std::int32_t id);

  // Runs a script, waits for builds that it leaves running, and completes the log of the last
  // build. Changes to the project are saved only if the script saves them.
  ScriptOutcome RunScript(const std::string& text, const std::string& name);
  SessionScripts& Scripts() { return scripts; }
  // Called before a script that the server sends; may be empty.
  std::function<void()> beforeScript;

  // Returns the outdated nodes, including reasons that only the host can find. `problem`, if given,
  // receives the reason if the applications can't be built at all.
  std::vector<ApplicationStatus> GetStatus(std::string* problem = nullptr);
  // Returns why the tool for this output can't be run, such as a required option that is not set;
  // an empty string if it can.
  std::string FindCommandProblem(const std::string& application, const std::string& output);
  // Returns the applications, each with its tool's summary of the output; empty if there is none.
  std::vector<ApplicationSummary> GetSummaries();
  // Returns a program that a tool needs and that is not installed; an empty string if none is
  // missing.
  std::string FindMissingProgram(const std::vector<ApplicationStatus>& status);

  // --- Projects whose files were damaged when they were read ---

  std::vector<DamageEntry> GetDamage() { return ParseDamage(inspector.GetDamage()); }
  // Like GetDamage(), but for the project that could not be opened.
  std::vector<DamageEntry> GetFailedDamage() { return ParseDamage(inspector.GetFailedDamage()); }
  // Returns true if the open project is damaged and the user has not agreed to continue with what
  // could be read. Run then refuses to build, and the server saves nothing.
  bool IsDamageHeld();
  // Records the user's consent, for the open project or for all projects opened from now on.
  void AcceptDamage();
  void AcceptAllDamage();
  // Returns true if a change must be refused because of damage, and records the refusal.
  bool RefusesChange();
  // Returns why this server method can't be called now; an empty string if it can.
  std::string CheckCall(std::string_view method, std::span<const Variant> arguments);
  // Returns true if a build or a call was refused because of damage since the session began.
  bool HasRefusedDamage() const { return hasRefusedDamage; }

  // Returns the lines logged outside of builds since the last call.
  std::vector<std::string> TakeLogLines();
  // Returns the report of the last save, and drops the log lines written since then.
  SaveReport TakeSaveReport();
  // Returns the errors in option and tool definition files, one per line; empty if there are none.
  std::vector<std::string> GetDefinitionErrors();
  // Why the state couldn't be written after the last build; empty if it could.
  const std::string& GetStateProblem() const { return stateProblem; }

  // Returns true if the open project is the one whose state is stored.
  bool HasProject() const { return !projectPath.empty() && !isOtherProject; }
  const std::string& GetProjectPath() const { return projectPath; }
  // Returns the path of the project that is open now, which a script may have opened; empty if it
  // is the placeholder project.
  const std::string& GetOpenPath() const { return isOtherProject ? otherProject : projectPath; }
  bool HoldsFile(const std::string& path) const { return files.Exists(path); }
  const HostFolders& GetFolders() const { return folders; }
  ProjectManagerDriver& Manager() { return manager; }
  InspectorDriver& Inspector() { return inspector; }
  ToolManagerDriver& Tools() { return tools; }
  OptionsDriver& Options() { return options; }
  StateKeeper& State() { return state; }
  SessionTrust& Trust() { return trust; }

 private:
  void AnswerMessages();
  std::intptr_t OnToolSucceeded();
  std::intptr_t OnToolStarted(const HostEvent& event);
  std::intptr_t OnToolEnded(const HostEvent& event);
  std::intptr_t OnWorkerEnded(const HostEvent& event);
  std::intptr_t OnProjectChanged(const std::string& path);
  std::intptr_t OnRunScript(const HostEvent& event);
  bool FollowProject();
  std::size_t CountInputs(const BuildRequest& request);
  bool RunCommand(std::uint32_t command);
  // Shows the build's findings about the project itself.
  void ShowNotices();
  void WaitForWorker();
  bool ReplacesFile(std::string_view method, std::span<const Variant> arguments);
  bool RefusesSharedOutputs(const BuildRequest& request);
  void ServePostedCommands();
  void JudgeGaps(const BuildRequest& request);
  Status AttachComponents();

  MainFrame& frame;
  FileSystem& files;
  HostFolders folders;
  std::shared_ptr<MessageLoop> loop;

  // Members are released in reverse order: the manager uses the tools until it is destroyed.
  ToolManagerDriver tools;
  ProjectManagerDriver manager;
  InspectorDriver inspector;
  OptionsDriver options;
  SessionTrust trust;
  StateKeeper state;
  LogKeeper log;

  SessionScripts scripts;

  BuildLock buildLock;

  std::string projectPath;
  // A script may have opened a different project, or reopened the same one.
  bool isOtherProject = false;
  std::string otherProject;  // empty: the placeholder project
  std::vector<std::string> logLines;
  std::string stateProblem;
  bool acceptsAllDamage = false;
  std::string acceptedProject;  // whose damage the user has accepted
  bool hasRefusedDamage = false;

  std::atomic<bool> stopRequested = false;
  bool isRunning = false;
  bool workerEnded = false;
  bool workerSucceeded = false;
  std::deque<std::uint32_t> postedCommands;
  BuildObserver* watcher = nullptr;
  BuildOutcome outcome;
};

}  // namespace tarn::host
