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
#include "hosts/core/MainFrame.h"
#include "hosts/desktop/ProjectWatch.h"

namespace tarn::host {

// Gives the server's commands and follows them to their end without holding the loop: what the
// server works off on a thread of its own goes on while the user goes on. What it asks for in
// return is carried out behind whatever it is doing. A build that somebody else has started, as a
// script by a command, is followed like its own from the first tool on.
//
// Watches the frame while it lives; borrows both. On the frame's thread.
class CommandRunner : public QObject {
 public:
  CommandRunner(MainFrame& mainFrame, BuildSession& buildSession, FileSystem& fileSystem);
  ~CommandRunner() override;

  // Opens a project and reads its state. On failure the text is what the server said.
  Status Open(const std::string& path);
  // Closes the project, puts these texts into its files, and opens it again. What was not saved is
  // gone, unless it stands in the texts. When one can't be written, all files are as they were. Not
  // while a build runs.
  Status ReopenWith(const std::vector<FileText>& texts);
  // Makes changes to the open project in memory, see ApplyChanges. The server reads the project
  // again for it; the current node stays if it is still there. Not while a build runs.
  Status Apply(const FileChanges& changes);
  // Opens a project with changes that were never saved, see InspectorDriver::StageFileTexts; one
  // that is open already is closed first, which saves it.
  Status OpenWithChanges(const std::string& path, const std::string& texts,
                         const std::string& bases);
  // Writes the project's files, for which the server opens it anew: its log is empty then. The
  // current node stays. Not while a build runs.
  void SaveProject();
  // Empty when none is open but the one that stands in for none.
  std::string GetProjectPath() const {
    return session.HasProject() ? session.GetProjectPath() : "";
  }
  // Whether a command may start compilers.
  static bool Builds(std::uint32_t command);
  bool IsEnabled(std::uint32_t command);
  // Nothing when it is not enabled, or the server refuses it.
  void Run(std::uint32_t command);
  // The last build again that the user has asked for, on the node that it was meant for: it was
  // refused something that is allowed now. Nothing if a script has built since.
  void Repeat();
  // Builds, and runs the loop until that has ended: for a script, which waits while the user goes
  // on. Refused when something is building already.
  BuildOutcome RunAndWait(const BuildRequest& request);
  // Likewise for a build that the script has started by a command to the server. Refused when none
  // runs.
  BuildEnd AwaitBuild();
  // Ends a running build with its tools; onEnded comes as soon as they are gone. One that hasn't
  // started yet has ended when this returns.
  void Stop();
  // The server may have been told to stop the build, by the answer to a question of its own: then
  // its tools end, too.
  void FollowStop();
  // From the moment that one was asked for until its results are kept.
  bool IsBuilding() const { return building != 0 || waiting != 0; }
  // It begins as soon as the options of the whole project are known.
  bool IsWaiting() const { return waiting != 0; }
  // The process whose build of the project it waits for; empty if there is none.
  QString GetLockHolder() const { return QString::fromStdString(session.GetLockHolder()); }
  bool IsStopping() const { return IsBuilding() && isStopAsked; }
  // Whether the build that runs, or the last one, only takes away what was built.
  bool IsCleaning() const { return isCleaning; }
  // Of the build that runs, or the last one; null ahead of the first. The next one makes it anew.
  const BuildProgress* GetProgress() const { return progress ? &*progress : nullptr; }

  // A build is asked for, has begun, has ended, which it does also when it never began. Any of them
  // may be empty.
  std::function<void()> onAsked;
  std::function<void()> onStarted;
  std::function<void(BuildEnd end)> onEnded;
  // Returns whether a command may build or change the project now; asks the user if need be.
  std::function<bool()> mayChange;
  // The user wants to see the options of what has been made the current node.
  std::function<void()> onShowOptions;
  // Whether the user is in the middle of something that the news of the options' being known would
  // end, as the name of a node. They wait for that, unless a build waits for them.
  std::function<bool()> isOccupied;
  // All options of the project are known.
  std::function<void()> onOptionsLoaded;
  // The project is about to go; another one is open, or none but the one that stands in for it.
  std::function<void()> onProjectClosing;
  std::function<void()> onProjectChanged;

 private:
  void OnMessage(const HostEvent& event);
  Status Close();
  void KeepSelection(const std::function<void()>& work);
  Status KeepDamaged(const std::vector<FileText>& texts);
  void TakeOptionsLoaded();
  void RestoreState();
  void ContinueRestore();
  bool MayRun(std::uint32_t command);
  void Ask(std::uint32_t command);
  void Approach();
  void Start(std::uint32_t command);
  BuildOutcome WaitFor(const std::function<void()>& start);
  void TakeOver();
  void FinishBuild(BuildEnd end);
  bool JudgeGaps();
  void KeepResults();
  void TellEnd(BuildEnd end);
  void ServePosted();

  MainFrame& frame;
  BuildSession& session;
  FileSystem& files;
  std::optional<BuildProgress> progress;
  std::function<void(BuildEnd end)> waiter;  // a script's call
  // Commands; 0 for none.
  std::uint32_t waiting = 0;  // for the project to be made known
  std::uint32_t building = 0;
  std::uint32_t repeatable = 0;
  bool isFinishing = false;
  bool isUnkept = false;  // what the tools of the build reported
  bool isCleaning = false;
  bool isStopAsked = false;
  bool isOpening = false;
  bool isApplying = false;
  bool isReadAgain = false;  // by what is being applied
  std::string currentPath;   // file of the current node; empty if it has none
  // The project knows what the session keeps of it, or is being told.
  bool isRestored = false;
  bool isRestoring = false;
  QTimer newsTimer;  // runs while such news wait
};

}  // namespace tarn::host
