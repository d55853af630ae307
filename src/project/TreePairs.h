#pragma once

#include <functional>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace tarn {

class CXmlNode;

// Returns true if the file at path `from` may have been moved on disk to path `to`. Both paths are
// as the trees have them.
using FileMoved = std::function<bool(const std::string& from, const std::string& to)>;

// Matches the elements of two versions of a tree.
//
// Elements are paired level by level, see ChildPairs. File nodes (with `Path`, without nodes below
// them) left over anywhere in the tree are then paired if their type and path are unique among the
// leftovers: such a node was moved within the tree. If the file was moved on disk, leftovers with
// the same label or in the same element are paired under the same condition. Linear in the size of
// both trees.
//
// Borrows both trees, which must not change.
class TreePairs {
 public:
  TreePairs(const CXmlNode& from, const CXmlNode& to, const FileMoved& wasMoved);

  // Returns the partner in the second version, or nullptr.
  const CXmlNode* PartnerOf(const CXmlNode& fromNode) const { return Find(partners_, fromNode); }
  // Returns the partner in the first version, or nullptr.
  const CXmlNode* SourceOf(const CXmlNode& toNode) const { return Find(sources_, toNode); }
  // Elements of the first version whose partner has a different parent.
  const std::unordered_set<const CXmlNode*>& GetMoved() const { return moved_; }

 private:
  using Map = std::unordered_map<const CXmlNode*, const CXmlNode*>;
  using Nodes = std::vector<const CXmlNode*>;

  static const CXmlNode* Find(const Map& map, const CXmlNode& node) {
    const auto found = map.find(&node);
    return found == map.end() ? nullptr : found->second;
  }
  void PairChildren(const CXmlNode& from, const CXmlNode& to);
  void PairLeftovers(const CXmlNode& from, const CXmlNode& to, const FileMoved& wasMoved);
  // Pairs nodes whose key is unique in both lists. If `mustMove` is not null, it has to accept
  // their paths.
  template <class FromKey, class ToKey>
  void PairBy(const Nodes& from, const Nodes& to, FromKey fromKey, ToKey toKey,
              const FileMoved* mustMove);

  Map partners_;
  Map sources_;
  std::unordered_set<const CXmlNode*> moved_;
};

}  // namespace tarn
