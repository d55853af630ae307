#pragma once

#include <QRect>
#include <QStyledItemDelegate>

#include "widgets/ReportControl.h"
#include "widgets/qt/ImageCache.h"

class QHeaderView;

namespace tarn {

// Paints and measures the rows of a report, and edits their texts in place.
class ReportDelegate : public QStyledItemDelegate {
 public:
  ReportDelegate(CReportControl& shownReport, QWidget& reportView);

  int RowHeight() const;
  // `place` reaches from the first column to the right edge of the last or of the window.
  void PaintRow(QPainter& painter, int row, const QRect& place, const QHeaderView& header) const;
  // Part and hyperlink of a cell at a point.
  void Hit(int row, int column, const QRect& place, QPoint point, ReportHit& hit) const;
  // Whether the cell, or the group's row, has more text than it shows.
  bool IsCut(const QModelIndex& index, const QRect& place) const;

  QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
  QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                        const QModelIndex& index) const override;
  void setModelData(QWidget* editor, QAbstractItemModel* model,
                    const QModelIndex& index) const override;

 private:
  // Where the parts of a cell are, or of a group's row; those that it doesn't have are empty.
  struct Cell {
    QRect opener;
    QRect mark;  // check box or picture
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

  CReportControl& report;
  const WindowHandle handle;
  QWidget& view;
  mutable ImageCache cache;
};

}  // namespace tarn
