// Recursive-descent parser for patterns. An alternation consists of alternatives, an alternative of
// pieces, and a piece is an atom with at most one repeat after it. Recursion depth is limited by
// the nine groups.
#include "patterns/PatternEmitter.h"

#include <string_view>

#include "patterns/ByteSet.h"
#include "patterns/PatternNode.h"

namespace tarn {
namespace {

bool IsRepeat(char c) {
  return c == '*' || c == '+' || c == '?';
}

bool EndsAlternative(char c) {
  return c == '\0' || c == '|' || c == ')';
}

// Returns true if `c` ends a run of literal characters.
bool EndsRun(char c) {
  constexpr ByteSet kEnds(std::string_view("\0\n$().[^|", 9));
  return kEnds.Has(c);
}

// Returns the byte as a number from -128 to 127, regardless of the platform's char type.
int SignedOf(char c) {
  const int byte = static_cast<unsigned char>(c);
  return byte < 128 ? byte : byte - 256;
}

bool IsWordBound(char c) {
  return c == '<' || c == '>';
}

}  // namespace

char* CPatternEmitter::Fail(PatternError code) {
  error_ = PatternErrorText(code);
  return nullptr;
}

bool CPatternEmitter::Parse(const char* pattern) {
  position_ = pattern;
  EmitByte(static_cast<char>(kPatternMagic));
  return Alternation(false, patternFlags_) != nullptr;
}

char* CPatternEmitter::Alternation(bool isGroup, int& flags) {
  char* open = nullptr;
  int closing = OpEnd;
  if (isGroup) {
    if (nextGroup_ == kPatternGroups) return Fail(PatternError::TooManyGroups);
    closing = OpClose + nextGroup_;
    open = EmitNode(OpOpen + nextGroup_++);
  }
  flags = HasWidth;
  char* first = nullptr;
  for (char* last = open;; ++position_) {
    int alternativeFlags = 0;
    char* alternative = Alternative(alternativeFlags);
    if (!alternative) return nullptr;
    if (!first) first = open ? open : alternative;
    if (last) LinkTail(last, alternative);
    last = alternative;
    if ((alternativeFlags & HasWidth) == 0) flags &= ~HasWidth;
    flags |= alternativeFlags & StartsWithRepeat;
    if (*position_ != '|') break;
  }
  char* end = EmitNode(closing);
  LinkTail(first, end);
  for (char* node = first; node; node = NextNode(node)) LinkOperandTail(node, end);
  return ReadEnd(isGroup) ? first : nullptr;
}

bool CPatternEmitter::ReadEnd(bool isGroup) {
  if (isGroup) {
    if (*position_ != ')') return Fail(PatternError::UnterminatedGroup);
    ++position_;
    return true;
  }
  if (*position_ == ')') return Fail(PatternError::UnmatchedClose);
  return *position_ == '\0' || Fail(PatternError::JunkOnEnd);
}

char* CPatternEmitter::Alternative(int& flags) {
  flags = 0;
  char* branch = EmitNode(OpBranch);
  char* chain = nullptr;
  while (!EndsAlternative(*position_)) {
    int pieceFlags = 0;
    char* piece = Piece(pieceFlags);
    if (!piece) return nullptr;
    flags |= pieceFlags & HasWidth;
    if (chain) {
      LinkTail(chain, piece);
    } else {
      flags |= pieceFlags & StartsWithRepeat;
    }
    chain = piece;
  }
  if (!chain) EmitNode(OpNothing);
  return branch;
}

char* CPatternEmitter::Piece(int& flags) {
  char* atom = Atom(flags);
  const char repeat = *position_;
  if (!atom || !IsRepeat(repeat)) return atom;
  if ((flags & HasWidth) == 0 && repeat != '?') return Fail(PatternError::EmptyOperand);
  EmitRepeat(repeat, (flags & Simple) != 0, atom);
  flags = repeat == '*' ? StartsWithRepeat : repeat == '+' ? StartsWithRepeat | HasWidth : 0;
  if (IsRepeat(*++position_)) return Fail(PatternError::NestedRepeat);
  return atom;
}

// After insertion, `node` is the new node before the atom.
void CPatternEmitter::EmitRepeat(char repeat, bool isSimple, char* node) {
  if (isSimple && repeat != '?') {
    InsertNode(repeat == '*' ? OpStar : OpPlus, node);
  } else if (repeat == '*') {  // the atom and back, or nothing
    InsertNode(OpBranch, node);
    LinkOperandTail(node, EmitNode(OpBack));
    LinkOperandTail(node, node);
    LinkTail(node, EmitNode(OpBranch));
    LinkTail(node, EmitNode(OpNothing));
  } else if (repeat == '+') {  // the atom, then back or nothing
    char* branch = EmitNode(OpBranch);
    LinkTail(node, branch);
    LinkTail(EmitNode(OpBack), node);
    LinkTail(branch, EmitNode(OpBranch));
    LinkTail(node, EmitNode(OpNothing));
  } else {  // the atom or nothing
    InsertNode(OpBranch, node);
    LinkTail(node, EmitNode(OpBranch));
    char* nothing = EmitNode(OpNothing);
    LinkTail(node, nothing);
    LinkOperandTail(node, nothing);
  }
}

char* CPatternEmitter::Atom(int& flags) {
  flags = 0;
  switch (*position_) {
    case '^':
      ++position_;
      return EmitNode(OpLineBegin);
    case '$':
      ++position_;
      return EmitNode(OpLineEnd);
    case '.':
      ++position_;
      flags = HasWidth | Simple;
      return EmitNode(OpAny);
    case '[':
      ++position_;
      flags = HasWidth | Simple;
      return Set();
    case '(': {
      ++position_;
      char* group = Alternation(true, flags);
      flags &= HasWidth | StartsWithRepeat;
      return group;
    }
    case '\0':
    case '|':
    case ')':
      return Fail(PatternError::EndInsteadOfAtom);
    case '*':
    case '+':
    case '?':
      return Fail(PatternError::RepeatOfNothing);
    case '\\':
      if (position_[1] == '\0') return Fail(PatternError::TrailingBackslash);
      if (!IsWordBound(position_[1])) return Literal(flags);
      position_ += 2;
      return EmitNode(position_[-1] == '<' ? OpWordBegin : OpWordEnd);
    default:
      return Literal(flags);
  }
}

char* CPatternEmitter::Set() {
  const bool isNegative = *position_ == '^';
  if (isNegative) ++position_;
  char* set = EmitNode(isNegative ? OpAnyBut : OpAnyOf);
  if (*position_ == ']' || *position_ == '-') EmitByte(*position_++);
  while (*position_ != '\0' && *position_ != ']') {
    const bool isRange = *position_ == '-' && position_[1] != '\0' && position_[1] != ']';
    if (!isRange) {
      EmitByte(*position_++);
    } else if (!ReadRange()) {
      return nullptr;
    }
  }
  EmitByte('\0');
  if (*position_ != ']') return Fail(PatternError::UnmatchedSet);
  ++position_;
  return set;
}

// Reads a range; the position is at the hyphen. The lower bound is in the set already. The zero
// byte terminates the set and can't be a member; it can't occur in a subject either.
bool CPatternEmitter::ReadRange() {
  const int low = SignedOf(position_[-1]);
  const int high = SignedOf(position_[1]);
  if (low > high) return Fail(PatternError::InvalidRange);
  for (int byte = low + 1; byte <= high; ++byte) {
    if (byte != 0) EmitByte(static_cast<char>(byte));
  }
  position_ += 2;
  return true;
}

// Reads as many literal characters as possible, except that a repeat applies to the one character
// before it, which then gets a node of its own.
char* CPatternEmitter::Literal(int& flags) {
  char* literal = EmitNode(OpExactly);
  int length = 0;
  for (bool goesOn = true; goesOn;) {
    const char* start = position_;
    if (*position_ == '\\') ++position_;
    const char next = position_[1];
    if (IsRepeat(next) && length > 0) {
      position_ = start;
      break;
    }
    EmitByte(*position_++);
    ++length;
    if (next == '\\') {
      goesOn = position_[1] != '\0' && !IsWordBound(position_[1]);
    } else {
      goesOn = !IsRepeat(next) && !EndsRun(next);
    }
  }
  EmitByte('\0');
  flags = length == 1 ? HasWidth | Simple : HasWidth;
  return literal;
}

}  // namespace tarn
