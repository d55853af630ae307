#pragma once

#include <QRect>
#include <QStyledItemDelegate>

#include "widgets/ReportControl.h"
#include "widgets/qt/ImageCache.h"

class QHeaderView;

namespace tarn {

// Paints and measures the rows of a report, and provides in-place editors for their texts.
class ReportDelegate : public QStyledItemDelegate {
 public:
  ReportDelegate(CReportControl& shownReport, QWidget& reportView);

  int RowHeight() const;
  // `place` extends from the first column to the right edge of the last column or of the window.
  void PaintRow(QPainter& painter, int row, const QRect& place, const QHeaderView& header) const;
  // Sets part and hyperlink of the cell at a point.
  void Hit(int row, int column, const QRect& place, QPoint point, ReportHit& hit) const;
  // Returns whether the text of the cell or group row is truncated.
  bool IsCut(const QModelIndex& index, const QRect& place) const;

  QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
  QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                        const QModelIndex& index) const override;
  void setModelData(QWidget* editor, QAbstractItemModel* model,
                    const QModelIndex& index) const override;

 private:
  // Rectangles of the parts of a cell or group row; empty for missing parts.
  struct Cell {
    QRect opener;
    QRect mark;  // check box or image
    QRect text;
  };
  Cell LayOut(const CReportRow& row, int column, const QRect& place) const;
  void PaintGroup(QPainter& painter, const CReportRow& row, const QRect& place,
                  const QColor& color) const;
  void PaintCell(QPainter& painter, int row, int column, const QRect& place,
                 const QColor& selectedColor) const;
  void PaintText(QPainter& painter, const CReportRecordItem& item, const QString& text,
                 Qt::Alignment alignment, const QRect& place) const;
  void PaintOpener(QPainter& painter, const CReportRow& row, const QRect& place) const;
  QColor SelectionColor() const;
  QColor SelectedTextColor() const;
  QFont CellFont() const;
  QFont FontOf(const CReportRow& row) const;

  CReportControl& report_;
  const WindowHandle handle_;
  QWidget& view_;
  mutable ImageCache cache_;
};

}  // namespace tarn
