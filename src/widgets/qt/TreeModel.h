#pragma once

#include <QAbstractItemModel>

#include "widgets/TreeCtrl.h"

namespace tarn {

// Item model of a tree control; nothing is copied. The owner must call the paired functions around
// each change of the control. A null parent means the top level.
class TreeModel : public QAbstractItemModel {
 public:
  TreeModel(const CTreeCtrl& shownTree, QObject* parent)
      : QAbstractItemModel(parent), tree_(&shownTree) {}

  // The control is being destroyed: the model is empty afterwards.
  void Detach();
  // The model is empty during a reset, so that no view keeps pointers to freed items even if events
  // run in between.
  void BeginReset();
  void EndReset();
  bool IsResetting() const { return isResetting_; }
  void BeginInsert(const CTreeItem* above, int first, int count);
  void EndInsert() { endInsertRows(); }
  void BeginRemove(const CTreeItem* above, int first, int count);
  void EndRemove() { endRemoveRows(); }
  void NotifyChanged(const CTreeItem& item);

  // Returns the invalid index for null.
  QModelIndex IndexOf(const CTreeItem* item) const;
  // Returns null for the invalid index.
  static CTreeItem* ItemAt(const QModelIndex& index) {
    return static_cast<CTreeItem*>(index.internalPointer());
  }

  QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
  QModelIndex parent(const QModelIndex& child) const override;
  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;

 private:
  const CTreeCtrl* tree_;
  bool isResetting_ = false;
};

}  // namespace tarn
