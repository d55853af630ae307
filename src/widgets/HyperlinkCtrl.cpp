#include "widgets/HyperlinkCtrl.h"

#include "widgets/Toolkit.h"

namespace tarn {

void CHyperlinkCtrl::NotifyClicked() {
  if (!IsUsable() || address_.empty()) return;
  // A copy: the toolkit may run events, which may destroy this, while the desktop opens the
  // address.
  const std::string opened = address_;
  WindowToolkit::Current().OpenAddress(opened);
}

std::unique_ptr<WindowPeer> CHyperlinkCtrl::MakePeer(WindowToolkit& toolkit) {
  return toolkit.MakePeer(*this);
}

}  // namespace tarn
