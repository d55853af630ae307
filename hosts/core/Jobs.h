#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tarn::host {

// How many tools a build runs at the same time.
inline constexpr int kMaxJobs = 1024;
inline constexpr int kMaxFailures = 1'000'000'000;

// The user's limits for builds, as arguments of a command; valid, or empty for the default.
struct BuildLimits {
  std::string jobs;
  std::string failures;  // that end a build; 0: no limit
  std::string load;      // load average from which on no tool is started while others run
  std::string memory;    // available memory below which none is started
  // Without a number of jobs, use the jobserver of the program that has started this one.
  bool joinsJobserver = false;
};

// The values that are valid for a load and for an amount of memory.
inline constexpr const char* kLoadText = "a number of at least 0";
inline constexpr const char* kMemoryText = "a whole number followed by M, G, T or %";

// Parses a load average, in hundredths; returns -1 for any other text.
int ParseLoad(std::string_view text);

// An amount of memory, absolute or as a part of the total; -1 for the other one.
struct MemoryAmount {
  int megabytes = -1;
  int percent = -1;
};
// Parses an amount of memory: a whole number with one of the units M, G, T and %. Both members of
// the result are negative for any other text.
MemoryAmount ParseMemory(std::string_view text);
bool IsMemory(std::string_view text);

// Parses a number of jobs from 1 to kMaxJobs; returns 0 for any other text.
int ParseJobs(std::string_view text);
// Parses the number of failures that end a build; returns 1, the default, for an empty text.
int ParseFailures(const std::string& text);

// Returns the number of jobs that the user has set: by the environment variable TARN_JOBS, else by
// the setting "Jobs" (section "Build" of the profile); 0 if there is none. An invalid number is
// passed over; `problem`, if given, then receives a sentence about it.
int ReadJobsSetting(std::string* problem = nullptr);
// Returns the number of compilers that the launcher runs on several machines, else that of the
// processors that this process may use. `launcher` is the option Build.Launcher; if empty, the
// environment variable TARN_LAUNCHER decides.
int CountMachineJobs(const std::string& launcher = {});
// Returns the number that the user has set or, if there is none, that of the machine.
int DefaultJobs(const std::string& launcher = {});
// Completes the limits by the user's settings "Load" and "MemFree" in the same section. Appends a
// sentence about each invalid one, which is passed over.
void AddLimitSettings(BuildLimits& limits, std::vector<std::string>& problems);

}  // namespace tarn::host
