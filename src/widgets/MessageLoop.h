#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

namespace tarn {

// Handles are small numbers from a table of the process, so that they travel as 32-bit numbers and
// a stale one is an answer of 0, not a crash. 0 is no window.
using WindowHandle = std::int32_t;

// Whoever answers a window's messages. Called on the thread that registered the window.
class WindowTarget {
 public:
  virtual std::intptr_t OnWindowMessage(std::uint32_t message, std::intptr_t wParam,
                                        std::intptr_t lParam) = 0;

 protected:
  ~WindowTarget() = default;
};

// One per thread that has windows: what other threads want done on that thread, posted messages
// and timers, served in this order when the thread pumps. Shared ownership: a thread that waits on
// a loop keeps it alive.
class MessageLoop : public std::enable_shared_from_this<MessageLoop> {
 public:
  // The loop of the calling thread, made at first use and closed when the thread ends.
  static std::shared_ptr<MessageLoop> ForCurrentThread();
  virtual ~MessageLoop() = default;

  virtual bool IsCurrentThread() const = 0;

  // Runs `work` on the loop's thread and returns when it has run; directly when that is the
  // calling thread. Nested to any depth: while it waits, the calling thread serves what others
  // want of it. False when the loop was closed before the work could run. An exception of the work
  // comes out here. Nothing may be locked while waiting here.
  virtual bool RunAndWait(const std::function<void()>& work) = 0;

  // Returns whether the calling code runs inside work that another thread waits for, for example in
  // a window's answer to its message. False on another thread than the loop's.
  virtual bool IsServing() const = 0;

  // Serves what other threads wait for, and nothing else. Returns whether there was anything.
  virtual bool ServeWaiting() = 0;
  // Serves waiting work, then posted messages, then timers that are due; at most one round. Timers
  // stand back while messages are left. Returns whether there was anything. This and the three
  // below do nothing on another thread than the loop's.
  virtual bool Pump() = 0;
  // Pumps until `done` holds or the time is over; tells whether it held. Sleeps while idle.
  virtual bool PumpUntil(const std::function<bool()>& done, std::chrono::milliseconds limit) = 0;
  // Like PumpUntil, but serves only waiting work.
  virtual bool ServeUntil(const std::function<bool()>& done, std::chrono::milliseconds limit) = 0;

  // Called from any thread whenever something was queued or a timer was set, so that another event
  // loop can be told to call Pump. It returns at once and calls nothing of the loop. At most one;
  // null removes it, and none is running any more when this returns.
  virtual void SetWakeHandler(std::function<void()> wake) = 0;
  // How long until Pump has a timer to serve, rounded up; nothing without a timer. For another
  // event loop, which asks after each wake and each Pump.
  virtual std::optional<std::chrono::milliseconds> UntilNextTimer() = 0;
  // What the timers go by: a clock that is moved by hand, or the machine's own for null.
  using Clock = std::chrono::steady_clock;
  virtual void SetTimerClock(std::function<Clock::time_point()> clock) = 0;
  // Makes a sleeping PumpUntil look at its condition again. May be called from any thread.
  virtual void Wake() = 0;
};

// Registers a window of the calling thread. `target` is borrowed until UnregisterWindow.
WindowHandle RegisterWindow(WindowTarget& target);
// The handle answers 0 from now on; messages and timers still waiting for it are dropped. On the
// window's thread.
void UnregisterWindow(WindowHandle window);
bool IsWindow(WindowHandle window);

// The target's answer; waits when the window belongs to another thread. 0 for no window.
std::intptr_t SendWindowMessage(WindowHandle window, std::uint32_t message, std::intptr_t wParam,
                                std::intptr_t lParam);
// Queues a message of plain numbers; false for no window.
bool PostWindowMessage(WindowHandle window, std::uint32_t message, std::intptr_t wParam,
                       std::intptr_t lParam);

// Calls `onTick` on the window's thread every `period` (at least 1 ms), behind all messages, never
// twice at once and never catching up. Setting it again replaces it and starts the period anew. On
// the window's thread.
void SetWindowTimer(WindowHandle window, std::int32_t id, std::chrono::milliseconds period,
                    std::function<void()> onTick);
void KillWindowTimer(WindowHandle window, std::int32_t id);

}  // namespace tarn
