#pragma once

#include <string>
#include <vector>

#include "platform/windowing/MessageLoop.h"

// The questions that the system asks its user. Whoever owns the window that a question is asked
// for may install a responder: a toolkit that shows real dialogs, a host that asks elsewhere, a
// test. Without a responder every question is answered with Cancel. Host's thread only.
namespace tarn {

struct FileQuestion {
  std::string filter;  // pairs of label and patterns, each ended by a vertical bar
  std::string folder;  // where to start; empty: where the responder likes
  bool multiple = false;
};

class DialogResponder {
 public:
  // True for OK.
  virtual bool AskOkCancel(const std::string& text, const std::string& caption) = 0;
  // The chosen paths, absolute; empty for Cancel.
  virtual std::vector<std::string> ChooseFiles(const FileQuestion& question) = 0;

 protected:
  ~DialogResponder() = default;
};

// Answers for `owner` from now on; null removes it. The responder is borrowed until then.
void SetDialogResponder(WindowHandle owner, DialogResponder* responder);

bool AskOkCancel(WindowHandle owner, const std::string& text, const std::string& caption);
std::vector<std::string> ChooseFiles(WindowHandle owner, const FileQuestion& question);

}  // namespace tarn
