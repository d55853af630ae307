#pragma once

#include "widgets/Edit.h"

namespace tarn {

// The editor that lies over an item of a tree while its name is typed. Enter tells the tree's
// parent the new name (kXmlTreeRename) and leaves the editor open; Escape and the loss of the
// keyboard take its window away, with nothing told.
class CEditName : public CEdit {
 public:
  ~CEditName() override { DestroyWindow(); }

  // Sends the text as it stands. What hears it may take this editor away.
  virtual void CommitEdit();

 protected:
  bool OnKeyDown(const KeyEvent& event) override;
  void OnKillFocus() override { DestroyWindow(); }
};

}  // namespace tarn
