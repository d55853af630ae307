#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "hosts/core/ProjectHistory.h"
#include "platform/files/FileSystem.h"

namespace tarn::host {

// The changes that commands made to a project, for `tarn undo` and `tarn redo`, in a file next to
// the project. A record that is damaged, of another version or can't be read counts as empty.
//
// The file starts with a line that names the version and one with a checksum of what follows, in
// decimal digits. That is a list of texts (JoinFileTexts): the number of steps that are done, then
// for each step its label with the files before and after it. Paths in the project's folder are
// relative to it, so that they hold after a move.
class EditRecord {
 public:
  // Reads the record of the project. Borrows the file system.
  EditRecord(FileSystem& fileSystem, const std::string& projectPath);

  // Why there is a record that can't be used, with `place` as its path; ErrorCode::NotFound if
  // there is none, and success if it was read.
  const Status& GetStatus() const { return status; }

  // Adds a step that was done. Those that were taken back before it can't be made again.
  void Add(ProjectStep step);
  // The step that is to be taken back or made again next; nullptr if there is none. Borrowed until
  // the next call that changes the record.
  const ProjectStep* GetUndo() const { return done == 0 ? nullptr : &steps[done - 1]; }
  const ProjectStep* GetRedo() const { return done == steps.size() ? nullptr : &steps[done]; }
  // It was.
  void MoveBack() { --done; }
  void MoveOn() { ++done; }

  // Replaces the file in one step. The oldest steps go if there are many or they are large.
  Status Write();
  // Deletes the file if it may be deleted.
  void Remove();

 private:
  bool Read(std::string_view text);
  void DropOldest();
  std::string NameOf(const std::string& path) const;

  FileSystem& files;
  std::string folder;  // of the project
  std::string recordPath;
  Status status;
  std::vector<ProjectStep> steps;
  std::size_t done = 0;  // of these; the rest was taken back
};

}  // namespace tarn::host
