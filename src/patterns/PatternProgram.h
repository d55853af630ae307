#pragma once

#include <array>
#include <cstdint>
#include <string_view>
#include <vector>

#include "patterns/ByteSet.h"
#include "patterns/PatternError.h"
#include "patterns/PatternNode.h"

namespace tarn {

// Instruction of the prepared program: a node with its links resolved, its set as a bitmap, and
// precomputed information on how the rest of a match can begin. A match begins at the first step.
struct PatternInstruction {
  enum Kind : std::uint8_t {
    End,
    LineBegin,
    LineEnd,
    WordBegin,
    WordEnd,
    Save,       // saves the position in `slot`
    Literal,    // consumes the literal
    MatchByte,  // consumes one byte of `bytes`
    Star,       // consumes bytes of `bytes`, as many as the rest allows
    Split,      // continues at `next`, and if that fails at `other`
    Nop,        // idle node; no step leads to one
  };

  Kind kind = Nop;
  // Twice the number of a group, plus one for its end.
  std::uint8_t slot = 0;
  // Save: every match passes this step exactly once.
  bool isCertain : 1 = false;
  // Star: the part after it can't begin with a byte of `bytes`, so it consumes all or fails.
  bool takesMost : 1 = false;
  // Star: `bytes` contains every byte that a subject can contain.
  bool takesAny : 1 = false;
  // Offset of the literal in the code. Star: the literal that must follow; its length is 0 if there
  // is none.
  std::uint16_t literal = 0;
  std::uint16_t length = 0;
  const PatternInstruction* next = nullptr;
  const PatternInstruction* other = nullptr;
  ByteSet bytes;
  // Bytes with which a match can continue here, including zero if it can continue at the end of the
  // subject.
  ByteSet begins;
};

// Steps point to each other, so the vector may be moved but not copied.
using PatternProgram = std::vector<PatternInstruction>;

// Positions, indexed by slot.
using PatternSlots = std::array<const char*, 2 * kPatternGroups>;

// All bytes except zero.
inline constexpr ByteSet kSubjectBytes = ~ByteSet(std::string_view("\0", 1));
// ASCII letters and digits, and _.
inline constexpr ByteSet kWordBytes(
    "0123456789_ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz");

// Returns true if a step that consumes nothing (a line or word boundary) matches at `at`.
bool HoldsAt(PatternInstruction::Kind bound, const char* subject, const char* at);

// Creates the steps of a program, which begins with the magic byte. Returns an error if the code
// isn't a sequence of valid nodes.
PatternError MakePatternProgram(std::string_view code, PatternProgram& steps);

}  // namespace tarn
