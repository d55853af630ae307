#include "widgets/qt/QtDialogs.h"

#include <QApplication>
#include <QFileDialog>
#include <QMessageBox>

#include "widgets/qt/QtText.h"
#include "widgets/qt/SheetDialog.h"
#include "widgets/qt/WidgetPeer.h"

namespace tarn {

namespace {

// Runs a dialog. It is destroyed with its parent if that happens first; the pointer is null then.
template <class Dialog>
bool Accepts(const QPointer<Dialog>& dialog) {
  return dialog->exec() == QDialog::Accepted && dialog != nullptr;
}

int RunBox(QWidget* parent, QMessageBox::Icon icon, QMessageBox::StandardButtons buttons,
           const std::string& text, const std::string& caption) {
  const QPointer<QMessageBox> box =
      new QMessageBox(icon, ToQt(caption), ToQt(text), buttons, parent);
  box->setTextFormat(Qt::PlainText);
  box->setTextInteractionFlags(Qt::TextSelectableByMouse);
  box->setDefaultButton(QMessageBox::Ok);
  const int pressed = box->exec();
  delete box;
  return pressed;
}

QStringList RunFileDialog(QWidget* parent, const std::string& folder, QFileDialog::FileMode mode,
                          const QStringList& filters) {
  const QPointer<QFileDialog> dialog = new QFileDialog(parent);
  dialog->setFileMode(mode);
  dialog->setOption(QFileDialog::ShowDirsOnly, mode == QFileDialog::Directory);
  if (!filters.isEmpty()) dialog->setNameFilters(filters);
  if (!folder.empty()) dialog->setDirectory(ToQt(folder));
  QStringList chosen;
  if (Accepts(dialog)) chosen = dialog->selectedFiles();
  delete dialog;
  return chosen;
}

}  // namespace

QStringList ToNameFilters(std::string_view filter) {
  const QStringList parts = ToQt(filter).split(QLatin1Char('|'));
  QStringList filters;
  for (qsizetype i = 0; i + 1 < parts.size(); i += 2) {
    QString label = parts[i].trimmed();
    // The dialog appends the patterns itself.
    const qsizetype bracket = label.lastIndexOf(QLatin1Char('('));
    if (bracket > 0 && label.endsWith(QLatin1Char(')'))) label = label.left(bracket).trimmed();
    QStringList patterns = parts[i + 1].split(QLatin1Char(';'), Qt::SkipEmptyParts);
    for (QString& pattern : patterns) {
      pattern = pattern.trimmed();
      // Means every file, including one without a dot.
      if (pattern == QLatin1String("*.*")) pattern = QStringLiteral("*");
    }
    if (patterns.isEmpty()) continue;
    filters.append(QStringLiteral("%1 (%2)").arg(label, patterns.join(QLatin1Char(' '))));
  }
  return filters;
}

QtDialogs::QtDialogs(WindowHandle askedWindow, QWidget* parentWidget)
    : owner_(askedWindow), parent_(parentWidget) {
  SetDialogResponder(owner_, this);
}

QtDialogs::~QtDialogs() {
  SetDialogResponder(owner_, nullptr);
}

// A question caused by a dialog is shown over that dialog.
QWidget* QtDialogs::Parent() const {
  QWidget* const modal = QApplication::activeModalWidget();
  return modal != nullptr ? modal : parent_.data();
}

bool QtDialogs::AskOkCancel(const std::string& text, const std::string& caption) {
  const int pressed =
      RunBox(Parent(), QMessageBox::Question, QMessageBox::Ok | QMessageBox::Cancel, text, caption);
  if (pressed != QMessageBox::Ok) return false;
  if (onAccepted) onAccepted();
  return true;
}

void QtDialogs::ShowMessage(const std::string& text, const std::string& caption) {
  RunBox(Parent(), QMessageBox::Information, QMessageBox::Ok, text, caption);
}

std::vector<std::string> QtDialogs::ChooseFiles(const FileQuestion& question) {
  const auto mode = question.multiple ? QFileDialog::ExistingFiles : QFileDialog::ExistingFile;
  std::vector<std::string> paths;
  for (const QString& path :
       RunFileDialog(Parent(), question.folder, mode, ToNameFilters(question.filter))) {
    paths.push_back(FromQt(path));
  }
  return paths;
}

std::string QtDialogs::ChooseFolder(const FolderQuestion& question) {
  const QStringList chosen = RunFileDialog(Parent(), question.folder, QFileDialog::Directory, {});
  return chosen.isEmpty() ? std::string() : FromQt(chosen.front());
}

int QtDialogs::RunSheet(CPropertySheet& sheet) {
  const QPointer<SheetDialog> dialog = dynamic_cast<SheetDialog*>(WidgetOf(sheet));
  if (dialog == nullptr || sheet.GetPage() == nullptr) return kSheetCancel;
  if (QWidget* const above = Parent()) dialog->setParent(above, dialog->windowFlags());
  dialog->findProblem = findProblem;
  dialog->Build(sheet);
  if (onSheet) onSheet(sheet, *dialog);
  // Destroying the sheet's window hides the dialog, which ends its loop; the sheet may no longer
  // exist then.
  return Accepts(dialog) ? kSheetFinish : kSheetCancel;
}

}  // namespace tarn
