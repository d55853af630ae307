#pragma once

#include <cstdint>

#include "widgets/Wnd.h"

namespace tarn {

// Sent to the owner of a control after the user has clicked it or chosen something in it; the
// control's state is already updated. wParam is the control's id, lParam its handle.
inline constexpr std::uint32_t kMsgControlUsed = 0x99C0;

// Base of windows that the user clicks or chooses in.
class CControl : public CWnd {
 protected:
  // User input to a control that is hidden or disabled is ignored.
  bool IsUsable() const { return IsCreated() && IsVisible() && IsEnabled(); }
  // Must be the last step of handling a user action: the owner may destroy the control.
  void NotifyUsed() { SendOwner(kMsgControlUsed, GetId(), GetHandle()); }
};

}  // namespace tarn
