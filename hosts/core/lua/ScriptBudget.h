#pragma once

#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstdint>

namespace tarn::host {

// What a script may use, the scripts that it runs included.
struct ScriptLimits {
  // One instruction is a step, and so are 64 bytes of new memory and one comparison of a pattern.
  std::int64_t steps = 500'000'000;
  std::size_t memory = 64u << 20;
  // The script's own time, without what the server does for it. A net below the steps, for the few
  // instructions that take long.
  std::chrono::milliseconds time{60'000};
  int depth = 8;  // of scripts that run each other
};

// Why a script has to end, whatever it catches.
enum class ScriptAbort { None, Steps, Time, Stopped };

// What is left of the limits. On the scripts' thread, except RequestStop.
class ScriptBudget {
 public:
  void Begin(const ScriptLimits& limits) {
    abort = ScriptAbort::None;
    stepsLeft = limits.steps;
    memoryLeft = limits.memory;
    timeLeft = limits.time;
    sinceLook = 0;
  }

  // False when the script has to end; then always.
  bool Spend(std::int64_t steps) {
    stepsLeft = steps > stepsLeft ? -1 : stepsLeft - steps;
    sinceLook += steps > kLookPeriod ? kLookPeriod : steps;
    return stepsLeft >= 0 && sinceLook < kLookPeriod && abort == ScriptAbort::None ? true : Look();
  }
  // The same at once, with a look at the clock and at who wants a stop.
  bool Look();

  // False when there isn't that much left.
  bool TakeMemory(std::size_t bytes) {
    if (bytes > memoryLeft) return false;
    memoryLeft -= bytes;
    return true;
  }
  void GiveMemory(std::size_t bytes) { memoryLeft += bytes; }

  // The clock runs between these two.
  void StartClock() { since = std::chrono::steady_clock::now(); }
  void HoldClock();

  ScriptAbort GetAbort() const { return abort; }

  // From any thread; holds until the outermost script has ended.
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
