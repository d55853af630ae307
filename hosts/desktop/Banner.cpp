#include "hosts/desktop/Banner.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QStyle>

#include "platform/qt/QtColor.h"

namespace tarn::host {

namespace {

// Amber, faint enough for both kinds of palette.
constexpr Color kColor = MakeColor(240, 170, 0);
constexpr float kFaint = 0.22F;

}  // namespace

Banner::Banner(const QString& first, const QString& second, QWidget* parent)
    : QFrame(parent), label(new QLabel(this)), accept(new QPushButton(first, this)) {
  label->setWordWrap(true);
  auto* const picture = new QLabel(this);
  const int size = style()->pixelMetric(QStyle::PM_SmallIconSize);
  picture->setPixmap(style()->standardIcon(QStyle::SP_MessageBoxWarning).pixmap(size, size));
  auto* const row = new QHBoxLayout(this);
  row->setContentsMargins(10, 5, 8, 5);
  row->setSpacing(8);
  row->addWidget(picture);
  row->addWidget(label, 1);
  auto* const refuse = new QPushButton(second, this);
  for (QPushButton* const each : {accept, refuse}) {
    each->setAutoDefault(false);
    row->addWidget(each);
  }
  connect(accept, &QPushButton::clicked, this, [this] {
    if (onFirst) onFirst();
  });
  connect(refuse, &QPushButton::clicked, this, [this] {
    if (onSecond) onSecond();
  });
  connect(label, &QLabel::linkActivated, this, [this] {
    if (onLink) onLink();
  });
  hide();
}

void Banner::Tell(const QString& text) {
  label->setTextFormat(Qt::PlainText);
  label->setText(text);
  setAccessibleName(text);
  show();
}

void Banner::TellWithLink(const QString& text, const QString& link) {
  label->setTextFormat(Qt::RichText);
  label->setTextInteractionFlags(Qt::LinksAccessibleByMouse | Qt::LinksAccessibleByKeyboard);
  label->setText(text.toHtmlEscaped() + " <a href=\"link\">" + link.toHtmlEscaped() + "</a>");
  setAccessibleName(text + ' ' + link);
  show();
}

void Banner::SetReady(bool isReady, const QString& reason) {
  accept->setEnabled(isReady);
  accept->setToolTip(isReady ? QString() : reason);
}

void Banner::paintEvent(QPaintEvent*) {
  QColor colour = ToQtColor(kColor);
  colour.setAlphaF(kFaint);
  QPainter(this).fillRect(rect(), colour);
}

}  // namespace tarn::host
