#pragma once

#include <QTreeView>
#include <vector>

#include "platform/qt/TreeDelegate.h"
#include "platform/qt/TreeModel.h"
#include "platform/qt/TypeAhead.h"

namespace tarn {

// Shows a tree control's items. What is expanded, selected and at the top is the control's matter:
// the view's own handling of mouse and keys is off, and the functions below make it follow. Only
// scrolling is the user's here, and goes to the control.
class TreeView : public QTreeView {
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
  void FollowScroll();
  void FollowMeasures();
  // At the next chance: size and top line, where the view can't have them as the control knows.
  void AskToTellState();

  TreeHit HitAt(Point point);
  Rect TextRectOf(const CTreeItem& item);

 protected:
  void drawRow(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
  bool eventFilter(QObject* watched, QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void scrollContentsBy(int dx, int dy) override;
  void resizeEvent(QResizeEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void updateGeometries() override;

 private:
  std::vector<CTreeItem*> ListItems() const;
  void SearchFor(const QKeyEvent& typed);
  void DrawGuides(QPainter& painter, const QRect& branches) const;
  void OnScrolledTo(int row);
  void TellState();

  CTreeCtrl& tree;
  const WindowHandle handle;
  TreeModel* items;
  TreeDelegate* delegate;
  int following = 0;  // calls of the control that are running: nothing may be told back in them
  QSize measures;     // of a line, that the layout was made for
  bool isTellingDue = false;
  TypeAhead typeAhead;
};

}  // namespace tarn
