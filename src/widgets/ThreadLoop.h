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

// The loop of one thread.
//
// A call from another thread is a record on the caller's stack, queued here. The caller sleeps on
// its own loop, not on this one, and so notices both what ends its sleep: that its call was done,
// and that somebody wants something of it. A circle of threads that wait for each other therefore
// always has one that serves. No lock is held while a call, a message, a tick or the wake handler
// runs, except that the handler has a lock of its own around it.
class ThreadLoop final : public MessageLoop {
 public:
  // The calling thread's loop; a closed one when the thread is already past its end.
  static std::shared_ptr<ThreadLoop> Current();

  bool IsCurrentThread() const override;
  bool RunAndWait(const std::function<void()>& work) override;
  bool IsServing() const override { return IsCurrentThread() && servingDepth > 0; }
  bool ServeWaiting() override;
  bool Pump() override;
  bool PumpUntil(const std::function<bool()>& done, std::chrono::milliseconds limit) override;
  bool ServeUntil(const std::function<bool()>& done, std::chrono::milliseconds limit) override;
  void SetWakeHandler(std::function<void()> wake) override;
  std::optional<std::chrono::milliseconds> UntilNextTimer() override;
  void SetTimerClock(std::function<Clock::time_point()> clock) override;
  void Wake() override;

  // False when the loop is closed.
  bool Post(WindowHandle window, std::uint32_t message, std::intptr_t wParam, std::intptr_t lParam);
  void SetTimer(WindowHandle window, std::int32_t id, std::chrono::milliseconds period,
                std::function<void()> onTick);
  void KillTimer(WindowHandle window, std::int32_t id);
  // Drops the messages and timers of a window that went.
  void Forget(WindowHandle window);
  // Ends all waiting for this loop; its windows are gone. On its own thread, at the thread's end.
  void Close();

 private:
  enum class CallState { Waiting, Done, Dropped };
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
  using Timers = std::map<TimerKey, Timer>;

  bool Enqueue(Call& call);
  void WaitFor(Call& call);
  Call* TakeCall();
  void Run(Call& call);
  static void Finish(Call& call, CallState state);
  bool DeliverPosted();
  bool TakePosted(Posted& posted);
  bool RunDueTimers();
  bool TickOne(Clock::time_point now);
  void EndTick(TimerKey key, const TickHandler& onTick);
  Timers::iterator NextTimer();
  bool ServeOrSleep(bool (ThreadLoop::*serve)(), const std::function<bool()>& done,
                    std::chrono::milliseconds limit, bool onlyCalls);
  void Sleep(Clock::time_point limit, bool onlyCalls);
  void NotifyOtherLoop();
  Clock::time_point TimerNow() const { return timerClock ? timerClock() : Clock::now(); }

  std::mutex lock;
  std::condition_variable changed;
  std::deque<Call*> calls;
  std::deque<Posted> messages;
  Timers timers;
  std::vector<TimerKey> ticking;  // whose handler is running now, the innermost last
  int servingDepth = 0;           // calls of other threads that run now; of the loop's thread
  bool woken = false;
  bool closed = false;

  std::function<Clock::time_point()> timerClock;  // of the loop's thread

  std::mutex wakeLock;
  std::function<void()> wakeHandler;
};

}  // namespace tarn
