#pragma once

#include <memory>

#include "widgets/Edit.h"

namespace tarn {

// Peer for a single-line or multi-line field, depending on the edit's style.
std::unique_ptr<EditPeer> MakeEditPeer(CEdit& edit);

}  // namespace tarn
