#include "widgets/TreeRows.h"

#include <cstddef>

#include "widgets/TreeCtrl.h"

namespace tarn {

void TreeRows::Fill() const {
  if (isComplete_) return;
  isComplete_ = true;
  CTreeItem* item = rows_.empty() ? top_.GetFirstChildItem() : rows_.back()->GetNextVisible();
  for (; item != nullptr; item = item->GetNextVisible()) {
    item->SetNumberedRow(static_cast<int>(rows_.size()));
    rows_.push_back(item);
  }
}

void TreeRows::InvalidateAfter(const CTreeItem& last) {
  isComplete_ = false;
  if (&last == &top_) {
    rows_.clear();
    return;
  }
  // Otherwise the change is below a collapsed item or after the lines that are numbered.
  const auto row = static_cast<std::size_t>(last.GetNumberedRow());
  if (row < rows_.size() && rows_[row] == &last) rows_.resize(row + 1);
}

int TreeRows::GetCount() const {
  Fill();
  return static_cast<int>(rows_.size());
}

CTreeItem* TreeRows::GetAt(int row) const {
  return row >= 0 && row < GetCount() ? rows_[static_cast<std::size_t>(row)] : nullptr;
}

int TreeRows::IndexOf(const CTreeItem& item) const {
  Fill();
  return GetAt(item.GetNumberedRow()) == &item ? item.GetNumberedRow() : -1;
}

}  // namespace tarn
