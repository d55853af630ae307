#pragma once

#include <QCoreApplication>
#include <QString>
#include <QWidget>
#include <functional>
#include <string>
#include <vector>

#include "hosts/desktop/NodeIndex.h"

class QListView;

namespace tarn::host {

class NodeListModel;
class SearchField;

// A field above the project's tree: while it holds a text, the nodes that match it stand in place
// of the tree, also those of closed groups. Arrow keys choose one, Enter shows it in the tree,
// Escape goes back.
class TreeFilter : public QWidget {
  Q_DECLARE_TR_FUNCTIONS(TreeFilter)

 public:
  // Puts the tree below the field; it stays the server's. The pictures come from a folder with a
  // separator at its end.
  TreeFilter(QWidget& treeWidget, const QString& pictureFolder, QWidget* parent);

  // Begins to look for a node.
  void Begin();

  // All nodes as they are now; asked for when the user begins, and when one is chosen.
  std::function<std::vector<IndexedNode>()> askNodes;
  std::function<void(const IndexedNode& node)> onChosen;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void Show(const QString& text);
  void Choose(int row);
  void Leave();
  void Move(int rows);

  QWidget& tree;
  SearchField* field = nullptr;
  QListView* list = nullptr;
  NodeListModel* model = nullptr;
};

}  // namespace tarn::host
