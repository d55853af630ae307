#pragma once

#include <QCoreApplication>
#include <QString>
#include <QWidget>
#include <functional>
#include <string>
#include <vector>

#include "hosts/desktop/NodeIndex.h"

class QListView;
class QVBoxLayout;

namespace tarn::host {

class NodeListModel;
class SearchField;

// A search field above the project's tree: while it contains text, the matching nodes are shown in
// place of the tree, including those in collapsed groups. Arrow keys select one, Enter shows it in
// the tree, Escape returns to the tree.
class TreeFilter : public QWidget {
  Q_DECLARE_TR_FUNCTIONS(TreeFilter)

 public:
  // Places the tree below the field; it is still owned by the server. `pictureFolder` contains the
  // icons and has a trailing separator.
  TreeFilter(QWidget& treeWidget, const QString& pictureFolder, QWidget* parent);

  // Starts a search.
  void Begin();
  // Replaces the texts for the project's tree.
  void SetPurpose(const QString& purpose, const QString& help);
  // Aligns the field and the list with the edges of a tree that has a frame.
  void AlignWithFrame();

  // Returns all current nodes; called when a search starts, and when a node is chosen.
  std::function<std::vector<IndexedNode>()> queryNodes;
  std::function<void(const IndexedNode& node)> onChosen;
  // Called with the selected node of the list whenever it changes; null if nothing matches. May be
  // empty.
  std::function<void(const IndexedNode* node)> onCurrent;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void Show(const QString& text);
  void Choose(int row);
  void Leave();
  void Move(int rows);
  void ShowCurrent();

  QWidget& tree_;
  SearchField* field_ = nullptr;
  QVBoxLayout* margin_ = nullptr;
  QListView* list_ = nullptr;
  NodeListModel* model_ = nullptr;
};

}  // namespace tarn::host
