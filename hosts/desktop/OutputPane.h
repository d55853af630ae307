#pragma once

#include <QCoreApplication>
#include <QPlainTextEdit>
#include <QStringDecoder>
#include <functional>
#include <string>

namespace tarn::host {

// Shows what a simulator or another action prints, while it runs. The build log receives it at the
// end of the action.
class OutputPane : public QPlainTextEdit {
  Q_DECLARE_TR_FUNCTIONS(OutputPane)

 public:
  explicit OutputPane(QWidget* parent);

  // A command begins. What it prints will replace the present content.
  void Begin() { isStale_ = true; }
  // Appends a part of the output, which may end in the middle of a character. Scrolls to the end
  // unless the user has scrolled away from it.
  void Add(const std::string& bytes);

  // Called at the first output of a command; may be empty.
  std::function<void()> onFirst;

 private:
  bool isStale_ = true;  // the content is that of an earlier command
  QStringDecoder decoder_{QStringDecoder::Utf8};
};

}  // namespace tarn::host
