#include "hosts/core/Printable.h"

#include <algorithm>
#include <cstddef>
#include <cstdio>

namespace tarn::host {

namespace {

constexpr std::string_view kReplacement = "\xEF\xBF\xBD";  // U+FFFD

// Decodes the first character of a text; a byte that is not valid UTF-8 is a character by itself.
struct Character {
  char32_t value = 0;
  std::size_t size = 1;
  bool isByte = false;
};

bool IsContinuation(char c) {
  return (static_cast<unsigned char>(c) & 0xC0) == 0x80;
}

Character ReadCharacter(std::string_view text) {
  const auto first = static_cast<unsigned char>(text.front());
  const Character byte{first, 1, first >= 0x80};
  if (first < 0xC2 || first > 0xF4) return byte;
  const std::size_t size = first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
  if (text.size() < size) return byte;
  char32_t value = first & (0x7Fu >> size);
  for (const char c : text.substr(1, size - 1)) {
    if (!IsContinuation(c)) return byte;
    value = value << 6 | (static_cast<unsigned char>(c) & 0x3F);
  }
  // Overlong encodings are invalid.
  constexpr char32_t kFirst[] = {0, 0, 0x80, 0x800, 0x10000};
  const bool isSurrogate = value >= 0xD800 && value <= 0xDFFF;
  return value < kFirst[size] || value > 0x10FFFF || isSurrogate ? byte
                                                                 : Character{value, size, false};
}

bool IsHarmful(char32_t value) {
  return value < 0x20 || (value >= 0x7F && value <= 0x9F) || (value >= 0x202A && value <= 0x202E) ||
         (value >= 0x2066 && value <= 0x2069);
}

// Returns true if the character is left as is. `kept` lists the control characters that are
// allowed, a carriage return only as part of a line end.
bool Stays(std::string_view text, std::string_view kept) {
  return kept.find(text.front()) != kept.npos && (text.front() != '\r' || text.starts_with("\r\n"));
}

template <typename Escape>
std::string Replace(std::string_view text, std::string_view kept, Escape escape) {
  std::string clean;
  clean.reserve(text.size());
  while (!text.empty()) {
    const Character next = ReadCharacter(text);
    if (IsHarmful(next.value) && !Stays(text, kept)) {
      clean += escape(next);
    } else {
      clean += text.substr(0, next.size);
    }
    text.remove_prefix(next.size);
  }
  return clean;
}

std::string Number(const char* format, char32_t value) {
  char text[16];
  std::snprintf(text, sizeof text, format, static_cast<unsigned>(value));
  return text;
}

std::string EscapePlain(const Character& character) {
  const bool isLong = character.value >= 0x80 && !character.isByte;
  return Number(isLong ? "\\u%04x" : "\\x%02x", character.value);
}

}  // namespace

std::string Printable(std::string_view text) {
  return Replace(text, "\t", EscapePlain);
}

std::string PrintableLines(std::string_view text) {
  return Replace(text, "\t\n", EscapePlain);
}

// In JSON such characters occur only in strings, where each can be written as an escape.
std::string PrintableJson(std::string_view text) {
  return Replace(text, "\t\n", [](const Character& c) { return Number("\\u%04x", c.value); });
}

// XML can't represent control characters below U+0020 at all, so they are replaced by U+FFFD, like
// invalid bytes.
std::string PrintableXml(std::string_view text) {
  return Replace(text, "\t\n\r", [](const Character& c) {
    return c.value < 0x20 || c.isByte ? std::string(kReplacement) : Number("&#x%X;", c.value);
  });
}

std::size_t WholeCharacters(std::string_view text) {
  std::size_t start = text.size();
  while (start > 0 && text.size() - start < 4 &&
         (static_cast<unsigned char>(text[start - 1]) & 0xC0) == 0x80) {
    --start;
  }
  if (start == 0) return text.size();
  const auto lead = static_cast<unsigned char>(text[start - 1]);
  const std::size_t needed = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : lead >= 0xC0 ? 2 : 1;
  return text.size() - (start - 1) < needed ? start - 1 : text.size();
}

std::string ValidXml(std::string_view text) {
  std::string valid;
  valid.reserve(text.size());
  while (!text.empty()) {
    const Character next = ReadCharacter(text);
    const bool isBad = next.isByte || next.value == 0xFFFE || next.value == 0xFFFF;
    valid += isBad ? kReplacement : text.substr(0, next.size);
    text.remove_prefix(next.size);
  }
  return PrintableXml(valid);
}

}  // namespace tarn::host
