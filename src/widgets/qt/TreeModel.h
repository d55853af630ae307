#pragma once

#include <QAbstractItemModel>

#include "widgets/TreeCtrl.h"

namespace tarn {

// The items of a tree control as they stand; nothing is copied. Whoever hears of the control's
// changes calls the functions that come in pairs around each. A parent that is null is the top
// level.
class TreeModel : public QAbstractItemModel {
 public:
  TreeModel(const CTreeCtrl& shownTree, QObject* parent)
      : QAbstractItemModel(parent), tree(&shownTree) {}

  // The control is going: empty from now on.
  void Detach();
  // Empty in between, so that nobody holds items which are gone, even if events run meanwhile.
  void BeginReset();
  void EndReset();
  bool IsResetting() const { return isResetting; }
  void BeginInsert(const CTreeItem* above, int first, int count);
  void EndInsert() { endInsertRows(); }
  void BeginRemove(const CTreeItem* above, int first, int count);
  void EndRemove() { endRemoveRows(); }
  void TellChanged(const CTreeItem& item);

  // The invalid index for null.
  QModelIndex IndexOf(const CTreeItem* item) const;
  // Null for the invalid index.
  static CTreeItem* ItemAt(const QModelIndex& index) {
    return static_cast<CTreeItem*>(index.internalPointer());
  }

  QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
  QModelIndex parent(const QModelIndex& child) const override;
  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;

 private:
  const CTreeCtrl* tree;
  bool isResetting = false;
};

}  // namespace tarn
