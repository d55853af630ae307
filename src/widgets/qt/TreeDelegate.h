#pragma once

#include <QAbstractItemDelegate>
#include <functional>
#include <unordered_map>

#include "widgets/TreeCtrl.h"
#include "widgets/qt/ImageCache.h"

namespace tarn {

// Paints and measures the lines of a tree to the right of the branches: the image, then the
// control's paint commands or the label. The width of a line is that of its last painting: the
// control is asked for paint commands only while painting, since the items may be invalid at other
// times.
class TreeDelegate : public QAbstractItemDelegate {
 public:
  TreeDelegate(const CTreeCtrl& shownTree, QWidget& treeView);

  // Distance of the label from the item's left edge.
  int LabelOffset() const;
  // Width of the label, without the paint commands.
  int LabelWidth(const CTreeItem& item) const;
  int LineHeight() const;
  // Renders image and label only, for a drag.
  QPixmap PictureOf(const CTreeItem& item);
  // All items have changed.
  void ClearWidths() { drawnWidths_.clear(); }

  // Called when the painted width of a line has changed.
  std::function<void()> onWidthChanged;

  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override;
  QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

 private:
  void PaintIcon(QPainter& painter, const QRect& line, const CTreeItem& item) const;
  void PaintLabel(QPainter& painter, const QRect& line, const CTreeItem& item,
                  const QColor& color) const;
  // Distance from the left edge of the line to the end of what the commands draw.
  int WidthOf(const PaintCommands& steps, int left) const;
  void KeepWidth(const CTreeItem& item, int width) const;

  const CTreeCtrl& tree_;
  QWidget& view_;
  mutable ImageCache cache_;
  mutable std::unordered_map<const CTreeItem*, int> drawnWidths_;
};

}  // namespace tarn
