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
  Stopped,  // somebody asked for it
  Refused,  // it never started
};

// "succeeded", "failed", "interrupted", "refused"
const char* WordOf(BuildEnd end);

struct BuildOutcome {
  BuildEnd end = BuildEnd::Refused;
  int toolsRun = 0;  // that ended well
  int toolsFailed = 0;
  // Of a build that came to its end. A fatal gap makes it one that failed.
  BuildGaps gaps = {};
  std::string problem = {};  // why nothing could be built, if no tool reported it
};

struct ApplicationSummary {
  std::string label;
  std::string infos;
};

// What a tool is started on.
struct ToolStart {
  std::string tool;
  std::vector<std::string> files;
  std::string output;
  std::string command;
  std::string subject =
      {};  // the file that the run is known by; empty: its only file, or its output
};

// Who watches a build. Called on the host's thread, between two steps of the build.
class BuildObserver {
 public:
  virtual ~BuildObserver() = default;
  virtual void OnToolStarted(const ToolStart& start) = 0;
  virtual void OnToolEnded(bool success, const std::vector<LogEntry>& messages) = 0;
};

// The life of one project in a host: the server with its components, the project, its builds and
// the state that is kept beside it. One per frame; on the frame's thread, except RequestStop.
class BuildSession {
 public:
  BuildSession(MainFrame& mainFrame, FileSystem& fileSystem, HostFolders hostFolders);
  BuildSession(const BuildSession&) = delete;
  BuildSession& operator=(const BuildSession&) = delete;
  ~BuildSession();

  // Makes the server and its components. On failure the text says what is wrong with the
  // installation.
  Status Start();
  // Opens a project and reads its state. On failure the text is what the server said.
  Status Open(const std::string& projectPath);
  // Makes all options known and hands the kept records to the project: needed once in front of a
  // build or a question for the status, after the configuration has been chosen.
  void Prepare();
  // Its first half for about so long; false when another call is needed. State().BeginRestore()
  // starts the second.
  bool PublishFor(std::chrono::milliseconds time) {
    return inspector.PublishFor(static_cast<std::int32_t>(time.count())) != 0;
  }

  // Takes the build lock (see BuildLock); false while another process holds it, which GetLockHolder
  // then names. EndWork and KeepState release it.
  bool TryLockBuild() { return buildLock.Try(projectPath, trust.IsTrusted(FolderOf(projectPath))); }
  const std::string& GetLockHolder() const { return buildLock.GetHolder(); }
  // Waits for it; false if a stop was requested in the meantime, or if `endsLockWait` says so.
  bool LockBuild();
  void UnlockBuild() { buildLock.Release(); }
  // Called once for each wait, with the holder, if set.
  std::function<void(const std::string& holder)> onLockWait;
  // Asked while a wait lasts, whenever the message loop wakes, if set.
  std::function<bool()> endsLockWait;

  // Builds, and keeps what the tools reported also when the build fails or is stopped. `observer`
  // may be null.
  BuildOutcome Run(const BuildRequest& request, BuildObserver* observer);
  // Waits for a build that was started by a command alone, and keeps what its tools reported; at
  // once, with Refused, when none runs.
  BuildEnd AwaitBuild();
  // What a build of the application with this label or path leaves out, of the whole project for an
  // empty key. All options are known.
  BuildGaps FindGaps(const std::string& application);
  // Adds them to the log. False if one is fatal.
  bool ReportGaps(const BuildGaps& gaps);
  // How many tools a build would run from now on; asks the server to look at every file.
  int CountWork(const BuildRequest& request);
  // Ends a running build, its tools included, as soon as they are gone, and a running script. From
  // any thread; not from a signal handler.
  void RequestStop();

  // --- For a host that leaves the calls to somebody else, who drives Manager() as he likes ---

