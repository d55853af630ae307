#include "views/EditName.h"

#include <string>

#include "views/XmlTreeMessages.h"

namespace tarn {

void CEditName::CommitEdit() {
  const CWnd* const tree = GetParent();
  if (tree == nullptr || tree->GetParent() == nullptr) return;
  const std::string name = GetControlText();
  SendWindowMessage(tree->GetParent()->GetHandle(), kXmlTreeRename,
                    reinterpret_cast<std::intptr_t>(name.c_str()), 0);
}

bool CEditName::OnKeyDown(const KeyEvent& event) {
  if (event.key == kKeyEnter) {
    CommitEdit();
    return true;
  }
  if (event.key == kKeyEscape) {
    DestroyWindow();
    return true;
  }
  return CEdit::OnKeyDown(event);
}

}  // namespace tarn
