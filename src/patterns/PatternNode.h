#pragma once

#include <cstddef>
#include <cstdint>

// Format of a compiled pattern: one magic byte, then nodes. A node is an opcode, a link of two
// bytes (signed, little-endian) and an operand, if its opcode has one. The link is the offset of
// the next node from the node's own first byte: forward, except for OpBack, where it is backward; 0
// if there is no next node.
namespace tarn {

inline constexpr unsigned char kPatternMagic = 0x9C;
inline constexpr std::size_t kNodeSize = 3;
// Group 0 is the whole match; groups 1 to 9 are those in parentheses.
inline constexpr int kPatternGroups = 10;

enum PatternOpcode : unsigned char {
  OpEnd = 0,         // the match succeeds
  OpLineBegin = 1,   // matches at the start of the subject
  OpLineEnd = 2,     // matches at its end
  OpAny = 3,         // consumes any byte
  OpAnyOf = 4,       // consumes a byte of the set in its operand, a string
  OpAnyBut = 5,      // consumes a byte that isn't in the set
  OpBranch = 6,      // operand: nodes of one alternative; the link leads to the next one
  OpBack = 7,        // its link closes a loop
  OpExactly = 8,     // consumes the string in its operand
  OpNothing = 9,     // no effect
  OpStar = 10,       // operand: a node that consumes one byte, repeated 0 or more times
  OpPlus = 11,       // like OpStar, but 1 or more times
  OpWordBegin = 12,  // before a word byte, and not after one
  OpWordEnd = 13,    // not before a word byte
  OpOpen = 20,       // plus the number of a group: its start
  OpClose = 30,      // plus the number of a group: its end
};

// Returns the opcode of a node.
inline unsigned char OpcodeOf(const char* node) {
  return static_cast<unsigned char>(*node);
}

// Returns the operand of a node.
template <class Byte>
Byte* OperandOf(Byte* node) {
  return node + kNodeSize;
}

// Returns the link of a node as stored.
inline std::int16_t LinkOf(const char* node) {
  const auto byte = [node](int i) { return static_cast<unsigned char>(node[i]); };
  return static_cast<std::int16_t>(byte(1) | byte(2) << 8);
}

inline void SetLink(char* node, std::ptrdiff_t link) {
  node[1] = static_cast<char>(link & 0xFF);
  node[2] = static_cast<char>(link >> 8 & 0xFF);
}

// Returns nullptr if no node follows.
template <class Byte>
Byte* NextNode(Byte* node) {
  const std::int16_t link = LinkOf(node);
  if (link == 0) return nullptr;
  return OpcodeOf(node) == OpBack ? node - link : node + link;
}

}  // namespace tarn
