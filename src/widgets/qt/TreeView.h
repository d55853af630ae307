#pragma once

#include <vector>

#include "widgets/qt/FollowingView.h"
#include "widgets/qt/TreeDelegate.h"
#include "widgets/qt/TreeModel.h"

namespace tarn {

// Shows a tree control's items. Only scrolling is the user's here, and goes to the control.
class TreeView : public FollowingView {
 public:
  explicit TreeView(CTreeCtrl& shownTree);

  TreeModel& Model() { return *items; }
  TreeDelegate& Delegate() { return *delegate; }
  // The control is going; nothing of it is touched any more.
  void Detach();

  void FollowResetting();
  void FollowReset();
  void FollowInserted(const CTreeItem* above, int first, int count);
  void FollowRemoved(const CTreeItem* above);
  // The item with what is visible below it.
  void FollowExpansion(const CTreeItem& item);
  void FollowSelection();
  void FollowScroll() override;
  void FollowMeasures();

  TreeHit HitAt(Point point);
  Rect TextRectOf(const CTreeItem& item);

 protected:
  void drawRow(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
  bool eventFilter(QObject* watched, QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void scrollContentsBy(int dx, int dy) override;
  void updateGeometries() override;
  void TellState() override;

 private:
  std::vector<CTreeItem*> ListItems() const;
  void SearchFor(const QKeyEvent& typed);
  void DrawGuides(QPainter& painter, const QRect& branches) const;
  void OnScrolledTo(int row);

  CTreeCtrl& tree;
  TreeModel* items;
  TreeDelegate* delegate;
  QSize measures;  // of a line, that the layout was made for
};

}  // namespace tarn
