#pragma once

#include <string>
#include <vector>

#include "widgets/MessageLoop.h"

// The questions that the system asks its user. Whoever owns the window that a question is asked
// for may install a responder: a toolkit that shows real dialogs, a host that asks elsewhere, a
// test. Without a responder every question is answered with Cancel. Host's thread only.
namespace tarn {

class CPropertySheet;

struct FileQuestion {
  std::string filter;     // pairs of label and patterns, each ended by a vertical bar
  std::string folder;     // where to start; empty: where the responder likes
  bool multiple = false;  // else one file at most
};

struct FolderQuestion {
  std::string folder;  // where to start; empty: where the responder likes
};

// The buttons that end a sheet, as RunSheet gives them.
inline constexpr int kSheetFinish = 12325;
inline constexpr int kSheetCancel = 2;

class DialogResponder {
 public:
  // True for OK.
  virtual bool AskOkCancel(const std::string& text, const std::string& caption) = 0;
  // Something to read, with nothing to decide.
  virtual void ShowMessage(const std::string& text, const std::string& caption) = 0;
  // The chosen paths, absolute; empty for Cancel.
  virtual std::vector<std::string> ChooseFiles(const FileQuestion& question) = 0;
  // The chosen folder, absolute; empty for Cancel.
  virtual std::string ChooseFolder(const FolderQuestion& /*question*/) { return {}; }
  // Has the user work with the sheet, whose windows all stand, and gives the button that ended it.
  // Who shows nothing uses the controls as a user would: looks them up by id and calls what they
  // have "from the toolkit".
  virtual int RunSheet(CPropertySheet& /*sheet*/) { return kSheetCancel; }

 protected:
  ~DialogResponder() = default;
};

// Answers for `owner` from now on; null removes it. The responder is borrowed until then.
void SetDialogResponder(WindowHandle owner, DialogResponder* responder);

bool AskOkCancel(WindowHandle owner, const std::string& text, const std::string& caption);
void ShowMessage(WindowHandle owner, const std::string& text, const std::string& caption);
std::vector<std::string> ChooseFiles(WindowHandle owner, const FileQuestion& question);
std::string ChooseFolder(WindowHandle owner, const FolderQuestion& question);
int RunSheet(WindowHandle owner, CPropertySheet& sheet);

}  // namespace tarn
