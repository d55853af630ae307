#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <vector>

#include "hosts/desktop/CommandRunner.h"
#include "hosts/frame/BuildSession.h"

namespace tarn::host {

// The steps in which the user has changed the open project, its tree as well as its options, and
// the way back: each step is the text of the project's files, as the server would save them, and
// going back means to open the project with these. Borrows both.
class ProjectHistory {
 public:
  ProjectHistory(BuildSession& buildSession, CommandRunner& commands)
      : session(buildSession), runner(commands) {}

  // A project has just been opened. Unless it is the one that was open, as it was, there is nothing
  // to go back to any more.
  void Begin();
  // Something has changed since it was opened.
  bool HasUnsaved();
  // Takes what has changed since the last call as one step. Quick when nothing has; not while a
  // build runs, which waits. True when there was something.
  bool Note();
  // Opens the project with these of its files in place of the present ones, as a step. Not while a
  // build runs.
  Status Change(const std::vector<FileText>& texts);
  // The project's files, as of the last step.
  const std::vector<FileText>& GetFiles() const { return present; }

  bool CanUndo() const { return !past.empty() && !runner.IsBuilding(); }
  bool CanRedo() const { return !future.empty() && !runner.IsBuilding(); }
  // Both do nothing when they can't.
  Status Undo() { return Go(past, future); }
  Status Redo() { return Go(future, past); }

 private:
  using Step = std::vector<FileText>;

  Status Go(std::deque<Step>& from, std::deque<Step>& to);
  Step Ask();

  BuildSession& session;
  CommandRunner& runner;
  Step present;
  std::deque<Step> past;    // the last one is the nearest
  std::deque<Step> future;  // likewise
  std::int32_t seen = 0;    // change count of `present`
  std::int32_t opened = 0;  // change count of the files
  bool isGoing = false;
};

// The texts of an answer of InspectorDriver::GetFileTexts; what is cut off is left out.
std::vector<FileText> ParseFileTexts(const std::string& all);

}  // namespace tarn::host
