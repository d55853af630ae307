#include "project/TreeMerge.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "platform/text/Text.h"
#include "project/ChildPairs.h"
#include "project/StableForm.h"
#include "project/TreePairs.h"

namespace tarn {

namespace {

using Value = std::optional<std::string>;

// A node's attributes by name; if a name is repeated, the first wins. Borrows the node.
class AttributeValues {
 public:
  // nullptr means no attributes.
  explicit AttributeValues(const CXmlNode* node) {
    if (node == nullptr) return;
    for (const CXmlAttr& each : node->Attributes())
      values_.emplace(each.NameView(), each.ValueView());
  }
  Value Get(std::string_view name) const {
    const auto found = values_.find(name);
    return found == values_.end() ? Value() : Value(found->second);
  }

 private:
  std::unordered_map<std::string_view, std::string_view> values_;
};

std::string LabelOf(const CXmlNode& node) {
  for (const char* name : {"Header", "Path"}) {
    if (const char* value = node.GetAttrValue(name)) return value;
  }
  return node.GetName();
}

// Returns true if name, value and attributes are equal.
bool IsSameElement(const CXmlNode& one, const CXmlNode& other) {
  if (one.GetType() != other.GetType() || one.NameView() != other.NameView() ||
      one.ValueView() != other.ValueView() || one.GetAttrCount() != other.GetAttrCount()) {
    return false;
  }
  for (const CXmlAttr& attribute : one.Attributes()) {
    const char* value = other.GetAttrValue(attribute.GetName());
    if (value == nullptr || attribute.ValueView() != value) return false;
  }
  return true;
}

// Copies name, value and attributes to `copy`, which must be empty.
void CopyElement(const CXmlNode& node, CXmlNode& copy) {
  copy.SetName(node.GetName());
  copy.SetValue(node.GetValue());
  for (const CXmlAttr& each : node.Attributes()) copy.AddAttr(each.GetName(), each.GetValue());
}

// Returns true for elements that only exist for their content: stored options and configurations,
// and the levels in them. Such an element is removed when it becomes empty.
bool IsContainer(const CXmlNode& node) {
  const CXmlNode* level = &node;
  while (level != nullptr && level->NameView() != "Options" && level->NameView() != "Configs") {
    level = level->GetParent();
  }
  return level != nullptr && node.GetChildCount() > 0;
}

// A child of the merged element, with its counterpart in each version, or nullptr.
struct Item {
  const CXmlNode* base = nullptr;
  const CXmlNode* theirs = nullptr;
  const CXmlNode* ours = nullptr;
};

enum class Side : std::uint8_t { Theirs, Ours };

// The matching of elements in the three versions, and the nodes that one side moved to a different
// element while the other kept them.
class Versions {
 public:
  Versions(const CXmlNode& base, const CXmlNode& theirs, const CXmlNode& ours,
           const FileMoved& wasMoved)
      : toTheirs_(base, theirs, wasMoved), toOurs_(base, ours, wasMoved) {
    for (const CXmlNode* node : toTheirs_.GetMoved()) {
      if (toOurs_.PartnerOf(*node) != nullptr) moved_.insert(node);
    }
    for (const CXmlNode* node : toOurs_.GetMoved()) {
      if (toTheirs_.PartnerOf(*node) != nullptr) moved_.insert(node);
    }
  }

  bool HasMoves() const { return !moved_.empty(); }
  const CXmlNode* SourceOf(Side side, const CXmlNode& node) const {
    return side == Side::Ours ? toOurs_.SourceOf(node) : toTheirs_.SourceOf(node);
  }
  bool IsMoved(const CXmlNode* base) const { return base != nullptr && moved_.contains(base); }
  // The side that determines the position of a moved node: ours if both moved it.
  Side SideOf(const CXmlNode& base) const {
    return toOurs_.GetMoved().contains(&base) ? Side::Ours : Side::Theirs;
  }
  Item ItemOf(const CXmlNode& base) const {
    return {&base, toTheirs_.PartnerOf(base), toOurs_.PartnerOf(base)};
  }
  // Returns true if the sides moved the node to different elements.
  bool IsTorn(const CXmlNode& base) const;

