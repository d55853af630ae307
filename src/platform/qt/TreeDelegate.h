#pragma once

#include <QAbstractItemDelegate>

#include "platform/qt/ImageCache.h"
#include "platform/windowing/TreeCtrl.h"

namespace tarn {

// Paints and measures the lines of a tree behind the branches: image, then what the control wants
// painted, or the label.
class TreeDelegate : public QAbstractItemDelegate {
 public:
  TreeDelegate(const CTreeCtrl& shownTree, QWidget& treeView);

  // How far the label is from the item's left edge.
  int LabelOffset() const;
  int LabelWidth(const CTreeItem& item) const;
  int LineHeight() const;
  // Image and label alone, as it follows the cursor.
  QPixmap PictureOf(const CTreeItem& item);

  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override;
  QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

 private:
  void PaintImage(QPainter& painter, const QRect& line, const CTreeItem& item) const;
  void PaintLabel(QPainter& painter, const QRect& line, const CTreeItem& item,
                  const QColor& color) const;

  const CTreeCtrl& tree;
  QWidget& view;
  mutable ImageCache cache;
};

}  // namespace tarn
