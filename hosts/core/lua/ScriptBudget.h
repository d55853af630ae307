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
    abort_ = ScriptAbort::None;
    stepsLeft_ = limits.steps;
    memoryLeft_ = limits.memory;
    timeLeft_ = limits.time;
    sincePoll_ = 0;
  }

  // Charges `steps`. Returns false if the script must be aborted, and from then on always.
  bool Spend(std::int64_t steps) {
    stepsLeft_ = steps > stepsLeft_ ? -1 : stepsLeft_ - steps;
    sincePoll_ += steps > kPollPeriod ? kPollPeriod : steps;
    return stepsLeft_ >= 0 && sincePoll_ < kPollPeriod && abort_ == ScriptAbort::None ? true
                                                                                      : Poll();
  }
  // Checks the clock and stop requests immediately; returns false if the script must be aborted.
  bool Poll();

  // Reserves memory. Returns false if there isn't that much left.
  bool TakeMemory(std::size_t bytes) {
    if (bytes > memoryLeft_) return false;
    memoryLeft_ -= bytes;
    return true;
  }
  void GiveMemory(std::size_t bytes) { memoryLeft_ += bytes; }

  // The clock runs between these two calls.
  void StartClock() { since_ = std::chrono::steady_clock::now(); }
  void HoldClock();

  ScriptAbort GetAbort() const { return abort_; }

  // May be called from any thread; effective until the outermost script has ended.
  void RequestStop() { stopWanted_ = true; }
  void ClearStop() { stopWanted_ = false; }

 private:
  static constexpr std::int64_t kPollPeriod = 10'000;

  ScriptAbort abort_ = ScriptAbort::None;
  std::int64_t stepsLeft_ = 0;
  std::int64_t sincePoll_ = 0;
  std::size_t memoryLeft_ = 0;
  std::chrono::nanoseconds timeLeft_{0};
  std::chrono::steady_clock::time_point since_;
  std::atomic<bool> stopWanted_ = false;
};

}  // namespace tarn::host
