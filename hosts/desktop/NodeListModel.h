#pragma once

#include <QAbstractListModel>
#include <QHash>
#include <QIcon>
#include <vector>

#include "hosts/desktop/NodeIndex.h"

namespace tarn::host {

// List model of the nodes that match a text. kRemarkRole is the text shown after the label.
class NodeListModel : public QAbstractListModel {
 public:
  static constexpr int kRemarkRole = Qt::UserRole;

  NodeListModel(QString pictureFolder, QObject* parent);

  // Replaces the nodes and clears the result; SetText must follow.
  void SetNodes(std::vector<IndexedNode> allNodes);
  // Filters the nodes by a text; see FindNodes.
  void SetText(const QString& text);
  const IndexedNode& NodeAt(int row) const;

  int rowCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;

 private:
  QIcon PictureOf(const QString& type) const;

  QString pictures_;
  std::vector<IndexedNode> nodes_;
  std::vector<int> rows_;
  mutable QHash<QString, QIcon> icons_;
};

}  // namespace tarn::host
