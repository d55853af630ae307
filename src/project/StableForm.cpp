#include "project/StableForm.h"

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

#include "project/ChildPairs.h"

namespace tarn {

namespace {

constexpr std::array<std::string_view, 4> kDerived = {"sate", "Marker", "OutputFile",
                                                      "LoadExclude"};
constexpr std::array<std::string_view, 3> kOfReference = {"Header", "Extern", "Path"};

template <class Names>
bool Contains(const Names& names, std::string_view name) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

using Attributes = std::vector<std::pair<std::string, std::string>>;

Attributes AttributesOf(const CXmlNode& node) {
  Attributes list;
  for (const CXmlAttr& each : node.Attributes()) list.emplace_back(each.GetName(), each.GetValue());
  return list;
}

// `isReference`: the element stands for a file of its own.
void SettleAttributes(const CXmlNode* base, CXmlNode& node, bool isReference) {
  const auto isDerived = [isReference](std::string_view name) {
    return isReference ? !Contains(kOfReference, name) : IsDerivedAttribute(name);
  };
  const Attributes present = AttributesOf(node);
  Attributes settled = base == nullptr ? Attributes() : AttributesOf(*base);
  std::erase_if(settled, [&](auto& each) {
    if (isDerived(each.first)) return false;
    const char* value = node.GetAttrValue(each.first);
    if (value != nullptr) each.second = value;
    return value == nullptr;
  });
  for (const auto& each : present) {
    const bool isNew = base == nullptr || base->GetAttr(each.first) == nullptr;
    if (isNew && !isDerived(each.first)) settled.push_back(each);
  }
  if (settled == present) return;
  while (node.GetFirstAttr() != nullptr) node.RemoveAttr(node.GetFirstAttr());
  for (const auto& [name, value] : settled) node.AddAttr(name, value);
}

int IndexOf(const CXmlNode& parent, const CXmlNode* child) {
  int index = parent.GetChildCount() - 1;
  while (index >= 0 && parent.GetChild(index) != child) --index;
  return index;
}

// Puts stored options and configurations after the same sibling as in the base: their place among
// the nodes has no meaning, and a change of an option moves them to the end.
void RestorePlaces(CXmlNode& node, const ChildPairs::Children& children, const ChildPairs& pairs) {
  for (std::size_t i = 0; i < children.size(); ++i) {
    std::size_t place = pairs.SourceOf(i);
    if (place == ChildPairs::kNone || IsContentNode(*children[i])) continue;
    const CXmlNode* anchor = nullptr;
    while (anchor == nullptr && place-- > 0) {
      const std::size_t partner = pairs.PartnerOf(place);
      if (partner != ChildPairs::kNone) anchor = children[partner];
    }
    const int before = anchor == nullptr ? 0 : IndexOf(node, anchor) + 1;
    if (node.GetChild(before) == children[i]) continue;
    const CXmlNode* const next = node.GetChild(before);
    node.InsertChildBefore(node.DetachChild(children[i]), next);
  }
}

// `types` only for the root's children, which alone can have files of their own.
void SettleChildren(const CXmlNode* base, CXmlNode& node, const NodeTypes* types) {
  const auto children = node.GetChildren();
  const auto former = base == nullptr ? ChildPairs::Children() : base->GetChildren();
  const ChildPairs pairs(former, children);
  for (std::size_t i = 0; i < children.size(); ++i) {
    if (children[i]->GetType() != XmlElement) continue;
    const std::size_t source = pairs.SourceOf(i);
    const CXmlNode* partner = source == ChildPairs::kNone ? nullptr : former[source];
    const bool isReference = types != nullptr && children[i]->GetChildCount() == 0 &&
                             (types->FlagsOf(*children[i]) & kTypeExtern) != 0;
    SettleAttributes(partner, *children[i], isReference);
    SettleChildren(partner, *children[i], nullptr);
  }
  RestorePlaces(node, children, pairs);
}

}  // namespace

bool IsDerivedAttribute(std::string_view name) {
  return Contains(kDerived, name);
}

void MakeStable(const CXmlNode& base, CXmlNode& tree, const NodeTypes& types) {
  SettleAttributes(&base, tree, false);
  SettleChildren(&base, tree, &types);
}

}  // namespace tarn
