#pragma once

#include <QAbstractListModel>
#include <QHash>
#include <QIcon>
#include <vector>

#include "hosts/desktop/NodeIndex.h"

namespace tarn::host {

// The nodes that match a text. The remark behind a label is what kRemarkRole gives.
class NodeListModel : public QAbstractListModel {
 public:
  static constexpr int kRemarkRole = Qt::UserRole;

  NodeListModel(QString pictureFolder, QObject* parent);

  void SetNodes(std::vector<IndexedNode> allNodes);
  void SetText(const QString& text);
  const IndexedNode& NodeAt(int row) const;

  int rowCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;

 private:
  QIcon PictureOf(const QString& type) const;

  QString pictures;
  std::vector<IndexedNode> nodes;
  std::vector<int> rows;
  mutable QHash<QString, QIcon> icons;
};

}  // namespace tarn::host
