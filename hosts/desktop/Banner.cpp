#include "hosts/desktop/Banner.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QStyle>

#include "hosts/core/Printable.h"
#include "widgets/qt/QtColor.h"
#include "widgets/qt/QtText.h"

namespace tarn::host {

namespace {

// Amber, faint enough for both light and dark palettes.
constexpr Color kColor = MakeColor(240, 170, 0);
constexpr float kFaint = 0.22F;
constexpr int kLeastCharacters = 90;  // with the buttons in the same row

// Names may contain line breaks or bidirectional controls, which are escaped.
QString OneLine(const QString& text) {
  return ToQt(Printable(FromQt(text)));
}

}  // namespace

Banner::Banner(const QString& first, const QString& second, QWidget* parent)
    : QFrame(parent), label_(new QLabel(this)), accept_(new QPushButton(first, this)) {
  label_->setWordWrap(true);
  auto* const picture = new QLabel(this);
  const int size = style()->pixelMetric(QStyle::PM_SmallIconSize);
  picture->setPixmap(style()->standardIcon(QStyle::SP_MessageBoxWarning).pixmap(size, size));
  auto* const message = new QHBoxLayout;
  message->setSpacing(8);
  message->addWidget(picture);
  message->addWidget(label_, 1);
  auto* const refuse = new QPushButton(second, this);
  auto* const buttons = new QHBoxLayout;
  buttons->addStretch();
  for (QPushButton* const each : {accept_, refuse}) {
    each->setAutoDefault(false);
    buttons->addWidget(each);
  }
  parts_ = new QBoxLayout(QBoxLayout::LeftToRight, this);
  parts_->setContentsMargins(10, 5, 8, 5);
  parts_->setSpacing(8);
  parts_->addLayout(message, 1);
  parts_->addLayout(buttons);
  connect(accept_, &QPushButton::clicked, this, [this] {
    if (onFirst) onFirst();
  });
  connect(refuse, &QPushButton::clicked, this, [this] {
    if (onSecond) onSecond();
  });
  connect(label_, &QLabel::linkActivated, this, [this](const QString& link) {
    if (onLink) onLink(link.toInt());
  });
  hide();
}

void Banner::Tell(const QString& said) {
  const QString text = OneLine(said);
  label_->setTextFormat(Qt::PlainText);
  label_->setText(text);
  setAccessibleName(text);
  show();
}

void Banner::ShowWithLinks(const QString& said, const QStringList& links, const QString& after) {
  const QString text = OneLine(said);
  QStringList shown;
  for (const QString& each : links) {
    shown += QString("<a href=\"%1\">%2</a>").arg(shown.size()).arg(OneLine(each).toHtmlEscaped());
  }
  label_->setTextFormat(Qt::RichText);
  label_->setTextInteractionFlags(Qt::LinksAccessibleByMouse | Qt::LinksAccessibleByKeyboard);
  label_->setText(text.toHtmlEscaped() + ' ' + shown.join(", ") + after.toHtmlEscaped());
  setAccessibleName(text + ' ' + links.join(", ") + after);
  show();
}

void Banner::SetReady(bool isReady, const QString& reason) {
  accept_->setEnabled(isReady);
  accept_->setToolTip(isReady ? QString() : reason);
}

// In a narrow window the buttons are below the text, which would get too little room next to them.
void Banner::resizeEvent(QResizeEvent* event) {
  QFrame::resizeEvent(event);
  const bool isNarrow = width() < fontMetrics().averageCharWidth() * kLeastCharacters;
  parts_->setDirection(isNarrow ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight);
}

void Banner::paintEvent(QPaintEvent*) {
  QColor colour = ToQtColor(kColor);
  colour.setAlphaF(kFaint);
  QPainter(this).fillRect(rect(), colour);
}

}  // namespace tarn::host
