#pragma once

#include <string>
#include <vector>

#include "platform/files/FileSystem.h"
#include "project/FileGuard.h"
#include "project/NodeTypes.h"
#include "project/TreeMerge.h"

namespace tarn {

// What a save is to do with one file of a project.
struct SavePlan {
  std::string absolute;
  std::string own;          // what the tree has for the file
  std::string text;         // for the disk
  bool isNeeded = true;     // false if the file holds it already
  bool wasRemoved = false;  // the file was there when it was read or written last, and isn't now
  std::string problem;      // why it can't be written; empty if that is not known yet
  bool isMerged = false;    // `text` also has what another program changed since the file was read
  std::vector<TreeConflict> conflicts;
};

// A part of a project, named in its file by the path `from` (`Extern`), which another program has
// changed there: to `to`, where the part is saved from now on, or it was taken out, `to` is empty
// and the part stays since it was changed here.
struct PartChange {
  std::string from;
  std::string to;
};

// Returns whether the texts of two files differ at most in how they are laid out.
bool HoldSameTree(const std::string& one, const std::string& other);

// Prepares texts of project and application files for the disk: in a form that version control
// shows little of, and together with what other programs wrote there since the file was read.
// Borrows all.
class FileSaver {
 public:
  FileSaver(FileSystem& fileSystem, FileGuard& fileGuard, const NodeTypes& nodeTypes)
      : files(fileSystem), guard(fileGuard), types(nodeTypes) {}

  // The text for the file of the tree, in the form for the disk, without a look at what that holds
  // now.
  std::string Settle(const std::string& absolute, const CXmlNode& tree) const;
  // `text` is such a text, of a file with these changed parts. Each that stays is a conflict.
  SavePlan Prepare(const std::string& absolute, const std::string& text,
                   const std::vector<PartChange>& parts = {}) const;
  // Keeps a copy of what the file holds where it would be lost or is part of a conflict, and says
  // in `report` what will have been done. Fails if the copy does; the file must not be written
  // then.
  Status KeepOther(const SavePlan& plan, SavedFile& report) const;
  // Replaces the file, and says in `report` what was done.
  Status Write(const SavePlan& plan, SavedFile& report) const;

 private:
  // Puts what the disk holds into the plan. Without a way to do so it is a conflict.
  void Merge(SavePlan& plan, const std::string& disk, const std::string& known,
             const std::vector<PartChange>& parts) const;
  // For paths in the file.
  bool WasMoved(const std::string& absolute, const std::string& from, const std::string& to) const;

  FileSystem& files;
  FileGuard& guard;
  const NodeTypes& types;
};

}  // namespace tarn
