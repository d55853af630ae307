#pragma once

#include <memory>

#include "widgets/Edit.h"

namespace tarn {

// A field of one line or of several, as the edit's style says.
std::unique_ptr<EditPeer> MakeEditPeer(CEdit& edit);

}  // namespace tarn
