#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tarn {

// Jobserver that GNU make describes in the environment variable MAKEFLAGS: two descriptors of a
// pipe, or the path of a named pipe.
struct JobserverAddress {
  int reader = -1;
  int writer = -1;
  std::string path;  // empty for descriptors
};

// Returns the jobserver in a value of MAKEFLAGS; nullopt if there is none. The last one applies.
std::optional<JobserverAddress> FindJobserver(std::string_view makeFlags);
// Returns N of the last option -jN; 0 if there is none.
int FindMakeJobs(std::string_view makeFlags);
// Returns the value with a different jobserver and number of jobs.
std::string ReplaceJobserver(std::string_view makeFlags, const JobserverAddress& address, int jobs);

}  // namespace tarn
