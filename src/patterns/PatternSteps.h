#pragma once

#include <array>
#include <cstdint>
#include <string_view>
#include <vector>

#include "patterns/ByteSet.h"
#include "patterns/PatternError.h"
#include "patterns/PatternNode.h"

namespace tarn {

// One step of a match: a node with its links followed, its set as bits, and with what can be known
// beforehand of how the rest begins. A match begins at the first step.
struct PatternStep {
  enum Kind : std::uint8_t {
    End,
    LineBegin,
    LineEnd,
    WordBegin,
    WordEnd,
    Save,     // notes the position in `slot`
    Literal,  // takes the literal
    Take,     // takes one byte of `bytes`
    Star,     // takes bytes of `bytes`, as many as the rest allows
    Split,    // goes on at `next`, and if that fails at `other`
    Jump,     // an idle node; no step leads to one
  };

  Kind kind = Jump;
  // Twice the number of a group, and one more for its end.
  std::uint8_t slot = 0;
  // Save: every match comes here, and just once.
  bool isCertain : 1 = false;
  // Star: what follows can't begin with a byte of `bytes`, so it takes all there are or fails.
  bool takesMost : 1 = false;
  // Star: `bytes` is all that a subject can hold.
  bool takesAny : 1 = false;
  // Where the literal lies in the code. Star: the one that must follow, its length 0 for none.
  std::uint16_t literal = 0;
  std::uint16_t length = 0;
  const PatternStep* next = nullptr;
  const PatternStep* other = nullptr;
  ByteSet bytes;
  // The bytes with which a match can go on here, zero among them if it can at the subject's end.
  ByteSet begins;
};

// They point to each other, so they are moved, but not copied.
using PatternSteps = std::vector<PatternStep>;

// Positions by slot.
using PatternSlots = std::array<const char*, 2 * kPatternGroups>;

// All bytes but zero.
inline constexpr ByteSet kSubjectBytes = ~ByteSet(std::string_view("\0", 1));
// Letters and digits of ASCII, and _.
inline constexpr ByteSet kWordBytes(
    "0123456789_ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz");

// Whether a step that takes nothing, one of the bounds of line and word, holds at a position.
bool HoldsAt(PatternStep::Kind bound, const char* subject, const char* at);

// Makes the steps of a program, which begins with the magic byte. Gives an error for what isn't
// made of nodes.
PatternError MakePatternSteps(std::string_view code, PatternSteps& steps);

}  // namespace tarn
