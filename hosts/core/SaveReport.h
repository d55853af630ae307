#pragma once

#include <string>
#include <vector>

namespace tarn::host {

// The result of the last save for files that other programs had changed or removed, that were
// damaged, or that could not be written.
struct SaveReport {
  struct Conflict {
    std::string file;
    std::string place;  // labels below the root; empty for the file itself
    std::string text;
    std::string copy;  // path of a copy of the other version

    bool operator==(const Conflict&) const = default;
  };

  // A file that another program had changed or removed, or that was read only partially.
  struct File {
    std::string path;
    std::string copy;       // copy of its previous content; empty if none was needed
    bool isMerged = false;  // also contains the other program's changes
    bool wasDamaged = false;
    bool wasMissing = false;

    bool operator==(const File&) const = default;
  };

  std::vector<std::string> problems;  // messages about content that was not saved
  std::vector<std::string> notes;     // messages about content that was saved
  std::vector<Conflict> conflicts;
  std::vector<File> written;  // the files that the notes are about
  // True if one of the problems is a file outside the project's folder, without the user's consent.
  bool isOutside = false;

  bool operator==(const SaveReport&) const = default;
};

// Parses the inspector's save report.
SaveReport ParseSaveReport(const std::string& xml);

}  // namespace tarn::host
