#include "platform/qt/QtTipPeer.h"

#include <QGuiApplication>
#include <QPainter>
#include <QScreen>
#include <QToolTip>
#include <algorithm>

#include "platform/text/Text.h"

namespace tarn {

namespace {

// More than the tip's own margins: frame, and air.
constexpr int kPadding = 5;
constexpr qreal kCorner = 4;

}  // namespace

void TipWidget::paintEvent(QPaintEvent* /*event*/) {
  if (!IsWindow(handle)) return;
  QPainter painter(this);
  painter.setBrush(palette().brush(QPalette::ToolTipBase));
  QColor frame = palette().color(QPalette::ToolTipText);
  frame.setAlphaF(0.3F);
  painter.setPen(frame);
  // The plain frame is style 0; the others are softer ones.
  const qreal corner = tip.GetFrameStyle() == 0 ? 0 : kCorner;
  painter.setRenderHint(QPainter::Antialiasing);
  painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), corner, corner);

  painter.setPen(palette().color(QPalette::ToolTipText));
  const Size margins = tip.GetMargins();
  const int left = kPadding + margins.width;
  int top = kPadding + margins.height;
  const auto drawLine = [&](const QString& line) {
    const int height = painter.fontMetrics().height();
    painter.drawText(QRect(left, top, width() - 2 * left, height),
                     Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, line);
    top += height + tip.GetLineSpace();
  };
  QFont bold = font();
  bold.setBold(true);
  painter.setFont(bold);
  drawLine(ToQt(tip.GetTitle()));
  painter.setFont(font());
  for (const std::string_view line : Split(tip.GetWindowText(), '\n')) drawLine(ToQt(line));
}

QtTipPeer::QtTipPeer(CTipWindow& shownTip)
    : WidgetPeer(shownTip, new TipWidget(shownTip)), tip(shownTip) {
  widget->setParent(widget->parentWidget(), Qt::ToolTip | Qt::FramelessWindowHint |
                                                Qt::WindowTransparentForInput |
                                                Qt::WindowDoesNotAcceptFocus);
  widget->setAttribute(Qt::WA_ShowWithoutActivating);
  widget->setAttribute(Qt::WA_TranslucentBackground);
  widget->setPalette(QToolTip::palette());
}

void QtTipPeer::OnMoved() {
  if (widget == nullptr) return;
  const Rect& rect = tip.GetRect();
  const CWnd* const above = tip.GetParent();
  const Point place =
      above == nullptr ? Point{rect.left, rect.top} : above->ClientToScreen({rect.left, rect.top});
  QRect shown(place.x, place.y, rect.Width() + 2 * kPadding, rect.Height() + 2 * kPadding);
  const QScreen* screen = QGuiApplication::screenAt(shown.topLeft());
  if (screen == nullptr) screen = QGuiApplication::primaryScreen();
  if (screen != nullptr) {
    const QRect room = screen->availableGeometry();
    shown.moveLeft(std::max(room.left(), std::min(shown.left(), room.right() - shown.width())));
    shown.moveTop(std::max(room.top(), std::min(shown.top(), room.bottom() - shown.height())));
  }
  widget->setGeometry(shown);
}

void QtTipPeer::OnShown() {
  if (widget == nullptr) return;
  // The parent may have moved since the place was told.
  if (tip.IsVisible()) QtTipPeer::OnMoved();
  widget->setAccessibleName(ToQt(tip.GetTitle()));
  widget->setAccessibleDescription(ToQt(tip.GetWindowText()));
  widget->setVisible(tip.IsVisible());
}

}  // namespace tarn
