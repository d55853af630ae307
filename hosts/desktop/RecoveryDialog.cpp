#include "hosts/desktop/RecoveryDialog.h"

#include <QDateTime>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileInfo>
#include <QHeaderView>
#include <QLabel>
#include <QLocale>
#include <QMessageBox>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

#include "platform/text/Hash.h"
#include "widgets/qt/QtText.h"

namespace tarn::host {

namespace {

constexpr QSize kRecoverySize{680, 300};

QString Headline(const JournalReading& reading) {
  switch (reading.state) {
    case JournalReading::State::Damaged:
      return RecoveryDialog::tr(
                 "Tarn closed unexpectedly, and the unsaved changes can't be restored: the journal "
                 "is damaged.\n\n%1: %2")
          .arg(ToQt(reading.file), ToQt(reading.reason));
    case JournalReading::State::OtherVersion:
      return RecoveryDialog::tr(
                 "Another version of Tarn closed unexpectedly. Only that version can restore its "
                 "unsaved changes.\n\n%1")
          .arg(ToQt(reading.file));
    case JournalReading::State::Good:
      break;
  }
  const QDateTime time = QDateTime::fromSecsSinceEpoch(reading.content.seconds);
  return RecoveryDialog::tr("Tarn closed unexpectedly on %1. These changes were not saved:")
      .arg(QLocale().toString(time, QLocale::ShortFormat));
}

}  // namespace

RecoveryDialog::RecoveryDialog(const JournalReading& reading, FileSystem& fileSystem,
                               QWidget* parent)
    : QDialog(parent), files_(fileSystem) {
  setObjectName("recoveryDialog");
  setWindowTitle(tr("Restore unsaved changes"));
  setAttribute(Qt::WA_DeleteOnClose);
  setModal(true);
  const bool isReadable = reading.state == JournalReading::State::Good;
  const bool hasAny = isReadable && !reading.content.IsEmpty();
  auto* const column = new QVBoxLayout(this);
  auto* const headline = new QLabel(Headline(reading), this);
  headline->setWordWrap(true);
  column->addWidget(headline);
  if (isReadable) {
    auto* const list = new QTreeWidget(this);
    Fill(*list, reading);
    column->addWidget(list, 1);
    auto* const remark = new QLabel(
        tr("Restored changes are not saved yet: review them, then save or undo them."), this);
    remark->setWordWrap(true);
    column->addWidget(remark);
    resize(kRecoverySize);
  }
  auto* const buttons = new QDialogButtonBox(this);
  QPushButton* const restore = buttons->addButton(tr("&Restore"), QDialogButtonBox::AcceptRole);
  QPushButton* const discard =
      buttons->addButton(tr("&Discard"), QDialogButtonBox::DestructiveRole);
  QPushButton* const later = buttons->addButton(tr("&Later"), QDialogButtonBox::RejectRole);
  restore->setObjectName("restore");
  discard->setObjectName("discard");
  later->setObjectName("later");
  restore->setEnabled(hasAny);
  discard->setAutoDefault(false);
  (hasAny ? restore : later)->setDefault(true);
  (hasAny ? restore : later)->setFocus();
  column->addWidget(buttons);
  connect(restore, &QPushButton::clicked, this, [this] { Choose(onRestore); });
  connect(discard, &QPushButton::clicked, this, [this] {
    const auto answer = QMessageBox::question(
        this, windowTitle(), tr("Discard these changes? They can't be restored afterwards."),
        QMessageBox::Discard | QMessageBox::Cancel, QMessageBox::Cancel);
    if (answer == QMessageBox::Discard) Choose(onDiscard);
  });
  connect(this, &QDialog::rejected, this, [this] { Choose(onLater); });
  connect(later, &QPushButton::clicked, this, &QDialog::reject);
}

void RecoveryDialog::Choose(const std::function<void()>& choice) {
  const std::function<void()> chosen = choice;
  onRestore = onDiscard = onLater = {};
  close();
  if (chosen) chosen();
}

void RecoveryDialog::Fill(QTreeWidget& list, const JournalReading& reading) {
  list.setColumnCount(2);
  list.setHeaderLabels({tr("File"), tr("Recoverable changes")});
  list.setRootIsDecorated(false);
  list.setTextElideMode(Qt::ElideMiddle);
  list.setSelectionMode(QAbstractItemView::NoSelection);
  list.setAccessibleName(tr("Recoverable changes"));
  const JournalContent& content = reading.content;
  if (content.projectTexts != nullptr) {
    AddRow(list, content.project,
           files_.Exists(content.project)
               ? tr("Project changes: files and options")
               : tr("Project changes: files and options; the project no longer exists"));
  }
  for (const UnsavedText& each : content.texts) AddRow(list, each.path, Describe(each));
  for (const std::string& each : reading.lost) {
    AddRow(list, each, tr("None: the recovery data is damaged"));
  }
  list.header()->setStretchLastSection(true);
  list.resizeColumnToContents(0);
  constexpr int kWidestPath = 360;
  if (list.columnWidth(0) > kWidestPath) list.setColumnWidth(0, kWidestPath);
}

void RecoveryDialog::AddRow(QTreeWidget& list, const std::string& path, const QString& what) {
  const QString full = ToQt(path);
  QString shown = full;
  if (shown.startsWith(QDir::homePath() + "/")) shown.replace(0, QDir::homePath().size(), "~");
  auto* const row = new QTreeWidgetItem(&list, {shown, what});
  row->setToolTip(0, full);
  row->setToolTip(1, what);
}

QString RecoveryDialog::Describe(const UnsavedText& text) const {
  const auto disk = files_.ReadWholeFile(text.path);
  if (!disk) return tr("Unsaved text; the file no longer exists");
  if (HashBytes(*disk) != text.base) return tr("Unsaved text; the file has changed since");
  return tr("Unsaved text");
}

}  // namespace tarn::host
