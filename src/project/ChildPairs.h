#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "xml/XmlNode.h"

namespace tarn {

// Says which child of one version of an element is which of another version.
//
// A child is known by its element name and its file (`Extern`, else `Path`), else its label
// (`Header`); of children that have the same, the first is the first. What is left over is paired
// by label alone, as a file that was moved, and at last by what it holds, as a group that was
// renamed.
class ChildPairs {
 public:
  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);
  using Children = std::vector<CXmlNode*>;

  // Whether children are paired that were moved or renamed, or those of one name only.
  enum class Match : std::uint8_t { Alike, Exactly };

  ChildPairs(const Children& from, const Children& to, Match match = Match::Alike);

  // The index of the partner in the other version; kNone for a child that has none.
  std::size_t PartnerOf(std::size_t fromIndex) const { return partners[fromIndex]; }
  // The same, from the second version to the first.
  std::size_t SourceOf(std::size_t toIndex) const { return sources[toIndex]; }

 private:
  void Pair(std::size_t fromIndex, std::size_t toIndex);
  template <class KeyOf>
  void PairBy(const Children& from, const Children& to, KeyOf keyOf);
  void PairByContents(const Children& from, const Children& to);

  std::vector<std::size_t> partners;
  std::vector<std::size_t> sources;
};

}  // namespace tarn
