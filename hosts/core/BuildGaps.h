#pragma once

#include <functional>
#include <string>
#include <vector>

namespace tarn::host {

// What a build leaves out although it looks like a part of the project.
struct BuildGap {
  std::string application;  // label; empty for a node outside of every application
  std::string label;
  std::string path;
  std::string type;      // element name; of an unknown tool the name of the tool
  std::string reason;    // "no-tool", "no-file", "no-type", "no-application" or "unknown-tool"
  bool isFatal = false;  // its application can't be built
};

struct BuildGaps {
  int applications = 0;  // that take part in a build
  std::vector<BuildGap> gaps;
  // Applications that use each other's outputs: "a -> b -> a". Empty if there are none.
  std::string cycle = {};

  bool HasFatal() const;
};

// Reads the inspector's gaps, of the application with this label or path alone if it isn't empty.
BuildGaps ParseBuildGaps(const std::string& xml, const std::string& application);

// The gap as a sentence. `shorten` makes a path fit for a person.
std::string DescribeGap(const BuildGap& gap,
                        const std::function<std::string(const std::string&)>& shorten);

}  // namespace tarn::host
