#pragma once

#include <memory>

#include "widgets/BrowserCtrl.h"

namespace tarn {

// Displays local pages only; scripts and remote content are disabled.
std::unique_ptr<BrowserPeer> MakeBrowserPeer(CBrowserCtrl& browser);

}  // namespace tarn
