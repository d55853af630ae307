#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace tarn {

class CXmlNode;

// Pairs the children of two versions of one element.
//
// Children are paired first by element name and file (`Extern`, else `Path`), or by label
// (`Header`) if they have no file; among children with equal keys, the first is paired with the
// first. Leftovers are then paired by label alone, which finds moved files, and finally by
// similarity of their content, which finds renamed groups. Takes linear time in the number of
// children and grandchildren unless many groups list the same files. Indices refer to the two lists
// passed to the constructor.
class ChildPairs {
 public:
  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);
  using Children = std::vector<CXmlNode*>;

  // Alike also pairs moved and renamed children; Exactly pairs equal keys only.
  enum class Match : std::uint8_t { Alike, Exactly };

  ChildPairs(const Children& from, const Children& to, Match match = Match::Alike);

  // Returns the index of the partner in the second version, or kNone.
  std::size_t PartnerOf(std::size_t fromIndex) const { return partners_[fromIndex]; }
  // Returns the index of the partner in the first version, or kNone.
  std::size_t SourceOf(std::size_t toIndex) const { return sources_[toIndex]; }

 private:
  // Passes of the algorithm; each only considers children that are still unpaired.
  void Pair(std::size_t fromIndex, std::size_t toIndex);
  template <class KeyOf>
  void PairBy(const Children& from, const Children& to, KeyOf keyOf);
  void PairByContents(const Children& from, const Children& to);

  std::vector<std::size_t> partners_;
  std::vector<std::size_t> sources_;
};

}  // namespace tarn
