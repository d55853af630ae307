#include "widgets/WindowTable.h"

#include <limits>
#include <utility>
#include <vector>

namespace tarn {

WindowHandle WindowTable::Add(WindowTarget& target, std::shared_ptr<MessageLoop> loop) {
  const std::lock_guard guard(lock);
  do {
    last = last == std::numeric_limits<WindowHandle>::max() ? 1 : last + 1;
  } while (entries.contains(last));
  entries.emplace(last, Entry{&target, std::move(loop)});
  return last;
}

WindowTable::Entry WindowTable::Remove(WindowHandle window) {
  const std::lock_guard guard(lock);
  const auto found = entries.find(window);
  if (found == entries.end()) return {};
  Entry entry = std::move(found->second);
  entries.erase(found);
  return entry;
}

WindowTable::Entry WindowTable::Find(WindowHandle window) {
  const std::lock_guard guard(lock);
  const auto found = entries.find(window);
  return found == entries.end() ? Entry{} : found->second;
}

void WindowTable::RemoveAllOf(const MessageLoop* loop) {
  std::vector<Entry> removed;  // released after the lock
  const std::lock_guard guard(lock);
  for (auto entry = entries.begin(); entry != entries.end();) {
    if (entry->second.loop.get() == loop) {
      removed.push_back(std::move(entry->second));
      entry = entries.erase(entry);
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
