#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tarn::host {

// The outputs that the tools of an application make, as the inspector lists them.

struct ApplicationInputs {
  std::string_view application;           // path
  std::vector<std::string_view> outputs;  // in the order of the build, the application's own last
};

// The pieces borrow from `lines`. What cannot be read is left out.
std::vector<ApplicationInputs> ParseBuildInputs(std::string_view lines);

// The paths of a list of quoted names with commas between, as tools take their files.
std::vector<std::string> SplitQuotedPaths(std::string_view list);

}  // namespace tarn::host
