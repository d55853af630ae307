#include "project/TreeMerge.h"

#include <optional>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "project/ChildPairs.h"
#include "project/StableForm.h"

namespace tarn {

namespace {

using Value = std::optional<std::string>;

// The attributes of a node by name, of several with one name the first. The node outlives it.
class AttributeValues {
 public:
  // nullptr for no attributes.
  explicit AttributeValues(const CXmlNode* node) {
    if (node == nullptr) return;
    for (const CXmlAttr& each : node->Attributes()) values.emplace(each.NameView(), each.ValueView());
  }
  Value Get(std::string_view name) const {
    const auto found = values.find(name);
    return found == values.end() ? Value() : Value(found->second);
  }

 private:
  std::unordered_map<std::string_view, std::string_view> values;
};

std::string LabelOf(const CXmlNode& node) {
  for (const char* name : {"Header", "Path"}) {
    if (const char* value = node.GetAttrValue(name)) return value;
  }
  return node.GetName();
}

// A child of the merged element and what each version has of it; null where that has none.
struct Item {
  const CXmlNode* base = nullptr;
  const CXmlNode* theirs = nullptr;
  const CXmlNode* ours = nullptr;
};

// The children of the three versions of one element, paired. An element that both sides have added
// has no base.
class ItemList {
 public:
  explicit ItemList(const Item& parent);

  // In the order of the side that changed it, or else of the other; what only one side has comes
  // after the same neighbour as there.
  std::vector<Item> InOrder() const;

 private:
  using Places = std::vector<std::size_t>;

  void AddAll(const Item& parent, const ChildPairs& toTheirs, const ChildPairs& toOurs);
  bool IsOrderOfBase(const Places& side) const;

  std::vector<Item> items;  // those of the base first
  Places inTheirs;          // items in the order of the version
  Places inOurs;
};

ItemList::ItemList(const Item& parent) {
  const auto base = parent.base == nullptr ? ChildPairs::Children() : parent.base->GetChildren();
  for (const CXmlNode* child : base) items.push_back({child, nullptr, nullptr});
  AddAll(parent, ChildPairs(base, parent.theirs->GetChildren()),
         ChildPairs(base, parent.ours->GetChildren()));
}

void ItemList::AddAll(const Item& parent, const ChildPairs& toTheirs, const ChildPairs& toOurs) {
  const auto theirs = parent.theirs->GetChildren();
  const auto ours = parent.ours->GetChildren();
  ChildPairs::Children newTheirs;
  Places newPlaces;
  for (std::size_t i = 0; i < theirs.size(); ++i) {
    std::size_t at = toTheirs.SourceOf(i);
    if (at == ChildPairs::kNone) {
      at = items.size();
      items.emplace_back();
      newTheirs.push_back(theirs[i]);
      newPlaces.push_back(at);
    }
    items[at].theirs = theirs[i];
    inTheirs.push_back(at);
  }
  ChildPairs::Children newOurs;
  for (std::size_t i = 0; i < ours.size(); ++i) {
    if (toOurs.SourceOf(i) == ChildPairs::kNone) newOurs.push_back(ours[i]);
  }
  const ChildPairs added(newOurs, newTheirs, ChildPairs::Match::Exactly);
  std::size_t next = 0;
  for (std::size_t i = 0; i < ours.size(); ++i) {
    std::size_t at = toOurs.SourceOf(i);
    if (at == ChildPairs::kNone) {
      const std::size_t partner = added.PartnerOf(next++);
      at = partner == ChildPairs::kNone ? items.size() : newPlaces[partner];
      if (at == items.size()) items.emplace_back();
    }
    items[at].ours = ours[i];
    inOurs.push_back(at);
  }
}

// Items of the base come first, so their numbers are their order.
bool ItemList::IsOrderOfBase(const Places& side) const {
  std::size_t last = 0;
  for (const std::size_t at : side) {
    if (items[at].base == nullptr) continue;
    if (at < last) return false;
    last = at;
  }
  return true;
}

std::vector<Item> ItemList::InOrder() const {
  const bool followsTheirs = IsOrderOfBase(inOurs);
  const Places& leading = followsTheirs ? inTheirs : inOurs;
  const Places& other = followsTheirs ? inOurs : inTheirs;
  std::vector<bool> isPlaced(items.size(), false);
  for (const std::size_t at : leading) isPlaced[at] = true;
  // What only the other side has, by the item that it comes after; the last entry is the start.
  std::vector<Places> followers(items.size() + 1);
  std::size_t anchor = items.size();
  for (const std::size_t at : other) {
    if (isPlaced[at]) {
      anchor = at;
    } else {
      followers[anchor].push_back(at);
    }
  }
  std::vector<Item> result;
  const auto add = [&](const Places& places) {
    for (const std::size_t at : places) result.push_back(items[at]);
  };
  add(followers.back());
  for (const std::size_t at : leading) {
    result.push_back(items[at]);
    add(followers[at]);
  }
  return result;
}

class Merger {
 public:
  explicit Merger(std::vector<TreeConflict>& list) : conflicts(list) {}

