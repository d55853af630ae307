#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <span>
#include <string>
#include <vector>

#include "hosts/core/BuildSession.h"
#include "hosts/core/NewConfiguration.h"
#include "hosts/core/ProjectHistory.h"
#include "hosts/core/check/Finding.h"
#include "hosts/serve/ClientQuestions.h"

namespace tarn::host {

// Stops the tools and scripts of whatever session there is, from any thread, for good.
class WorkStopper {
 public:
  // The session from now on, or null; borrowed.
  void SetSession(BuildSession* buildSession);
  void Stop();
  // After the tools were told to run again: a stop stays a stop.
  void Confirm();
  bool IsStopped();

 private:
  std::mutex lock;
  BuildSession* session = nullptr;
  bool stopped = false;
};

// What a client can take back, and make again: the label of the next step, and how many there are.
struct HistoryState {
  std::string undoLabel;
  std::string redoLabel;
  std::size_t undoSteps = 0;
  std::size_t redoSteps = 0;

  bool operator==(const HistoryState&) const = default;
};

// The server with its frame, driven by a client method by method. Does around the calls what a host
// has to: hands the kept records to the project in front of a build, keeps the new ones behind it,
// stops the tools when a stop is asked for, carries out the commands that are posted to it, and
// runs scripts.
class ServedSession {
 public:
  // `onMessage` hears of every host message. All are borrowed.
  ServedSession(FileSystem& files, const HostFolders& folders, ClientQuestions& clientQuestions,
                WorkStopper& workStopper, std::function<void(const HostEvent&)> onMessage);
  ServedSession(const ServedSession&) = delete;
  ServedSession& operator=(const ServedSession&) = delete;
  ~ServedSession();

  Status Start();
  // What was lost when the open project was read.
  std::vector<DamageEntry> GetDamage() { return session.GetDamage(); }
  std::vector<std::string> GetDefinitionErrors() { return session.GetDefinitionErrors(); }
  void AcceptDamage() { session.AcceptDamage(); }
  // What the last save did with files that others had changed, or that could not be written.
  SaveReport GetSaveReport() { return ParseSaveReport(session.Inspector().GetSaveReport()); }
  void AcceptAllDamage() { session.AcceptAllDamage(); }
  // Called with each project that was opened with damage.
  std::function<void()> onDamaged;
  SessionTrust& Trust() { return session.Trust(); }
  // The folder of the open project; empty if there is none.
  std::string GetProjectFolder() const;
  // Called with what a build that a call left running, or one that the server started, was refused
  // since the project is not trusted.
  std::function<void(const std::vector<std::string>& wishes)> onRefused;
  // Ends the wait for another process that builds the project: the build that was to follow is
  // refused. Asked as messages come.
  void SetWaitEnd(std::function<bool()> isWaitOver) {
    session.endsLockWait = std::move(isWaitOver);
  }
  // The methods that a client may call.
  std::vector<MethodInfo> GetMethods();
  DispatchResult Call(const MethodInfo& method, std::span<const Variant> arguments,
                      Variant& result);

  // Refused while a build runs.
  Status AddConfiguration(const NewConfiguration& wanted);
  // Checks the open project. Fails if there is none, and while a build runs.
  Result<std::vector<Finding>> CheckProject(FileSystem& files);

  // Takes what was changed since the last call as one step to go back to; after each message of the
  // client, and after Attend. Not while a build runs, whose end it waits for.
  void NoteChanges();
  HistoryState GetHistoryState() const;
  // Called after each change of that state.
  std::function<void()> onHistoryChanged;
  // Called with the report of each save or close that could not write a file, or met a conflict
  // with what another program wrote; before the result of the call is sent.
  std::function<void(const SaveReport& report)> onSaveProblem;
  // The steps, the last one first to be taken back or made again.
  const std::deque<ProjectStep>& GetUndoSteps() const { return history.GetUndoSteps(); }
  const std::deque<ProjectStep>& GetRedoSteps() const { return history.GetRedoSteps(); }
  // Takes the last step back, or makes it again, and returns it. Nothing is written. Fails without
  // a project or a step, during a build, and if the step can't be told from later changes.
  Result<ProjectStep> Undo() { return Go(&ProjectHistory::Undo, "undo"); }
  Result<ProjectStep> Redo() { return Go(&ProjectHistory::Redo, "redo"); }

  // There is something to do that doesn't belong into a message's handler.
  bool NeedsAttention() const { return mustKeep || session.HasPostedCommands(); }
  void Attend();
  // Ends a running build, its tools included, and keeps what was built.
  void StopWork();
  bool IsBuilding() const { return isBuilding; }

 private:
  void AnswerMessages();
  void OnMessage(const HostEvent& event);
  std::intptr_t OnProjectClosing(const HostEvent& event);
  void OnProjectOpened(const HostEvent& event);
  void OnRunScript(const HostEvent& event);
  BuildOutcome BuildForScript(const BuildRequest& request);
  void TellLine(const std::string& line);
  bool PrepareBuild();
  void BeginWork();
  void KeepResults();
  void TellGaps();
  void CarryOut(std::uint32_t command);
  void NoteCommand(std::uint32_t command);
  void UnlockUnlessBuilding();
  void PassStopOn();
  void TakeStep();
  void TellSaveProblem();
  Result<ProjectStep> Go(Status (ProjectHistory::*way)(), const std::string& word);

  MainFrame frame;
  BuildSession session;
  ClientQuestions& questions;
  WorkStopper& stopper;
  const std::function<void(const HostEvent&)> tellMessage;
  std::shared_ptr<MessageLoop> loop;
  ProjectHistory history;
  std::string historyProject;  // whose steps these are; empty for none
  HistoryState toldHistory;

  bool hasProject = false;     // one that is kept a state for
  bool isReadAgain = false;    // since the last step was taken
  bool hasClosed = false;      // one, and its save report was not looked at
  bool isPrepared = false;     // the kept records are handed over
  std::string currentPath;     // of the current node
  bool isBuilding = false;     // a worker is on its way
  bool isWhole = false;        // and it builds the whole project
  bool hasBuiltWhole = false;  // and it has succeeded
  bool mustKeep = false;       // it has ended, and what it reported isn't kept yet
  std::uint32_t ownWork = 0;   // the build that this host started by itself, or 0
};

}  // namespace tarn::host
