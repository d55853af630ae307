#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

namespace tarn {

// Handles are small integers from a table of the process. They fit into 32-bit numbers, and a
// message to a stale handle returns 0 instead of crashing. 0 is not a window.
using WindowHandle = std::int32_t;

// Receiver of a window's messages. Called on the thread that registered the window.
class WindowTarget {
 public:
  virtual std::intptr_t OnWindowMessage(std::uint32_t message, std::intptr_t wParam,
                                        std::intptr_t lParam) = 0;

 protected:
  ~WindowTarget() = default;
};

// Event loop of a thread that has windows: a queue of calls from other threads, posted messages and
// timers, processed in this order when the thread pumps. Reference-counted: a thread that waits for
// a loop keeps it alive.
//
// The thread that created the project manager is called the main thread; its loop is the one that
// worker threads use to run code on the main thread.
class MessageLoop : public std::enable_shared_from_this<MessageLoop> {
 public:
  // Returns the loop of the calling thread, which is created at first use and closed at the end of
  // the thread.
  static std::shared_ptr<MessageLoop> ForCurrentThread();
  virtual ~MessageLoop() = default;

  virtual bool IsCurrentThread() const = 0;

  // Runs `work` on the loop's thread and waits for it; runs it directly if that is the calling
  // thread. May be nested to any depth: while waiting, the calling thread serves calls from other
  // threads, so mutual calls don't deadlock. Returns false if the loop was closed before the work
  // could run. Rethrows an exception of the work. The caller must not hold any lock.
  virtual bool RunAndWait(const std::function<void()>& work) = 0;

  // Returns whether the calling code runs inside work that another thread waits for, for example in
  // a window's handler for that thread's message. Returns false on any other thread than the
  // loop's.
  virtual bool IsServing() const = 0;

  // Serves only calls that other threads wait for. Returns whether there were any.
  virtual bool ServeWaiting() = 0;
  // Serves waiting calls, then posted messages, then due timers; at most one round. Timers are
  // deferred while messages are left. Returns whether there was anything to do. This function and
  // the three below are no-ops on any other thread than the loop's.
  virtual bool Pump() = 0;
  // Pumps until `done` returns true or the time limit expires; returns whether it did. Sleeps while
  // idle.
  virtual bool PumpUntil(const std::function<bool()>& done, std::chrono::milliseconds limit) = 0;
  // Like PumpUntil(), but serves only calls from other threads.
  virtual bool ServeUntil(const std::function<bool()>& done, std::chrono::milliseconds limit) = 0;

  // Sets a function that is called, on any thread, whenever something was queued or a timer was
  // set, so that an external event loop can schedule a call of Pump(). It must return immediately
  // and must not call the loop. At most one; null removes it, and it is not running any more when
  // this returns.
  virtual void SetWakeHandler(std::function<void()> wake) = 0;
  // Time until the next timer is due, rounded up; nullopt if there is no timer. For an external
  // event loop, which queries it after each wake and each Pump().
  virtual std::optional<std::chrono::milliseconds> UntilNextTimer() = 0;
  // Sets the clock of the timers, for tests; null restores the system's steady clock.
  using Clock = std::chrono::steady_clock;
  virtual void SetTimerClock(std::function<Clock::time_point()> clock) = 0;
  // Makes a sleeping PumpUntil() re-evaluate its condition. Thread-safe.
  virtual void Wake() = 0;
};

// Registers a window of the calling thread. `target` is borrowed until UnregisterWindow().
WindowHandle RegisterWindow(WindowTarget& target);
// Invalidates the handle: messages to it return 0, and its pending messages and timers are dropped.
// Must be called on the window's thread.
void UnregisterWindow(WindowHandle window);
bool IsWindow(WindowHandle window);

// Sends a message and returns the target's result. Blocks if the window belongs to another thread.
// Returns 0 if there is no such window.
std::intptr_t SendWindowMessage(WindowHandle window, std::uint32_t message, std::intptr_t wParam,
                                std::intptr_t lParam);
// Queues a message, whose parameters must not be pointers. Returns false if there is no such
// window.
bool PostWindowMessage(WindowHandle window, std::uint32_t message, std::intptr_t wParam,
                       std::intptr_t lParam);

// Calls `onTick` on the window's thread every `period` (at least 1 ms), after all messages, never
// reentrantly and without catching up on missed ticks. Setting the timer again replaces it and
// restarts the period. Must be called on the window's thread.
void SetWindowTimer(WindowHandle window, std::int32_t id, std::chrono::milliseconds period,
                    std::function<void()> onTick);
void KillWindowTimer(WindowHandle window, std::int32_t id);

}  // namespace tarn
