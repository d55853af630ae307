#pragma once

#include <string>
#include <vector>

namespace tarn::host {

// A microcontroller supported by the installed target descriptions.
struct TargetEntry {
  std::string name;
  std::vector<std::string> families;  // labels, outermost first
  std::string description;            // may have several lines
  std::string datasheet;              // a URL, or empty
  std::string configuration;          // configuration that applications for it get
};

// Parses the inspector's list, in its order.
std::vector<TargetEntry> ReadTargets(const std::string& xml);
// Returns "FILE:LINE: what" from the same list if a target file was read only partially; else an
// empty string.
std::string ReadTargetProblem(const std::string& xml);

}  // namespace tarn::host
