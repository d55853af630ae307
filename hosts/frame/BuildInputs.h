#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tarn::host {

// What the outputs of a project are made from now, as the inspector tells it in lines.
struct BuildInput {
  std::uint64_t signature = 0;  // of tool, files and options
  std::string_view output;
};

struct ApplicationInputs {
  std::string_view application;
  std::vector<BuildInput> nodes;  // in the order of the build, the application's own last
};

// The pieces borrow from `lines`. What cannot be read is left out.
std::vector<ApplicationInputs> ParseBuildInputs(std::string_view lines);

// The paths of a list of quoted names with commas between, as tools take their files.
std::vector<std::string> SplitQuotedPaths(std::string_view list);

}  // namespace tarn::host
