#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "hosts/core/BuildTimes.h"
#include "hosts/core/ProjectStatus.h"

namespace tarn::host {

// How long a build of everything takes, according to the durations of the last runs.
struct BuildTiming {
  // The longest chain of tools of which each needs the output of the one before: the critical path.
  std::vector<OutputTime> chain;
  std::chrono::milliseconds length{0};  // of the chain
  std::chrono::milliseconds work{0};    // all tools together
  std::vector<OutputTime> tools;        // those with a known duration, the slowest first
  std::size_t unknown = 0;              // tools without one, which count as 0

  // A lower bound of the duration with this number of jobs.
  std::chrono::milliseconds GetIdeal(int jobs) const;
};

// Computes the timing of the applications for which `isWanted` returns true, and of those that they
// use. An application needs the outputs of its sources and of the applications that it uses.
BuildTiming ComputeTiming(const std::vector<ApplicationTimes>& times,
                          const std::vector<ApplicationStatus>& status,
                          const std::function<bool(const ApplicationStatus&)>& isWanted);

}  // namespace tarn::host
