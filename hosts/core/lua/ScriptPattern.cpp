// Backtracking matcher, exponential in the worst case and therefore bounded by a budget. An item is
// a single character, class or set, followed by its repetition. Repetitions and captures match the
// rest of the pattern by recursion, everything else is a loop.

#include "hosts/core/lua/ScriptPattern.h"

#include <cctype>

namespace tarn::host {

namespace {

constexpr int kMaxDepth = 200;

unsigned char Byte(char c) {
  return static_cast<unsigned char>(c);
}

bool IsInClass(unsigned char byte, char name) {
  const auto lower = static_cast<char>(std::tolower(Byte(name)));
  bool result = false;
  switch (lower) {
    case 'a':
      result = std::isalpha(byte) != 0;
      break;
    case 'c':
      result = std::iscntrl(byte) != 0;
      break;
    case 'd':
      result = std::isdigit(byte) != 0;
      break;
    case 'g':
      result = std::isgraph(byte) != 0;
      break;
    case 'l':
      result = std::islower(byte) != 0;
      break;
    case 'p':
      result = std::ispunct(byte) != 0;
      break;
    case 's':
      result = std::isspace(byte) != 0;
      break;
    case 'u':
      result = std::isupper(byte) != 0;
      break;
    case 'w':
      result = std::isalnum(byte) != 0;
      break;
    case 'x':
      result = std::isxdigit(byte) != 0;
      break;
    case 'z':
      result = byte == 0;
      break;
    default:
      return Byte(name) == byte;  // represents itself
  }
  return std::isupper(Byte(name)) != 0 ? !result : result;
}

}  // namespace

std::size_t ScriptPattern::MatchAt(std::size_t offset) {
  captureCount_ = 0;
  depth_ = 0;
  return Match(offset, 0);
}

std::size_t ScriptPattern::Fail(const char* what) {
  if (problem_ == nullptr) problem_ = what;
  return kNone;
}

bool ScriptPattern::Spend(std::size_t steps) {
  isSpent_ = isSpent_ || !budget_->Spend(static_cast<std::int64_t>(steps));
  return !isSpent_;
}

std::size_t ScriptPattern::Match(std::size_t at, std::size_t item) {
  if (depth_ >= kMaxDepth) return Fail("pattern too complex");
  ++depth_;
  bool isDone = false;
  while (!isDone && item < pattern_.size()) {
    std::size_t next = item;
    at = MatchItem(at, item, isDone, next);
    if (at == kNone) break;
    item = next;
  }
  --depth_;
  return at;
}

// Matches one item. If the rest of the pattern had to be matched as well, sets `isDone` and returns
// the result of the whole; otherwise sets `nextItem` to the item to continue with.
std::size_t ScriptPattern::MatchItem(std::size_t at, std::size_t item, bool& isDone,
                                     std::size_t& nextItem) {
  const bool hasNext = item + 1 < pattern_.size();
  const char next = hasNext ? pattern_[item + 1] : '\0';
  isDone = true;
  switch (pattern_[item]) {
    case '(':
      return hasNext && next == ')' ? OpenCapture(at, item + 2, kPosition)
                                    : OpenCapture(at, item + 1, kOpen);
    case ')':
      return CloseCapture(at, item + 1);
    case '$':
      if (!hasNext) return at == text_.size() ? at : kNone;
      break;
    case '%':
      if (next != 'b' && next != 'f' && std::isdigit(Byte(next)) == 0) break;
      isDone = false;
      return MatchSpecial(at, item + 1, nextItem);
    default:
      break;
  }
  return MatchRepeatable(at, item, isDone, nextItem);
}

// Matches the special item after a percent sign: balanced text, a frontier, or a back reference.
std::size_t ScriptPattern::MatchSpecial(std::size_t at, std::size_t item, std::size_t& nextItem) {
  if (pattern_[item] == 'b') {
    nextItem = item + 3;
    return MatchBalanced(at, item + 1);
  }
  if (pattern_[item] != 'f') {
    nextItem = item + 1;
    return MatchRepeated(at, item);
  }
  const std::size_t set = item + 1;
  if (set >= pattern_.size() || pattern_[set] != '[') {
    return Fail("missing '[' after '%f' in pattern");
  }
  nextItem = FindItemEnd(set);
  return nextItem != kNone && IsFrontier(at, set, nextItem) ? at : kNone;
}

// Matches a single character with its repetition.
std::size_t ScriptPattern::MatchRepeatable(std::size_t at, std::size_t item, bool& isDone,
                                           std::size_t& nextItem) {
  const std::size_t itemEnd = FindItemEnd(item);
  isDone = true;
  if (itemEnd == kNone) return kNone;
  const char repetition = itemEnd < pattern_.size() ? pattern_[itemEnd] : '\0';
  if (repetition == '*') return MatchMost(at, item, itemEnd);
  if (repetition == '-') return MatchFewest(at, item, itemEnd);
  const bool isMatch = MatchesOne(at, item, itemEnd);
  if (repetition == '+') return isMatch ? MatchMost(at + 1, item, itemEnd) : kNone;
  if (repetition == '?' && isMatch) {
    const std::size_t end = Match(at + 1, itemEnd + 1);
    if (end != kNone) return end;
  }
  if (IsOver()) return kNone;
  isDone = false;
  if (repetition == '?') {
    nextItem = itemEnd + 1;
    return at;
  }
  nextItem = itemEnd;
  return isMatch ? at + 1 : kNone;
}

std::size_t ScriptPattern::MatchMost(std::size_t at, std::size_t item, std::size_t itemEnd) {
  std::size_t count = 0;
  while (MatchesOne(at + count, item, itemEnd)) ++count;
  for (;; --count) {
    const std::size_t end = Match(at + count, itemEnd + 1);
    if (end != kNone || count == 0 || IsOver()) return end;
  }
}

std::size_t ScriptPattern::MatchFewest(std::size_t at, std::size_t item, std::size_t itemEnd) {
  for (;; ++at) {
    const std::size_t end = Match(at, itemEnd + 1);
    if (end != kNone || !MatchesOne(at, item, itemEnd) || IsOver()) return end;
  }
}

std::size_t ScriptPattern::MatchBalanced(std::size_t at, std::size_t item) {
  if (item + 1 >= pattern_.size()) return Fail("malformed pattern (missing arguments to '%b')");
  if (at >= text_.size() || text_[at] != pattern_[item]) return kNone;
  const char open = pattern_[item];
  const char close = pattern_[item + 1];
  std::size_t level = 1;
  for (std::size_t i = at + 1; i < text_.size(); ++i) {
    if (!Spend(1)) return kNone;
    if (text_[i] == close) {
      if (--level == 0) return i + 1;
    } else if (text_[i] == open) {
      ++level;
    }
  }
  return kNone;
}

std::size_t ScriptPattern::MatchRepeated(std::size_t at, std::size_t item) {
  const int index = pattern_[item] - '1';
  if (index < 0 || index >= captureCount_ || captures_[index].length == kOpen) {
    wrongCapture_ = index + 1;
    return Fail("invalid capture index");
  }
  const Capture& capture = captures_[index];
  // A position capture has no text to repeat.
  if (capture.length == kPosition) return kNone;
  if (!Spend(1 + capture.length / 64)) return kNone;
  if (text_.size() - at < capture.length) return kNone;
  const bool isSame =
      text_.substr(capture.start, capture.length) == text_.substr(at, capture.length);
  return isSame ? at + capture.length : kNone;
}

std::size_t ScriptPattern::OpenCapture(std::size_t at, std::size_t item, std::size_t length) {
  if (captureCount_ >= kMaxCaptures) return Fail("too many captures");
  captures_[captureCount_++] = {at, length};
  const std::size_t end = Match(at, item);
  if (end == kNone) --captureCount_;
  return end;
}

std::size_t ScriptPattern::CloseCapture(std::size_t at, std::size_t item) {
  int index = captureCount_ - 1;
  while (index >= 0 && captures_[index].length != kOpen) --index;
  if (index < 0) return Fail("invalid pattern capture");
  captures_[index].length = at - captures_[index].start;
  const std::size_t end = Match(at, item);
  if (end == kNone) captures_[index].length = kOpen;
  return end;
}

// For a frontier, the text is treated as if enclosed in zero bytes.
bool ScriptPattern::IsFrontier(std::size_t at, std::size_t set, std::size_t setEnd) const {
  const unsigned char before = at == 0 ? 0 : Byte(text_[at - 1]);
  const unsigned char here = at < text_.size() ? Byte(text_[at]) : 0;
  return !IsInSet(before, set, setEnd) && IsInSet(here, set, setEnd);
}

std::size_t ScriptPattern::FindItemEnd(std::size_t item) {
  const std::size_t start = item;
  const char first = pattern_[item++];
  if (first == '%') {
    return item < pattern_.size() ? item + 1 : Fail("malformed pattern (ends with '%')");
  }
  if (first != '[') return item;
  if (item < pattern_.size() && pattern_[item] == '^') ++item;
  // The first character of a set is always literal, even a bracket.
  do {
    if (item >= pattern_.size()) return Fail("malformed pattern (missing ']')");
    if (pattern_[item++] == '%') ++item;
  } while (item >= pattern_.size() || pattern_[item] != ']');
  return Spend(item - start) ? item + 1 : kNone;
}

bool ScriptPattern::MatchesOne(std::size_t at, std::size_t item, std::size_t itemEnd) {
  if (at >= text_.size()) return false;
  // Comparing with a set costs the length of the set.
  if (!Spend(itemEnd - item)) return false;
  const unsigned char byte = Byte(text_[at]);
  switch (pattern_[item]) {
    case '.':
      return true;
    case '%':
      return IsInClass(byte, pattern_[item + 1]);
    case '[':
      return IsInSet(byte, item, itemEnd);
    default:
      return Byte(pattern_[item]) == byte;
  }
}

bool ScriptPattern::IsInSet(unsigned char byte, std::size_t set, std::size_t setEnd) const {
  const std::size_t last = setEnd - 1;  // the closing bracket
  std::size_t i = set + 1;
  const bool isNegated = i < last && pattern_[i] == '^';
  if (isNegated) ++i;
  bool isFound = false;
  while (i < last && !isFound) {
    if (pattern_[i] == '%') {
      isFound = IsInClass(byte, pattern_[i + 1]);
      i += 2;
    } else if (i + 2 < last && pattern_[i + 1] == '-') {
      isFound = Byte(pattern_[i]) <= byte && byte <= Byte(pattern_[i + 2]);
      i += 3;
    } else {
      isFound = Byte(pattern_[i]) == byte;
      ++i;
    }
  }
  return isFound != isNegated;
}

}  // namespace tarn::host
