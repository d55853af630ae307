#pragma once

#include <QTimer>

#include "widgets/qt/FollowingView.h"
#include "widgets/qt/ReportDelegate.h"
#include "widgets/qt/ReportHeader.h"
#include "widgets/qt/ReportModel.h"

namespace tarn {

// Shows a report control's columns and rows. Rows that are added are shown in batches.
class ReportView : public FollowingView {
 public:
  explicit ReportView(CReportControl& shownReport);

  ReportHeader& Head() { return *head; }
  // The control is going; nothing of it is touched any more.
  void Detach();

  void FollowColumns();
  void FollowRows();
  void FollowAppended();
  void FollowRow(int row);
  void FollowSelection();
  void FollowScroll() override;
  void FollowMeasures();
  // At the next chance: opens the editor in a cell.
  void AskToEdit(int row, int column);

  int RowsPerPage() const;
  void selectAll() override;
  ReportHit HitAt(QPoint point) const;

 protected:
  void drawRow(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
  void paintEvent(QPaintEvent* event) override;
  bool viewportEvent(QEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void changeEvent(QEvent* event) override;
  void TellState() override;

 private:
  int RowAt(int y) const;
  QRect PlaceOf(int row) const;
  // Of a cell; a group goes over all columns.
  QRect PlaceOf(int row, int column) const;
  void LayOutColumns();
  void TakeMore();
  void ShowRefill();
  void SelectRows();
  void ShowTip(QHelpEvent& event);
  // The sorted column, or the first that shows texts; -1 for none.
  int SearchedColumn() const;
  void CopyRows() const;
  void ShowRowMenu(QPoint screen);

  CReportControl& report;
  ReportModel* rows;
  ReportDelegate* delegate;
  ReportHeader* head;
  QTimer takeTimer;
  int rowHeight = 0;  // that the layout was made for
  // Rows are others, of which selection and place are still to be shown. A report that is sorted
  // says that line by line.
  bool isRefillDue = false;
};

}  // namespace tarn
