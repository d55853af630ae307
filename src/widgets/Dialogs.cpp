#include "widgets/Dialogs.h"

#include <map>
#include <mutex>

namespace tarn {

namespace {

struct ResponderTable {
  std::mutex lock;
  std::map<WindowHandle, DialogResponder*> responders;
};

ResponderTable& Responders() {
  static ResponderTable table;
  return table;
}

DialogResponder* ResponderOf(WindowHandle owner) {
  ResponderTable& table = Responders();
  const std::lock_guard<std::mutex> hold(table.lock);
  const auto found = table.responders.find(owner);
  return found == table.responders.end() ? nullptr : found->second;
}

}  // namespace

void SetDialogResponder(WindowHandle owner, DialogResponder* responder) {
  ResponderTable& table = Responders();
  const std::lock_guard<std::mutex> hold(table.lock);
  if (responder == nullptr) {
    table.responders.erase(owner);
  } else {
    table.responders[owner] = responder;
  }
}

bool AskOkCancel(WindowHandle owner, const std::string& text, const std::string& caption) {
  DialogResponder* responder = ResponderOf(owner);
  return responder != nullptr && responder->AskOkCancel(text, caption);
}

void ShowMessage(WindowHandle owner, const std::string& text, const std::string& caption) {
  if (DialogResponder* responder = ResponderOf(owner)) responder->ShowMessage(text, caption);
}

std::vector<std::string> ChooseFiles(WindowHandle owner, const FileQuestion& question) {
  DialogResponder* responder = ResponderOf(owner);
  return responder == nullptr ? std::vector<std::string>() : responder->ChooseFiles(question);
}

std::string ChooseFolder(WindowHandle owner, const FolderQuestion& question) {
  DialogResponder* responder = ResponderOf(owner);
  return responder == nullptr ? std::string() : responder->ChooseFolder(question);
}

int RunSheet(WindowHandle owner, CPropertySheet& sheet) {
  DialogResponder* responder = ResponderOf(owner);
  return responder == nullptr ? kSheetCancel : responder->RunSheet(sheet);
}

}  // namespace tarn
