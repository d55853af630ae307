#pragma once

#include <memory>
#include <mutex>
#include <unordered_map>

#include "widgets/MessageLoop.h"

namespace tarn {

// The windows of the process by handle. A handle is not given out a second time while the process
// is young enough to matter, so a stale one finds nothing. May be used from any thread.
class WindowTable {
 public:
  struct Entry {
    WindowTarget* target = nullptr;     // null: no such window
    std::shared_ptr<MessageLoop> loop;  // of the thread that registered it
  };

  WindowHandle Add(WindowTarget& target, std::shared_ptr<MessageLoop> loop);
  // The entry that went, or an empty one.
  Entry Remove(WindowHandle window);
  Entry Find(WindowHandle window);
  // When a thread ends: its windows cannot answer any more.
  void RemoveAllOf(const MessageLoop* loop);

  static WindowTable& Native();

 private:
  // Held for a look-up alone, never while a target runs.
  std::mutex lock;
  WindowHandle last = 0;
  std::unordered_map<WindowHandle, Entry> entries;
};

}  // namespace tarn
