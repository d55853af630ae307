#pragma once

#include <QAbstractItemDelegate>
#include <functional>
#include <unordered_map>

#include "widgets/TreeCtrl.h"
#include "widgets/qt/ImageCache.h"

namespace tarn {

// Paints and measures the lines of a tree behind the branches: image, then what the control wants
// painted, or the label. A line is as wide as it was when it was painted last: what the control
// wants painted is asked while painting alone, as the items may mean nothing at other times.
class TreeDelegate : public QAbstractItemDelegate {
 public:
  TreeDelegate(const CTreeCtrl& shownTree, QWidget& treeView);

  // How far the label is from the item's left edge.
  int LabelOffset() const;
  int LabelWidth(const CTreeItem& item) const;
  int LineHeight() const;
  // Image and label alone, as it follows the cursor.
  QPixmap PictureOf(const CTreeItem& item);
  // All items are others.
  void ForgetWidths() { drawnWidths.clear(); }

  // A line was painted with another width than the last time.
  std::function<void()> onWidthChanged;

  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override;
  QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

 private:
  void PaintImage(QPainter& painter, const QRect& line, const CTreeItem& item) const;
  void PaintLabel(QPainter& painter, const QRect& line, const CTreeItem& item,
                  const QColor& color) const;
  // From the left edge of the line to the end of what the steps draw.
  int WidthOf(const DrawingSteps& steps, int left) const;
  void KeepWidth(const CTreeItem& item, int width) const;

  const CTreeCtrl& tree;
  QWidget& view;
  mutable ImageCache cache;
  mutable std::unordered_map<const CTreeItem*, int> drawnWidths;
};

}  // namespace tarn
