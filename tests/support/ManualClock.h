#pragma once

#include <chrono>

#include "widgets/MessageLoop.h"

namespace tarn::test {

// The clock that the timers of this thread go by while it lives; it stands until it is moved.
class ManualClock {
 public:
  ManualClock() {
    MessageLoop::ForCurrentThread()->SetTimerClock([this] { return now; });
  }
  ~ManualClock() { MessageLoop::ForCurrentThread()->SetTimerClock(nullptr); }
  ManualClock(const ManualClock&) = delete;
  ManualClock& operator=(const ManualClock&) = delete;

  // Moves it and serves what is due; a timer that is due several times ticks once.
  void Advance(std::chrono::milliseconds time) {
    now += time;
    while (MessageLoop::ForCurrentThread()->Pump()) {
    }
  }

 private:
  MessageLoop::Clock::time_point now{};
};

}  // namespace tarn::test