  // Fills `out`, which is empty, from versions of which `theirs` and `ours` are there.
  void Merge(const Item& from, CXmlNode& out);

 private:
  void MergeAttributes(const Item& from, CXmlNode& out);
  void MergeChild(const Item& item, CXmlNode& out);
  // The value after both changes. What ours has wins over what is not `isOwn` to a side.
  Value Choose(const Value& base, const Value& theirs, const Value& ours, const std::string& what);
  void Report(const std::string& what);

  std::vector<TreeConflict>& conflicts;
  std::vector<std::string> labels;  // of the elements from below the root to the one at work
};

void Merger::Report(const std::string& what) {
  std::string place;
  for (const std::string& label : labels) place += (place.empty() ? "" : "/") + label;
  conflicts.push_back({place, what});
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
  for (const Item& each : ItemList(from).InOrder()) MergeChild(each, out);
}

void Merger::MergeChild(const Item& item, CXmlNode& out) {
  const CXmlNode& any = item.ours != nullptr ? *item.ours : *item.theirs;
  if (any.GetType() != XmlElement) {
    const bool isGone = item.base != nullptr && (item.ours == nullptr || item.theirs == nullptr);
    if (!isGone) out.AppendCopy(any);
    return;
  }
  labels.push_back(LabelOf(any));
  if (item.ours != nullptr && item.theirs != nullptr) {
    Merge(item, *out.AddChild(any.GetName()));
  } else if (item.base == nullptr) {
    out.AppendCopy(any);
  } else if (!IsSameTree(*item.base, any)) {
    Report(item.ours == nullptr ? "removed here, changed there" : "changed here, removed there");
    out.AppendCopy(any);
  }
  labels.pop_back();
}

}  // namespace

bool IsSameTree(const CXmlNode& one, const CXmlNode& other) {
  if (one.GetType() != other.GetType() || one.NameView() != other.NameView() ||
      one.ValueView() != other.ValueView() || one.GetAttrCount() != other.GetAttrCount() ||
      one.GetChildCount() != other.GetChildCount()) {
    return false;
  }
  for (const CXmlAttr& attribute : one.Attributes()) {
    const char* value = other.GetAttrValue(attribute.GetName());
    if (value == nullptr || attribute.ValueView() != value) return false;
  }
  for (int i = 0; i < one.GetChildCount(); ++i) {
    if (!IsSameTree(*one.GetChild(i), *other.GetChild(i))) return false;
  }
  return true;
}

MergedTree MergeTrees(const CXmlNode& base, const CXmlNode& theirs, const CXmlNode& ours) {
  MergedTree merged;
  merged.root = CXmlNode::CreateNode(ours.GetName());
  Merger(merged.conflicts).Merge({&base, &theirs, &ours}, *merged.root);
  return merged;
}

}  // namespace tarn
