#pragma once

#include <algorithm>
#include <charconv>
#include <optional>
#include <string_view>

// Functions for reading the text files of linkers and compilers.
namespace tarn::sizes {

inline constexpr std::string_view kSpaces = " \t\r";

inline std::string_view Trimmed(std::string_view text) {
  const std::size_t start = text.find_first_not_of(kSpaces);
  if (start == text.npos) return {};
  return text.substr(start, text.find_last_not_of(kSpaces) - start + 1);
}

// Removes the first token from the text and returns it.
inline std::string_view TakeToken(std::string_view& text) {
  text.remove_prefix(std::min(text.find_first_not_of(kSpaces), text.size()));
  const std::string_view token = text.substr(0, text.find_first_of(kSpaces));
  text.remove_prefix(token.size());
  return token;
}

// Removes the first line from the text and returns it without its end.
inline std::string_view TakeLine(std::string_view& text) {
  const std::size_t end = std::min(text.find('\n'), text.size());
  const std::string_view line = text.substr(0, end);
  text.remove_prefix(std::min(end + 1, text.size()));
  return line;
}

// Returns the number that the whole text represents; nullopt if it is anything else.
template <class Number>
std::optional<Number> ParseWhole(std::string_view digits, int base = 10) {
  Number number = 0;
  const char* const end = digits.data() + digits.size();
  const auto read = std::from_chars(digits.data(), end, number, base);
  if (digits.empty() || read.ec != std::errc() || read.ptr != end) return std::nullopt;
  return number;
}

}  // namespace tarn::sizes
