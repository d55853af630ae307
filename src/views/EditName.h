#pragma once

#include "widgets/Edit.h"

namespace tarn {

// In-place editor for the name of a tree item. Enter sends the new name to the tree's parent
// (kXmlTreeRename) and leaves the editor open; Escape or loss of the keyboard focus destroys its
// window without a message.
class CEditName : public CEdit {
 public:
  ~CEditName() override { DestroyWindow(); }

  // Sends the current string. The handler of the message may destroy this editor.
  virtual void CommitEdit();

 protected:
  bool OnKeyDown(const KeyEvent& event) override;
  void OnKillFocus() override { DestroyWindow(); }
};

}  // namespace tarn
