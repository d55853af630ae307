#include "components/options/UndoList.h"

#include <algorithm>

namespace tarn::options {

namespace {

constexpr std::size_t kMaxChanges = 1000;

}  // namespace

void UndoList::Add(ValueChange change) {
  std::erase_if(changes, [&](const Entry& entry) {
    return entry.undone && entry.change.node == change.node;
  });
  if (changes.size() >= kMaxChanges) changes.erase(changes.begin());
  changes.push_back({std::move(change), false});
}

const ValueChange* UndoList::Undo(const std::string& node) {
  const auto last = std::find_if(changes.rbegin(), changes.rend(), [&](const Entry& entry) {
    return !entry.undone && entry.change.node == node;
  });
  if (last == changes.rend()) return nullptr;
  last->undone = true;
  return &last->change;
}

const ValueChange* UndoList::Redo(const std::string& node) {
  const auto first = std::find_if(changes.begin(), changes.end(), [&](const Entry& entry) {
    return entry.undone && entry.change.node == node;
  });
  if (first == changes.end()) return nullptr;
  first->undone = false;
  return &first->change;
}

}  // namespace tarn::options
