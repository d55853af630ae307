#include "widgets/qt/TreeModel.h"

#include "widgets/qt/QtText.h"

namespace tarn {

void TreeModel::Detach() {
  beginResetModel();
  tree = nullptr;
  endResetModel();
}

void TreeModel::BeginReset() {
  beginResetModel();
  isResetting = true;
  endResetModel();
}

void TreeModel::EndReset() {
  beginResetModel();
  isResetting = false;
  endResetModel();
}

void TreeModel::BeginInsert(const CTreeItem* above, int first, int count) {
  beginInsertRows(IndexOf(above), first, first + count - 1);
}

void TreeModel::BeginRemove(const CTreeItem* above, int first, int count) {
  beginRemoveRows(IndexOf(above), first, first + count - 1);
}

void TreeModel::TellChanged(const CTreeItem& item) {
  const QModelIndex changed = IndexOf(&item);
  Q_EMIT dataChanged(changed, changed);
}

QModelIndex TreeModel::IndexOf(const CTreeItem* item) const {
  if (item == nullptr || tree == nullptr || isResetting) return {};
  return createIndex(item->GetIndex(), 0, item);
}

QModelIndex TreeModel::index(int row, int column, const QModelIndex& parent) const {
  if (tree == nullptr || isResetting || column != 0 || row < 0) return {};
  return IndexOf(tree->GetItemAt(ItemAt(parent), row));
}

QModelIndex TreeModel::parent(const QModelIndex& child) const {
  return child.isValid() ? IndexOf(ItemAt(child)->GetParent()) : QModelIndex();
}

int TreeModel::rowCount(const QModelIndex& parent) const {
  return tree == nullptr || isResetting ? 0 : tree->GetItemCount(ItemAt(parent));
}

int TreeModel::columnCount(const QModelIndex& /*parent*/) const {
  return 1;
}

QVariant TreeModel::data(const QModelIndex& index, int role) const {
  if (role != Qt::DisplayRole || !index.isValid() || tree == nullptr || isResetting) return {};
  return ToQt(ItemAt(index)->GetText());
}

}  // namespace tarn
