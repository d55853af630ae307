#pragma once

#include <QPointer>
#include <QStringList>
#include <QWidget>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "widgets/Dialogs.h"

namespace tarn {

// Asks the user in dialogs over a widget, for one window, while it lives. Each question runs a loop
// of its own; one that is still open when the widget goes is cancelled.
class QtDialogs final : public DialogResponder {
 public:
  // `parentWidget` is borrowed; it may go first.
  QtDialogs(WindowHandle askedWindow, QWidget* parentWidget);
  ~QtDialogs();
  QtDialogs(const QtDialogs&) = delete;
  QtDialogs& operator=(const QtDialogs&) = delete;

  bool AskOkCancel(const std::string& text, const std::string& caption) override;
  void ShowMessage(const std::string& text, const std::string& caption) override;
  std::vector<std::string> ChooseFiles(const FileQuestion& question) override;
  std::string ChooseFolder(const FolderQuestion& question) override;
  int RunSheet(CPropertySheet& sheet) override;

  // The user has said OK to a question, and who asked goes on behind this call; may be empty.
  std::function<void()> onAccepted;

 private:
  QWidget* Parent() const;

  const WindowHandle owner;
  const QPointer<QWidget> parent;
};

// The filters of a file question, one a string, as file dialogs take them: "Label (*.c *.h)".
QStringList ToNameFilters(std::string_view filter);

}  // namespace tarn
