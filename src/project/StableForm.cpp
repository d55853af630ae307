#include "project/StableForm.h"

#include <algorithm>
#include <array>
#include <deque>
#include <unordered_map>
#include <utility>
#include <vector>

#include "platform/paths/Paths.h"
#include "platform/text/Text.h"
#include "project/ChildPairs.h"
#include "xml/XmlNode.h"

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

// `isReference`: the element refers to a separate file.
void SettleAttributes(const CXmlNode* base, CXmlNode& node, bool isReference) {
  const auto isDerived = [isReference](std::string_view name) {
    return isReference ? !Contains(kOfReference, name) : IsDerivedAttribute(name);
  };
  Attributes present = AttributesOf(node);
  const Attributes before = present;
  // A damaged file may repeat a name: matches the first with the first.
  std::unordered_map<std::string_view, std::deque<std::size_t>> places;
  for (std::size_t at = 0; at < before.size(); ++at) places[before[at].first].push_back(at);
  std::vector<bool> isSettled(present.size());
  Attributes settled = base == nullptr ? Attributes() : AttributesOf(*base);
  std::erase_if(settled, [&](auto& each) {
    if (isDerived(each.first)) return false;
    const auto own = places.find(each.first);
    if (own == places.end() || own->second.empty()) return true;
    const std::size_t at = own->second.front();
    own->second.pop_front();
    each.second = std::move(present[at].second);
    isSettled[at] = true;
    return false;
  });
  for (std::size_t at = 0; at < present.size(); ++at) {
    const bool isNew = !isSettled[at] && !isDerived(present[at].first);
    if (isNew) settled.push_back(std::move(present[at]));
  }
  if (settled == before) return;
  while (node.GetFirstAttr() != nullptr) node.RemoveAttr(node.GetFirstAttr());
  node.AddAttrs(settled);
}

int IndexOf(const CXmlNode& parent, const CXmlNode* child) {
  int index = parent.GetChildCount() - 1;
  while (index >= 0 && parent.GetChild(index) != child) --index;
  return index;
}

// Moves stored options and configurations after the same sibling as in the base: their position
// among the nodes has no meaning, and options that were reset and set again are at the end.
// Proceeds in the base's order, so that siblings that move too are already in place.
void RestorePlaces(CXmlNode& node, const ChildPairs::Children& children, const ChildPairs& pairs,
                   std::size_t formerCount) {
  const CXmlNode* anchor = nullptr;
  for (std::size_t i = 0; i < formerCount; ++i) {
    const std::size_t partner = pairs.PartnerOf(i);
    if (partner == ChildPairs::kNone) continue;
    CXmlNode* const child = children[partner];
    const CXmlNode* const next = node.GetChild(anchor == nullptr ? 0 : IndexOf(node, anchor) + 1);
    if (next != child && !IsContentNode(*child)) {
      node.InsertChildBefore(node.DetachChild(child), next);
    }
    anchor = child;
  }
}

// Returns true for empty stored options or configurations that are not empty in the base.
bool IsLeftover(const CXmlNode* base, const CXmlNode& node) {
  const bool isEmpty =
      node.GetChildCount() == 0 && node.GetAttrCount() == 0 && node.ValueView().empty();
  const bool isStore = node.NameView() == "Options" || node.NameView() == "Configs";
  return isStore && isEmpty && (base == nullptr || base->GetChildCount() > 0);
}

// `types` is non-null for the root's children only, because only they can have separate files.
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
  RestorePlaces(node, children, pairs, former.size());
  for (std::size_t i = 0; i < children.size(); ++i) {
    const std::size_t source = pairs.SourceOf(i);
    const CXmlNode* partner = source == ChildPairs::kNone ? nullptr : former[source];
    if (IsLeftover(partner, *children[i])) node.RemoveChild(children[i]);
  }
}

// Makes an application file independent of the project that saves it, because each project refers
// to it by a different path. Omits attributes that only state the default.
void SettleApplication(const CXmlNode& base, CXmlNode& root) {
  for (const char* name : {"Extern", "Path"}) {
    const std::string former = OrEmpty(base.GetAttrValue(name));
    const std::string now = OrEmpty(root.GetAttrValue(name));
    const bool isOfForm = former.starts_with('.') && former.find('/') == former.npos;
    const bool isSameFile = EqualNoCase(FileNameOf(former), FileNameOf(now));
    if (isOfForm && isSameFile) root.SetAttrValue(name, former);
  }
  const auto namesStandard = [](const CXmlNode& node) {
    return EqualNoCase(OrEmpty(node.GetAttrValue("Config")), kStandardConfig);
  };
  if (namesStandard(root) && !namesStandard(base)) root.RemoveAttr(root.GetAttr("Config"));
}

}  // namespace

bool IsDerivedAttribute(std::string_view name) {
  return Contains(kDerived, name);
}

void MakeStable(const CXmlNode& base, CXmlNode& tree, const NodeTypes& types) {
  if ((types.FlagsOf(tree) & kTypeExtern) != 0) SettleApplication(base, tree);
  SettleAttributes(&base, tree, false);
  SettleChildren(&base, tree, &types);
}

}  // namespace tarn
