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
      session(buildSession),
      files(fileSystem),
      summary(new QLabel(this)),
      list(new QTreeWidget(this)) {
  list->setColumnCount(2);
  list->setHeaderLabels({tr("Finding"), tr("Location")});
  list->setAccessibleName(tr("Project check findings"));
  list->setUniformRowHeights(true);
  auto* const layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(summary);
  layout->addWidget(list);
  setFocusProxy(list);
  connect(&steps, &QTimer::timeout, this, [this] { Step(); });
  connect(list, &QTreeWidget::itemActivated, this,
          [this](const QTreeWidgetItem* item) { Choose(*item); });
}

void FindingsPane::Start() {
  if (isBusy && isBusy()) return;
  Clear();
  if (!session.HasProject()) {
    summary->setText(tr("No project is open."));
    return;
  }
  folder = AddSeparator(FolderOf(session.GetProjectPath()));
  check = std::make_unique<ProjectCheck>(session, files);
  summary->setText(tr("Checking the project..."));
  steps.start(0);
}

void FindingsPane::Clear() {
  steps.stop();
  check.reset();
  findings.clear();
  list->clear();
  summary->clear();
}

void FindingsPane::Step() {
  // If the build has changed the project, the next step restarts the check.
  if ((isBusy && isBusy()) || !check->Continue(kStep)) return;
  steps.stop();
  findings = check->GetFindings();
  check.reset();
  Show();
}

void FindingsPane::Show() {
  summary->setText(findings.empty()
                       ? tr("No findings.")
                       : tr("%n finding(s)", nullptr, static_cast<int>(findings.size())));
  for (const FindingKind kind : AllFindingKinds()) AddGroup(kind);
  list->expandAll();
  list->resizeColumnToContents(0);
  if (list->topLevelItemCount() > 0) list->setCurrentItem(list->topLevelItem(0)->child(0));
}

void FindingsPane::AddGroup(FindingKind kind) {
  QTreeWidgetItem* group = nullptr;
  for (std::size_t number = 0; number < findings.size(); ++number) {
    const Finding& finding = findings[number];
    if (finding.kind != kind) continue;
    if (group == nullptr) group = new QTreeWidgetItem(list, {FindingHeading(kind)});
    QString where = ToQt(FileNameOf(finding.file));
    if (finding.line > 0) where += QString(":%1").arg(finding.line);
    auto* const item = new QTreeWidgetItem(group, {FindingSentence(finding, folder), where});
    item->setData(0, kNumberRole, static_cast<int>(number));
    item->setToolTip(0, item->text(0));
    item->setToolTip(1, ToQt(finding.file));
  }
}

void FindingsPane::Choose(const QTreeWidgetItem& item) {
  bool isFinding = false;
  const int number = item.data(0, kNumberRole).toInt(&isFinding);
  if (isFinding && onChosen) onChosen(findings[static_cast<std::size_t>(number)]);
}

}  // namespace tarn::host
