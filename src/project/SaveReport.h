#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "project/TreeConflict.h"

namespace tarn {

class CXmlNode;

// Reason for keeping a backup of a file that was replaced.
enum class CopyReason : std::uint8_t { None, Damaged, ChangedByOthers };

// Outcome of saving one file. Recorded only for files with something to report.
struct SavedFile {
  std::string path;     // absolute
  std::string problem;  // why it could not be written; empty on success
  std::string copy;     // path of the backup or of the unsaved content; may be empty
  CopyReason copyReason = CopyReason::None;
  bool isOutside = false;   // not written because the user has not agreed to it
  bool isMerged = false;    // includes changes of another program
  bool wasRemoved = false;  // by another program, and then written again
  std::vector<TreeConflict> conflicts;

  // Returns one line per fact to report, such as "/p/demo.tapp can't be written: ...".
  std::vector<std::string> ToLines() const;
  // Appends an element `File` with these fields as attributes to `list`. Its children are one
  // `Line` (`Text`) per line and one `Conflict` (`Place`, `Text`) per conflict.
  void AddTo(CXmlNode& list) const;
};

}  // namespace tarn
