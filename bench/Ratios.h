#pragma once

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <vector>

// Rows of the table that `scripts/bench` prints: measurements as ratios to something measured in
// the same run, since absolute times differ between computers.
namespace tarn::bench {

inline double Median(std::vector<double> numbers) {
  const auto middle = numbers.begin() + static_cast<std::ptrdiff_t>(numbers.size() / 2);
  std::nth_element(numbers.begin(), middle, numbers.end());
  return *middle;
}

// Returns the processor time in seconds of all threads of this process during `work`. Unlike wall
// time, it doesn't depend on the load of the system.
template <class Work>
double SecondsOf(Work&& work) {
  const auto now = [] {
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
  };
  const double start = now();
  work();
  return now() - start;
}

inline void PrintRow(const char* what, double ratio, const char* wanted, bool reached) {
  std::printf("%-56s %6.2f   wanted %-12s %s\n", what, ratio, wanted, reached ? "yes" : "NO");
  std::fflush(stdout);
}

inline void PrintAtMost(const char* what, double ratio, double limit) {
  char wanted[32];
  std::snprintf(wanted, sizeof wanted, "<= %.2f", limit);
  PrintRow(what, ratio, wanted, ratio <= limit);
}

}  // namespace tarn::bench
