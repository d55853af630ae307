#pragma once

#include <cstdint>
#include <string>

namespace tarn {

class CCompiledPattern;

// A regular expression over 8-bit texts that end with a zero byte.
//
//   ^ $       start and end of the subject, wherever they stand
//   .         any byte, a newline too
//   [a-z] [^a-z]   one byte of a set, or none of it; ] and - are members in the first place, a
//             backslash everywhere
//   (x|y)     a group, numbered 1 to 9 in the order of the opening parentheses
//   x* x+ x?  0 or more, 1 or more, 0 or 1 time, as often as the rest allows; x can't be empty for
//             the first two, nor be repeated itself
//   \< \>     in front of a word's first byte; in front of a byte that is in no word
//   \c        the character c itself
//
// The first alternative with which the whole rest matches wins, and among the starts the first one.
// A match takes time in proportion to the pattern's length times the subject's at most, and memory
// to the pattern's.
//
// A handle is small and copied freely; copies share the compiled pattern until one of them matches.
// Handles that share one belong to one thread. Failures leave a text in GetError, which every other
// operation but IsCompiled clears first.
class CRegularExpression {
 public:
  // Holds no program: nothing matches.
  CRegularExpression() = default;
  // Compiles. With `ignoreCase` letters match in both cases, except inside of sets. IsCompiled
  // tells whether the pattern is good.
  explicit CRegularExpression(const char* patternText, bool ignoreCase = false);
  explicit CRegularExpression(const std::string& patternText, bool ignoreCase = false)
      : CRegularExpression(patternText.c_str(), ignoreCase) {}
  CRegularExpression(const CRegularExpression& other);
  CRegularExpression& operator=(const CRegularExpression& other);
  ~CRegularExpression();

  bool IsCompiled() const;
  // Looks for the first match in `text`, which is borrowed: positions of groups point into it, so
  // it has to stay as long as they are read.
  bool Match(const char* text);
  // All that ask for a group, 0 (the whole match) to 9, speak of the last Match.
  //
  // The number of the last group before the first one that took no part; -1 after a failed match.
  int SubCount();
  // Offset of the group in the subject; -1 for one that took no part.
  int SubStart(int group);
  int SubLength(int group);
  std::string SubString(int group);
  // The template with the match in place of & and the groups in place of \0 to \9; \\ and \& are a
  // backslash and an ampersand. Empty on failure.
  std::string Substitute(const char* replacement);
  const std::string& GetError() const;

 private:
  bool HasProgram();
  void Release();

  const char* subject = nullptr;
  std::string error;
  CCompiledPattern* program = nullptr;
};

}  // namespace tarn
