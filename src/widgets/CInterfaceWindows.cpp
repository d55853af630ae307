#include "platform/automation/CInterfaceWindows.h"

#include <algorithm>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>

#include "widgets/MessageLoop.h"

namespace tarn::c_interface {

namespace {

class HandlerWindow final : public WindowTarget {
 public:
  HandlerWindow(TarnMessageHandler messageHandler, void* handlerContext)
      : handler_(messageHandler), context_(handlerContext), handle_(RegisterWindow(*this)) {}
  HandlerWindow(const HandlerWindow&) = delete;
  HandlerWindow& operator=(const HandlerWindow&) = delete;
  ~HandlerWindow() { UnregisterWindow(handle_); }

  WindowHandle GetHandle() const { return handle_; }

  std::intptr_t OnWindowMessage(std::uint32_t message, std::intptr_t wParam,
                                std::intptr_t lParam) override {
    // The handler may remove this window, so nothing of it is accessed after the call. A handler
    // written in another language may throw; the sender could not handle that.
    try {
      return handler_(context_, message, wParam, lParam);
    } catch (...) {
      return 1;
    }
  }

 private:
  const TarnMessageHandler handler_;
  void* const context_;
  const WindowHandle handle_;
};

// Windows created through the C interface, by handle.
class HandlerWindows {
 public:
  WindowHandle Add(TarnMessageHandler handler, void* context) {
    auto window = std::make_unique<HandlerWindow>(handler, context);
    const WindowHandle handle = window->GetHandle();
    const std::lock_guard guard(lock_);
    windows_[handle] = {std::move(window), std::this_thread::get_id()};
    return handle;
  }

  void Remove(WindowHandle handle) {
    std::unique_ptr<HandlerWindow> removed;  // destroyed after the lock is released
    const std::lock_guard guard(lock_);
    const auto found = windows_.find(handle);
    if (found == windows_.end() || found->second.thread != std::this_thread::get_id()) return;
    removed = std::move(found->second.window);
    windows_.erase(found);
  }

  static HandlerWindows& Native() {
    // Never destroyed: a program may remove its windows while it exits.
    static auto* const all = new HandlerWindows;
    return *all;
  }

 private:
  struct Entry {
    std::unique_ptr<HandlerWindow> window;
    std::thread::id thread;  // thread of its handler
  };

  std::mutex lock_;
  std::map<WindowHandle, Entry> windows_;
};

}  // namespace

std::int32_t AddWindow(TarnMessageHandler handler, void* context) {
  WindowHandle window = 0;
  if (handler == nullptr) return window;
  Quietly([&] { window = HandlerWindows::Native().Add(handler, context); });
  return window;
}

void RemoveWindow(std::int32_t window) {
  Quietly([&] { HandlerWindows::Native().Remove(window); });
}

std::int32_t Pump() {
  bool any = false;
  Quietly([&] { any = MessageLoop::ForCurrentThread()->Pump(); });
  return any ? 1 : 0;
}

std::int32_t PumpUntil(std::int32_t (*done)(void* context), void* context,
                       std::int32_t milliseconds) {
  bool held = false;
  Quietly([&] {
    held = MessageLoop::ForCurrentThread()->PumpUntil(
        [&] { return done != nullptr && done(context) != 0; },
        std::chrono::milliseconds(std::max(milliseconds, 0)));
  });
  return held ? 1 : 0;
}

void SetWakeHandler(void (*wake)(void* context), void* context) {
  Quietly([&] {
    const auto loop = MessageLoop::ForCurrentThread();
    loop->SetWakeHandler(wake == nullptr ? std::function<void()>() : [=] { wake(context); });
  });
}

std::int32_t UntilNextTimer() {
  std::int32_t left = -1;
  Quietly([&] {
    constexpr std::int64_t kLongest = INT32_MAX;
    const auto time = MessageLoop::ForCurrentThread()->UntilNextTimer();
    if (time) left = static_cast<std::int32_t>(std::min<std::int64_t>(time->count(), kLongest));
  });
  return left;
}

}  // namespace tarn::c_interface
