#include "widgets/HyperlinkCtrl.h"

#include "widgets/Toolkit.h"

namespace tarn {

void CHyperlinkCtrl::NotifyClicked() {
  if (!IsUsable() || address.empty()) return;
  // A toolkit may run events while the desktop starts something.
  const std::string opened = address;
  WindowToolkit::Current().OpenAddress(opened);
}

std::unique_ptr<WindowPeer> CHyperlinkCtrl::MakePeer(WindowToolkit& toolkit) {
  return toolkit.MakePeer(*this);
}

}  // namespace tarn
