#include "hosts/desktop/OptionEditors.h"

#include <QBoxLayout>
#include <QCoreApplication>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPointer>
#include <QPushButton>
#include <QTimer>
#include <QToolButton>
#include <algorithm>

#include "platform/text/Text.h"
#include "widgets/qt/QtText.h"

namespace tarn::host {

namespace {

constexpr const char* kInherited = "$(Inherited)";
constexpr QSize kListSize{460, 320};

QListWidgetItem* MakeEntry(const QString& text) {
  auto* const item = new QListWidgetItem(text);
  item->setFlags(item->flags() | Qt::ItemIsEditable);
  return item;
}

QString AskFolder(QWidget* parent, const QString& baseFolder) {
  const QString chosen =
      QFileDialog::getExistingDirectory(parent, ListDialog::tr("Choose a folder"), baseFolder);
  return chosen.isEmpty() ? chosen : WrittenPath(chosen, baseFolder);
}

}  // namespace

QString WrittenPath(const QString& path, const QString& baseFolder) {
  const QString clean = QDir::cleanPath(path);
  if (baseFolder.isEmpty()) return clean;
  const QString relative = QDir(baseFolder).relativeFilePath(clean);
  return relative == ".." || relative.startsWith("../") ? clean : relative;
}

ChoiceEditor::ChoiceEditor(const OptionRow& row, QWidget* parent) : QComboBox(parent) {
  setAccessibleName(ToQt(row.definition.label));
  setFrame(false);
  for (const auto& [value, label] : row.definition.choices) addItem(ToQt(label), ToQt(value));
  if (row.MayReset()) {
    insertItem(0, tr("(inherited)"));
    insertSeparator(1);
  }
}

bool ChoiceEditor::IsInherit() const {
  return currentIndex() >= 0 && !currentData().isValid();
}

void ChoiceEditor::SetText(const QString& value) {
  int place = -1;
  for (int i = 0; i < count(); ++i) {
    const QVariant choice = itemData(i);
    if (choice.isValid() && choice.toString().compare(value, Qt::CaseInsensitive) == 0) place = i;
  }
  if (place < 0 && !value.isEmpty()) {
    // A macro, or a choice that the definitions no longer have.
    addItem(value, value);
    place = count() - 1;
  }
  setCurrentIndex(place);
}

void ChoiceEditor::showEvent(QShowEvent* event) {
  QComboBox::showEvent(event);
  QTimer::singleShot(0, this, [this] { showPopup(); });
}

void ChoiceEditor::hidePopup() {
  QComboBox::hidePopup();
  // Deferred, because the choice is reported after this call.
  QTimer::singleShot(0, this, [this] {
    if (onClosed) onClosed();
  });
}

TextEditor::TextEditor(const OptionRow& optionRow, const QString& folder, QWidget* parent)
    : QWidget(parent), row(optionRow), baseFolder(folder) {
  setAutoFillBackground(true);
  line = new QLineEdit(this);
  line->setFrame(false);
  line->setAccessibleName(ToQt(row.definition.label));
  auto* const layout = new QHBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  layout->addWidget(line);
  setFocusProxy(line);
  if (row.kind != OptionKind::Text && row.kind != OptionKind::Number) AddButton();
}

void TextEditor::AddButton() {
  auto* const button = new QToolButton(this);
  button->setText("...");
  const bool isList = row.kind == OptionKind::List || row.kind == OptionKind::Paths;
  button->setToolTip(isList ? tr("Edit the list (Alt+Down)") : tr("Choose (Alt+Down)"));
  button->setAccessibleName(button->toolTip());
  button->setShortcut(QKeySequence(Qt::ALT | Qt::Key_Down));
  button->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Expanding);
  button->setFocusPolicy(Qt::NoFocus);
  QObject::connect(button, &QToolButton::clicked, this, [this] { OpenDialog(); });
  layout()->addWidget(button);
}

QString TextEditor::GetText() const {
  return line->text();
}

void TextEditor::SetText(const QString& text) {
  line->setText(text);
}

void TextEditor::OpenDialog() {
  if (row.kind == OptionKind::List || row.kind == OptionKind::Paths) {
    auto* const dialog = new ListDialog(row, line->text(), baseFolder, window());
    Show(dialog, [dialog] { return dialog->GetText(); });
    return;
  }
  const QString present = QDir(baseFolder).absoluteFilePath(ToQt(row.value));
  auto* const dialog = new QFileDialog(window(), ToQt(row.definition.label));
  // An output file need not exist yet.
  dialog->setFileMode(row.kind == OptionKind::Folder ? QFileDialog::Directory
                                                     : QFileDialog::AnyFile);
  dialog->setLabelText(QFileDialog::Accept, tr("Choose"));
  dialog->setDirectory(QFileInfo(present).isDir() ? present : QFileInfo(present).path());
  if (!row.value.empty()) dialog->selectFile(QFileInfo(present).fileName());
  Show(dialog,
       [dialog, this] { return WrittenPath(dialog->selectedFiles().value(0), baseFolder); });
}

