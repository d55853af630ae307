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

const ValueChange* UndoList::NextUndo(const std::string& node) const {
  const auto last = std::find_if(changes.rbegin(), changes.rend(), [&](const Entry& entry) {
    return !entry.undone && entry.change.node == node;
  });
  return last == changes.rend() ? nullptr : &last->change;
}

const ValueChange* UndoList::NextRedo(const std::string& node) const {
  const auto first = std::find_if(changes.begin(), changes.end(), [&](const Entry& entry) {
    return entry.undone && entry.change.node == node;
  });
  return first == changes.end() ? nullptr : &first->change;
}

const ValueChange* UndoList::Undo(const std::string& node) {
  return Mark(NextUndo(node), true);
}

const ValueChange* UndoList::Redo(const std::string& node) {
  return Mark(NextRedo(node), false);
}

const ValueChange* UndoList::Mark(const ValueChange* change, bool undone) {
  for (Entry& entry : changes) {
    if (&entry.change == change) entry.undone = undone;
  }
  return change;
}

}  // namespace tarn::options
