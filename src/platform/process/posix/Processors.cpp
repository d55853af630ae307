#include "platform/process/Processors.h"

#include <sched.h>

#include <algorithm>
#include <fstream>
#include <string>
#include <thread>

namespace tarn {

namespace {

// Returns the processors that correspond to a share of processor time per period, rounded up; 0 if
// there is no limit.
int ToProcessors(double quota, double period) {
  if (quota <= 0 || period <= 0) return 0;
  return std::max(1, static_cast<int>((quota + period - 1) / period));
}

// Limit of a control group folder, for version 2 of the interface and for version 1; 0 if none.
int LimitIn(const std::string& folder) {
  std::string quota;
  double period = 0;
  if (std::ifstream(folder + "/cpu.max") >> quota >> period && quota != "max") {
    return ToProcessors(std::atof(quota.c_str()), period);
  }
  double time = 0;
  const bool isRead = std::ifstream(folder + "/cpu.cfs_quota_us") >> time &&
                      std::ifstream(folder + "/cpu.cfs_period_us") >> period;
  return isRead ? ToProcessors(time, period) : 0;
}

// The smallest limit of the process's control groups and those that contain them; 0 if none.
int FindGroupLimit() {
  int least = 0;
  std::ifstream groups("/proc/self/cgroup");
  for (std::string line; std::getline(groups, line);) {
    const std::size_t first = line.find(':');
    const std::size_t second = line.find(':', first + 1);
    if (second == line.npos) continue;
    const std::string controllers = line.substr(first + 1, second - first - 1);
    const bool isUnified = controllers.empty();
    if (!isUnified && ("," + controllers + ",").find(",cpu,") == line.npos) continue;
    const std::string root = isUnified ? "/sys/fs/cgroup" : "/sys/fs/cgroup/" + controllers;
    for (std::string path = line.substr(second + 1);; path.resize(path.rfind('/'))) {
      const int limit = LimitIn(path == "/" ? root : root + path);
      if (limit > 0) least = least == 0 ? limit : std::min(least, limit);
      if (path.find('/') == path.npos) break;
    }
  }
  return least;
}

}  // namespace

int CountUsableProcessors() {
  int count = static_cast<int>(std::thread::hardware_concurrency());
  cpu_set_t usable;
  CPU_ZERO(&usable);
  if (sched_getaffinity(0, sizeof usable, &usable) == 0) count = CPU_COUNT(&usable);
  const int limit = FindGroupLimit();
  return std::max(1, limit > 0 ? std::min(count, limit) : count);
}

}  // namespace tarn
