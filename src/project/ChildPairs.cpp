#include "project/ChildPairs.h"

#include <algorithm>
#include <map>
#include <string>
#include <unordered_map>

#include "platform/text/Text.h"
#include "xml/XmlNode.h"

namespace tarn {

namespace {

std::string KeyWith(const CXmlNode& node, std::string_view kind, std::string_view text) {
  std::string key(node.NameView());
  key.append(1, '\n').append(kind).append(1, '\n');
  return key + FoldCase(text);
}

std::string KeyByLabel(const CXmlNode& node) {
  if (node.GetType() != XmlElement) return KeyWith(node, "text", node.ValueView());
  return KeyWith(node, "label", OrEmpty(node.GetAttrValue("Header")));
}

std::string KeyByFile(const CXmlNode& node) {
  for (const char* name : {"Extern", "Path"}) {
    const std::string file = OrEmpty(node.GetAttrValue(name));
    if (!file.empty()) return KeyWith(node, "file", file);
  }
  return KeyByLabel(node);
}

}  // namespace

ChildPairs::ChildPairs(const Children& from, const Children& to, Match match)
    : partners_(from.size(), kNone), sources_(to.size(), kNone) {
  PairBy(from, to, KeyByFile);
  if (match == Match::Exactly) return;
  PairBy(from, to, KeyByLabel);
  PairByContents(from, to);
}

void ChildPairs::Pair(std::size_t fromIndex, std::size_t toIndex) {
  partners_[fromIndex] = toIndex;
  sources_[toIndex] = fromIndex;
}

template <class KeyOf>
void ChildPairs::PairBy(const Children& from, const Children& to, KeyOf keyOf) {
  std::unordered_map<std::string, std::vector<std::size_t>> open;
  for (std::size_t i = to.size(); i-- > 0;) {
    if (SourceOf(i) == kNone) open[keyOf(*to[i])].push_back(i);
  }
  for (std::size_t i = 0; i < from.size() && !open.empty(); ++i) {
    if (PartnerOf(i) != kNone) continue;
    const auto found = open.find(keyOf(*from[i]));
    if (found == open.end()) continue;
    Pair(i, found->second.back());
    found->second.pop_back();
    if (found->second.empty()) open.erase(found);
  }
}

// Pairs two elements of the same name if they share more than half of the children of the smaller
// one. Counts shared children through an index of their keys.
void ChildPairs::PairByContents(const Children& from, const Children& to) {
  std::unordered_map<std::string, std::vector<std::size_t>> holders;  // by key of a child
  for (std::size_t i = 0; i < to.size(); ++i) {
    if (SourceOf(i) != kNone) continue;
    for (const CXmlNode* child : to[i]->GetChildren()) holders[KeyByFile(*child)].push_back(i);
  }
  for (std::size_t i = 0; i < from.size() && !holders.empty(); ++i) {
    if (PartnerOf(i) != kNone) continue;
    std::map<std::size_t, int> shared;
    for (const CXmlNode* child : from[i]->GetChildren()) {
      const auto found = holders.find(KeyByFile(*child));
      if (found == holders.end()) continue;
      for (const std::size_t holder : found->second) ++shared[holder];
    }
    const auto best =
        std::max_element(shared.begin(), shared.end(),
                         [](const auto& one, const auto& two) { return one.second < two.second; });
    if (best == shared.end() || SourceOf(best->first) != kNone) continue;
    const CXmlNode& partner = *to[best->first];
    const int smaller = std::min(from[i]->GetChildCount(), partner.GetChildCount());
    if (partner.NameView() == from[i]->NameView() && best->second * 2 > smaller) {
      Pair(i, best->first);
    }
  }
}

}  // namespace tarn