 private:
  TreePairs toTheirs_;
  TreePairs toOurs_;
  std::unordered_set<const CXmlNode*> moved_;  // of the base
};

bool Versions::IsTorn(const CXmlNode& base) const {
  if (!toOurs_.GetMoved().contains(&base) || !toTheirs_.GetMoved().contains(&base)) return false;
  const CXmlNode& theirs = *toTheirs_.PartnerOf(base)->GetParent();
  const CXmlNode& ours = *toOurs_.PartnerOf(base)->GetParent();
  const CXmlNode* const source = toTheirs_.SourceOf(theirs);
  if (source != toOurs_.SourceOf(ours)) return true;
  // Elements added by both sides are the same if their labels are equal.
  return source == nullptr && LabelOf(theirs) != LabelOf(ours);
}

// The paired children of the three versions of one element. A child added by both sides has no
// base. A moved node is a child of the element it was moved to.
class ItemList {
 public:
  ItemList(const Item& parent, const Versions& pairing);

  // Returns the items in the order of the side that changed it, else of the other one. Items that
  // only one side has follow the same neighbor as on that side.
  std::vector<Item> InOrder() const;

 private:
  using Places = std::vector<std::size_t>;

  // Children of one side that are not in the base, with their item indices.
  struct Added {
    ChildPairs::Children nodes;
    Places places;
  };

  // Adds the children of one side to `items` and `order`.
  Added AddSide(Side side, const Item& parent, Places& order);
  void JoinAdded(const Added& theirs, const Added& ours);
  bool IsOrderOfBase(const Places& side) const;

  const Versions& versions_;
  std::vector<Item> items_;                                     // those of the base first
  std::unordered_map<const CXmlNode*, std::size_t> baseItems_;  // their indices
  Places inTheirs_;  // item indices in the order of each version
  Places inOurs_;
};

ItemList::ItemList(const Item& parent, const Versions& pairing) : versions_(pairing) {
  const auto base = parent.base == nullptr ? ChildPairs::Children() : parent.base->GetChildren();
  for (const CXmlNode* child : base) {
    if (versions_.IsMoved(child)) continue;
    baseItems_[child] = items_.size();
    items_.push_back({child, nullptr, nullptr});
  }
  const Added theirs = AddSide(Side::Theirs, parent, inTheirs_);
  const Added ours = AddSide(Side::Ours, parent, inOurs_);
  JoinAdded(theirs, ours);
}

ItemList::Added ItemList::AddSide(Side side, const Item& parent, Places& order) {
  Added added;
  const CXmlNode& element = side == Side::Ours ? *parent.ours : *parent.theirs;
  for (CXmlNode* child : element.GetChildren()) {
    const CXmlNode* const base = versions_.SourceOf(side, *child);
    const auto found = baseItems_.find(base);
    const std::size_t at = found == baseItems_.end() ? items_.size() : found->second;
    if (versions_.IsMoved(base)) {
      if (versions_.SideOf(*base) != side) continue;
      items_.push_back(versions_.ItemOf(*base));
    } else {
      if (found == baseItems_.end()) {
        items_.emplace_back();
        added.nodes.push_back(child);
        added.places.push_back(at);
      }
      (side == Side::Ours ? items_[at].ours : items_[at].theirs) = child;
    }
    order.push_back(at);
  }
  return added;
}

// Joins children added by both sides into one item.
void ItemList::JoinAdded(const Added& theirs, const Added& ours) {
  const ChildPairs pairs(ours.nodes, theirs.nodes, ChildPairs::Match::Exactly);
  std::unordered_map<std::size_t, std::size_t> joined;
  for (std::size_t i = 0; i < ours.nodes.size(); ++i) {
    if (pairs.PartnerOf(i) == ChildPairs::kNone) continue;
    const std::size_t at = theirs.places[pairs.PartnerOf(i)];
    items_[at].ours = ours.nodes[i];
    joined[ours.places[i]] = at;
  }
  for (std::size_t& at : inOurs_) {
    if (const auto found = joined.find(at); found != joined.end()) at = found->second;
  }
}

// Items of the base come first, so their indices reflect the base's order.
bool ItemList::IsOrderOfBase(const Places& side) const {
  std::size_t last = 0;
  for (const std::size_t at : side) {
    if (at >= baseItems_.size()) continue;
    if (at < last) return false;
    last = at;
  }
  return true;
}

std::vector<Item> ItemList::InOrder() const {
  const bool followsTheirs = IsOrderOfBase(inOurs_);
  const Places& leading = followsTheirs ? inTheirs_ : inOurs_;
  const Places& other = followsTheirs ? inOurs_ : inTheirs_;
  std::vector<bool> isPlaced(items_.size(), false);
  for (const std::size_t at : leading) isPlaced[at] = true;
  // Items only the other side has, by the item they follow; the last list belongs at the start.
  std::vector<Places> followers(items_.size() + 1);
  std::size_t anchor = items_.size();
  for (const std::size_t at : other) {
    if (isPlaced[at]) {
      anchor = at;
    } else {
      followers[anchor].push_back(at);
    }
  }
  std::vector<Item> result;
  const auto add = [&](const Places& places) {
    for (const std::size_t at : places) result.push_back(items_[at]);
  };
  add(followers.back());
  for (const std::size_t at : leading) {
    result.push_back(items_[at]);
    add(followers[at]);
  }
  return result;
}

// Merges matched elements recursively from the root: name, value and attributes individually, then
// the children in the order given by ItemList. Records conflicts with the path of their element.
// Takes expected linear time in the size of the three trees.
class Merger {
 public:
  Merger(const Versions& pairing, std::vector<TreeConflict>& list)
      : versions_(pairing), conflicts_(list) {}

