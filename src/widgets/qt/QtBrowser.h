#pragma once

#include <memory>

#include "widgets/BrowserCtrl.h"

namespace tarn {

// Shows pages of this machine; neither scripts nor anything from elsewhere.
std::unique_ptr<BrowserPeer> MakeBrowserPeer(CBrowserCtrl& browser);

}  // namespace tarn
