#pragma once

#include <string>
#include <vector>

namespace tarn::host {

// What the last save did with files that others had changed, that were damaged, or that could not
// be written.
struct SaveReport {
  struct Conflict {
    std::string file;
    std::string place;  // labels below the root; empty for the file itself
    std::string text;
    std::string copy;  // of the other version
  };

  std::vector<std::string> problems;  // lines about what was not saved
  std::vector<std::string> notes;     // lines about what was
  std::vector<Conflict> conflicts;
};

// Reads the inspector's answer.
SaveReport ParseSaveReport(const std::string& xml);

}  // namespace tarn::host
