#pragma once

#include <string>
#include <string_view>

namespace tarn::host {

// How many tools a build runs at the same time.
inline constexpr int kMaxJobs = 1024;
inline constexpr int kMaxFailures = 1'000'000'000;

// The user's limits for builds, as arguments of a command; valid, or empty for the default.
struct BuildLimits {
  std::string jobs;
  std::string failures;  // that end a build; 0: no limit
};

// Parses a number of jobs from 1 to kMaxJobs; returns 0 for any other text.
int ParseJobs(std::string_view text);
// Parses the number of failures that end a build; returns 1, the default, for an empty text.
int ParseFailures(const std::string& text);

// Returns the number of jobs if the user's command doesn't specify it: the environment variable
// TARN_JOBS, else the user's setting "Jobs" (section "Build" of the profile), else the processors
// that this process may use. An invalid number is passed over; `problem`, if given, then receives
// a sentence about it.
int DefaultJobs(std::string* problem = nullptr);

}  // namespace tarn::host
