#pragma once

#include <cstdint>
#include <string>

namespace tarn {

// Result of `ParseNumber()` for a null or empty string.
inline constexpr std::int32_t kNoNumber = 0x7FFFFFFF;

// Returns the number in an attribute's value. After "0x", at any position, at most eight
// hexadecimal digits are read, 0 if there are none; a value above 0x7FFFFFFF wraps to the negative
// number with the same 32 bits. Otherwise white space, a sign and decimal digits are read from the
// start; a number that doesn't fit is truncated to its low 32 bits.
std::int32_t ParseNumber(const char* text);
inline std::int32_t ParseNumber(const std::string& text) {
  return ParseNumber(text.c_str());
}

}  // namespace tarn
