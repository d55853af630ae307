#pragma once

#include <QLabel>
#include <memory>

#include "widgets/TreeCtrl.h"
#include "widgets/qt/TreeView.h"
#include "widgets/qt/WidgetPeer.h"

namespace tarn {

// Shows a tree control in a TreeView.
class QtTreePeer : public WidgetPeer<TreePeer, TreeView> {
 public:
  explicit QtTreePeer(CTreeCtrl& shownTree);
  ~QtTreePeer() override;

  void OnMoved() override;
  void OnTextChanged() override;
  void OnInvalidated() override;

  void OnResetting() override;
  void OnReset() override;
  void OnItemsInserting(const CTreeItem* parent, int first, int count) override;
  void OnItemsInserted(const CTreeItem* parent, int first, int count) override;
  void OnItemsRemoving(const CTreeItem* parent, int first, int count) override;
  void OnItemsRemoved(const CTreeItem* parent, int first, int count) override;
  void OnItemChanged(const CTreeItem& item) override;
  void OnItemExpanded(const CTreeItem& item) override;
  void OnSelectionChanged() override;
  void OnDropHighlightChanged() override;
  void OnScrolled() override;

  bool OnDragBegun(const CTreeItem& item, Point hotSpot, Point screen) override;
  void OnDragMoved(Point screen) override;
  void OnDragEnded() override;

  int GetLineHeight() override;
  std::optional<TreeHit> HitTest(Point point) override;
  std::optional<Rect> GetTextRect(const CTreeItem& item) override;

 private:
  CTreeCtrl& tree_;
  std::unique_ptr<QLabel> dragged_;  // image that follows the cursor
  QPoint dragSpot_;                  // position of the cursor in the image
};

}  // namespace tarn
