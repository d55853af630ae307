#pragma once

#include <string>
#include <string_view>

namespace tarn::host {

// How many tools a build runs at the same time.
inline constexpr int kMaxJobs = 1024;

// Parses a number of jobs from 1 to kMaxJobs; returns 0 for any other text.
int ParseJobs(std::string_view text);

// Returns the number of jobs if the user's command doesn't specify it: the environment variable
// TARN_JOBS, else the user's setting "Jobs" (section "Build" of the profile), else the compilers
// that the launcher runs on several machines, else the processors that this process may use. An
// invalid number is passed over; `problem`, if given, then receives a sentence about it. `launcher`
// is the option Build.Launcher; if empty, the environment variable TARN_LAUNCHER decides.
int DefaultJobs(std::string* problem = nullptr, const std::string& launcher = {});

}  // namespace tarn::host
