#pragma once

#include <memory>

#include "widgets/RichTextCtrl.h"

namespace tarn {

// Peer that batches appended text, with a few updates per second at most, and inserts large text in
// chunks.
std::unique_ptr<RichTextPeer> MakeRichTextPeer(CRichTextCtrl& control);

}  // namespace tarn
