#include "project/PublishCursor.h"

#include "xml/XmlNode.h"

namespace tarn {

CXmlNode* PublishCursor::Next(CXmlNode& root, std::uint64_t currentEpoch, const Test& isPublished,
                              const Test& isContent) {
  if (start_ != &root || epoch_ != currentEpoch) {
    start_ = &root;
    epoch_ = currentEpoch;
    stack_.assign(1, {&root, kEnter});
  }
  while (!stack_.empty()) {
    Frame& frame = stack_.back();
    if (frame.next == kEnter) {
      if (!isPublished(*frame.node)) return frame.node;
      frame.next = frame.node->GetChildCount();
    }
    if (frame.next == 0) {
      stack_.pop_back();
      continue;
    }
    CXmlNode* child = frame.node->GetChild(--frame.next);
    if (child != nullptr && isContent(*child)) stack_.push_back({child, kEnter});
  }
  return nullptr;
}

}  // namespace tarn
