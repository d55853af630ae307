#include "hosts/desktop/WelcomePage.h"

#include <QDir>
#include <QFileInfo>
#include <QGraphicsOpacityEffect>
#include <QHBoxLayout>
#include <QLabel>
#include <QScrollArea>
#include <QVBoxLayout>

#include "hosts/desktop/ActionLink.h"
#include "hosts/desktop/RecentProjects.h"
#include "widgets/qt/QtText.h"

namespace tarn::host {

namespace {

constexpr int kWidth = 760;
constexpr int kColumnSpace = 32;
constexpr int kMargin = 32;
constexpr int kIndent = 8;  // of texts above the icons of the rows
constexpr qreal kDim = 0.65;
constexpr qreal kTitleSize = 2.2;

QLabel* Heading(const QString& text, qreal size, QWidget* parent) {
  auto* const label = new QLabel(text, parent);
  QFont font = label->font();
  font.setPointSizeF(font.pointSizeF() * size);
  font.setWeight(size > 2 ? QFont::Light : QFont::DemiBold);
  label->setFont(font);
  label->setIndent(kIndent);
  return label;
}

QLabel* Remark(const QString& text, QWidget* parent) {
  auto* const label = new QLabel(text, parent);
  label->setIndent(kIndent);
  label->setWordWrap(true);
  // Independent of the palette, which may change.
  auto* const dim = new QGraphicsOpacityEffect(label);
  dim->setOpacity(kDim);
  label->setGraphicsEffect(dim);
  return label;
}

// Returns a path below the user's home folder in its usual short form.
QString ShortPath(const QString& path) {
  const QString home = QDir::homePath() + '/';
  return path.startsWith(home) ? "~/" + path.mid(home.size()) : path;
}

}  // namespace

WelcomePage::WelcomePage(std::vector<Example> shippedExamples, const QString& pictureFolder,
                         QWidget* parent)
    : QWidget(parent), examples_(std::move(shippedExamples)), pictures_(pictureFolder) {
  setObjectName("welcomePage");
  auto* const area = new QScrollArea(this);
  area->setFrameShape(QFrame::NoFrame);
  area->setWidgetResizable(true);
  auto* const page = new QWidget;
  auto* const body = new QWidget(page);
  body->setMaximumWidth(kWidth);
  auto* const columns = new QHBoxLayout;
  columns->setSpacing(kColumnSpace);
  auto* const start = new QVBoxLayout;
  recent_ = new QVBoxLayout;
  for (QVBoxLayout* const column : {start, recent_}) {
    column->setSpacing(2);
    columns->addLayout(column, 1);
  }
  AddStart(*start);
  auto* const lines = new QVBoxLayout(body);
  lines->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
  lines->addWidget(Heading(tr("Tarn"), kTitleSize, body));
  lines->addWidget(Remark(tr("Microcontroller firmware projects"), body));
  lines->addSpacing(kMargin * 3 / 4);
  lines->addLayout(columns);
  auto* const centred = new QHBoxLayout(page);
  centred->setContentsMargins(0, 0, 0, 0);
  centred->addStretch(1);
  centred->addWidget(body, 1000, Qt::AlignTop);
  centred->addStretch(1);
  area->setWidget(page);
  auto* const whole = new QVBoxLayout(this);
  whole->setContentsMargins(0, 0, 0, 0);
  whole->addWidget(area);
}

void WelcomePage::AddStart(QVBoxLayout& column) {
  const auto add = [&](const char* picture, const QString& text, const QString& remark,
                       std::function<void()> chosen) {
    auto* const row =
        new ActionLink(Picture(picture), text, remark, ActionLink::Remark::Text, this);
    connect(row, &ActionLink::clicked, this, [chosen = std::move(chosen)] { chosen(); });
    column.addWidget(row);
  };
  column.addWidget(Heading(tr("Start"), 1.1, this));
  add("node-project", tr("Open a project..."), tr("From a folder on this computer"),
      [this] { onOpen(); });
  add("node-application", tr("New project..."), tr("For a microcontroller of your choice"),
      [this] { onNew(); });
  if (!examples_.empty()) {
    column.addSpacing(kMargin / 2);
    column.addWidget(Heading(tr("Open a copy of an example"), 1.1, this));
  }
  for (const Example& each : examples_) {
    add("node-c", ToQt(each.name), ToQt(each.summary), [this, each] { onExample(each); });
  }
  column.addStretch(1);
}

void WelcomePage::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  FillRecent();
}

void WelcomePage::FillRecent() {
  while (QLayoutItem* const item = recent_->takeAt(0)) {
    if (item->widget() != nullptr) {
      item->widget()->hide();
      item->widget()->deleteLater();
    }
    delete item;
  }
  recent_->addWidget(Heading(tr("Recent"), 1.1, this));
  bool isEmpty = true;
  for (const QString& path : RecentProjects::List()) {
    isEmpty = false;
    auto* const row =
        new ActionLink(Picture("node-project"), QFileInfo(path).completeBaseName(),
                       ShortPath(QFileInfo(path).path()), ActionLink::Remark::Path, this);
    row->setToolTip(path);
    connect(row, &ActionLink::clicked, this, [this, path] { onRecent(path); });
    recent_->addWidget(row);
  }
  if (isEmpty) {
    recent_->addWidget(Remark(tr("Projects that you open will be listed here."), this));
  }
  recent_->addStretch(1);
}

QIcon WelcomePage::Picture(const char* name) const {
  return QIcon(pictures_ + QLatin1String(name) + ".svg");
}

}  // namespace tarn::host
