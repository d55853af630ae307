#include "project/TreePairs.h"

#include <algorithm>
#include <cstdint>

#include "platform/text/Text.h"
#include "project/ChildPairs.h"
#include "project/NodeTypes.h"
#include "xml/XmlNode.h"

namespace tarn {

namespace {

std::string PathOf(const CXmlNode& node) {
  return OrEmpty(node.GetAttrValue("Path"));
}

bool IsFileNode(const CXmlNode& node) {
  const auto children = node.GetChildren();
  return !PathOf(node).empty() && OrEmpty(node.GetAttrValue("Extern")).empty() &&
         std::none_of(children.begin(), children.end(), [](const CXmlNode* child) {
           return child->GetType() == XmlElement && IsContentNode(*child);
         });
}

// Collects the file nodes below `node` for which `isPaired` returns false.
template <class IsPaired>
void CollectLeftovers(const CXmlNode& node, const IsPaired& isPaired,
                      std::vector<const CXmlNode*>& list) {
  for (const CXmlNode* child : node.GetChildren()) {
    if (child->GetType() != XmlElement || !IsContentNode(*child)) continue;
    if (IsFileNode(*child) && !isPaired(*child)) list.push_back(child);
    CollectLeftovers(*child, isPaired, list);
  }
}

std::string KeyWith(const CXmlNode& node, std::initializer_list<const char*> attributes) {
  std::string key(node.NameView());
  for (const char* name : attributes) key += "\n" + FoldCase(OrEmpty(node.GetAttrValue(name)));
  return key;
}

// `parent` identifies the element that contains the node, in either version.
std::string KeyWithin(const CXmlNode& node, const CXmlNode* parent) {
  return std::string(node.NameView()) + "\n" +
         std::to_string(reinterpret_cast<std::uintptr_t>(parent));
}

}  // namespace

TreePairs::TreePairs(const CXmlNode& from, const CXmlNode& to, const FileMoved& wasMoved) {
  partners_[&from] = &to;
  sources_[&to] = &from;
  PairChildren(from, to);
  PairLeftovers(from, to, wasMoved);
}

void TreePairs::PairChildren(const CXmlNode& from, const CXmlNode& to) {
  const auto former = from.GetChildren();
  const auto present = to.GetChildren();
  const ChildPairs pairs(former, present);
  for (std::size_t i = 0; i < former.size(); ++i) {
    const std::size_t partner = pairs.PartnerOf(i);
    if (partner == ChildPairs::kNone) continue;
    partners_[former[i]] = present[partner];
    sources_[present[partner]] = former[i];
    PairChildren(*former[i], *present[partner]);
  }
}

void TreePairs::PairLeftovers(const CXmlNode& from, const CXmlNode& to, const FileMoved& wasMoved) {
  Nodes former;
  Nodes present;
  CollectLeftovers(
      from, [this](const CXmlNode& node) { return PartnerOf(node); }, former);
  CollectLeftovers(
      to, [this](const CXmlNode& node) { return SourceOf(node); }, present);
  const auto pairBy = [&](std::initializer_list<const char*> names, const FileMoved* mustMove) {
    const auto keyOf = [names](const CXmlNode& node) { return KeyWith(node, names); };
    PairBy(former, present, keyOf, keyOf, mustMove);
  };
  pairBy({"Path", "Header"}, nullptr);
  pairBy({"Path"}, nullptr);
  if (!wasMoved) return;
  pairBy({"Header"}, &wasMoved);
  PairBy(
      former, present,
      [this](const CXmlNode& node) { return KeyWithin(node, PartnerOf(*node.GetParent())); },
      [](const CXmlNode& node) { return KeyWithin(node, node.GetParent()); }, &wasMoved);
}

template <class FromKey, class ToKey>
void TreePairs::PairBy(const Nodes& from, const Nodes& to, FromKey fromKey, ToKey toKey,
                       const FileMoved* mustMove) {
  std::unordered_map<std::string, std::pair<Nodes, Nodes>> byKey;
  for (const CXmlNode* node : from) {
    if (PartnerOf(*node) == nullptr) byKey[fromKey(*node)].first.push_back(node);
  }
  for (const CXmlNode* node : to) {
    if (SourceOf(*node) == nullptr) byKey[toKey(*node)].second.push_back(node);
  }
  for (const auto& [key, found] : byKey) {
    if (found.first.size() != 1 || found.second.size() != 1) continue;
    const CXmlNode& former = *found.first[0];
    const CXmlNode& present = *found.second[0];
    if (mustMove != nullptr && !(*mustMove)(PathOf(former), PathOf(present))) continue;
    partners_[&former] = &present;
    sources_[&present] = &former;
    if (PartnerOf(*former.GetParent()) != present.GetParent()) moved_.insert(&former);
    PairChildren(former, present);
  }
}

}  // namespace tarn
