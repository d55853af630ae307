#include "hosts/desktop/LinkRow.h"

#include <QEvent>
#include <QPainter>
#include <QStyleOption>

namespace tarn::host {

namespace {

constexpr int kIcon = 24;
constexpr int kSpace = 8;
constexpr qreal kRound = 5;

}  // namespace

LinkRow::LinkRow(const QIcon& picture, const QString& label, const QString& below, QWidget* parent)
    : QAbstractButton(parent), remark(below) {
  setIcon(picture);
  setText(label);
  setToolTip(below);
  setAccessibleName(label);
  setAccessibleDescription(below);
  setFocusPolicy(Qt::StrongFocus);
  setCursor(Qt::PointingHandCursor);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

QFont LinkRow::RemarkFont() const {
  QFont small = font();
  small.setPointSizeF(small.pointSizeF() * 0.9);
  return small;
}

QSize LinkRow::sizeHint() const {
  int height = fontMetrics().height();
  if (!remark.isEmpty()) height += QFontMetrics(RemarkFont()).height();
  return {12 * kIcon, std::max(height, kIcon) + 2 * kSpace};
}

bool LinkRow::event(QEvent* event) {
  switch (event->type()) {
    case QEvent::Enter:
    case QEvent::Leave:
    case QEvent::FocusIn:
    case QEvent::FocusOut:
      update();
      break;
    default:
      break;
  }
  return QAbstractButton::event(event);
}

void LinkRow::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const QPalette colours = palette();
  const QColor accent = colours.color(QPalette::Highlight);
  if (underMouse() || hasFocus() || isDown()) {
    QColor back = accent;
    back.setAlphaF(isDown() ? 0.25F : 0.12F);
    painter.setBrush(back);
    painter.setPen(hasFocus() ? QPen(accent) : QPen(Qt::NoPen));
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), kRound, kRound);
  }
  const QRect content = rect().adjusted(kSpace, kSpace, -kSpace, -kSpace);
  icon().paint(&painter, QRect(content.left(), content.center().y() - kIcon / 2 + 1, kIcon, kIcon));
  QRect texts = content.adjusted(kIcon + kSpace, 0, 0, 0);
  painter.setPen(colours.color(QPalette::WindowText));
  const int flags = Qt::AlignLeft | Qt::TextSingleLine;
  if (remark.isEmpty()) {
    painter.drawText(texts, flags | Qt::AlignVCenter,
                     fontMetrics().elidedText(text(), Qt::ElideMiddle, texts.width()));
    return;
  }
  painter.drawText(texts, flags | Qt::AlignTop,
                   fontMetrics().elidedText(text(), Qt::ElideMiddle, texts.width()));
  QColor dim = colours.color(QPalette::WindowText);
  dim.setAlphaF(0.65F);
  painter.setPen(dim);
  painter.setFont(RemarkFont());
  painter.drawText(texts, flags | Qt::AlignBottom,
                   painter.fontMetrics().elidedText(remark, Qt::ElideMiddle, texts.width()));
}

}  // namespace tarn::host
