#pragma once

#include <algorithm>
#include <string_view>

// Case-insensitive comparisons. ASCII only; independent of the locale.
namespace tarn {

// Returns true if the characters are equal except for case.
inline bool IsSameLetter(char a, char b) {
  const auto fold = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c | 0x20) : c; };
  return fold(a) == fold(b);
}

// Returns true if the strings are equal except for case.
inline bool IsSameWord(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), IsSameLetter);
}

// Returns true if `text` contains `word`, also as part of a longer word.
inline bool HasWord(std::string_view text, std::string_view word) {
  return std::search(text.begin(), text.end(), word.begin(), word.end(), IsSameLetter) !=
         text.end();
}

}  // namespace tarn
