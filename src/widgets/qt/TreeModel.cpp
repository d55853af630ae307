#include "widgets/qt/TreeModel.h"

#include "widgets/qt/QtText.h"

namespace tarn {

void TreeModel::Detach() {
  beginResetModel();
  tree_ = nullptr;
  endResetModel();
}

void TreeModel::BeginReset() {
  beginResetModel();
  isResetting_ = true;
  endResetModel();
}

void TreeModel::EndReset() {
  beginResetModel();
  isResetting_ = false;
  endResetModel();
}

void TreeModel::BeginInsert(const CTreeItem* above, int first, int count) {
  beginInsertRows(IndexOf(above), first, first + count - 1);
}

void TreeModel::BeginRemove(const CTreeItem* above, int first, int count) {
  beginRemoveRows(IndexOf(above), first, first + count - 1);
}

void TreeModel::NotifyChanged(const CTreeItem& item) {
  const QModelIndex changed = IndexOf(&item);
  Q_EMIT dataChanged(changed, changed);
}

QModelIndex TreeModel::IndexOf(const CTreeItem* item) const {
  if (item == nullptr || tree_ == nullptr || isResetting_) return {};
  return createIndex(item->GetIndex(), 0, item);
}

QModelIndex TreeModel::index(int row, int column, const QModelIndex& parent) const {
  if (tree_ == nullptr || isResetting_ || column != 0 || row < 0) return {};
  return IndexOf(tree_->GetItemAt(ItemAt(parent), row));
}

QModelIndex TreeModel::parent(const QModelIndex& child) const {
  return child.isValid() ? IndexOf(ItemAt(child)->GetParent()) : QModelIndex();
}

int TreeModel::rowCount(const QModelIndex& parent) const {
  return tree_ == nullptr || isResetting_ ? 0 : tree_->GetItemCount(ItemAt(parent));
}

int TreeModel::columnCount(const QModelIndex& /*parent*/) const {
  return 1;
}

QVariant TreeModel::data(const QModelIndex& index, int role) const {
  if (role != Qt::DisplayRole || !index.isValid() || tree_ == nullptr || isResetting_) return {};
  return ToQt(ItemAt(index)->GetText());
}

}  // namespace tarn
