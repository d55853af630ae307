#pragma once

#include <string>
#include <vector>

#include "widgets/MessageLoop.h"

// The questions that Tarn asks the user. The owner of the window that a question is asked for may
// install a responder: a toolkit that shows real dialogs, a host with its own user interface, or a
// test. Without a responder every question is answered with Cancel. Main thread only.
namespace tarn {

class CPropertySheet;

struct FileQuestion {
  std::string filter;     // pairs of label and patterns, each ended by a vertical bar
  std::string folder;     // initial folder; empty: chosen by the responder
  bool multiple = false;  // otherwise at most one file
};

struct FolderQuestion {
  std::string folder;  // initial folder; empty: chosen by the responder
};

// The buttons that close a sheet; results of RunSheet().
inline constexpr int kSheetFinish = 12325;
inline constexpr int kSheetCancel = 2;

class DialogResponder {
 public:
  // Returns true for OK.
  virtual bool AskOkCancel(const std::string& text, const std::string& caption) = 0;
  // Shows a message that needs no decision.
  virtual void ShowMessage(const std::string& text, const std::string& caption) = 0;
  // Returns the absolute paths of the chosen files; empty for Cancel.
  virtual std::vector<std::string> ChooseFiles(const FileQuestion& question) = 0;
  // Returns the absolute path of the chosen folder; empty for Cancel.
  virtual std::string ChooseFolder(const FolderQuestion& /*question*/) { return {}; }
  // Runs the sheet, whose windows have all been created, and returns the button that closed it. A
  // responder without a display operates the controls directly: it looks them up by id and calls
  // their functions marked "Called by the toolkit".
  virtual int RunSheet(CPropertySheet& /*sheet*/) { return kSheetCancel; }

 protected:
  ~DialogResponder() = default;
};

// Installs the responder for questions of `owner`; null removes it. The responder is borrowed until
// it is removed.
void SetDialogResponder(WindowHandle owner, DialogResponder* responder);

bool AskOkCancel(WindowHandle owner, const std::string& text, const std::string& caption);
void ShowMessage(WindowHandle owner, const std::string& text, const std::string& caption);
std::vector<std::string> ChooseFiles(WindowHandle owner, const FileQuestion& question);
std::string ChooseFolder(WindowHandle owner, const FolderQuestion& question);
int RunSheet(WindowHandle owner, CPropertySheet& sheet);

}  // namespace tarn
