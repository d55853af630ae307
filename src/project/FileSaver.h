#pragma once

#include <string>
#include <vector>

#include "platform/files/FileSystem.h"
#include "project/BackupGuard.h"
#include "project/NodeTypes.h"
#include "project/TreeConflict.h"

namespace tarn {

// Plan for saving one file of a project.
struct SavePlan {
  std::string absolute;
  std::string own;          // text rendered from the tree
  std::string text;         // text to be written
  bool isNeeded = true;     // false if the file already has this content
  bool wasRemoved = false;  // the file existed at its last read or write but no longer does
  std::string problem;      // why it can't be written; empty if no obstacle is known
  bool isMerged = false;    // `text` includes changes that another program made after the read
  std::vector<TreeConflict> conflicts;
};

// A change that another program made, in the project file, to the reference (`Extern`) of one of
// its parts. `from` is the old path; the part is saved to `to` from now on. An empty `to` means
// that the reference was removed there but the part stays, because it was changed here.
struct PartChange {
  std::string from;
  std::string to;
};

// Returns true if two file contents differ in formatting at most.
bool HoldSameTree(const std::string& one, const std::string& other);

// Prepares and writes the texts of project and application files. Keeps the diff against the file's
// previous version small, for version control, and merges changes that other programs made since
// the file was read.
//
// Calling sequence for a file: Settle, Prepare, KeepOther, Write. Borrows everything it is
// constructed from.
class FileSaver {
 public:
  FileSaver(FileSystem& fileSystem, BackupGuard& fileGuard, const NodeTypes& nodeTypes)
      : files_(fileSystem), guard_(fileGuard), types_(nodeTypes) {}

  // Returns the text to be stored for a file's tree, in the formatting of the file's last known
  // version. Does not access the disk.
  std::string Settle(const std::string& absolute, const CXmlNode& tree) const;
  // Compares `text`, which Settle returned, with the file on disk, and merges if both have changed.
  // `parts` are the changed references in this file; each part that stays is a conflict.
  SavePlan Prepare(const std::string& absolute, const std::string& text,
                   const std::vector<PartChange>& parts = {}) const;
  // Backs up the current file if its content would be lost or is part of a conflict, and records in
  // `report` what the save will have done. On error the file must not be written.
  Status KeepOther(const SavePlan& plan, SavedFile& report) const;
  // Replaces the file and records the outcome in `report`.
  Status Write(const SavePlan& plan, SavedFile& report) const;

 private:
  // Merges the content on disk into the plan. If that is impossible, adds a conflict.
  void Merge(SavePlan& plan, const std::string& disk, const std::string& known,
             const std::vector<PartChange>& parts) const;
  // Returns true if the file was moved on disk. `from` and `to` are paths as the file has them.
  bool WasMoved(const std::string& absolute, const std::string& from, const std::string& to) const;

  FileSystem& files_;
  BackupGuard& guard_;
  const NodeTypes& types_;
};

}  // namespace tarn
