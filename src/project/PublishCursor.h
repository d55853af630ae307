#pragma once

#include <cstdint>
#include <vector>

#include "xml/XmlNode.h"

namespace tarn {

// Where the search for the next unpublished node of a subtree stands, so that publishing a whole
// tree node by node costs one walk in all. The walk visits a node before its children and the
// children from the last to the first. The position holds as long as the epoch that it was taken
// in; nothing but the loss of published marks or a change of shape may end an epoch.
class PublishCursor {
 public:
  // The next node below or at `root` for which `isPublished` does not hold, or null. The same node
  // is given again until it is published.
  template <class IsPublished, class IsContent>
  CXmlNode* Next(CXmlNode& root, std::uint64_t currentEpoch, IsPublished isPublished,
                 IsContent isContent) {
    if (start != &root || epoch != currentEpoch) Restart(root, currentEpoch);
    while (!stack.empty()) {
      Frame& frame = stack.back();
      if (frame.next == kEnter) {
        if (!isPublished(*frame.node)) return frame.node;
        frame.next = frame.node->GetChildCount();
      }
      if (frame.next == 0) {
        stack.pop_back();
        continue;
      }
      CXmlNode* child = frame.node->GetChild(--frame.next);
      if (child != nullptr && isContent(*child)) stack.push_back({child, kEnter});
    }
    return nullptr;
  }

  void Forget() { start = nullptr; }

 private:
  static constexpr int kEnter = -1;

  struct Frame {
    CXmlNode* node = nullptr;
    int next = kEnter;  // children from here down are still to be visited
  };

  void Restart(CXmlNode& root, std::uint64_t currentEpoch) {
    start = &root;
    epoch = currentEpoch;
    stack.assign(1, {&root, kEnter});
  }

  const CXmlNode* start = nullptr;
  std::uint64_t epoch = 0;
  std::vector<Frame> stack;
};

}  // namespace tarn
