#pragma once

#include <memory>

#include "widgets/ToolBar.h"

namespace tarn {

// Shows a toolbar as rows of buttons with icons, or with text if there is no icon.
std::unique_ptr<ToolBarPeer> MakeToolBarPeer(CToolBar& bar);

}  // namespace tarn
