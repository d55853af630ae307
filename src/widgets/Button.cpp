#include "widgets/Button.h"

#include <algorithm>
#include <vector>

#include "widgets/Toolkit.h"

namespace tarn {

void CButton::SetCheck(bool check) {
  if (check == isChecked_ || kind_ == ButtonKind::Push) return;
  isChecked_ = check;
  if (check && kind_ == ButtonKind::Radio) UncheckOthers();
  if (GetPeer()) static_cast<ButtonPeer*>(GetPeer())->OnCheckChanged();
}

void CButton::UncheckOthers() {
  if (GetParent() == nullptr) return;
  std::vector<CButton*> group;
  for (CWnd* const each : GetParent()->GetChildren()) {
    auto* const radio = dynamic_cast<CButton*>(each);
    if (radio == nullptr || radio->kind_ != ButtonKind::Radio) continue;
    if (radio->startsGroup_) {
      if (std::find(group.begin(), group.end(), this) != group.end()) break;
      group.clear();
    }
    group.push_back(radio);
  }
  if (std::find(group.begin(), group.end(), this) == group.end()) return;
  for (CButton* const radio : group) {
    if (radio != this) radio->SetCheck(false);
  }
}

void CButton::NotifyClicked() {
  if (!IsUsable()) return;
  if (kind_ != ButtonKind::Push) SetCheck(kind_ == ButtonKind::Radio || !isChecked_);
  NotifyUsed();
}

std::unique_ptr<WindowPeer> CButton::MakePeer(WindowToolkit& toolkit) {
  return toolkit.MakePeer(*this);
}

}  // namespace tarn
