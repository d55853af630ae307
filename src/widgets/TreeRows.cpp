#include "widgets/TreeRows.h"

#include <cstddef>

#include "widgets/TreeCtrl.h"

namespace tarn {

void TreeRows::Fill() const {
  if (isValid_) return;
  isValid_ = true;
  rows_.clear();
  for (CTreeItem* item = top_.GetFirstChildItem(); item != nullptr; item = item->GetNextVisible()) {
    item->SetNumberedRow(static_cast<int>(rows_.size()));
    rows_.push_back(item);
  }
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
