#pragma once

#include <cstdint>

#include "widgets/Wnd.h"

namespace tarn {

// Sent to the owner of a control when its user has clicked it or chosen something in it, whose
// state is then the new one already. wParam is the control's id, lParam its handle.
inline constexpr std::uint32_t kMsgControlUsed = 0x99C0;

// A window that its user clicks or chooses in.
class CControl : public CWnd {
 protected:
  // What the user may not use now does nothing.
  bool IsUsable() const { return IsCreated() && IsVisible() && IsEnabled(); }
  // The last that a user's action does: the owner may destroy the control.
  void TellUsed() { SendOwner(kMsgControlUsed, GetId(), GetHandle()); }
};

}  // namespace tarn
