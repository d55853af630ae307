#pragma once

#include <memory>
#include <string>
#include <vector>

#include "project/TreePairs.h"
#include "xml/XmlNode.h"

namespace tarn {

// A place in a file that two sides changed in different ways. What this side made of it stays.
struct TreeConflict {
  std::string place;  // labels below the root, joined by "/"
  std::string what;
};

struct MergedTree {
  std::unique_ptr<CXmlNode> root;
  std::vector<TreeConflict> conflicts;
};

// Three-way merge: what two sides made of one tree, put together attribute by attribute and child
// by child. What only one side changed, added or removed is in the result. Where both changed the
// same, `ours` wins; what one side removed and the other changed stays. Both are conflicts. A file
// node that one side moved to another element has the other side's changes there; TreePairs says
// what counts as moved, and what `wasMoved` is for.
MergedTree MergeTrees(const CXmlNode& base, const CXmlNode& theirs, const CXmlNode& ours,
                      const FileMoved& wasMoved = {});

// Whether two trees hold the same: names, values, attributes and children in their order.
bool IsSameTree(const CXmlNode& one, const CXmlNode& other);

}  // namespace tarn
