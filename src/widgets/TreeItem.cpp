#include "widgets/TreeCtrl.h"

namespace tarn {

CTreeItem* CTreeItem::GetChild(int at) const {
  return at >= 0 && at < GetChildCount() ? children_[static_cast<std::size_t>(at)].get() : nullptr;
}

CTreeItem* CTreeItem::GetNextSiblingItem() const {
  return parent_ == nullptr ? nullptr : parent_->GetChild(index_ + 1);
}

CTreeItem* CTreeItem::GetPreviousSibling() const {
  return parent_ == nullptr ? nullptr : parent_->GetChild(index_ - 1);
}

int CTreeItem::GetLevel() const {
  int level = 0;
  for (const CTreeItem* above = GetParent(); above != nullptr; above = above->GetParent()) ++level;
  return level;
}

bool CTreeItem::IsBelow(const CTreeItem& other) const {
  const CTreeItem* above = parent_;
  while (above != nullptr && above != &other) above = above->parent_;
  return above != nullptr;
}

CTreeItem* CTreeItem::GetNextVisible() const {
  return isExpanded_ ? GetFirstChildItem() : NextAfterSubtree();
}

CTreeItem* CTreeItem::GetPreviousVisible() const {
  CTreeItem* above = GetPreviousSibling();
  if (above == nullptr) return GetParent();
  while (above->isExpanded_) above = above->GetChild(above->GetChildCount() - 1);
  return above;
}

CTreeItem* CTreeItem::GetNext() const {
  return HasChildren() ? GetFirstChildItem() : NextAfterSubtree();
}

CTreeItem* CTreeItem::NextAfterSubtree() const {
  for (const CTreeItem* item = this; item != nullptr; item = item->parent_) {
    if (CTreeItem* const next = item->GetNextSiblingItem()) return next;
  }
  return nullptr;
}

CTreeItem& CTreeItem::AppendChild(std::unique_ptr<CTreeItem> child) {
  children_.push_back(std::move(child));
  NumberChildren(GetChildCount() - 1);
  return *children_.back();
}

void CTreeItem::NumberChildren(int from) {
  for (int i = from; i < GetChildCount(); ++i) {
    CTreeItem& child = *children_[static_cast<std::size_t>(i)];
    child.parent_ = this;
    child.index_ = i;
  }
}

}  // namespace tarn
