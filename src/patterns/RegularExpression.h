#pragma once

#include <cstdint>
#include <string>

namespace tarn {

class CCompiledPattern;

// Regular expression over zero-terminated 8-bit strings.
//
//   ^ $       start and end of the subject, at any position in the pattern
//   .         any byte, including a newline
//   [a-z] [^a-z]   one byte of a set, or one that isn't in it; ] and - are members in the first
//             position, a backslash in any position
//   (x|y)     a group, numbered 1 to 9 in the order of the opening parentheses
//   x* x+ x?  0 or more, 1 or more, 0 or 1 time, as often as the rest allows; for the first two, x
//             can't match the empty string; x can't be a repeat itself
//   \< \>     before the first byte of a word; before a byte that isn't in a word
//   \c        the character c itself
//
// The leftmost match is found; among alternatives, the first one with which the whole rest matches
// wins. A match takes at most O(pattern x subject) time and O(pattern) memory: backtracking with a
// step limit, after which a Pike VM takes over.
//
// A handle is small and cheap to copy; copies share the compiled pattern until one of them matches.
// Handles that share a pattern belong to one thread. On error, GetError() returns a message, which
// every other operation except IsCompiled() clears first.
class CRegularExpression {
 public:
  // Creates an expression without a program, which matches nothing.
  CRegularExpression() = default;
  // Compiles `patternText`. If `ignoreCase` is true, letters match in both cases, except inside
  // sets. Call IsCompiled() to check that the pattern is valid.
  explicit CRegularExpression(const char* patternText, bool ignoreCase = false);
  explicit CRegularExpression(const std::string& patternText, bool ignoreCase = false)
      : CRegularExpression(patternText.c_str(), ignoreCase) {}
  CRegularExpression(const CRegularExpression& other);
  CRegularExpression& operator=(const CRegularExpression& other);
  ~CRegularExpression();

  bool IsCompiled() const;
  // Searches for the first match in `text`, which is borrowed: positions of groups point into it,
  // so it must stay valid as long as they are used.
  bool Match(const char* text);
  // The functions below that take a group, 0 (the whole match) to 9, refer to the last Match().
  //
  // Returns the number of the last group before the first one that took no part; -1 after a failed
  // match.
  int SubCount();
  // Returns the offset of the group in the subject; -1 if the group took no part.
  int SubStart(int group);
  int SubLength(int group);
  std::string SubString(int group);
  // Returns the template with & replaced by the match and \0 to \9 by the groups; \\ and \& are a
  // backslash and an ampersand. Returns an empty string on error.
  std::string Substitute(const char* replacement);
  const std::string& GetError() const;

 private:
  bool HasProgram();
  void Release();

  const char* subject_ = nullptr;
  std::string error_;
  CCompiledPattern* program_ = nullptr;
};

}  // namespace tarn
