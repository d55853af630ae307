#include "platform/process/MachineLoad.h"

#include <stdlib.h>

#include <fstream>
#include <string>

namespace tarn {

namespace {

// Returns the number after the name at the start of a line of a file; -1 if there is none.
std::int64_t FindNumber(const std::string& path, const std::string& name) {
  std::ifstream file(path);
  for (std::string line; std::getline(file, line);) {
    if (line.compare(0, name.size(), name) == 0) return std::atoll(line.c_str() + name.size());
  }
  return -1;
}

// Returns what a control group leaves of its limit; unknown if it has none.
MachineMemory FindGroupMemory(const std::string& folder) {
  std::int64_t limit = -1;
  std::int64_t used = -1;
  std::ifstream(folder + "/memory.max") >> limit;  // or "max"
  std::ifstream(folder + "/memory.current") >> used;
  if (limit <= 0 || used < 0) return {};
  // Cached files count as used until the memory is needed.
  const std::int64_t cached = FindNumber(folder + "/memory.stat", "inactive_file ");
  return {limit - used + (cached > 0 ? cached : 0), limit};
}

}  // namespace

double GetLoadAverage() {
  double load = -1;
  return getloadavg(&load, 1) == 1 ? load : -1;
}

MachineMemory GetMachineMemory() {
  constexpr std::int64_t kUnit = 1024;
  const std::int64_t available = FindNumber("/proc/meminfo", "MemAvailable:");
  MachineMemory least;
  if (available >= 0) {
    least = {available * kUnit, FindNumber("/proc/meminfo", "MemTotal:") * kUnit};
  }
  std::ifstream groups("/proc/self/cgroup");
  for (std::string line; std::getline(groups, line);) {
    if (line.compare(0, 3, "0::") != 0) continue;
    for (std::string path = line.substr(3);; path.resize(path.rfind('/'))) {
      const MachineMemory group =
          FindGroupMemory("/sys/fs/cgroup" + (path == "/" ? std::string() : path));
      const bool isLess = least.available < 0 || group.available < least.available;
      if (group.available >= 0 && isLess) least = group;
      if (path.find('/') == std::string::npos) break;
    }
  }
  return least;
}

}  // namespace tarn
