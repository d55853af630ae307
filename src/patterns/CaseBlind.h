#pragma once

#include <algorithm>
#include <string_view>

// Comparing without regard to case; in ASCII alone, and independent of any locale.
namespace tarn {

inline bool IsSameLetter(char a, char b) {
  const auto fold = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c | 0x20) : c; };
  return fold(a) == fold(b);
}

inline bool IsSameWord(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), IsSameLetter);
}

inline bool HasWord(std::string_view text, std::string_view word) {
  return std::search(text.begin(), text.end(), word.begin(), word.end(), IsSameLetter) !=
         text.end();
}

}  // namespace tarn