// The editor may have been deleted by the time the dialog is closed.
void TextEditor::Show(QDialog* dialog, const std::function<QString()>& result) {
  isDialogOpen = true;
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  QObject::connect(dialog, &QDialog::finished, this, [this, result](int code) {
    isDialogOpen = false;
    line->setFocus();
    if (code != QDialog::Accepted) return;
    line->setText(result());
    if (onChosen) onChosen();
  });
  dialog->open();
}

ListDialog::ListDialog(const OptionRow& row, const QString& text, const QString& baseFolder,
                       QWidget* parent)
    : QDialog(parent) {
  setWindowTitle(ToQt(row.definition.label));
  list = new QListWidget(this);
  list->setAccessibleName(windowTitle());
  list->setDragDropMode(QAbstractItemView::InternalMove);
  list->setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed |
                        QAbstractItemView::SelectedClicked);
  for (const std::string& entry : SplitList(FromQt(text))) list->addItem(MakeEntry(ToQt(entry)));
  if (list->count() > 0) list->setCurrentRow(0);

  auto* const buttons = MakeButtons(row.kind == OptionKind::Paths, baseFolder);
  auto* const box = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
  QObject::connect(box, &QDialogButtonBox::accepted, this, &QDialog::accept);
  QObject::connect(box, &QDialogButtonBox::rejected, this, &QDialog::reject);
  auto* const hint =
      new QLabel(tr("%1 stands for the inherited value.").arg(QString(kInherited)), this);
  hint->setForegroundRole(QPalette::PlaceholderText);
  auto* const middle = new QHBoxLayout;
  middle->addWidget(list, 1);
  middle->addLayout(buttons);
  auto* const layout = new QVBoxLayout(this);
  layout->addLayout(middle, 1);
  layout->addWidget(hint);
  layout->addWidget(box);
  resize(kListSize);
}

// Creates the buttons next to the list.
QLayout* ListDialog::MakeButtons(bool isPaths, const QString& baseFolder) {
  auto* const buttons = new QVBoxLayout;
  const auto addButton = [&](const QString& label, auto action) {
    auto* const button = new QPushButton(label, this);
    button->setAutoDefault(false);
    QObject::connect(button, &QPushButton::clicked, this, action);
    buttons->addWidget(button);
    return button;
  };
  const auto add = [this](const QString& entry) {
    const int place = list->currentRow() + 1;
    list->insertItem(place, MakeEntry(entry));
    list->setCurrentRow(place);
    return list->item(place);
  };
  addButton(tr("&Add"), [this, add] { list->editItem(add({})); });
  if (isPaths) {
    addButton(tr("Add &folder..."), [this, add, baseFolder] {
      const QString folder = AskFolder(this, baseFolder);
      if (!folder.isEmpty()) add(folder);
    });
  }
  auto* const inherit = addButton(tr("Add &inherited"), [add] { add(kInherited); });
  inherit->setToolTip(tr("Insert the inherited value"));
  auto* const remove = addButton(tr("&Remove"), [this] { delete list->currentItem(); });
  const auto move = [this](int step) {
    const int from = list->currentRow();
    const int to = from + step;
    if (from < 0 || to < 0 || to >= list->count()) return;
    list->insertItem(to, list->takeItem(from));
    list->setCurrentRow(to);
  };
  auto* const up = addButton(tr("Move &up"), [move] { move(-1); });
  auto* const down = addButton(tr("Move &down"), [move] { move(1); });
  buttons->addStretch();
  const auto refresh = [this, remove, up, down] {
    const int place = list->currentRow();
    remove->setEnabled(place >= 0);
    up->setEnabled(place > 0);
    down->setEnabled(place >= 0 && place + 1 < list->count());
  };
  QObject::connect(list, &QListWidget::currentRowChanged, this, refresh);
  refresh();
  return buttons;
}

QString ListDialog::GetText() const {
  std::vector<std::string> entries;
  for (int i = 0; i < list->count(); ++i) {
    // A semicolon splits an entry in two.
    for (std::string& entry : SplitList(FromQt(list->item(i)->text()))) {
      entries.push_back(std::move(entry));
    }
  }
  return ToQt(JoinList(entries));
}

}  // namespace tarn::host
