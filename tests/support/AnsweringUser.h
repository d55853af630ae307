#pragma once

#include <deque>
#include <functional>
#include <string>
#include <vector>

#include "widgets/Dialogs.h"

namespace tarn::test {

// Answers the questions of one window from lists, in order, and records each question as a line.
// Cancels a question if its list is empty.
class AnsweringUser final : public DialogResponder {
 public:
  explicit AnsweringUser(WindowHandle ownerWindow) : owner_(ownerWindow) {
    SetDialogResponder(owner_, this);
  }
  ~AnsweringUser() { SetDialogResponder(owner_, nullptr); }
  AnsweringUser(const AnsweringUser&) = delete;
  AnsweringUser& operator=(const AnsweringUser&) = delete;

  std::deque<bool> okCancel;
  std::deque<std::vector<std::string>> files;
  // Operates a sheet and returns the button that closes it.
  std::function<int(CPropertySheet& sheet)> useSheet;
  std::deque<std::string> folders;
  std::vector<std::string> lines;

  bool AskOkCancel(const std::string& text, const std::string& caption) override {
    lines.push_back("ask: " + text + " [" + caption + "]");
    return Take(okCancel);
  }
  void ShowMessage(const std::string& text, const std::string& caption) override {
    lines.push_back("show: " + text + " [" + caption + "]");
  }
  std::vector<std::string> ChooseFiles(const FileQuestion& question) override {
    lines.push_back("files: " + question.filter + " in " + question.folder);
    return Take(files);
  }
  std::string ChooseFolder(const FolderQuestion& question) override {
    lines.push_back("folder: from " + question.folder);
    return Take(folders);
  }
  int RunSheet(CPropertySheet& sheet) override { return useSheet ? useSheet(sheet) : kSheetCancel; }

 private:
  template <class T>
  static T Take(std::deque<T>& answers) {
    if (answers.empty()) return T();
    T answer = std::move(answers.front());
    answers.pop_front();
    return answer;
  }

  WindowHandle owner_;
};

}  // namespace tarn::test
