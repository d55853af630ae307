#pragma once

#include <memory>
#include <string>
#include <vector>

#include "project/TreeConflict.h"
#include "project/TreePairs.h"
#include "xml/XmlNode.h"

namespace tarn {

// Result of a merge.
struct MergedTree {
  std::unique_ptr<CXmlNode> root;
  std::vector<TreeConflict> conflicts;
};

// Three-way merge of XML trees, attribute by attribute and child by child. Changes, additions and
// removals made by one side only are applied. If both sides changed the same value, `ours` wins; an
// element that one side removed and the other changed is kept. Both cases are reported as
// conflicts. A file node that one side moved to a different element receives the other side's
// changes there; TreePairs defines what counts as moved, and the use of `wasMoved`. Elements are
// matched in linear time.
MergedTree MergeTrees(const CXmlNode& base, const CXmlNode& theirs, const CXmlNode& ours,
                      const FileMoved& wasMoved = {});

// Returns true if two trees are equal: names, values, attributes, and children in order.
bool IsSameTree(const CXmlNode& one, const CXmlNode& other);

}  // namespace tarn
