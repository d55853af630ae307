#pragma once

#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstdint>

namespace tarn::host {

// Resource limits of a script, including the scripts that it runs.
struct ScriptLimits {
  // One instruction costs one step, and so do 64 bytes of new memory and one comparison of a
  // pattern.
  std::int64_t steps = 500'000'000;
  std::size_t memory = 64u << 20;
  // Running time of the script itself, without the time spent in the server. A safety net in
  // addition to the steps, for the few instructions that take long.
  std::chrono::milliseconds time{60'000};
  int depth = 8;  // nesting of scripts that run each other
};

// Reason for aborting a script; unlike an error, it can't be caught.
enum class ScriptAbort { None, Steps, Time, Stopped };

// Remaining resources of the running scripts. Scripts' thread only, except RequestStop.
class ScriptBudget {
 public:
  void Begin(const ScriptLimits& limits) {
    abort = ScriptAbort::None;
    stepsLeft = limits.steps;
    memoryLeft = limits.memory;
    timeLeft = limits.time;
    sinceLook = 0;
  }

  // Charges `steps`. Returns false if the script must be aborted, and from then on always.
  bool Spend(std::int64_t steps) {
    stepsLeft = steps > stepsLeft ? -1 : stepsLeft - steps;
    sinceLook += steps > kLookPeriod ? kLookPeriod : steps;
    return stepsLeft >= 0 && sinceLook < kLookPeriod && abort == ScriptAbort::None ? true : Look();
  }
  // Checks the clock and stop requests immediately; returns false if the script must be aborted.
  bool Look();

  // Reserves memory. Returns false if there isn't that much left.
  bool TakeMemory(std::size_t bytes) {
    if (bytes > memoryLeft) return false;
    memoryLeft -= bytes;
    return true;
  }
  void GiveMemory(std::size_t bytes) { memoryLeft += bytes; }

  // The clock runs between these two calls.
  void StartClock() { since = std::chrono::steady_clock::now(); }
  void HoldClock();

  ScriptAbort GetAbort() const { return abort; }

  // May be called from any thread; effective until the outermost script has ended.
  void RequestStop() { stopWanted = true; }
  void ForgetStop() { stopWanted = false; }

 private:
  static constexpr std::int64_t kLookPeriod = 10'000;

  ScriptAbort abort = ScriptAbort::None;
  std::int64_t stepsLeft = 0;
  std::int64_t sinceLook = 0;
  std::size_t memoryLeft = 0;
  std::chrono::nanoseconds timeLeft{0};
  std::chrono::steady_clock::time_point since;
  std::atomic<bool> stopWanted = false;
};

}  // namespace tarn::host
