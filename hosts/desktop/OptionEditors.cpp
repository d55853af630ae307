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
    : QWidget(parent), row_(optionRow), baseFolder_(folder) {
  setAutoFillBackground(true);
  line_ = new QLineEdit(this);
  line_->setFrame(false);
  line_->setAccessibleName(ToQt(row_.definition.label));
  auto* const layout = new QHBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  layout->addWidget(line_);
  setFocusProxy(line_);
  if (row_.kind != OptionKind::Text && row_.kind != OptionKind::Number) AddButton();
}

void TextEditor::AddButton() {
  auto* const button = new QToolButton(this);
  button->setText("...");
  const bool isList = row_.kind == OptionKind::List || row_.kind == OptionKind::Paths;
  button->setToolTip(isList ? tr("Edit the list (Alt+Down)") : tr("Choose (Alt+Down)"));
  button->setAccessibleName(button->toolTip());
  button->setShortcut(QKeySequence(Qt::ALT | Qt::Key_Down));
  button->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Expanding);
  button->setFocusPolicy(Qt::NoFocus);
  QObject::connect(button, &QToolButton::clicked, this, [this] { OpenDialog(); });
  layout()->addWidget(button);
}

QString TextEditor::GetText() const {
  return line_->text();
}

void TextEditor::SetText(const QString& text) {
  line_->setText(text);
}

void TextEditor::OpenDialog() {
  if (row_.kind == OptionKind::List || row_.kind == OptionKind::Paths) {
    auto* const dialog = new ListDialog(row_, line_->text(), baseFolder_, window());
    Show(dialog, [dialog] { return dialog->GetText(); });
    return;
  }
  const QString present = QDir(baseFolder_).absoluteFilePath(ToQt(row_.value));
  auto* const dialog = new QFileDialog(window(), ToQt(row_.definition.label));
  // An output file need not exist yet.
  dialog->setFileMode(row_.kind == OptionKind::Folder ? QFileDialog::Directory
                                                      : QFileDialog::AnyFile);
  dialog->setLabelText(QFileDialog::Accept, tr("Choose"));
  dialog->setDirectory(QFileInfo(present).isDir() ? present : QFileInfo(present).path());
  if (!row_.value.empty()) dialog->selectFile(QFileInfo(present).fileName());
  Show(dialog,
       [dialog, this] { return WrittenPath(dialog->selectedFiles().value(0), baseFolder_); });
}

// The editor may have been deleted by the time the dialog is closed.
void TextEditor::Show(QDialog* dialog, const std::function<QString()>& result) {
  isDialogOpen_ = true;
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  QObject::connect(dialog, &QDialog::finished, this, [this, result](int code) {
    isDialogOpen_ = false;
    line_->setFocus();
    if (code != QDialog::Accepted) return;
    line_->setText(result());
    if (onChosen) onChosen();
  });
  dialog->open();
}

ListDialog::ListDialog(const OptionRow& row, const QString& text, const QString& baseFolder,
                       QWidget* parent)
    : QDialog(parent) {
  setWindowTitle(ToQt(row.definition.label));
  list_ = new QListWidget(this);
  list_->setAccessibleName(windowTitle());
  list_->setDragDropMode(QAbstractItemView::InternalMove);
  list_->setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed |
                         QAbstractItemView::SelectedClicked);
  for (const std::string& entry : SplitList(FromQt(text))) list_->addItem(MakeEntry(ToQt(entry)));
  if (list_->count() > 0) list_->setCurrentRow(0);

  auto* const buttons = MakeButtons(row.kind == OptionKind::Paths, baseFolder);
  auto* const box = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
  QObject::connect(box, &QDialogButtonBox::accepted, this, &QDialog::accept);
  QObject::connect(box, &QDialogButtonBox::rejected, this, &QDialog::reject);
  auto* const hint =
      new QLabel(tr("%1 stands for the inherited value.").arg(QString(kInherited)), this);
  hint->setForegroundRole(QPalette::PlaceholderText);
  auto* const middle = new QHBoxLayout;
  middle->addWidget(list_, 1);
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
    const int place = list_->currentRow() + 1;
    list_->insertItem(place, MakeEntry(entry));
    list_->setCurrentRow(place);
    return list_->item(place);
  };
  addButton(tr("&Add"), [this, add] { list_->editItem(add({})); });
  if (isPaths) {
    addButton(tr("Add &folder..."), [this, add, baseFolder] {
      const QString folder = AskFolder(this, baseFolder);
      if (!folder.isEmpty()) add(folder);
    });
  }
  auto* const inherit = addButton(tr("Add &inherited"), [add] { add(kInherited); });
  inherit->setToolTip(tr("Insert the inherited value"));
  auto* const remove = addButton(tr("&Remove"), [this] { delete list_->currentItem(); });
  const auto move = [this](int step) {
    const int from = list_->currentRow();
    const int to = from + step;
    if (from < 0 || to < 0 || to >= list_->count()) return;
    list_->insertItem(to, list_->takeItem(from));
    list_->setCurrentRow(to);
  };
  auto* const up = addButton(tr("Move &up"), [move] { move(-1); });
  auto* const down = addButton(tr("Move &down"), [move] { move(1); });
  buttons->addStretch();
  const auto refresh = [this, remove, up, down] {
    const int place = list_->currentRow();
    remove->setEnabled(place >= 0);
    up->setEnabled(place > 0);
    down->setEnabled(place >= 0 && place + 1 < list_->count());
  };
  QObject::connect(list_, &QListWidget::currentRowChanged, this, refresh);
  refresh();
  return buttons;
}

QString ListDialog::GetText() const {
  std::vector<std::string> entries;
  for (int i = 0; i < list_->count(); ++i) {
    // A semicolon splits an entry in two.
    for (std::string& entry : SplitList(FromQt(list_->item(i)->text()))) {
      entries.push_back(std::move(entry));
    }
  }
  return ToQt(JoinList(entries));
}

}  // namespace tarn::host
