#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <exception>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <utility>
#include <vector>

#include "widgets/MessageLoop.h"

namespace tarn {

// Implementation of a thread's message loop.
//
// A call from another thread is a record on the caller's stack that is queued here. The caller
// sleeps on the condition variable of its own loop, not on this one, so it wakes up both when its
// call is done and when another thread calls it. So in a cycle of threads that wait for each other,
// one always makes progress. No lock is held while a call, a message, a timer or the wake handler
// runs, except for the handler's own lock.
class ThreadLoop final : public MessageLoop {
 public:
  // Returns the calling thread's loop; a closed one if the thread's loop has already been
  // destroyed.
  static std::shared_ptr<ThreadLoop> Current();

  bool IsCurrentThread() const override;
  bool RunAndWait(const std::function<void()>& work) override;
  bool IsServing() const override { return IsCurrentThread() && servingDepth_ > 0; }
  bool ServeWaiting() override;
  bool Pump() override;
  bool PumpUntil(const std::function<bool()>& done, std::chrono::milliseconds limit) override;
  bool ServeUntil(const std::function<bool()>& done, std::chrono::milliseconds limit) override;
  void SetWakeHandler(std::function<void()> wake) override;
  std::optional<std::chrono::milliseconds> UntilNextTimer() override;
  void SetTimerClock(std::function<Clock::time_point()> clock) override;
  void Wake() override;

  // Returns false if the loop is closed.
  bool Post(WindowHandle window, std::uint32_t message, std::intptr_t wParam, std::intptr_t lParam);
  void SetTimer(WindowHandle window, std::int32_t id, std::chrono::milliseconds period,
                std::function<void()> onTick);
  void KillTimer(WindowHandle window, std::int32_t id);
  // Drops the messages and timers of a destroyed window.
  void Remove(WindowHandle window);
  // Cancels all waiting calls and invalidates the loop's windows. Called on the loop's own thread
  // at its end.
  void Close();

 private:
  enum class CallState { Waiting, Done, Dropped };
  // A pending call; lives on the stack of the calling thread until its state is no longer Waiting.
  struct Call {
    const std::function<void()>* work = nullptr;
    std::shared_ptr<ThreadLoop> caller;
    CallState state = CallState::Waiting;  // guarded by the caller's lock
    std::exception_ptr failure = nullptr;
  };
  struct Posted {
    WindowHandle window = 0;
    std::uint32_t message = 0;
    std::intptr_t wParam = 0;
    std::intptr_t lParam = 0;
  };
  using TimerKey = std::pair<WindowHandle, std::int32_t>;
  using TickHandler = std::shared_ptr<const std::function<void()>>;
  struct Timer {
    std::chrono::milliseconds period{1};
    Clock::time_point due;
    TickHandler onTick;
  };
  // Ordered by window and id; the next due timer is found by a linear search, as there are few.
  using Timers = std::map<TimerKey, Timer>;

  // Returns false if the loop is closed.
  bool Enqueue(Call& call);
  // Runs on the caller's loop: sleeps until the call is done, and serves incoming calls in between.
  void WaitFor(Call& call);
  Call* TakeCall();
  void Run(Call& call);
  static void Finish(Call& call, CallState state);
  // Second stage of Pump(): delivers at most the messages that were pending at its start.
  bool DeliverPosted();
  bool TakePosted(Posted& posted);
  // Third stage of Pump(): runs the timers that were due at its start, until a message is posted.
  bool RunDueTimers();
  bool TickOne(Clock::time_point now);
  void EndTick(TimerKey key, const TickHandler& onTick);
  // Returns the timer that is due first, ignoring those whose handler is running. Requires `lock`.
  Timers::iterator NextTimer();
  bool ServeOrSleep(bool (ThreadLoop::*serve)(), const std::function<bool()>& done,
                    std::chrono::milliseconds limit, bool onlyCalls);
  void Sleep(Clock::time_point limit, bool onlyCalls);
  // Wakes this thread up, also from the loop of another toolkit.
  void NotifyChange();
  Clock::time_point TimerNow() const { return timerClock_ ? timerClock_() : Clock::now(); }

  // Guards all members down to `closed`, except where noted. Never held while foreign code runs.
  std::mutex lock_;
  std::condition_variable changed_;
  std::deque<Call*> calls_;
  std::deque<Posted> messages_;
  Timers timers_;
  std::vector<TimerKey> ticking_;  // timers whose handler is running, innermost last
  int servingDepth_ = 0;           // running calls of other threads; only for the loop's thread
  bool woken_ = false;
  bool closed_ = false;

  std::function<Clock::time_point()> timerClock_;  // only for the loop's thread

  // Held while the wake handler runs, so that SetWakeHandler() waits for it.
  std::mutex wakeLock_;
  std::function<void()> wakeHandler_;
};

}  // namespace tarn
