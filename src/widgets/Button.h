#pragma once

#include <memory>

#include "widgets/Control.h"

namespace tarn {

enum class ButtonKind { Push, CheckBox, Radio };

class ButtonPeer : public WindowPeer {
 public:
  virtual void OnCheckChanged() {}
};

// A push button, a check box, or a radio button of a group in which at most one is checked. The
// window text is the label.
class CButton : public CControl {
 public:
  // A group of radio buttons consists of the one with `groupStarts` and the siblings after it, up
  // to the next one with `groupStarts`.
  explicit CButton(ButtonKind buttonKind, bool groupStarts = false)
      : kind_(buttonKind), startsGroup_(groupStarts) {}

  ButtonKind GetKind() const { return kind_; }
  bool StartsGroup() const { return startsGroup_; }
  bool IsChecked() const { return isChecked_; }
  // Checking a radio button unchecks the others of its group. Notifies only the peers, not the
  // owner.
  void SetCheck(bool check);

  // --- Called by the toolkit ---

  // The user clicked the button: a check box toggles, a radio button is checked, and the owner is
  // notified.
  void NotifyClicked();

 protected:
  std::unique_ptr<WindowPeer> MakePeer(WindowToolkit& toolkit) final;

 private:
  void UncheckOthers();

  ButtonKind kind_;
  bool startsGroup_;
  bool isChecked_ = false;
};

}  // namespace tarn
