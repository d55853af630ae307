#pragma once

#include <cstdint>
#include <vector>

#include "xml/XmlNode.h"

namespace tarn {

// Incremental search for the next unpublished node of a subtree. Remembers its position, so that
// publishing a whole tree node by node costs a single traversal, O(nodes) in total.
//
// Traverses in preorder, children from the last to the first, with an explicit stack. The position
// is valid for one epoch; only losses of published values and structural changes may start a new
// epoch, and the search then restarts at the root.
class PublishCursor {
 public:
  // Returns the next node at or below `root` for which `isPublished` is false, or nullptr. Returns
  // the same node again until it is published.
  template <class IsPublished, class IsContent>
  CXmlNode* Next(CXmlNode& root, std::uint64_t currentEpoch, IsPublished isPublished,
                 IsContent isContent) {
    if (start_ != &root || epoch_ != currentEpoch) Restart(root, currentEpoch);
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

  void Forget() { start_ = nullptr; }

 private:
  static constexpr int kEnter = -1;

  struct Frame {
    CXmlNode* node = nullptr;
    int next = kEnter;  // children before this index remain to be visited
  };

  void Restart(CXmlNode& root, std::uint64_t currentEpoch) {
    start_ = &root;
    epoch_ = currentEpoch;
    stack_.assign(1, {&root, kEnter});
  }

  const CXmlNode* start_ = nullptr;
  std::uint64_t epoch_ = 0;
  std::vector<Frame> stack_;
};

}  // namespace tarn
