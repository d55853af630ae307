#include "patterns/ParseNumber.h"

#include <cstring>

namespace tarn {
namespace {

constexpr int kMaxHexDigits = 8;

int HexDigit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

std::int32_t ParseHex(const char* text) {
  std::uint32_t number = 0;
  for (int i = 0; i < kMaxHexDigits; ++i) {
    const int digit = HexDigit(text[i]);
    if (digit < 0) break;
    number = number * 16 + static_cast<std::uint32_t>(digit);
  }
  return static_cast<std::int32_t>(number);
}

std::int32_t ParseDecimal(const char* text) {
  text += std::strspn(text, " \t\r\n\v\f");
  const bool isNegative = *text == '-';
  if (*text == '-' || *text == '+') ++text;
  std::uint32_t number = 0;
  for (; *text >= '0' && *text <= '9'; ++text) {
    number = number * 10 + static_cast<std::uint32_t>(*text - '0');
  }
  return static_cast<std::int32_t>(isNegative ? 0 - number : number);
}

}  // namespace

std::int32_t ParseNumber(const char* text) {
  if (!text || !*text) return kNoNumber;
  if (const char* hex = std::strstr(text, "0x")) return ParseHex(hex + 2);
  return ParseDecimal(text);
}

}  // namespace tarn