  // Fills `out`, which must be empty. `theirs` and `ours` must not be null.
  void Merge(const Item& from, CXmlNode& out);

 private:
  void MergeAttributes(const Item& from, CXmlNode& out);
  void MergeChild(const Item& item, CXmlNode& out);
  void MergeContainer(const Item& item, CXmlNode& out);
  // Adds an element that only one side has, without the nodes that were moved out of it.
  void AddFrom(Side side, const CXmlNode& node, CXmlNode& out);
  // Returns true if the side changed nothing in the element except for moving nodes out of it.
  bool IsUnchanged(const CXmlNode& base, Side side, const CXmlNode& node) const;
  // Returns the value after both changes. Our value wins; if both sides changed it differently,
  // reports a conflict unless it is derived.
  Value Choose(const Value& base, const Value& theirs, const Value& ours, const std::string& what);
  void Report(const std::string& what);

  const Versions& versions_;
  std::vector<TreeConflict>& conflicts_;
  std::vector<std::string> labels_;  // path of the current element, without the root
};

void Merger::Report(const std::string& what) {
  std::string place;
  for (const std::string& label : labels_) place += (place.empty() ? "" : "/") + label;
  conflicts_.push_back({place, what});
}

Value Merger::Choose(const Value& base, const Value& theirs, const Value& ours,
                     const std::string& what) {
  if (ours == base) return theirs;
  if (theirs != base && theirs != ours && !IsDerivedAttribute(what)) Report(what);
  return ours;
}

void Merger::MergeAttributes(const Item& from, CXmlNode& out) {
  const AttributeValues base(from.base);
  const AttributeValues theirs(from.theirs);
  const AttributeValues ours(from.ours);
  std::vector<std::pair<std::string, std::string>> merged;
  std::unordered_set<std::string> seen;
  const auto add = [&](const CXmlAttr& attribute) {
    const std::string name = attribute.GetName();
    if (!seen.insert(name).second) return;
    const Value value = Choose(base.Get(name), theirs.Get(name), ours.Get(name), name);
    if (value) merged.emplace_back(name, *value);
  };
  for (const CXmlAttr& attribute : from.theirs->Attributes()) add(attribute);
  for (const CXmlAttr& attribute : from.ours->Attributes()) add(attribute);
  out.AddAttrs(merged);
}

void Merger::Merge(const Item& from, CXmlNode& out) {
  const auto choose = [&](auto get, const char* what) {
    const Value base = from.base == nullptr ? Value() : Value(get(*from.base));
    return *Choose(base, get(*from.theirs), get(*from.ours), what);
  };
  out.SetName(choose([](const CXmlNode& node) { return node.GetName(); }, "type"));
  out.SetValue(choose([](const CXmlNode& node) { return node.GetValue(); }, "text"));
  MergeAttributes(from, out);
  for (const Item& each : ItemList(from, versions_).InOrder()) MergeChild(each, out);
}

void Merger::MergeChild(const Item& item, CXmlNode& out) {
  const CXmlNode& any = item.ours != nullptr ? *item.ours : *item.theirs;
  if (any.GetType() != XmlElement) {
    const bool isGone = item.base != nullptr && (item.ours == nullptr || item.theirs == nullptr);
    if (!isGone) out.AppendCopy(any);
    return;
  }
  labels_.push_back(LabelOf(any));
  const Side side = item.ours != nullptr ? Side::Ours : Side::Theirs;
  if (item.ours != nullptr && item.theirs != nullptr) {
    if (item.base != nullptr && versions_.IsTorn(*item.base)) Report("the group that it is in");
    Merge(item, *out.AddChild(any.GetName()));
  } else if (item.base == nullptr) {
    AddFrom(side, any, out);
  } else if (IsContainer(*item.base)) {
    MergeContainer(item, out);
  } else if (!IsUnchanged(*item.base, side, any)) {
    Report(item.ours == nullptr ? "removed here, changed there" : "changed here, removed there");
    AddFrom(side, any, out);
  }
  labels_.pop_back();
}

// The side that removed a container removed each element in it.
void Merger::MergeContainer(const Item& item, CXmlNode& out) {
  CXmlNode empty;
  CopyElement(*item.base, empty);
  const CXmlNode* const theirs = item.theirs == nullptr ? &empty : item.theirs;
  const CXmlNode* const ours = item.ours == nullptr ? &empty : item.ours;
  CXmlNode& merged = *out.AddChild(item.base->GetName());
  Merge({item.base, theirs, ours}, merged);
  if (merged.GetChildCount() == 0) out.RemoveChild(&merged);
}

// Merges with an empty element as the other side, so that nodes moved elsewhere are left out.
void Merger::AddFrom(Side side, const CXmlNode& node, CXmlNode& out) {
  if (!versions_.HasMoves()) {
    out.AppendCopy(node);
    return;
  }
  CXmlNode empty;
  CopyElement(node, empty);
  const Item item =
      side == Side::Ours ? Item{nullptr, &empty, &node} : Item{nullptr, &node, &empty};
  Merge(item, *out.AddChild(node.GetName()));
}

bool Merger::IsUnchanged(const CXmlNode& base, Side side, const CXmlNode& node) const {
  if (!versions_.HasMoves()) return IsSameTree(base, node);
  auto former = base.GetChildren();
  auto present = node.GetChildren();
  std::erase_if(former, [&](const CXmlNode* child) { return versions_.IsMoved(child); });
  std::erase_if(present, [&](const CXmlNode* child) {
    const CXmlNode* const source = versions_.SourceOf(side, *child);
    return versions_.IsMoved(source) && versions_.SideOf(*source) != side;
  });
  const auto isSame = [&](const CXmlNode* one, const CXmlNode* other) {
    return IsUnchanged(*one, side, *other);
  };
  return IsSameElement(base, node) &&
         std::equal(former.begin(), former.end(), present.begin(), present.end(), isSame);
}

}  // namespace

bool IsSameTree(const CXmlNode& one, const CXmlNode& other) {
  if (!IsSameElement(one, other) || one.GetChildCount() != other.GetChildCount()) return false;
  for (int i = 0; i < one.GetChildCount(); ++i) {
    if (!IsSameTree(*one.GetChild(i), *other.GetChild(i))) return false;
  }
  return true;
}

MergedTree MergeTrees(const CXmlNode& base, const CXmlNode& theirs, const CXmlNode& ours,
                      const FileMoved& wasMoved) {
  MergedTree merged;
  merged.root = CXmlNode::CreateNode(ours.GetName());
  const Versions versions(base, theirs, ours, wasMoved);
  Merger(versions, merged.conflicts).Merge({&base, &theirs, &ours}, *merged.root);
  return merged;
}

}  // namespace tarn
