#pragma once

#include <memory>

#include "widgets/RichTextCtrl.h"

namespace tarn {

// A view that takes up what is appended a few times a second at most, and a large text in pieces.
std::unique_ptr<RichTextPeer> MakeRichTextPeer(CRichTextCtrl& control);

}  // namespace tarn
