#pragma once

#include <memory>

#include "widgets/Control.h"

namespace tarn {

enum class ButtonKind { Push, CheckBox, Radio };

class ButtonPeer : public WindowPeer {
 public:
  virtual void OnCheckChanged() {}
};

// A button to push, a box to tick, or one of a group of radio buttons of which one is checked at
// most. The window's text is its label.
class CButton : public CControl {
 public:
  // A group of radio buttons is the one that starts it and those that follow among its parent's
  // children, as far as the next that starts one.
  explicit CButton(ButtonKind buttonKind, bool groupStarts = false)
      : kind(buttonKind), startsGroup(groupStarts) {}

  ButtonKind GetKind() const { return kind; }
  bool StartsGroup() const { return startsGroup; }
  bool IsChecked() const { return isChecked; }
  // A radio button that is checked unchecks the others of its group. Tells nobody but the peers.
  void SetCheck(bool check);

  // --- From the toolkit ---

  // The user pushes it: a box changes its state, a radio button is checked, and the owner is told.
  void NotifyClicked();

 protected:
  std::unique_ptr<WindowPeer> MakePeer(WindowToolkit& toolkit) final;

 private:
  void UncheckOthers();

  ButtonKind kind;
  bool startsGroup;
  bool isChecked = false;
};

}  // namespace tarn
