#pragma once

#include <vector>

#include "widgets/qt/FollowingView.h"
#include "widgets/qt/TreeDelegate.h"
#include "widgets/qt/TreeModel.h"

namespace tarn {

// Shows a tree control's items. The view itself handles only scrolling, and reports it to the
// control.
class TreeView : public FollowingView {
 public:
  explicit TreeView(CTreeCtrl& shownTree);

  // Access for the peer, which forwards the control's notifications to them.
  TreeModel& Model() { return *items_; }
  TreeDelegate& Delegate() { return *delegate_; }
  // The control is being destroyed and is not accessed any more.
  void Detach();

  // Each updates the view for one kind of change of the control, without reporting anything back.
  void FollowResetting();
  void FollowReset();
  void FollowInserted(const CTreeItem* above, int first, int count);
  void FollowRemoved(const CTreeItem* above);
  // Updates the expansion of the item and its visible descendants.
  void FollowExpansion(const CTreeItem& item);
  void FollowSelection();
  void FollowScroll() override;
  void FollowMeasures();

  // Geometry as drawn, in viewport coordinates.
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
  void NotifyState() override;

 private:
  std::vector<CTreeItem*> ListItems() const;
  void SearchFor(const QKeyEvent& typed);
  void DrawGuides(QPainter& painter, const QRect& branches) const;
  void OnScrolledTo(int row);

  CTreeCtrl& tree_;
  TreeModel* items_;
  TreeDelegate* delegate_;
  QSize measures_;  // size of a line that the layout was computed for
};

}  // namespace tarn
