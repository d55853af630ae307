#pragma once

#include <memory>

#include "widgets/ToolBar.h"

namespace tarn {

// Shows a tool bar as rows of buttons with pictures, or with texts where there is none.
std::unique_ptr<ToolBarPeer> MakeToolBarPeer(CToolBar& bar);

}  // namespace tarn
