#pragma once

#include <cstddef>
#include <cstdint>

// The bytes of a compiled pattern: one magic byte, then nodes. A node is an opcode, a link of two
// bytes (signed, the low one first) and an operand, if its opcode has one. The link leads to the
// node that follows, counted from the node's own first byte: forward, but backward in an OpBack; 0
// where nothing follows.
namespace tarn {

inline constexpr unsigned char kPatternMagic = 0x9C;
inline constexpr std::size_t kNodeSize = 3;
// Group 0 is the whole match, groups 1 to 9 are those in parentheses.
inline constexpr int kPatternGroups = 10;

enum PatternOpcode : unsigned char {
  OpEnd = 0,         // the match succeeds
  OpLineBegin = 1,   // at the first byte of the subject
  OpLineEnd = 2,     // at its end
  OpAny = 3,         // takes any byte
  OpAnyOf = 4,       // takes one byte of the set in its operand, a text
  OpAnyBut = 5,      // takes one that is not in it
  OpBranch = 6,      // operand: the nodes of one alternative; the link leads to the next one
  OpBack = 7,        // its link closes a loop
  OpExactly = 8,     // takes the text in its operand
  OpNothing = 9,     // no effect
  OpStar = 10,       // operand: a node that takes one byte, repeated 0 or more times
  OpPlus = 11,       // the same, 1 or more times
  OpWordBegin = 12,  // before a word byte, behind none
  OpWordEnd = 13,    // before no word byte
  OpOpen = 20,       // plus the number of a group: its start
  OpClose = 30,      // plus the number of a group: its end
};

inline unsigned char OpcodeOf(const char* node) {
  return static_cast<unsigned char>(*node);
}

template <class Byte>
Byte* OperandOf(Byte* node) {
  return node + kNodeSize;
}

inline std::int16_t LinkOf(const char* node) {
  const auto byte = [node](int i) { return static_cast<unsigned char>(node[i]); };
  return static_cast<std::int16_t>(byte(1) | byte(2) << 8);
}

inline void SetLink(char* node, std::ptrdiff_t link) {
  node[1] = static_cast<char>(link & 0xFF);
  node[2] = static_cast<char>(link >> 8 & 0xFF);
}

// Null where no node follows.
template <class Byte>
Byte* NextNode(Byte* node) {
  const std::int16_t link = LinkOf(node);
  if (link == 0) return nullptr;
  return OpcodeOf(node) == OpBack ? node - link : node + link;
}

}  // namespace tarn
