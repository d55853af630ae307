#pragma once

#include <string>
#include <vector>

namespace tarn::host {

// What the last save did with files that others had changed or removed, that were damaged, or that
// could not be written.
struct SaveReport {
  struct Conflict {
    std::string file;
    std::string place;  // labels below the root; empty for the file itself
    std::string text;
    std::string copy;  // of the other version

    bool operator==(const Conflict&) const = default;
  };

  // A file that another program had changed or removed, or that was read only in part.
  struct File {
    std::string path;
    std::string copy;       // of what it held before; empty if none was needed
    bool isMerged = false;  // it has the other program's changes as well
    bool wasDamaged = false;
    bool wasMissing = false;

    bool operator==(const File&) const = default;
  };

  std::vector<std::string> problems;  // lines about what was not saved
  std::vector<std::string> notes;     // lines about what was
  std::vector<Conflict> conflicts;
  std::vector<File> written;  // the files that the notes are about
  // Among the problems is a file outside the project's folder, which the user has not agreed to.
  bool isOutside = false;

  bool operator==(const SaveReport&) const = default;
};

// Reads the inspector's answer.
SaveReport ParseSaveReport(const std::string& xml);

}  // namespace tarn::host
