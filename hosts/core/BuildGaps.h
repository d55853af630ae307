#pragma once

#include <functional>
#include <string>
#include <vector>

namespace tarn::host {

// A node that a build skips although it looks like a part of the project.
struct BuildGap {
  std::string application;  // label; empty for a node outside of every application
  std::string label;
  std::string path;
  std::string type;  // element name; for an unknown tool or library its name
  // "no-tool", "no-file", "no-type", "no-application", "unknown-tool" or "unknown-library"
  std::string reason;
  bool isFatal = false;  // its application can't be built
};

struct BuildGaps {
  int applications = 0;  // number of applications that take part in a build
  std::vector<BuildGap> gaps;
  // A dependency cycle of applications that use each other's outputs, as "a -> b -> a". Empty if
  // there is none.
  std::string cycle = {};

  bool HasFatal() const;
};

// Parses the inspector's list of gaps. If `application` (label or path) isn't empty, returns only
// the gaps of that application.
BuildGaps ParseBuildGaps(const std::string& xml, const std::string& application);

// Returns the gap as a sentence. `shorten` abbreviates a path for display.
std::string DescribeGap(const BuildGap& gap,
                        const std::function<std::string(const std::string&)>& shorten);

}  // namespace tarn::host
