#pragma once

#include <QObject>
#include <QString>
#include <QTimer>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "hosts/core/BuildProgress.h"
#include "hosts/core/BuildSession.h"
#include "hosts/core/FileChanges.h"
#include "hosts/core/HostWindow.h"
#include "hosts/desktop/ProjectWatch.h"

namespace tarn::host {

// Executes commands of the server and follows them to their end without blocking the message loop:
// the server's worker thread runs while the user continues to work. Commands that the server posts
// in return are executed after the current one. A build started elsewhere, for example by a
// script's command, is followed like one of its own from its first tool on.
//
// Observes the frame during its lifetime; borrows all arguments. Main thread only.
class CommandRunner : public QObject {
 public:
  CommandRunner(HostWindow& mainFrame, BuildSession& buildSession, FileSystem& fileSystem);
  ~CommandRunner() override;

  // Opens a project and reads its stored state. On error the text is the server's message.
  Status Open(const std::string& path);
  // Closes the project, writes these texts to its files, and reopens it. Unsaved changes are lost
  // unless they are part of the texts. If one file can't be written, all files are left unchanged.
  // Must not be called during a build.
  Status ReopenWith(const std::vector<FileText>& texts);
  // Applies changes to the open project in memory, see ApplyChanges. The server reloads the project
  // for that; the current node is preserved if it still exists. Must not be called during a build.
  Status Apply(const FileChanges& changes);
  // Opens a project with unsaved changes, see InspectorDriver::StageFileTexts. If it is already
  // open, it is closed first, which saves it.
  Status OpenWithChanges(const std::string& path, const std::string& texts,
                         const std::string& bases);
  // Saves the project. The server reopens it for that, which clears its log; the current node is
  // preserved. Must not be called during a build.
  void SaveProject();
  // Returns an empty string if only the placeholder project is open.
  std::string GetProjectPath() const {
    return session_.HasProject() ? session_.GetProjectPath() : "";
  }
  // Returns true if a command may start compilers.
  static bool Builds(std::uint32_t command);
  bool IsEnabled(std::uint32_t command);
  // Executes a command; no-op if it is disabled or the server refuses it.
  void Run(std::uint32_t command);
  // Repeats the last build requested by the user, on the same node, because something that was
  // refused to it is permitted now. No-op if a script has built since.
  void Repeat();
  // Builds, and runs the message loop until the build has ended. For a script, which waits while
  // the user continues to work. Refused if a build is running already.
  BuildOutcome RunAndWait(const BuildRequest& request);
  // Like RunAndWait(), for a build that the script has started by a command to the server. Refused
  // if none is running.
  BuildEnd AwaitBuild();
  // Stops a running build and its tools; onEnded is called as soon as they have exited. A build
  // that hasn't started yet has ended when this returns.
  void Stop();
  // Stops the tools if the server was requested to stop the build by the user's answer to one of
  // its questions.
  void FollowStop();
  // True from the request of a build until its results have been stored.
  bool IsBuilding() const { return building_ != 0 || waiting_ != 0; }
  // True while a requested build waits for the options of the whole project to be published.
  bool IsWaiting() const { return waiting_ != 0; }
  // Returns the process whose build of the project is waited for; an empty string if there is none.
  QString GetLockHolder() const { return QString::fromStdString(session_.GetLockHolder()); }
  bool IsStopping() const { return IsBuilding() && isStopAsked_; }
  // Returns true if the running or the last build is a clean.
  bool IsCleaning() const { return isCleaning_; }
  // Title of the tool that the running or the last command runs by itself; empty if it builds.
  const std::string& GetToolTitle() const { return toolTitle_; }
  // Brings the progress up to date.
  void PollProgress();
  // Progress of the running or the last build; nullptr before the first one. Re-created for each
  // build.
  const BuildProgress* GetProgress() const { return progress_ ? &*progress_ : nullptr; }

  // A build was requested; it has started; it has ended, which is also called if it never started.
  // Each may be empty.
  std::function<void()> onAsked;
  std::function<void()> onStarted;
  std::function<void(BuildEnd end)> onEnded;
  // Receives what a simulator or another action prints, as it arrives; may be empty.
  std::function<void(const std::string& text)> onOutput;
  // Returns the title of a tool's command; may be empty.
  std::function<std::string(std::uint32_t command)> queryToolTitle;
  // Returns true if a command may build or change the project now; asks the user if necessary.
  std::function<bool()> mayChange;
  // Called when the user wants to see the options of the new current node.
  std::function<void()> onShowOptions;
  // Returns true if the user is in the middle of an input, such as a node's name, that the
  // notification about loaded options would abort. The notification is deferred until then, unless
  // a build is waiting for it.
  std::function<bool()> isOccupied;
  // Called when all options of the project are published.
  std::function<void()> onOptionsLoaded;
  // Called before the project is closed, and after a different project or the placeholder project
  // was opened.
  std::function<void()> onProjectClosing;
  std::function<void()> onProjectChanged;

 private:
  void OnMessage(const HostMessageEvent& event);
  Status Close();
  void KeepSelection(const std::function<void()>& work);
  Status KeepDamaged(const std::vector<FileText>& texts);
  void TakeOptionsLoaded();
  void RestoreState();
  void ContinueRestore();
  bool MayRun(std::uint32_t command);
  bool CanActivate();
  void Ask(std::uint32_t command);
  void BeginProgress(BuildProgress::Estimator estimator);
  void Approach();
  void Start(std::uint32_t command);
  BuildOutcome WaitFor(const std::function<void()>& start);
  void TakeOver();
  void FinishBuild(BuildEnd end);
  bool JudgeGaps();
  void KeepResults();
  void NotifyEnd(BuildEnd end);
  void ServePosted();

  HostWindow& frame_;
  BuildSession& session_;
  FileSystem& files_;
  std::optional<BuildProgress> progress_;
  std::string toolTitle_;
  std::function<void(BuildEnd end)> waiter_;  // callback of a waiting script call
  // Command ids; 0 for none.
  std::uint32_t waiting_ = 0;  // until the project is published
  std::uint32_t building_ = 0;
  std::uint32_t repeatable_ = 0;
  bool isFinishing_ = false;
  bool isUnkept_ = false;  // tools' messages are not stored yet
  bool isCleaning_ = false;
  bool isStopAsked_ = false;
  bool isOpening_ = false;
  bool isApplying_ = false;
  bool isReadAgain_ = false;  // by the change being applied
  std::string currentPath_;   // file of the current node; empty if it has none
  // Build records have been restored into the project, or are being restored.
  bool isRestored_ = false;
  bool isRestoring_ = false;
  QTimer newsTimer_;  // runs while notifications are deferred
};

}  // namespace tarn::host
