#pragma once

#include <QHeaderView>
#include <functional>

#include "widgets/ReportControl.h"

namespace tarn {

// The heads of a report's columns: flat, in the report's colour, with an arrow on the sorted one. A
// head can be dragged out.
class ReportHeader : public QHeaderView {
 public:
  ReportHeader(CReportControl& shownReport, QWidget* parent);

  // Of the column whose head was dragged and let go at that place of the screen.
  std::function<void(int column, QPoint screen)> onDropped;

  // What a right click on the head would open, below it; -1 is behind the last one.
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

  CReportControl& report;
  const WindowHandle handle;
  int hovered = -1;
  int dragged = -1;
};

}  // namespace tarn
