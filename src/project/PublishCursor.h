#pragma once

#include <cstdint>
#include <functional>
#include <vector>

namespace tarn {

class CXmlNode;

// Incremental search for the next unpublished node of a subtree. Remembers its position, so that
// publishing a whole tree node by node costs a single traversal, O(nodes) in total.
//
// Traverses in preorder, children from the last to the first, with an explicit stack. The position
// is valid for one epoch; only losses of published values and structural changes may start a new
// epoch, and the search then restarts at the root.
class PublishCursor {
 public:
  using Test = std::function<bool(const CXmlNode& node)>;

  // Returns the next node at or below `root` for which `isPublished` is false, or nullptr. Returns
  // the same node again until it is published.
  CXmlNode* Next(CXmlNode& root, std::uint64_t currentEpoch, const Test& isPublished,
                 const Test& isContent);

  void Reset() { start_ = nullptr; }

 private:
  static constexpr int kEnter = -1;

  struct Frame {
    CXmlNode* node = nullptr;
    int next = kEnter;  // children before this index remain to be visited
  };

  const CXmlNode* start_ = nullptr;
  std::uint64_t epoch_ = 0;
  std::vector<Frame> stack_;
};

}  // namespace tarn
