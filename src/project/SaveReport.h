#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "project/TreeMerge.h"
#include "xml/XmlNode.h"

namespace tarn {

// Why a copy of what a file held was kept when it was replaced.
enum class CopyReason : std::uint8_t { None, Damaged, ChangedByOthers };

// What a save did with one file, for those about which there is anything to say.
struct SavedFile {
  std::string path;     // absolute
  std::string problem;  // why it could not be written; empty if it was
  std::string copy;     // of what it held before, or of what could not be written; may be empty
  CopyReason copyReason = CopyReason::None;
  bool isOutside = false;   // the problem is that the user has not agreed to the file being written
  bool isMerged = false;    // has changes of another program as well
  bool wasRemoved = false;  // by another program, and was written again
  std::vector<TreeConflict> conflicts;

  // One line for each thing to say: "/p/demo.tapp can't be written: ...".
  std::vector<std::string> ToLines() const;
  // An element `File` with these as attributes, and in it `Line` (`Text`) for each of the lines,
  // and `Conflict` (`Place`, `Text`).
  void AddTo(CXmlNode& list) const;
};

}  // namespace tarn
