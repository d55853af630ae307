#include "widgets/MessageLoop.h"

#include <utility>

#include "widgets/ThreadLoop.h"
#include "widgets/WindowTable.h"

namespace tarn {

namespace {

// Only RegisterWindow() adds entries, so every loop in the table is a ThreadLoop.
ThreadLoop* LoopOf(const WindowTable::Entry& entry) {
  return static_cast<ThreadLoop*>(entry.loop.get());
}

struct SentMessage {
  WindowHandle window;
  std::uint32_t message;
  std::intptr_t wParam;
  std::intptr_t lParam;
  std::intptr_t answer = 0;

  // Runs on the window's thread; the window may have been destroyed since the message was sent.
  void Deliver() {
    const WindowTable::Entry entry = WindowTable::Native().Find(window);
    if (entry.target != nullptr) answer = entry.target->OnWindowMessage(message, wParam, lParam);
  }
};

}  // namespace

std::shared_ptr<MessageLoop> MessageLoop::ForCurrentThread() {
  return ThreadLoop::Current();
}

WindowHandle RegisterWindow(WindowTarget& target) {
  return WindowTable::Native().Add(target, ThreadLoop::Current());
}

void UnregisterWindow(WindowHandle window) {
  const WindowTable::Entry removed = WindowTable::Native().Remove(window);
  if (removed.loop) LoopOf(removed)->Remove(window);
}

bool IsWindow(WindowHandle window) {
  return WindowTable::Native().Find(window).target != nullptr;
}

std::intptr_t SendWindowMessage(WindowHandle window, std::uint32_t message, std::intptr_t wParam,
                                std::intptr_t lParam) {
  const WindowTable::Entry entry = WindowTable::Native().Find(window);
  if (entry.target == nullptr) return 0;
  if (entry.loop->IsCurrentThread()) return entry.target->OnWindowMessage(message, wParam, lParam);
  SentMessage sent{window, message, wParam, lParam};
  const bool delivered = entry.loop->RunAndWait([&sent] { sent.Deliver(); });
  return delivered ? sent.answer : 0;
}

bool PostWindowMessage(WindowHandle window, std::uint32_t message, std::intptr_t wParam,
                       std::intptr_t lParam) {
  const WindowTable::Entry entry = WindowTable::Native().Find(window);
  return entry.target != nullptr && LoopOf(entry)->Post(window, message, wParam, lParam);
}

void SetWindowTimer(WindowHandle window, std::int32_t id, std::chrono::milliseconds period,
                    std::function<void()> onTick) {
  const WindowTable::Entry entry = WindowTable::Native().Find(window);
  if (entry.loop) LoopOf(entry)->SetTimer(window, id, period, std::move(onTick));
}

void KillWindowTimer(WindowHandle window, std::int32_t id) {
  const WindowTable::Entry entry = WindowTable::Native().Find(window);
  if (entry.loop) LoopOf(entry)->KillTimer(window, id);
}

}  // namespace tarn
