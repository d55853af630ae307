#include "widgets/BrowserCtrl.h"

#include "widgets/Toolkit.h"

namespace tarn {

void CBrowserCtrl::Navigate(const std::string& newAddress) {
  if (!NotifyNavigating(newAddress)) return;
  if (BrowserPeer* drawing = Drawing()) drawing->OnNavigate();
}

bool CBrowserCtrl::NotifyNavigating(const std::string& newAddress) {
  const WindowHandle own = GetHandle();
  if (own == 0) return false;
  const std::string wanted = newAddress;
  const NavigationHandler handler = mayNavigate_;
  if (handler && !handler(wanted)) return false;
  if (!IsWindow(own)) return false;
  address_ = wanted;
  return true;
}

std::unique_ptr<WindowPeer> CBrowserCtrl::MakePeer(WindowToolkit& toolkit) {
  return toolkit.MakePeer(*this);
}

}  // namespace tarn
