#pragma once

#include <string>
#include <vector>

namespace tarn::host {

// A microcontroller that an application can be made for.
struct TargetEntry {
  std::string name;
  std::vector<std::string> families;  // labels, from the outermost
  std::string description;            // may have several lines
  std::string datasheet;              // a link, or empty
  std::string configuration;          // that the application is put in
};

// Those that the server's inspector lists, in their order.
std::vector<TargetEntry> ReadTargets(const std::string& xml);
// "FILE:LINE: what" if a file of targets was read only in part, from the same list.
std::string ReadTargetProblem(const std::string& xml);

}  // namespace tarn::host
