#pragma once

#include <QTimer>

#include "widgets/qt/FollowingView.h"
#include "widgets/qt/ReportDelegate.h"
#include "widgets/qt/ReportHeader.h"
#include "widgets/qt/ReportModel.h"

namespace tarn {

// Shows a report control's columns and rows. Appended rows are shown in batches.
class ReportView : public FollowingView {
 public:
  explicit ReportView(CReportControl& shownReport);

  ReportHeader& Head() { return *head_; }
  // The control is being destroyed and is not accessed any more.
  void Detach();

  // Each updates the view for one kind of change of the control, without reporting anything back.
  void FollowColumns();
  void FollowRows();
  void FollowAppended();
  void FollowRow(int row);
  void FollowSelection();
  void FollowScroll() override;
  void FollowMeasures();
  // Schedules opening the editor of a cell.
  void RequestEdit(int row, int column);

  // Geometry as drawn, in viewport coordinates.
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
  void NotifyState() override;

 private:
  int RowAt(int y) const;
  // Rectangle of a row.
  QRect RectOf(int row) const;
  // Rectangle of a cell; a group row spans all columns.
  QRect RectOf(int row, int column) const;
  void LayOutColumns();
  // Adds the pending rows to the model. Scheduled by a timer, so that rows added in quick
  // succession cost one layout.
  void TakeMore();
  void ShowRefill();
  void SelectRows();
  void ShowTip(QHelpEvent& event);
  // The sorted column, or the first one that shows text; -1 if there is none.
  int SearchedColumn() const;
  void CopyRows() const;
  void ShowRowMenu(QPoint screen);

  CReportControl& report_;
  ReportModel* rows_;
  ReportDelegate* delegate_;
  ReportHeader* head_;
  QTimer takeTimer_;
  int rowHeight_ = 0;  // row height that the layout was computed for
  // The rows have been replaced, and selection and scroll position are yet to be updated. A report
  // that is sorted sends one notification for each row.
  bool isRefillDue_ = false;
};

}  // namespace tarn
