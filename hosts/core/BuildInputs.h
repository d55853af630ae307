#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tarn::host {

// The outputs that an application's tools produce, as listed by the inspector.

struct ApplicationInputs {
  std::string_view application;           // path
  std::vector<std::string_view> outputs;  // in build order, the application's own last
};

// Parses the inspector's list. The returned views point into `lines`. Malformed lines are skipped.
std::vector<ApplicationInputs> ParseBuildInputs(std::string_view lines);

// Splits a comma-separated list of quoted names, the form in which tools receive their files.
std::vector<std::string> SplitQuotedPaths(std::string_view list);

}  // namespace tarn::host
