#pragma once

#include <functional>
#include <string>
#include <vector>

namespace tarn::host {

// An outdated node and the reason.
struct StaleNode {
  std::string label;
  std::string path;
  std::string outputFile;
  std::string tool;    // empty: no tool is run for it
  std::string reason;  // keyword from the inspector
  std::string file;    // file that the reason refers to, or empty
  std::string detail;  // the OS's reason if that file can't be examined, otherwise empty
};

struct ApplicationStatus {
  std::string label;
  std::string path;
  std::string configuration;
  bool active = false;
  std::vector<std::string> uses;  // labels of applications that must be built before it, in order
  std::vector<StaleNode> stale;   // in build order, the application itself last
};

// Parses the inspector's status, in build order; malformed entries are skipped.
std::vector<ApplicationStatus> ParseStatus(const std::string& xml);
// Returns why the applications can't be built at all; an empty string if they can.
std::string ParseStatusProblem(const std::string& xml);

// Returns the reason as the predicate of a sentence that starts with the node, e.g. "its header
// include/uart.h is newer than the object". `shorten` abbreviates a path for display.
std::string DescribeReason(const StaleNode& node, bool isApplication,
                           const std::function<std::string(const std::string&)>& shorten);

}  // namespace tarn::host
