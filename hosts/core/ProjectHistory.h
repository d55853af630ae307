#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <string>
#include <vector>

#include "hosts/core/FileChanges.h"

namespace tarn::host {

// One change of the project that a user can take back.
struct ProjectStep {
  std::string label;  // for people: "Add 3 files"
  FileChanges changes;
};

// The steps in which the user has changed the open project, its tree as well as its options, and
// the way back: each step is what it made of the project's files, as a save would write them.
// On the thread of the inspector, which it borrows.
class ProjectHistory {
 public:
  // Makes a change to the open project. What else it does, such as opening the project again, is
  // not taken for a step.
  using Apply = std::function<Status(const FileChanges& changes)>;

  // While `isBusy`, as during a build, nothing is taken for a step, and there is no way back.
  ProjectHistory(InspectorDriver& inspectorDriver, Apply applyChanges,
                 std::function<bool()> isBusyNow)
      : inspector(inspectorDriver), apply(std::move(applyChanges)), isBusy(std::move(isBusyNow)) {}

  // Takes the project as it is now, after it was opened; the steps stay. Returns whether it holds
  // what it held before.
  bool Refresh();
  // There is nothing to go back to any more.
  void Clear();
  // Takes what has changed since the last call as one step. Quick if nothing has; not while busy,
  // which waits. Returns whether there was something.
  bool Note();
  // Takes a change for a step that the project was opened with, so that Refresh has seen it.
  void Add(FileChanges changes);
  // Makes a change that the user wants, as a step. Fails with Busy while busy.
  Status Change(const FileChanges& changes);
  // The project's files, as of the last step.
  const std::vector<FileText>& GetFiles() const { return present; }

  bool CanUndo() const { return !past.empty() && !isBusy(); }
  bool CanRedo() const { return !future.empty() && !isBusy(); }
  // The next step is the last one.
  const std::deque<ProjectStep>& GetUndoSteps() const { return past; }
  const std::deque<ProjectStep>& GetRedoSteps() const { return future; }
  // Both do nothing without such a step, and fail with Busy while busy. After an error the step is
  // still there.
  Status Undo() { return Go(past, future, true); }
  Status Redo() { return Go(future, past, false); }

 private:
  using Steps = std::deque<ProjectStep>;

  Status Go(Steps& from, Steps& to, bool isBack);

  InspectorDriver& inspector;
  const Apply apply;
  const std::function<bool()> isBusy;
  std::vector<FileText> present;
  Steps past;
  Steps future;
  std::int32_t seen = 0;  // change count of `present`
  bool isGoing = false;
};

}  // namespace tarn::host
