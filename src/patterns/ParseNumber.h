#pragma once

#include <cstdint>
#include <string>

namespace tarn {

// What ParseNumber gives for a null or empty text.
inline constexpr std::int32_t kNoNumber = 0x7FFFFFFF;

// The number in an attribute's text. Behind "0x", wherever it stands, at most eight hexadecimal
// digits are read, 0 when there are none; a value above 0x7FFFFFFF wraps to the negative number of
// the same 32 bits. Otherwise white space, a sign and decimal digits are read from the start, and a
// number that needs more keeps its low 32 bits.
std::int32_t ParseNumber(const char* text);
inline std::int32_t ParseNumber(const std::string& text) {
  return ParseNumber(text.c_str());
}

}  // namespace tarn
