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
#include "hosts/serve/ClientRequests.h"

namespace tarn::host {

// Stops the tools and scripts of the current session permanently. Thread-safe.
class CancelToken {
 public:
  // Sets the current session, or null; borrowed.
  void SetSession(BuildSession* buildSession);
  void Stop();
  // Call this after tools were resumed: makes an earlier stop effective again.
  void Confirm();
  bool IsStopped();

 private:
  std::mutex lock_;
  BuildSession* session_ = nullptr;
  bool stopped_ = false;
};

// State of undo and redo for a client: the label of the next step, and the number of steps.
struct HistoryState {
  std::string undoLabel;
  std::string redoLabel;
  std::size_t undoSteps = 0;
  std::size_t redoSteps = 0;

  bool operator==(const HistoryState&) const = default;
};

// A server with its frame, driven by a client through single method calls. Performs a host's duties
// around the calls: restores build records before a build and stores new ones after it, stops the
// tools when a stop is requested, executes commands posted to the host, and runs scripts. Main
// thread only.
class RpcSession {
 public:
  // `onMessage` is called for every host message. All arguments are borrowed.
  RpcSession(FileSystem& files, const HostFolders& folders, ClientRequests& clientRequests,
             CancelToken& cancelToken, std::function<void(const HostMessageEvent&)> onMessage);
  RpcSession(const RpcSession&) = delete;
  RpcSession& operator=(const RpcSession&) = delete;
  ~RpcSession();

  Status Start();
  // Returns what was lost when the open project was read.
  std::vector<DamageEntry> GetDamage() { return session_.GetDamage(); }
  std::vector<std::string> GetDefinitionErrors() { return session_.GetDefinitionErrors(); }
  void AcceptDamage() { session_.Damage().Accept(); }
  // Returns the report of the last save: files that other programs had changed, or that could not
  // be written.
  SaveReport GetSaveReport() { return ParseSaveReport(session_.Inspector().GetSaveReport()); }
  void AcceptAllDamage() { session_.AcceptAllDamage(); }
  // Called after a damaged project was opened.
  std::function<void()> onDamaged;
  SessionTrust& Trust() { return session_.Trust(); }
  // See ServerConnection.
  bool IsOwnDefinition(const Error& error) const { return session_.IsOwnDefinition(error); }
  std::vector<std::string> SetLimits(const BuildLimits& limits) {
    return session_.SetLimits(limits);
  }
  // Returns the folder of the open project; an empty string if there is none.
  std::string GetProjectFolder() const;
  // Called with the operations refused to a build because the project is not trusted, if the build
  // was started by the server or continued after the call that started it.
  std::function<void(const std::vector<std::string>& wishes)> onRefused;
  // Sets a condition that ends the wait for another process that builds the project; the pending
  // build is then refused. It is evaluated as messages arrive.
  void SetWaitEnd(std::function<bool()> isWaitOver) {
    session_.endsLockWait = std::move(isWaitOver);
  }
  // Returns the methods that a client may call.
  std::vector<MethodInfo> GetMethods();
  DispatchResult Call(const MethodInfo& method, std::span<const Variant> arguments,
                      Variant& result);

  // Adds a configuration. Refused during a build.
  Status AddConfiguration(const NewConfiguration& wanted);
  // Checks the open project. Fails if there is none, or during a build.
  Result<std::vector<Finding>> CheckProject(FileSystem& files);

  // Records the changes since the last call as one undo step; to be called after each message from
  // the client, and after Attend. During a build this is deferred until its end.
  void RecordChanges();
  HistoryState GetHistoryState() const;
  // Called after each change of the history state.
  std::function<void()> onHistoryChanged;
  // Called with the report of each save or close that could not write a file, or that had a
  // conflict with another program's changes; before the result of the call is sent.
  std::function<void(const SaveReport& report)> onSaveProblem;
  // The steps; the last element is the next one to be undone or redone.
  const std::deque<ProjectStep>& GetUndoSteps() const { return history_.GetUndoSteps(); }
  const std::deque<ProjectStep>& GetRedoSteps() const { return history_.GetRedoSteps(); }
  // Undoes or redoes one step and returns it. Nothing is written to disk. Fails if there is no
  // project or no step, during a build, and if the step conflicts with later changes.
  Result<ProjectStep> Undo() { return Go(&ProjectHistory::Undo, "undo"); }
  Result<ProjectStep> Redo() { return Go(&ProjectHistory::Redo, "redo"); }

  // True if there is work that can't be done in a message handler; Attend() then does it.
  bool NeedsAttention() const { return mustStore_ || session_.HasPostedCommands(); }
  void Attend();
  // True if the options of the open project, or its build records, are not loaded completely.
  bool IsLoading() const { return loading_ != Loading::Done && hasProject_ && !isBuilding_; }
  // Continues to load for a few milliseconds. For times in which the client requests nothing;
  // otherwise its first build would have to wait for all of it.
  void ContinueLoading();
  // Ends a running build, including its tools, and stores its results.
  void StopWork();
  bool IsBuilding() const { return isBuilding_; }

 private:
  enum class Loading { Options, Records, Done };

  void SetHandlers();
  void OnMessage(const HostMessageEvent& event);
  std::intptr_t OnProjectClosing(const HostMessageEvent& event);
  void OnProjectOpened(const HostMessageEvent& event);
  void OnRunScript(const HostMessageEvent& event);
  BuildOutcome BuildForScript(const BuildRequest& request);
  void NotifyLine(const std::string& line);
  bool PrepareBuild();
  void BeginWork();
  void StoreResults();
  void NotifyGaps();
  void CarryOut(std::uint32_t command);
  void RecordCommand(std::uint32_t command);
  void UnlockUnlessBuilding();
  void PassStopOn();
  void TakeStep();
  void NotifySaveProblem();
  Result<ProjectStep> Go(Status (ProjectHistory::*way)(), const std::string& word);

  HostWindow frame_;
  BuildSession session_;
  ClientRequests& questions_;
  CancelToken& stopper_;
  const std::function<void(const HostMessageEvent&)> notifyMessage_;
  std::shared_ptr<MessageLoop> loop_;
  ProjectHistory history_;
  std::string historyProject_;  // project of the steps; empty if none
  HistoryState notifiedHistory_;

  Loading loading_ = Loading::Done;
  bool hasProject_ = false;     // open project with stored state
  bool isReadAgain_ = false;    // since the last step was recorded
  bool hasClosed_ = false;      // its save report has not been checked yet
  bool isPrepared_ = false;     // build records are restored
  std::string currentPath_;     // of the current node
  bool isBuilding_ = false;     // the worker is running
  bool isWhole_ = false;        // it builds the whole project
  bool hasBuiltWhole_ = false;  // it has built the whole project successfully
  bool mustStore_ = false;      // it has ended, and its results are not stored yet
  std::uint32_t ownWork_ = 0;   // command of the build that this host started, or 0
};

}  // namespace tarn::host
