#pragma once

#include <functional>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "xml/XmlNode.h"

namespace tarn {

// Returns whether what a node named by the first path can be what one names by the second path now:
// the file was moved on the disk. Both are as the trees have them.
using FileMoved = std::function<bool(const std::string& from, const std::string& to)>;

// Says which element of one version of a tree is which of another version.
//
// Elements are paired level by level as ChildPairs does. File nodes (with `Path`, without nodes
// below them) that are left over anywhere are paired if they are the only ones with that type and
// path: such a node was moved within the tree. So are those with the same label, or in the same
// element, if the file was moved on the disk. Linear in the size of both trees.
//
// Borrows both trees, which must not change.
class TreePairs {
 public:
  TreePairs(const CXmlNode& from, const CXmlNode& to, const FileMoved& wasMoved);

  // The partner in the other version; null for an element that has none.
  const CXmlNode* PartnerOf(const CXmlNode& fromNode) const { return Find(partners, fromNode); }
  // The same, from the second version to the first.
  const CXmlNode* SourceOf(const CXmlNode& toNode) const { return Find(sources, toNode); }
  // Elements of the first version whose partner is in another element than they were.
  const std::unordered_set<const CXmlNode*>& GetMoved() const { return moved; }

 private:
  using Map = std::unordered_map<const CXmlNode*, const CXmlNode*>;
  using Nodes = std::vector<const CXmlNode*>;

  static const CXmlNode* Find(const Map& map, const CXmlNode& node) {
    const auto found = map.find(&node);
    return found == map.end() ? nullptr : found->second;
  }
  void PairChildren(const CXmlNode& from, const CXmlNode& to);
  void PairLeftovers(const CXmlNode& from, const CXmlNode& to, const FileMoved& wasMoved);
  // Pairs nodes that are the only ones with their key in both lists. `mustMove` may be null.
  template <class FromKey, class ToKey>
  void PairBy(const Nodes& from, const Nodes& to, FromKey fromKey, ToKey toKey,
              const FileMoved* mustMove);

  Map partners;
  Map sources;
  std::unordered_set<const CXmlNode*> moved;
};

}  // namespace tarn
