#include "hosts/desktop/SaveNotice.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <set>

#include "hosts/desktop/Banner.h"
#include "platform/paths/Paths.h"
#include "widgets/qt/QtText.h"

namespace tarn::host {

namespace {

constexpr QSize kNoticeSize{680, 320};
constexpr int kCopyRole = Qt::UserRole;
// More links would not fit the banner; the list contains all.
constexpr int kMostLinks = 3;

QString NameOf(const std::string& path) {
  return ToQt(FileNameOf(path));
}

}  // namespace

SaveNotice::SaveNotice(QWidget& parentWindow, Banner& saveBanner)
    : window_(parentWindow), banner_(saveBanner) {
  banner_.onFirst = [this] { ShowList(true); };
  banner_.onSecond = [this] {
    shown_ = {};
    banner_.hide();
  };
  banner_.onLink = [this](int index) {
    const std::vector<std::string> copies = ListCopies();
    if (static_cast<std::size_t>(index) < copies.size() && onShowFile) onShowFile(copies[index]);
  };
}

void SaveNotice::Show(const SaveReport& report) {
  if (report.written.empty()) return;
  bool isNew = false;
  const auto add = [&isNew](auto& list, const auto& entries) {
    for (const auto& each : entries) {
      if (std::find(list.begin(), list.end(), each) != list.end()) continue;
      list.push_back(each);
      isNew = true;
    }
  };
  add(shown_.conflicts, report.conflicts);
  add(shown_.written, report.written);
  if (isNew || banner_.isHidden()) Tell();
}

// Returns the copies of replaced or conflicting files, without duplicates.
std::vector<std::string> SaveNotice::ListCopies() const {
  std::vector<std::string> copies;
  const auto add = [&copies](const std::string& copy) {
    const bool isNew = std::find(copies.begin(), copies.end(), copy) == copies.end();
    if (!copy.empty() && isNew) copies.push_back(copy);
  };
  for (const SaveReport::Conflict& each : shown_.conflicts) add(each.copy);
  for (const SaveReport::File& each : shown_.written) add(each.copy);
  return copies;
}

// Returns a text that ends with a colon if names of copies follow.
QString SaveNotice::Describe(bool hasCopies) const {
  std::set<std::string> files;
  if (!shown_.conflicts.empty()) {
    for (const SaveReport::Conflict& each : shown_.conflicts) files.insert(each.file);
    const int count = static_cast<int>(shown_.conflicts.size());
    const QString what =
        files.size() == 1
            ? tr("%1 was changed here and by another program, with %n conflict(s).", nullptr, count)
                  .arg(NameOf(*files.begin()))
            : tr("Project files were changed here and by another program, with %n conflict(s).",
                 nullptr, count);
    return hasCopies ? what + ' ' + tr("The other version:") : what;
  }
  QStringList names;
  bool wereMissing = true;
  for (const SaveReport::File& each : shown_.written) {
    const bool isMeant = hasCopies != each.copy.empty();
    if (!isMeant || !files.insert(each.path).second) continue;
    names += NameOf(each.path);
    wereMissing = wereMissing && each.wasMissing;
  }
  if (wereMissing && !hasCopies) {
    return tr("%1 was missing and has been re-created.").arg(names.join(", "));
  }
  const int count = static_cast<int>(names.size());
  return hasCopies ? tr("%1 was replaced. Its previous content was saved as:", nullptr, count)
                         .arg(names.join(", "))
                   : tr("%1 was also changed by another program. It now contains both changes.",
                        nullptr, count)
                         .arg(names.join(", "));
}

void SaveNotice::Tell() {
  QStringList links;
  for (const std::string& each : ListCopies()) links += NameOf(each);
  if (links.isEmpty()) {
    banner_.Tell(Describe(false));
    return;
  }
  const int more = static_cast<int>(links.size()) - kMostLinks;
  banner_.ShowWithLinks(Describe(true), links.mid(0, kMostLinks),
                        more > 0 ? tr(" and %n more", nullptr, more) : QString());
}

void SaveNotice::ShowConflictsNow(const SaveReport& report) {
  if (report.conflicts.empty()) return;
  shown_ = report;
  ShowList(false);
}

void SaveNotice::ShowList(bool mayOpen) {
  QDialog dialog(&window_);
  dialog.setObjectName("saveList");
  dialog.setWindowTitle(tr("Merged with another program's changes"));
  auto* const column = new QVBoxLayout(&dialog);
  auto* const remark =
      new QLabel(tr("Where both sides changed the same value, yours was saved. Whatever was "
                    "removed on one side but changed on the other was kept."),
                 &dialog);
  remark->setWordWrap(true);
  column->addWidget(remark);
  auto* const list = new QTreeWidget(&dialog);
  Fill(*list);
  column->addWidget(list, 1);
  auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Close, &dialog);
  column->addWidget(buttons);
  QObject::connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
  const auto copyOf = [](const QTreeWidgetItem* row) {
    return row == nullptr ? QString() : row->data(0, kCopyRole).toString();
  };
  if (mayOpen) {
    auto* const open =
        buttons->addButton(tr("&Open the other version"), QDialogButtonBox::ActionRole);
    const auto follow = [&] { open->setEnabled(!copyOf(list->currentItem()).isEmpty()); };
    const auto show = [&] {
      const QString copy = copyOf(list->currentItem());
      if (copy.isEmpty()) return;
      dialog.accept();
      if (onShowFile) onShowFile(FromQt(copy));
    };
    QObject::connect(list, &QTreeWidget::currentItemChanged, &dialog, follow);
    QObject::connect(list, &QTreeWidget::itemActivated, &dialog, show);
    QObject::connect(open, &QPushButton::clicked, &dialog, show);
    follow();
  }
  dialog.resize(kNoticeSize);
  dialog.exec();
}

void SaveNotice::Fill(QTreeWidget& list) const {
  list.setHeaderLabels({tr("File"), tr("Location"), tr("Change"), tr("Other version")});
  list.setRootIsDecorated(false);
  list.setTextElideMode(Qt::ElideMiddle);
  list.setAccessibleName(tr("Files changed on both sides"));
  std::set<std::string> inConflict;
  const auto add = [&list](const std::string& file, const QString& place, const QString& what,
                           const std::string& copy) {
    auto* const row = new QTreeWidgetItem(&list, {NameOf(file), place, what, NameOf(copy)});
    row->setToolTip(0, ToQt(file));
    row->setToolTip(3, ToQt(copy));
    row->setData(0, kCopyRole, ToQt(copy));
  };
  const auto describe = [](const std::string& what) {
    if (what == "removed here, changed there") return tr("removed here, changed there");
    if (what == "changed here, removed there") return tr("changed here, removed there");
    return tr("%1 changed on both sides").arg(ToQt(what));
  };
  for (const SaveReport::Conflict& each : shown_.conflicts) {
    inConflict.insert(each.file);
    add(each.file, each.place.empty() ? tr("the file itself") : ToQt(each.place),
        describe(each.text), each.copy);
  }
  for (const SaveReport::File& each : shown_.written) {
    if (inConflict.contains(each.path)) continue;
    add(each.path, {},
        each.isMerged     ? tr("contains the changes from both sides")
        : each.wasDamaged ? tr("contained more than could be read")
        : each.wasMissing ? tr("was missing, re-created")
                          : tr("replaced by your version"),
        each.copy);
  }
  for (int column = 0; column < 3; ++column) list.resizeColumnToContents(column);
  if (list.topLevelItemCount() > 0) list.setCurrentItem(list.topLevelItem(0));
}

}  // namespace tarn::host
