#include "components/options/UndoList.h"

#include <algorithm>

namespace tarn::options {

namespace {

constexpr std::size_t kMaxChanges = 1000;

}  // namespace

void UndoList::Add(ValueChange change) {
  std::erase_if(changes_, [&](const Entry& entry) {
    return entry.undone && entry.change.node == change.node;
  });
  if (changes_.size() >= kMaxChanges) changes_.erase(changes_.begin());
  changes_.push_back({std::move(change), false});
}

const ValueChange* UndoList::NextUndo(const std::string& node) const {
  const auto last = std::find_if(changes_.rbegin(), changes_.rend(), [&](const Entry& entry) {
    return !entry.undone && entry.change.node == node;
  });
  return last == changes_.rend() ? nullptr : &last->change;
}

const ValueChange* UndoList::NextRedo(const std::string& node) const {
  const auto first = std::find_if(changes_.begin(), changes_.end(), [&](const Entry& entry) {
    return entry.undone && entry.change.node == node;
  });
  return first == changes_.end() ? nullptr : &first->change;
}

const ValueChange* UndoList::Undo(const std::string& node) {
  return Mark(NextUndo(node), true);
}

const ValueChange* UndoList::Redo(const std::string& node) {
  return Mark(NextRedo(node), false);
}

const ValueChange* UndoList::Mark(const ValueChange* change, bool undone) {
  for (Entry& entry : changes_) {
    if (&entry.change == change) entry.undone = undone;
  }
  return change;
}

}  // namespace tarn::options
