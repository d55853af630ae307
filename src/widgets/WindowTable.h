#pragma once

#include <memory>
#include <mutex>
#include <unordered_map>

#include "widgets/MessageLoop.h"

namespace tarn {

// The windows of the process by handle. Handles are not reused within any realistic lifetime of a
// process, so a lookup with a stale one fails. Thread-safe.
class WindowTable {
 public:
  struct Entry {
    WindowTarget* target = nullptr;     // null: no such window
    std::shared_ptr<MessageLoop> loop;  // loop of the thread that registered it
  };

  WindowHandle Add(WindowTarget& target, std::shared_ptr<MessageLoop> loop);
  // Returns the removed entry, or an empty one.
  Entry Remove(WindowHandle window);
  Entry Find(WindowHandle window);
  // Called when a thread ends: its windows cannot receive messages any more.
  void RemoveAllOf(const MessageLoop* loop);

  static WindowTable& Native();

 private:
  // Held only for lookups, never while a target runs.
  std::mutex lock_;
  WindowHandle last_ = 0;
  std::unordered_map<WindowHandle, Entry> entries_;
};

}  // namespace tarn
