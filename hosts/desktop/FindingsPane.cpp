#include "hosts/desktop/FindingsPane.h"

#include <QLabel>
#include <QTreeWidget>
#include <QVBoxLayout>

#include "hosts/desktop/FindingTexts.h"
#include "platform/paths/Paths.h"
#include "widgets/qt/QtText.h"

namespace tarn::host {

namespace {

constexpr std::chrono::milliseconds kStep{20};
constexpr int kNumberRole = Qt::UserRole;  // index of the finding

}  // namespace

FindingsPane::FindingsPane(BuildSession& buildSession, FileSystem& fileSystem, QWidget* parent)
    : QWidget(parent),
      session_(buildSession),
      files_(fileSystem),
      summary_(new QLabel(this)),
      list_(new QTreeWidget(this)) {
  list_->setColumnCount(2);
  list_->setHeaderLabels({tr("Finding"), tr("Location")});
  list_->setAccessibleName(tr("Project check findings"));
  list_->setUniformRowHeights(true);
  auto* const layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(summary_);
  layout->addWidget(list_);
  setFocusProxy(list_);
  connect(&steps_, &QTimer::timeout, this, [this] { Step(); });
  connect(list_, &QTreeWidget::itemActivated, this,
          [this](const QTreeWidgetItem* item) { Choose(*item); });
}

void FindingsPane::Start() {
  if (isBusy && isBusy()) return;
  Clear();
  if (!session_.HasProject()) {
    summary_->setText(tr("No project is open."));
    return;
  }
  folder_ = AddSeparator(FolderOf(session_.GetProjectPath()));
  check_ = std::make_unique<ProjectCheck>(session_, files_);
  summary_->setText(tr("Checking the project..."));
  steps_.start(0);
}

void FindingsPane::Clear() {
  steps_.stop();
  check_.reset();
  findings_.clear();
  list_->clear();
  summary_->clear();
}

void FindingsPane::Step() {
  // If the build has changed the project, the next step restarts the check.
  if ((isBusy && isBusy()) || !check_->Continue(kStep)) return;
  steps_.stop();
  findings_ = check_->GetFindings();
  check_.reset();
  Show();
}

void FindingsPane::Show() {
  summary_->setText(findings_.empty()
                        ? tr("No findings.")
                        : tr("%n finding(s)", nullptr, static_cast<int>(findings_.size())));
  for (const FindingKind kind : AllFindingKinds()) AddGroup(kind);
  list_->expandAll();
  list_->resizeColumnToContents(0);
  if (list_->topLevelItemCount() > 0) list_->setCurrentItem(list_->topLevelItem(0)->child(0));
}

void FindingsPane::AddGroup(FindingKind kind) {
  QTreeWidgetItem* group = nullptr;
  for (std::size_t number = 0; number < findings_.size(); ++number) {
    const Finding& finding = findings_[number];
    if (finding.kind != kind) continue;
    if (group == nullptr) group = new QTreeWidgetItem(list_, {FindingHeading(kind)});
    QString where = ToQt(FileNameOf(finding.file));
    if (finding.line > 0) where += QString(":%1").arg(finding.line);
    auto* const item = new QTreeWidgetItem(group, {FindingSentence(finding, folder_), where});
    item->setData(0, kNumberRole, static_cast<int>(number));
    item->setToolTip(0, item->text(0));
    item->setToolTip(1, ToQt(finding.file));
  }
}

void FindingsPane::Choose(const QTreeWidgetItem& item) {
  bool isFinding = false;
  const int number = item.data(0, kNumberRole).toInt(&isFinding);
  if (isFinding && onChosen) onChosen(findings_[static_cast<std::size_t>(number)]);
}

}  // namespace tarn::host
