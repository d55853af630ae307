#include "widgets/WindowTable.h"

#include <limits>
#include <utility>
#include <vector>

namespace tarn {

WindowHandle WindowTable::Add(WindowTarget& target, std::shared_ptr<MessageLoop> loop) {
  const std::lock_guard guard(lock_);
  do {
    last_ = last_ == std::numeric_limits<WindowHandle>::max() ? 1 : last_ + 1;
  } while (entries_.contains(last_));
  entries_.emplace(last_, Entry{&target, std::move(loop)});
  return last_;
}

WindowTable::Entry WindowTable::Remove(WindowHandle window) {
  const std::lock_guard guard(lock_);
  const auto found = entries_.find(window);
  if (found == entries_.end()) return {};
  Entry entry = std::move(found->second);
  entries_.erase(found);
  return entry;
}

WindowTable::Entry WindowTable::Find(WindowHandle window) {
  const std::lock_guard guard(lock_);
  const auto found = entries_.find(window);
  return found == entries_.end() ? Entry{} : found->second;
}

void WindowTable::RemoveAllOf(const MessageLoop* loop) {
  std::vector<Entry> removed;  // released after the lock
  const std::lock_guard guard(lock_);
  for (auto entry = entries_.begin(); entry != entries_.end();) {
    if (entry->second.loop.get() == loop) {
      removed.push_back(std::move(entry->second));
      entry = entries_.erase(entry);
    } else {
      ++entry;
    }
  }
}

WindowTable& WindowTable::Native() {
  // Never destroyed: threads and static objects that outlive main still use it.
  static auto* const table = new WindowTable;
  return *table;
}

}  // namespace tarn
