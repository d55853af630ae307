#include "hosts/desktop/ActionLink.h"

#include <QEvent>
#include <QPainter>
#include <QStyleOption>

namespace tarn::host {

namespace {

constexpr int kIcon = 24;
constexpr int kSpace = 8;
constexpr qreal kRound = 5;
constexpr int kWrapped = Qt::AlignLeft | Qt::AlignTop | Qt::TextWordWrap;

}  // namespace

ActionLink::ActionLink(const QIcon& picture, const QString& label, const QString& below,
                       Remark kindOfRemark, QWidget* parent)
    : QAbstractButton(parent), remark_(below), kind_(kindOfRemark) {
  setIcon(picture);
  setText(label);
  if (kind_ == Remark::Path) setToolTip(below);
  setAccessibleName(label);
  setAccessibleDescription(below);
  setFocusPolicy(Qt::StrongFocus);
  setCursor(Qt::PointingHandCursor);
  QSizePolicy policy(QSizePolicy::Expanding, QSizePolicy::Minimum);
  policy.setHeightForWidth(true);
  setSizePolicy(policy);
}

QFont ActionLink::RemarkFont() const {
  QFont small = font();
  small.setPointSizeF(small.pointSizeF() * 0.9);
  return small;
}

QSize ActionLink::sizeHint() const {
  constexpr int kWidth = 12 * kIcon;
  return {kWidth, heightForWidth(kWidth)};
}

int ActionLink::heightForWidth(int width) const {
  int height = fontMetrics().height();
  if (!remark_.isEmpty()) {
    const QFontMetrics metrics(RemarkFont());
    const QRect room(0, 0, width - 3 * kSpace - kIcon, 0);
    height += kind_ == Remark::Path ? metrics.height()
                                    : metrics.boundingRect(room, kWrapped, remark_).height();
  }
  return std::max(height, kIcon) + 2 * kSpace;
}

bool ActionLink::event(QEvent* event) {
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

void ActionLink::paintEvent(QPaintEvent*) {
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
  if (remark_.isEmpty()) {
    painter.drawText(texts, flags | Qt::AlignVCenter,
                     fontMetrics().elidedText(text(), Qt::ElideRight, texts.width()));
    return;
  }
  painter.drawText(texts, flags | Qt::AlignTop,
                   fontMetrics().elidedText(text(), Qt::ElideRight, texts.width()));
  QColor dim = colours.color(QPalette::WindowText);
  dim.setAlphaF(0.65F);
  painter.setPen(dim);
  painter.setFont(RemarkFont());
  texts.setTop(texts.top() + fontMetrics().height());
  if (kind_ == Remark::Text) {
    painter.drawText(texts, kWrapped | Qt::TextDontClip, remark_);
    return;
  }
  painter.drawText(texts, flags | Qt::AlignTop,
                   painter.fontMetrics().elidedText(remark_, Qt::ElideMiddle, texts.width()));
}

}  // namespace tarn::host
