#include "widgets/qt/QtTipPeer.h"

#include <QGuiApplication>
#include <QPainter>
#include <QScreen>
#include <QToolTip>
#include <algorithm>

#include "platform/text/Text.h"

namespace tarn {

namespace {

// Added to the tip's own margins for frame and spacing.
constexpr int kPadding = 5;
constexpr qreal kCorner = 4;
// Widest comfortable line length in characters.
constexpr int kWidestLine = 64;

// Wraps between words, or anywhere if a single word, such as a path, is too wide.
int FlagsFor(const QString& text, const QFontMetrics& metrics, int width) {
  constexpr int kFlags = Qt::AlignLeft | Qt::AlignTop | Qt::TextWordWrap | Qt::TextDontClip;
  const int needed = metrics.boundingRect(QRect(0, 0, width, 0), kFlags, text).width();
  return needed > width ? kFlags | Qt::TextWrapAnywhere : kFlags;
}

QSize SizeOf(const QString& text, const QFont& font, int width) {
  const QFontMetrics metrics(font);
  const QRect rect =
      metrics.boundingRect(QRect(0, 0, width, 0), FlagsFor(text, metrics, width), text);
  return {rect.width(), std::max(rect.height(), metrics.height())};
}

}  // namespace

void TipWidget::paintEvent(QPaintEvent* /*event*/) {
  if (!IsWindow(handle_)) return;
  QPainter painter(this);
  painter.setBrush(palette().brush(QPalette::ToolTipBase));
  QColor frame = palette().color(QPalette::ToolTipText);
  frame.setAlphaF(0.3F);
  painter.setPen(frame);
  // Style 0 is the plain frame; the others are rounded.
  const qreal corner = tip_.GetFrameStyle() == 0 ? 0 : kCorner;
  painter.setRenderHint(QPainter::Antialiasing);
  painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), corner, corner);

  painter.setPen(palette().color(QPalette::ToolTipText));
  QRect rest = rect().marginsRemoved(Margins());
  for (const Line& line : Lines()) {
    painter.setFont(line.font);
    painter.drawText(rest, FlagsFor(line.text, painter.fontMetrics(), rest.width()), line.text);
    rest.setTop(rest.top() + SizeOf(line.text, line.font, rest.width()).height() +
                tip_.GetLineSpace());
  }
}

std::vector<TipWidget::Line> TipWidget::Lines() const {
  QFont bold = font();
  bold.setBold(true);
  std::vector<Line> lines = {{ToQt(tip_.GetTitle()), bold}};
  for (const std::string_view line : Split(tip_.GetControlText(), '\n')) {
    lines.push_back({ToQt(line), font()});
  }
  return lines;
}

QMargins TipWidget::Margins() const {
  const Size own = tip_.GetMargins();
  const int across = kPadding + own.width;
  const int down = kPadding + own.height;
  return {across, down, across, down};
}

QSize TipWidget::SizeIn(QSize room) const {
  const QMargins margins = Margins();
  const int widest = std::min(kWidestLine * fontMetrics().averageCharWidth(),
                              room.width() - margins.left() - margins.right());
  QSize size;
  for (const Line& line : Lines()) {
    const QSize own = SizeOf(line.text, line.font, widest);
    const int space = size.isEmpty() ? 0 : tip_.GetLineSpace();
    size = QSize(std::max(size.width(), own.width()), size.height() + space + own.height());
  }
  return size.grownBy(margins).boundedTo(room);
}

QtTipPeer::QtTipPeer(CTipWindow& shownTip)
    : WidgetPeer(shownTip, new TipWidget(shownTip)), tip_(shownTip) {
  widget->setParent(widget->parentWidget(), Qt::ToolTip | Qt::FramelessWindowHint |
                                                Qt::WindowTransparentForInput |
                                                Qt::WindowDoesNotAcceptFocus);
  widget->setAttribute(Qt::WA_ShowWithoutActivating);
  widget->setAttribute(Qt::WA_TranslucentBackground);
}

void QtTipPeer::OnMoved() {
  if (widget == nullptr) return;
  const Rect& rect = tip_.GetRect();
  const CWnd* const above = tip_.GetParent();
  const Point place =
      above == nullptr ? Point{rect.left, rect.top} : above->ClientToScreen({rect.left, rect.top});
  QRect shown(place.x, place.y, 0, 0);
  const QScreen* screen = QGuiApplication::screenAt(shown.topLeft());
  if (screen == nullptr) screen = QGuiApplication::primaryScreen();
  if (screen != nullptr) {
    const QRect room = screen->availableGeometry();
    shown.setSize(widget->SizeIn(room.size()));
    shown.moveLeft(std::max(room.left(), std::min(shown.left(), room.right() - shown.width())));
    shown.moveTop(std::max(room.top(), std::min(shown.top(), room.bottom() - shown.height())));
  }
  widget->setGeometry(shown);
}

void QtTipPeer::OnShown() {
  if (widget == nullptr) return;
  // The theme may have changed since the last time.
  widget->setPalette(QToolTip::palette());
  // The parent may have moved since the position was set.
  if (tip_.IsVisible()) QtTipPeer::OnMoved();
  widget->setAccessibleName(ToQt(tip_.GetTitle()));
  widget->setAccessibleDescription(ToQt(tip_.GetControlText()));
  widget->setVisible(tip_.IsVisible());
}

}  // namespace tarn
