#pragma once

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <string_view>

// Strings of nodes and attributes: zero-terminated, with one byte before the first character that
// stores the owner of the memory and, except for long strings, the length. For use inside the xml
// folder only.
namespace tarn {

// Values of the byte before a string. Any smaller value is the length of a string that is stored in
// the block of its node or attribute.
enum StringKind : unsigned char {
  kLongString = 253,   // stored in that block as well
  kHeapString = 254,   // allocated separately on the heap
  kStaticString = 255  // the shared empty string
};

inline constexpr char kEmptyString[] = {static_cast<char>(kStaticString), '\0'};
inline const char* EmptyString() {
  return kEmptyString + 1;
}
// Returns a heap-allocated copy of `text` up to its first zero byte. Freed by `FreeString()`.
const char* NewString(std::string_view text);
void FreeHeapString(const char* text);
// Replaces the string `text` by a copy of `newText`, which may be a part of the old string.
void AssignString(const char*& text, std::string_view newText);

inline unsigned char StringKindOf(const char* text) {
  return static_cast<unsigned char>(text[-1]);
}

inline void FreeString(const char* text) {
  if (StringKindOf(text) == kHeapString) FreeHeapString(text);
}

inline std::string_view StringView(const char* text) {
  return {text, StringKindOf(text) < kLongString ? StringKindOf(text) : std::strlen(text)};
}

// Terminates a string of that length that was written inside its node's or attribute's block, and
// sets the byte before it.
inline const char* EndStringInside(char* text, std::size_t length) {
  text[-1] = static_cast<char>(std::min<std::size_t>(length, kLongString));
  text[length] = '\0';
  return text;
}

// Returns true for white space.
constexpr bool IsXmlSpace(char c) {
  return c == ' ' || (c >= '\t' && c <= '\r');
}
// Returns true if the string is empty or has white space only.
bool IsBlank(const char* text);

}  // namespace tarn
