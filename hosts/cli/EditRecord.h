#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "hosts/core/ProjectHistory.h"
#include "platform/files/FileSystem.h"

namespace tarn::host {

// Persistent undo history for `tarn undo` and `tarn redo`: the changes that commands made to a
// project, in a file next to the project. A record that is damaged, unreadable or of a different
// version is treated as empty.
//
// The first line of the file is the version, the second one a checksum of the rest, in decimal
// digits. The rest is a list of strings (JoinFileTexts): the number of applied steps, then for each
// step its label and the files before and after it. Paths in the project's folder are relative to
// it, so that they remain valid after the project was moved.
class EditRecord {
 public:
  // Reads the record of the project. Borrows the file system.
  EditRecord(FileSystem& fileSystem, const std::string& projectPath);

  // Success if the record was read; ErrorCode::NotFound if there is none; else why it can't be
  // used, with its path as `place`.
  const Status& GetStatus() const { return status_; }

  // Appends an applied step. Drops the undone steps, which can't be redone after that.
  void Add(ProjectStep step);
  // Return the next step to undo or redo; nullptr if there is none. The pointer is valid until the
  // next call that changes the record.
  const ProjectStep* GetUndo() const { return done_ == 0 ? nullptr : &steps_[done_ - 1]; }
  const ProjectStep* GetRedo() const { return done_ == steps_.size() ? nullptr : &steps_[done_]; }
  // Record that the step of GetUndo() was undone, or that of GetRedo() redone.
  void MoveBack() { --done_; }
  void MoveOn() { ++done_; }

  // Replaces the file atomically. Drops the oldest steps if there are too many or they are too
  // large.
  Status Write();
  // Deletes the file if permissions allow it.
  void Remove();

 private:
  bool Read(std::string_view text);
  void DropOldest();
  std::string NameOf(const std::string& path) const;

  FileSystem& files_;
  std::string folder_;  // of the project
  std::string recordPath_;
  Status status_;
  std::vector<ProjectStep> steps_;
  std::size_t done_ = 0;  // number of applied steps; the rest is undone
};

}  // namespace tarn::host
