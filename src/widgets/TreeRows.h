#pragma once

#include <vector>

namespace tarn {

class CTreeItem;

// The lines of a tree in its current expansion state, from top to bottom: all items that are not
// below a collapsed one. They are numbered at the first lookup after a change, in O(lines that
// follow the change); each further lookup takes O(1).
class TreeRows {
 public:
  // `top` is the container of the top-level items. Borrowed.
  explicit TreeRows(const CTreeItem& top) : top_(top) {}

  int GetCount() const;
  // Returns null if the index is out of range.
  CTreeItem* GetAt(int row) const;
  // -1 for an item below a collapsed one.
  int IndexOf(const CTreeItem& item) const;
  // Must be called after items were inserted, removed, expanded or collapsed. `last` is an item, or
  // the container of the top-level items, before which all lines are unchanged.
  void InvalidateAfter(const CTreeItem& last);

 private:
  void Fill() const;

  const CTreeItem& top_;
  mutable std::vector<CTreeItem*> rows_;  // all of them, or the first ones
  mutable bool isComplete_ = false;
};

}  // namespace tarn