  // The server has opened this project: reads its state. Of the server it only calls
  // GetDamage and ProtectDamaged.
  void Adopt(const std::string& openedPath);
  // The project was closed, or another one is open that nothing is kept for: none is built by Run.
  void LeaveProject() { OnProjectChanged({}); }
  // Makes what is to be built current, and returns the command for it; 0 if there is no such
  // application.
  std::uint32_t SelectCommand(const BuildRequest& request);
  // How many tools have ended since BeginWork.
  const BuildOutcome& GetOutcome() const { return outcome; }
  // In front of a call that may start tools, or of the first tool of a build that runs. `observer`
  // may be null; it is told until EndWork.
  void BeginWork(BuildObserver* observer = nullptr);
  // After the end of the worker, or of a call that ran tools itself.
  void EndWork();
  // Its parts in order, for a host whose windows must not wait for all of them at once.
  void KeepLog();
  void KeepState();
  // The commands that the server has asked for since the last call.
  std::vector<std::uint32_t> TakePostedCommands();
  bool HasPostedCommands() const { return !postedCommands.empty(); }

  // Calls `onTick` again and again while a build runs, until ClearTicker of the same number.
  void SetTicker(std::int32_t id, std::chrono::milliseconds period, std::function<void()> onTick);
  void ClearTicker(std::int32_t id);

  // Runs a script, waits for builds that it leaves behind, and completes the log of the last build.
  // What it does to the project is saved only by itself.
  ScriptOutcome RunScript(const std::string& text, const std::string& name);
  SessionScripts& Scripts() { return scripts; }
  // Called in front of a script that the server sends, if set.
  std::function<void()> beforeScript;

  // What is out of date, the host's own reasons included.
  // `problem`, if given, receives why the applications can't be built at all.
  std::vector<ApplicationStatus> GetStatus(std::string* problem = nullptr);
  // Why the tool that makes this output can't be run, such as an option that it needs and that
  // isn't set; empty if it can.
  std::string FindCommandProblem(const std::string& application, const std::string& output);
  // The applications, each with what its tool said of its output; empty where nothing is known.
  std::vector<ApplicationSummary> GetSummaries();
  // The program that a tool needs and that this machine hasn't got; empty when it has all.
  std::string FindMissingProgram(const std::vector<ApplicationStatus>& status);

  // --- Projects of which something was lost when they were read ---

  std::vector<DamageEntry> GetDamage() { return ParseDamage(inspector.GetDamage()); }
  // The same of the project that could not be opened.
  std::vector<DamageEntry> GetFailedDamage() { return ParseDamage(inspector.GetFailedDamage()); }
  // The open project has damage, and the user has not agreed to go on with what was read: Run
  // refuses, and the server saves nothing.
  bool IsDamageHeld();
  // The user agrees, for the open project or for all that are opened from now on.
  void AcceptDamage();
  void AcceptAllDamage();
  // Returns whether a change must be refused because of damage, and records that it was.
  bool RefusesChange();
  // Returns why the call of a server's method can't be made now; empty if it can.
  std::string CheckCall(std::string_view method, std::span<const Variant> arguments);
  // A build or a call was refused because of damage since the session began.
  bool HasRefusedDamage() const { return hasRefusedDamage; }

  // Lines that went to the log since the last call, outside of builds.
  std::vector<std::string> TakeLogLines();
  // What there is to say of the last save. The lines of the log from then on are taken as well.
  SaveReport TakeSaveReport();
  // Errors in the files that define options and tools, one a line; empty when there are none.
  std::vector<std::string> GetDefinitionErrors();
  // Why the state couldn't be written after the last build; empty when it was.
  const std::string& GetStateProblem() const { return stateProblem; }

  // Whether the project whose state is kept is the one that is open.
  bool HasProject() const { return !projectPath.empty() && !isOtherProject; }
  const std::string& GetProjectPath() const { return projectPath; }
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
  // What the build found about the project itself.
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

  // Released from the last to the first: the manager uses the tools to its end.
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
  // A script may have opened another project, or the same one anew.
  bool isOtherProject = false;
  std::string otherProject;  // empty: the one that stands in for none
  std::vector<std::string> logLines;
  std::string stateProblem;
  bool acceptsAllDamage = false;
  std::string acceptedProject;  // whose damage the user has agreed to
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
