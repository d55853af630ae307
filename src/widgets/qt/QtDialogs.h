#pragma once

#include <QPointer>
#include <QStringList>
#include <QWidget>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "widgets/Dialogs.h"

class QDialog;

namespace tarn {

// Responder that asks the user in modal dialogs over a widget, for one window, during its lifetime.
// Each question runs a nested loop; an open dialog is cancelled if the widget is destroyed.
class QtDialogs final : public DialogResponder {
 public:
  // `parentWidget` is borrowed; it may be destroyed first.
  QtDialogs(WindowHandle askedWindow, QWidget* parentWidget);
  ~QtDialogs();
  QtDialogs(const QtDialogs&) = delete;
  QtDialogs& operator=(const QtDialogs&) = delete;

  bool AskOkCancel(const std::string& text, const std::string& caption) override;
  void ShowMessage(const std::string& text, const std::string& caption) override;
  std::vector<std::string> ChooseFiles(const FileQuestion& question) override;
  std::string ChooseFolder(const FolderQuestion& question) override;
  int RunSheet(CPropertySheet& sheet) override;

  // Called after the user has confirmed a question with OK, before the caller continues; may be
  // empty.
  std::function<void()> onAccepted;
  // Returns why a sheet can't be finished yet, although its page has no objection; an empty string
  // if it can. May be empty.
  std::function<std::string(const CPropertySheet& sheet)> findProblem;
  // Called before a sheet is shown as this dialog; may be empty.
  std::function<void(const CPropertySheet& sheet, QDialog& dialog)> onSheet;

 private:
  QWidget* Parent() const;

  const WindowHandle owner_;
  const QPointer<QWidget> parent_;
};

// Converts the filter of a file question to the format of file dialogs: "Label (*.c *.h)".
QStringList ToNameFilters(std::string_view filter);

}  // namespace tarn
