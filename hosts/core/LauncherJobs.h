#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace tarn {
class FileSystem;
}

namespace tarn::host {

// Number of jobs of compiler launchers that run compilers on several machines.

using EnvironmentReader = std::function<std::string(const char* name)>;

// Returns the number of compilers that a launcher can run at the same time, for a launcher and an
// environment like those of the build; nullopt if it runs them on this machine only. `launcher` is
// a value of TARN_LAUNCHER or Build.Launcher. Starts no process.
std::optional<int> CountLauncherJobs(std::string_view launcher,
                                     const EnvironmentReader& environment, FileSystem& files,
                                     int processors);

// Returns the sum of the limits of a list of hosts in the format of DISTCC_HOSTS; 0 if it has none.
int CountHostSlots(std::string_view hosts);

}  // namespace tarn::host
