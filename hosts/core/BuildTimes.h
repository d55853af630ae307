#pragma once

#include <chrono>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace tarn::host {

// The duration of a tool's last run.
struct OutputTime {
  std::string output;
  std::string path;                   // of the source, or of the application
  std::chrono::milliseconds time{0};  // 0: unknown
};

struct ApplicationTimes {
  std::string application;        // path
  std::vector<OutputTime> tools;  // in build order, the application's own last
};

// Parses the inspector's list. Malformed lines are skipped.
std::vector<ApplicationTimes> ParseBuildTimes(std::string_view lines);

// The tools that a build is going to run.
struct WorkEstimate {
  // Number of tools.
  WorkEstimate(int tools = 0) : count(tools) {}

  struct Duration {
    std::chrono::milliseconds time{0};
    bool isLast = false;  // the tool uses the outputs of the others
  };

  int count;
  int jobs = 1;  // tools that run at the same time
  // Durations of the last runs by output; empty unless that of every tool is known.
  std::unordered_map<std::string, Duration> durations;
};

}  // namespace tarn::host
