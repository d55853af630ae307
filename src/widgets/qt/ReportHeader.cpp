#include "widgets/qt/ReportHeader.h"

#include <QContextMenuEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QStyleOption>
#include <algorithm>

#include "widgets/qt/QtColor.h"
#include "widgets/qt/QtText.h"
#include "widgets/qt/ReportModel.h"

namespace tarn {

namespace {

constexpr int kSpace = 4;  // above and below the captions
constexpr int kArrow = 9;
constexpr int kSmallestColumn = 16;
constexpr float kLineStrength = 0.2F;
constexpr float kHoverStrength = 0.08F;

}  // namespace

ReportHeader::ReportHeader(CReportControl& shownReport, QWidget* parent)
    : QHeaderView(Qt::Horizontal, parent), report_(shownReport), handle_(shownReport.GetHandle()) {
  setStretchLastSection(false);
  setMinimumSectionSize(kSmallestColumn);
  viewport()->setMouseTracking(true);
}

QSize ReportHeader::sizeHint() const {
  return {0, fontMetrics().height() + 2 * kSpace};
}

QColor ReportHeader::BackgroundColor() const {
  const std::optional<Color> color =
      IsWindow(handle_) ? report_.GetLook().headerColor : std::optional<Color>();
  return color ? ToBackgroundColor(*color) : palette().color(QPalette::Window);
}

// Paints the area after the last column as well.
void ReportHeader::paintEvent(QPaintEvent* event) {
  QPainter painter(viewport());
  const QColor background = BackgroundColor();
  painter.fillRect(event->rect(), background);
  painter.setPen(Blend(background, palette().color(QPalette::WindowText), kLineStrength));
  painter.drawLine(viewport()->rect().bottomLeft(), viewport()->rect().bottomRight());
  painter.end();
  QHeaderView::paintEvent(event);
}

void ReportHeader::paintSection(QPainter* painter, const QRect& rect, int section) const {
  const CReportColumn* const column =
      IsWindow(handle_) ? report_.GetColumns().GetAt(section) : nullptr;
  if (column == nullptr || !rect.isValid()) return;
  const QColor background = BackgroundColor();
  const QColor text =
      palette().color(isEnabled() ? QPalette::Active : QPalette::Disabled, QPalette::WindowText);
  painter->save();
  const bool isHovered = section == hovered_ && column->IsSortable();
  painter->fillRect(rect.adjusted(0, 0, 0, -1),
                    isHovered ? Blend(background, text, kHoverStrength) : background);
  painter->setPen(Blend(background, text, kLineStrength));
  painter->drawLine(rect.bottomLeft(), rect.bottomRight());
  painter->drawLine(rect.right(), rect.top() + kSpace, rect.right(), rect.bottom() - kSpace);
  QRect room = rect.adjusted(ReportLayout::kCellMargin, 0, -ReportLayout::kCellMargin, 0);
  if (column->IsSorted()) {
    QStyleOption arrow;
    arrow.initFrom(this);
    arrow.rect =
        QRect(room.right() + 1 - kArrow, rect.top() + (rect.height() - kArrow) / 2, kArrow, kArrow);
    style()->drawPrimitive(
        column->IsSortedAscending() ? QStyle::PE_IndicatorArrowUp : QStyle::PE_IndicatorArrowDown,
        &arrow, painter, this);
    room.setRight(arrow.rect.left() - ReportLayout::kCellMargin);
  }
  const QString caption = Translated(column->GetCaption());
  painter->setFont(font());
  painter->setPen(text);
  // A truncated caption on a narrow image column would be meaningless.
  const bool isCut = fontMetrics().horizontalAdvance(caption) > room.width();
  if (!isCut || column->GetIconId() == CReportColumn::kNoIcon) {
    painter->drawText(
        room,
        static_cast<int>(AlignmentOf(*column).toInt()) | Qt::AlignVCenter | Qt::TextSingleLine,
        fontMetrics().elidedText(caption, Qt::ElideRight, room.width()));
  }
  painter->restore();
}

void ReportHeader::mousePressEvent(QMouseEvent* event) {
  // Between two headers the press starts a resize.
  const bool isOnHead = viewport()->cursor().shape() != Qt::SplitHCursor;
  const bool isLeft = event->button() == Qt::LeftButton;
  dragged_ = isLeft && isOnHead ? logicalIndexAt(event->position().toPoint()) : -1;
  QHeaderView::mousePressEvent(event);
}

void ReportHeader::mouseMoveEvent(QMouseEvent* event) {
  QHeaderView::mouseMoveEvent(event);
  SetHovered(logicalIndexAt(event->position().toPoint()));
}

void ReportHeader::mouseReleaseEvent(QMouseEvent* event) {
  const int column = std::exchange(dragged_, -1);
  const QPoint place = event->globalPosition().toPoint();
  const bool isOutside = !rect().contains(event->position().toPoint());
  // Sorting, which the click may cause, does not destroy the window, so this object still exists.
  QHeaderView::mouseReleaseEvent(event);
  if (column >= 0 && isOutside && onDropped) onDropped(column, place);
}

void ReportHeader::leaveEvent(QEvent* event) {
  QHeaderView::leaveEvent(event);
  SetHovered(-1);
}

void ReportHeader::contextMenuEvent(QContextMenuEvent* event) {
  event->accept();
  if (!IsWindow(handle_)) return;
  const QPoint screen = event->globalPos();
  report_.GetReportHeader().NotifyRightClicked(logicalIndexAt(event->pos()),
                                               {screen.x(), screen.y()});
}

void ReportHeader::OpenMenu(int column) {
  if (!IsWindow(handle_)) return;
  const int left = column < 0 ? length() : sectionViewportPosition(column);
  const QPoint screen =
      viewport()->mapToGlobal(QPoint(std::clamp(left, 0, std::max(0, width() - 1)), height()));
  report_.GetReportHeader().NotifyRightClicked(column, {screen.x(), screen.y()});
}

void ReportHeader::SetHovered(int section) {
  if (section == hovered_) return;
  hovered_ = section;
  viewport()->update();
}

}  // namespace tarn
