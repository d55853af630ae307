#pragma once

#include <functional>
#include <string>
#include <vector>

namespace tarn::host {

// A node that has work to do, and why.
struct StaleNode {
  std::string label;
  std::string path;
  std::string outputFile;
  std::string tool;    // empty: nothing is run for it
  std::string reason;  // a word of the inspector
  std::string file;    // the file that the reason is about, or empty
};

struct ApplicationStatus {
  std::string label;
  std::string path;
  std::string configuration;
  bool active = false;
  std::vector<std::string> uses;  // labels of applications that are built before it, in order
  std::vector<StaleNode> stale;   // in the order of the build, the application itself last
};

// Reads the inspector's status, in the order of a build; what can't be read is left out.
std::vector<ApplicationStatus> ParseStatus(const std::string& xml);
// Why the applications of the status can't be built at all; empty if they can.
std::string ParseStatusProblem(const std::string& xml);

// The reason as the end of a sentence that starts with the node, e.g. "its header include/uart.h
// is newer than the object". `shorten` makes a path fit for a person.
std::string DescribeReason(const StaleNode& node, bool isApplication,
                           const std::function<std::string(const std::string&)>& shorten);

}  // namespace tarn::host
