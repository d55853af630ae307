#pragma once

#include <QComboBox>
#include <QCoreApplication>
#include <QDialog>
#include <QWidget>
#include <functional>

#include "hosts/desktop/NodeOptions.h"

class QLineEdit;
class QListWidget;

namespace tarn::host {

// Combo box for an option's choices; opens its list as soon as it is shown.
class ChoiceEditor : public QComboBox {
  Q_DECLARE_TR_FUNCTIONS(tarn::host::ChoiceEditor)

 public:
  ChoiceEditor(const OptionRow& row, QWidget* parent);

  void SetText(const QString& value);
  QString GetText() const { return currentData().toString(); }
  // True if the user has chosen to inherit the value instead of setting one at the node.
  bool IsInherit() const;

  // Called when the list was closed; if no entry was activated before, this means no choice.
  std::function<void()> onClosed;

  void hidePopup() override;

 protected:
  void showEvent(QShowEvent* event) override;
};

// Line edit with an optional button that opens a dialog: for files, folders and lists.
class TextEditor : public QWidget {
  Q_DECLARE_TR_FUNCTIONS(tarn::host::TextEditor)

 public:
  // Paths below `baseFolder` are written relative to it.
  TextEditor(const OptionRow& row, const QString& baseFolder, QWidget* parent);

  QLineEdit* Line() const { return line_; }
  QString GetText() const;
  void SetText(const QString& text);
  bool IsDialogOpen() const { return isDialogOpen_; }

  // Called when a dialog was closed with a new text, which is final.
  std::function<void()> onChosen;

 private:
  void AddButton();
  void OpenDialog();
  void Show(QDialog* dialog, const std::function<QString()>& result);

  const OptionRow row_;
  const QString baseFolder_;
  QLineEdit* line_ = nullptr;
  bool isDialogOpen_ = false;
};

// Edits a list of strings or folders, one per line, in order of precedence.
class ListDialog : public QDialog {
  Q_DECLARE_TR_FUNCTIONS(tarn::host::ListDialog)

 public:
  ListDialog(const OptionRow& row, const QString& text, const QString& baseFolder, QWidget* parent);

  QString GetText() const;

 private:
  QLayout* MakeButtons(bool isPaths, const QString& baseFolder);

  QListWidget* list_ = nullptr;
};

// Returns a path as stored in an option: relative to the folder if it is below it.
QString WrittenPath(const QString& path, const QString& baseFolder);

}  // namespace tarn::host
