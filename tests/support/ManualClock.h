#pragma once

#include <chrono>

#include "widgets/MessageLoop.h"

namespace tarn::test {

// Replaces the clock of this thread's timers during its lifetime; advances only manually.
class ManualClock {
 public:
  ManualClock() {
    MessageLoop::ForCurrentThread()->SetTimerClock([this] { return now_; });
  }
  ~ManualClock() { MessageLoop::ForCurrentThread()->SetTimerClock(nullptr); }
  ManualClock(const ManualClock&) = delete;
  ManualClock& operator=(const ManualClock&) = delete;

  // Advances the clock and serves due timers; a timer that is due several times fires once.
  void Advance(std::chrono::milliseconds time) {
    now_ += time;
    while (MessageLoop::ForCurrentThread()->Pump()) {
    }
  }

 private:
  MessageLoop::Clock::time_point now_{};
};

}  // namespace tarn::test
