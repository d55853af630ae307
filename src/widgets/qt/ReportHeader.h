#pragma once

#include <QHeaderView>
#include <functional>

#include "widgets/ReportControl.h"

namespace tarn {

// Column headers of a report: flat, in the report's colour, with an arrow on the sorted column. A
// header can be dragged out.
class ReportHeader : public QHeaderView {
 public:
  ReportHeader(CReportControl& shownReport, QWidget* parent);

  // Called when the header of a column was dragged and dropped at a screen position.
  std::function<void(int column, QPoint screen)> onDropped;

  // Opens the context menu of a header, below it; -1 means the area after the last column.
  void OpenMenu(int column);

  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void paintSection(QPainter* painter, const QRect& rect, int section) const override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void leaveEvent(QEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;

 private:
  QColor BackgroundColor() const;
  void SetHovered(int section);

  CReportControl& report_;
  const WindowHandle handle_;
  int hovered_ = -1;
  int dragged_ = -1;
};

}  // namespace tarn
