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

// Chooses one of an option's choices, and drops its list down as soon as it is shown.
class ChoiceEditor : public QComboBox {
  Q_DECLARE_TR_FUNCTIONS(tarn::host::ChoiceEditor)

 public:
  ChoiceEditor(const OptionRow& row, QWidget* parent);

  void SetText(const QString& value);
  QString GetText() const { return currentData().toString(); }
  // The user wants the value that would be there without one of the node's own.
  bool IsInherit() const;

  // The list was closed again; without a choice when nothing was activated before.
  std::function<void()> onClosed;

  void hidePopup() override;

 protected:
  void showEvent(QShowEvent* event) override;
};

// A line of text, with a button behind it where a dialog can help: for files, folders and lists.
class TextEditor : public QWidget {
  Q_DECLARE_TR_FUNCTIONS(tarn::host::TextEditor)

 public:
  // Paths below `baseFolder` are written relative to it.
  TextEditor(const OptionRow& row, const QString& baseFolder, QWidget* parent);

  QLineEdit* Line() const { return line; }
  QString GetText() const;
  void SetText(const QString& text);
  bool IsDialogOpen() const { return isDialogOpen; }

  // A dialog was ended with a new text, which nothing more is to be done to.
  std::function<void()> onChosen;

 private:
  void AddButton();
  void OpenDialog();
  void Show(QDialog* dialog, const std::function<QString()>& result);

  const OptionRow row;
  const QString baseFolder;
  QLineEdit* line = nullptr;
  bool isDialogOpen = false;
};

// Edits a list of texts or folders, one a line, in the order that counts.
class ListDialog : public QDialog {
  Q_DECLARE_TR_FUNCTIONS(tarn::host::ListDialog)

 public:
  ListDialog(const OptionRow& row, const QString& text, const QString& baseFolder, QWidget* parent);

  QString GetText() const;

 private:
  QListWidget* list = nullptr;
};

// A path as it is written into an option: relative to the folder when it lies below it.
QString WrittenPath(const QString& path, const QString& baseFolder);

}  // namespace tarn::host
