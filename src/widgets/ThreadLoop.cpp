#include "widgets/ThreadLoop.h"

#include <algorithm>

#include "platform/threads/PerThread.h"
#include "widgets/WindowTable.h"

namespace tarn {

namespace {

// Trivially destructible, so that they can still be read while the thread's other objects are
// destroyed.
constinit thread_local ThreadLoop* currentLoop = nullptr;
constinit thread_local bool threadEnded = false;

struct LoopOwner {
  std::shared_ptr<ThreadLoop> loop;

  LoopOwner() = default;
  LoopOwner(const LoopOwner&) = delete;
  LoopOwner& operator=(const LoopOwner&) = delete;
  ~LoopOwner() {
    if (loop) loop->Close();
    currentLoop = nullptr;
    threadEnded = true;
  }
};

}  // namespace

std::shared_ptr<ThreadLoop> ThreadLoop::Current() {
  if (threadEnded) {
    auto ended = std::make_shared<ThreadLoop>();
    ended->closed_ = true;
    return ended;
  }
  LoopOwner& owner = PerThread<LoopOwner>::Get();
  if (!owner.loop) {
    owner.loop = std::make_shared<ThreadLoop>();
    currentLoop = owner.loop.get();
  }
  return owner.loop;
}

bool ThreadLoop::IsCurrentThread() const {
  return currentLoop == this;
}

bool ThreadLoop::RunAndWait(const std::function<void()>& work) {
  if (IsCurrentThread()) {
    work();
    return true;
  }
  Call call{&work, Current()};
  if (!Enqueue(call)) return false;
  call.caller->WaitFor(call);
  if (call.failure) std::rethrow_exception(call.failure);
  return call.state == CallState::Done;
}

bool ThreadLoop::Enqueue(Call& call) {
  {
    const std::lock_guard guard(lock_);
    if (closed_) return false;
    calls_.push_back(&call);
  }
  NotifyChange();
  return true;
}

void ThreadLoop::WaitFor(Call& call) {
  std::unique_lock guard(lock_);
  while (true) {
    changed_.wait(guard, [&] { return call.state != CallState::Waiting || !calls_.empty(); });
    if (call.state != CallState::Waiting) return;
    guard.unlock();
    ServeWaiting();
    guard.lock();
  }
}

// One round only, so that a thread that calls continuously cannot keep this one here forever.
bool ThreadLoop::ServeWaiting() {
  if (!IsCurrentThread()) return false;
  std::size_t left = 0;
  {
    const std::lock_guard guard(lock_);
    left = calls_.size();
  }
  bool any = false;
  for (; left > 0; --left) {
    Call* call = TakeCall();
    if (call == nullptr) break;
    Run(*call);
    any = true;
  }
  return any;
}

ThreadLoop::Call* ThreadLoop::TakeCall() {
  const std::lock_guard guard(lock_);
  if (calls_.empty()) return nullptr;
  Call* call = calls_.front();
  calls_.pop_front();
  return call;
}

void ThreadLoop::Run(Call& call) {
  ++servingDepth_;
  try {
    (*call.work)();
  } catch (...) {
    call.failure = std::current_exception();
  }
  --servingDepth_;
  Finish(call, CallState::Done);
}

void ThreadLoop::Finish(Call& call, CallState state) {
  // The record may be destroyed as soon as its state is visible.
  const std::shared_ptr<ThreadLoop> caller = call.caller;
  {
    const std::lock_guard guard(caller->lock_);
    call.state = state;
  }
  caller->changed_.notify_all();
}

bool ThreadLoop::Pump() {
  if (!IsCurrentThread()) return false;
  const bool served = ServeWaiting();
  const bool delivered = DeliverPosted();
  const bool ticked = RunDueTimers();
  return served || delivered || ticked;
}

bool ThreadLoop::DeliverPosted() {
  std::size_t left = 0;
  {
    const std::lock_guard guard(lock_);
    left = messages_.size();
  }
  bool any = false;
  Posted posted;
  for (; left > 0 && TakePosted(posted); --left) {
    any = true;
    const WindowTable::Entry entry = WindowTable::Native().Find(posted.window);
    if (entry.target == nullptr) continue;
    entry.target->OnWindowMessage(posted.message, posted.wParam, posted.lParam);
  }
  return any;
}

bool ThreadLoop::TakePosted(Posted& posted) {
  const std::lock_guard guard(lock_);
  if (messages_.empty()) return false;
  posted = messages_.front();
  messages_.pop_front();
  return true;
}

bool ThreadLoop::RunDueTimers() {
  const Clock::time_point now = TimerNow();
  bool any = false;
  while (TickOne(now)) any = true;
  return any;
}

bool ThreadLoop::TickOne(Clock::time_point now) {
  TimerKey key;
  TickHandler onTick;
  {
    const std::lock_guard guard(lock_);
    if (!messages_.empty()) return false;
    const auto next = NextTimer();
    if (next == timers_.end() || next->second.due > now) return false;
    key = next->first;
    onTick = next->second.onTick;
    ticking_.push_back(key);
  }
  struct TickEnd {
    ThreadLoop& loop;
    const TimerKey& key;
    const TickHandler& onTick;
    ~TickEnd() { loop.EndTick(key, onTick); }
  } const end{*this, key, onTick};
  (*onTick)();
  return true;
}

void ThreadLoop::EndTick(TimerKey key, const TickHandler& onTick) {
  const std::lock_guard guard(lock_);
  std::erase(ticking_, key);
  const auto timer = timers_.find(key);
  // The timer was removed or set again by its own handler: it must not be rescheduled here.
  if (timer == timers_.end() || timer->second.onTick != onTick) return;
  // The schedule is kept, and missed ticks are skipped.
  const Clock::time_point now = TimerNow();
  timer->second.due += timer->second.period;
  if (timer->second.due <= now) timer->second.due = now + timer->second.period;
}

ThreadLoop::Timers::iterator ThreadLoop::NextTimer() {
  auto next = timers_.end();
  for (auto timer = timers_.begin(); timer != timers_.end(); ++timer) {
    if (std::find(ticking_.begin(), ticking_.end(), timer->first) != ticking_.end()) continue;
    if (next == timers_.end() || timer->second.due < next->second.due) next = timer;
  }
  return next;
}

bool ThreadLoop::PumpUntil(const std::function<bool()>& done, std::chrono::milliseconds limit) {
  return ServeOrSleep(&ThreadLoop::Pump, done, limit, false);
}

bool ThreadLoop::ServeUntil(const std::function<bool()>& done, std::chrono::milliseconds limit) {
  return ServeOrSleep(&ThreadLoop::ServeWaiting, done, limit, true);
}

bool ThreadLoop::ServeOrSleep(bool (ThreadLoop::*serve)(), const std::function<bool()>& done,
                              std::chrono::milliseconds limit, bool onlyCalls) {
  if (!IsCurrentThread()) return done();
  // Bounds the limit so that the time point does not overflow.
  constexpr std::chrono::milliseconds kLongest = std::chrono::hours(24 * 365);
  const Clock::time_point end = Clock::now() + std::min(limit, kLongest);
  while (!done()) {
    const bool served = (this->*serve)();
    if (Clock::now() >= end) return done();
    if (!served) Sleep(end, onlyCalls);
  }
  return true;
}

void ThreadLoop::Sleep(Clock::time_point limit, bool onlyCalls) {
  std::unique_lock guard(lock_);
  if (!onlyCalls) {
    const auto timer = NextTimer();
    if (timer != timers_.end())
      limit = std::min(limit, Clock::now() + (timer->second.due - TimerNow()));
  }
  changed_.wait_until(guard, limit, [&] {
    return woken_ || !calls_.empty() || (!onlyCalls && !messages_.empty());
  });
  woken_ = false;
}

void ThreadLoop::SetTimerClock(std::function<Clock::time_point()> clock) {
  timerClock_ = std::move(clock);
}

void ThreadLoop::SetWakeHandler(std::function<void()> wake) {
  const std::lock_guard guard(wakeLock_);
  wakeHandler_.swap(wake);
}

// Called without the lock, for which the thread that wakes up would have to wait at once.
void ThreadLoop::NotifyChange() {
  changed_.notify_all();
  const std::lock_guard guard(wakeLock_);
  if (wakeHandler_) wakeHandler_();
}

std::optional<std::chrono::milliseconds> ThreadLoop::UntilNextTimer() {
  const std::lock_guard guard(lock_);
  const auto timer = NextTimer();
  if (timer == timers_.end()) return std::nullopt;
  const auto left = std::chrono::ceil<std::chrono::milliseconds>(timer->second.due - TimerNow());
  return std::max(left, std::chrono::milliseconds(0));
}

void ThreadLoop::Wake() {
  {
    const std::lock_guard guard(lock_);
    woken_ = true;
  }
  NotifyChange();
}

bool ThreadLoop::Post(WindowHandle window, std::uint32_t message, std::intptr_t wParam,
                      std::intptr_t lParam) {
  {
    const std::lock_guard guard(lock_);
    if (closed_) return false;
    messages_.push_back({window, message, wParam, lParam});
  }
  NotifyChange();
  return true;
}

void ThreadLoop::SetTimer(WindowHandle window, std::int32_t id, std::chrono::milliseconds period,
                          std::function<void()> onTick) {
  // The old handler is destroyed after the lock is released, since its destructor may call this
  // loop.
  Timer timer;
  timer.period = std::max(period, std::chrono::milliseconds(1));
  timer.due = TimerNow() + timer.period;
  timer.onTick = std::make_shared<const std::function<void()>>(std::move(onTick));
  {
    const std::lock_guard guard(lock_);
    if (closed_) return;
    std::swap(timers_[{window, id}], timer);
    woken_ = true;
  }
  NotifyChange();
}

void ThreadLoop::KillTimer(WindowHandle window, std::int32_t id) {
  Timers::node_type killed;
  const std::lock_guard guard(lock_);
  killed = timers_.extract({window, id});
}

void ThreadLoop::Remove(WindowHandle window) {
  std::vector<Timers::node_type> killed;
  const std::lock_guard guard(lock_);
  std::erase_if(messages_, [window](const Posted& posted) { return posted.window == window; });
  for (auto timer = timers_.begin(); timer != timers_.end();) {
    const auto current = timer++;
    if (current->first.first == window) killed.push_back(timers_.extract(current));
  }
}

void ThreadLoop::Close() {
  WindowTable::Native().RemoveAllOf(this);
  std::deque<Call*> dropped;
  Timers killed;
  {
    const std::lock_guard guard(lock_);
    closed_ = true;
    dropped.swap(calls_);
    killed.swap(timers_);
    messages_.clear();
  }
  for (Call* call : dropped) Finish(*call, CallState::Dropped);
  SetWakeHandler(nullptr);
}

}  // namespace tarn
