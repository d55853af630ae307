#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <string>
#include <vector>

#include "hosts/core/FileChanges.h"

namespace tarn::host {

// One undoable change of the project.
struct ProjectStep {
  std::string label;  // display text: "Add 3 files"
  FileChanges changes;
};

// Undo history of the open project, for its tree as well as its options. Each step is the
// difference that it made in the project's files, as a save would write them. Main thread only;
// borrows the inspector.
class ProjectHistory {
 public:
  // Applies a change to the open project. Side effects, such as reopening the project, are not
  // recorded as a step.
  using Apply = std::function<Status(const FileChanges& changes)>;

  // While `isBusy` returns true, as during a build, nothing is recorded and undo is unavailable.
  ProjectHistory(InspectorDriver& inspectorDriver, Apply applyChanges,
                 std::function<bool()> isBusyNow)
      : inspector_(inspectorDriver),
        apply_(std::move(applyChanges)),
        isBusy_(std::move(isBusyNow)) {}

  // Takes the current state of the project as the base, after it was opened; existing steps are
  // preserved. Returns true if the project's content is unchanged.
  bool Refresh();
  // Drops all steps.
  void Clear();
  // Records everything that has changed since the last call as one step. Cheap if nothing has
  // changed; deferred while busy. Returns true if a step was recorded.
  bool Note();
  // Records a change as a step that the project was opened with, so that Refresh has already seen
  // it.
  void Add(FileChanges changes);
  // Applies a change on behalf of the user and records it as a step. Fails with Busy while busy.
  Status Change(const FileChanges& changes);
  // The project's files as of the last step.
  const std::vector<FileText>& GetFiles() const { return present_; }

  bool CanUndo() const { return !past_.empty() && !isBusy_(); }
  bool CanRedo() const { return !future_.empty() && !isBusy_(); }
  // The last element is the next step to be undone or redone.
  const std::deque<ProjectStep>& GetUndoSteps() const { return past_; }
  const std::deque<ProjectStep>& GetRedoSteps() const { return future_; }
  // Undo or redo one step. No-op if there is none; fail with Busy while busy. After an error the
  // step is still available.
  Status Undo() { return Go(past_, future_, true); }
  Status Redo() { return Go(future_, past_, false); }

 private:
  using Steps = std::deque<ProjectStep>;

  Status Go(Steps& from, Steps& to, bool isBack);

  InspectorDriver& inspector_;
  const Apply apply_;
  const std::function<bool()> isBusy_;
  std::vector<FileText> present_;
  Steps past_;
  Steps future_;
  std::int32_t seen_ = 0;  // change count of `present`
  bool isGoing_ = false;
};

}  // namespace tarn::host
