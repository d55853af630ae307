#include "hosts/desktop/RelocateDialog.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QSignalBlocker>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <algorithm>

#include "platform/paths/Paths.h"
#include "widgets/qt/QtText.h"

namespace tarn::host {

namespace {

constexpr QSize kRelocateSize(860, 460);
constexpr std::chrono::milliseconds kPieceTime(30);
constexpr int kColumnGap = 16;
// Columns of the list.
constexpr int kMissing = 0;
constexpr int kFound = 1;
constexpr int kWhere = 2;
// Data roles of the first column.
constexpr int kOldPath = Qt::UserRole;
constexpr int kNewPath = Qt::UserRole + 1;

}  // namespace

RelocateDialog::RelocateDialog(Relocation& moves, const std::string& projectFolder, QWidget* parent)
    : QDialog(parent), moves_(moves), projectFolder_(projectFolder) {
  AddWidgets();
  connect(&timer_, &QTimer::timeout, this, [this] { ContinueSearch(); });
  Search(projectFolder);
}

void RelocateDialog::AddWidgets() {
  folder_ = new QLineEdit(this);
  list_ = new QTreeWidget(this);
  summary_ = new QLabel(this);
  buttons_ = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
  setWindowTitle(tr("Find moved files"));
  folder_->setReadOnly(true);
  auto* const label = new QLabel(tr("Search &in:"), this);
  label->setBuddy(folder_);
  auto* const choose = new QPushButton(tr("Choose &folder..."), this);
  choose->setAutoDefault(false);
  connect(choose, &QPushButton::clicked, this, [this] {
    const QString chosen =
        QFileDialog::getExistingDirectory(this, tr("Folder to search"), folder_->text());
    if (!chosen.isEmpty()) Search(FromQt(chosen));
  });
  auto* const top = new QHBoxLayout;
  top->addWidget(label);
  top->addWidget(folder_, 1);
  top->addWidget(choose);

  rowHeight_ = QComboBox().sizeHint().height();
  list_->setAccessibleName(windowTitle());
  list_->setHeaderLabels({tr("Missing"), tr("Found"), tr("Used as")});
  list_->setRootIsDecorated(false);
  list_->setUniformRowHeights(true);
  list_->setAllColumnsShowFocus(true);
  list_->header()->setStretchLastSection(true);
  connect(list_, &QTreeWidget::itemChanged, this, [this](QTreeWidgetItem* item) {
    if (!isFilling_) OnChecked(item);
  });
  buttons_->button(QDialogButtonBox::Ok)->setText(tr("&Update project"));
  connect(buttons_, &QDialogButtonBox::accepted, this, [this] { Finish(); });
  connect(buttons_, &QDialogButtonBox::rejected, this, &QDialog::reject);
  auto* const layout = new QVBoxLayout(this);
  layout->addLayout(top);
  layout->addWidget(list_, 1);
  layout->addWidget(summary_);
  layout->addWidget(buttons_);
  resize(kRelocateSize);
}

QString RelocateDialog::Shown(const std::string& path) const {
  const std::string folder = AddSeparator(projectFolder_);
  return ToQt(path.starts_with(folder) ? path.substr(folder.size()) : path);
}

void RelocateDialog::Search(const std::string& folder) {
  folder_->setText(ToQt(folder));
  list_->clear();
  buttons_->button(QDialogButtonBox::Ok)->setEnabled(false);
  summary_->setText(tr("Searching..."));
  moves_.BeginSearch(folder);
  timer_.start();
}

void RelocateDialog::ContinueSearch() {
  if (moves_.ContinueSearch(kPieceTime)) return;
  timer_.stop();
  Update();
}

void RelocateDialog::Update() {
  if (const Status found = moves_.FinishSearch(); !found) {
    summary_->setText(ToQt(found.GetError().place + ": " + found.GetError().text));
    return;
  }
  Fill();
}

void RelocateDialog::Fill() {
  isFilling_ = true;
  const int row = list_->indexOfTopLevelItem(list_->currentItem());
  list_->clear();
  for (const MovedPath& each : moves_.GetFound()) AddRow(each);
  for (const int column : {kMissing, kFound}) {
    list_->resizeColumnToContents(column);
    list_->setColumnWidth(column, list_->columnWidth(column) + kColumnGap);
  }
  list_->setCurrentItem(list_->topLevelItem(std::max(row, 0)));
  isFilling_ = false;
  int count = 0;
  int all = 0;
  for (const MovedPath& each : moves_.GetFound()) {
    if (each.kind == MovedPath::Kind::Option) continue;
    ++all;
    if (!each.newPath.empty()) ++count;
  }
  QString summary = all == 0 ? tr("Nothing is missing.")
                             : tr("%1 of %n missing files found", nullptr, all).arg(count);
  QStringList unread;
  for (const Error& each : moves_.GetUnread()) unread << ToQt(each.place + ": " + each.text);
  const int folders = static_cast<int>(unread.size());
  if (folders > 0) summary += u'\n' + tr("%n folders can't be read", nullptr, folders);
  summary_->setText(summary);
  summary_->setToolTip(unread.join(u'\n'));
  buttons_->button(QDialogButtonBox::Ok)->setEnabled(count > 0);
}

void RelocateDialog::AddRow(const MovedPath& moved) {
  auto* const item = new QTreeWidgetItem(list_);
  // All rows get the height of those with a combo box.
  item->setSizeHint(kWhere, QSize(0, rowHeight_));
  item->setText(kMissing, Shown(moved.oldPath));
  item->setToolTip(kMissing, ToQt(moved.oldPath));
  item->setData(kMissing, kOldPath, ToQt(moved.oldPath));
  const QString file = Shown(moved.file);
  switch (moved.kind) {
    case MovedPath::Kind::Application:
      item->setText(kWhere, tr("application of %1").arg(file));
      break;
    case MovedPath::Kind::Source:
      item->setText(kWhere, tr("file of %1").arg(file));
      break;
    case MovedPath::Kind::Option:
      item->setText(kWhere, tr("option in %1; follows the files in its folder").arg(file));
      break;
  }
  const bool canChoose = moved.kind != MovedPath::Kind::Option && !moved.candidates.empty();
  if (canChoose) {
    item->setCheckState(kMissing, moved.newPath.empty() ? Qt::Unchecked : Qt::Checked);
    const std::string& first = moved.newPath.empty() ? moved.candidates.front() : moved.newPath;
    item->setData(kMissing, kNewPath, ToQt(first));
  }
  if (canChoose && moved.candidates.size() > 1) {
    AddChoice(*item, moved);
  } else if (moved.candidates.empty() && moved.newPath.empty()) {
    item->setText(kFound, tr("not found in this folder"));
    item->setForeground(kFound, palette().placeholderText());
  } else {
    const std::string& path = moved.newPath.empty() ? moved.candidates.front() : moved.newPath;
    item->setText(kFound, Shown(path));
    item->setToolTip(kFound, ToQt(path));
    if (moved.newPath.empty()) item->setForeground(kFound, palette().placeholderText());
  }
}

void RelocateDialog::AddChoice(QTreeWidgetItem& item, const MovedPath& moved) {
  auto* const box = new QComboBox(list_);
  box->setAccessibleName(tr("New location of %1").arg(item.text(kMissing)));
  box->setPlaceholderText(
      tr("one of %n matching files", nullptr, static_cast<int>(moved.candidates.size())));
  for (const std::string& path : moved.candidates) box->addItem(Shown(path), ToQt(path));
  box->setCurrentIndex(box->findData(ToQt(moved.newPath)));
  connect(box, &QComboBox::activated, this, [this, box, oldPath = moved.oldPath](int index) {
    Choose(oldPath, FromQt(box->itemData(index).toString()));
  });
  list_->setItemWidget(&item, kFound, box);
}

void RelocateDialog::OnChecked(QTreeWidgetItem* item) {
  const bool isWanted = item->checkState(kMissing) == Qt::Checked;
  const QString path = isWanted ? item->data(kMissing, kNewPath).toString() : QString();
  Choose(FromQt(item->data(kMissing, kOldPath).toString()), FromQt(path));
}

// Deferred: the sender is a widget in the list, which is re-created.
void RelocateDialog::Choose(const std::string& oldPath, const std::string& newPath) {
  moves_.Choose(oldPath, newPath);
  QTimer::singleShot(0, this, [this] { Update(); });
}

void RelocateDialog::Finish() {
  auto texts = moves_.MakeTexts();
  if (!texts) {
    QMessageBox::warning(this, windowTitle(),
                         ToQt(texts.GetError().place + ": " + texts.GetError().text));
    return;
  }
  texts_ = std::move(*texts);
  accept();
}

}  // namespace tarn::host
