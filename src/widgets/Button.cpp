#include "widgets/Button.h"

#include <algorithm>
#include <vector>

#include "widgets/Toolkit.h"

namespace tarn {

void CButton::SetCheck(bool check) {
  if (check == isChecked || kind == ButtonKind::Push) return;
  isChecked = check;
  if (check && kind == ButtonKind::Radio) UncheckOthers();
  if (GetPeer()) static_cast<ButtonPeer*>(GetPeer())->OnCheckChanged();
}

void CButton::UncheckOthers() {
  if (GetParent() == nullptr) return;
  std::vector<CButton*> group;
  for (CWnd* const each : GetParent()->GetChildren()) {
    auto* const radio = dynamic_cast<CButton*>(each);
    if (radio == nullptr || radio->kind != ButtonKind::Radio) continue;
    if (radio->startsGroup) {
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
  if (kind != ButtonKind::Push) SetCheck(kind == ButtonKind::Radio || !isChecked);
  TellUsed();
}

std::unique_ptr<WindowPeer> CButton::MakePeer(WindowToolkit& toolkit) {
  return toolkit.MakePeer(*this);
}

}  // namespace tarn
