#pragma once

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>

// Strings of nodes and attributes: zero-terminated, with one byte before the first character that
// stores the owner of the memory and, except for long strings, the length. For use inside the xml
// folder only.
namespace tarn {

// Values of the byte before a string. Any smaller value is the length of a string that is stored in
// the block of its node or attribute.
enum StringKind : unsigned char {
  kLongString = 252,    // stored in that block as well
  kHeapString = 253,    // allocated separately on the heap
  kJoinedString = 254,  // only the start, on the heap; the end is shared with other strings
  kStaticString = 255   // the shared empty string
};

inline constexpr char kEmptyString[] = {static_cast<char>(kStaticString), '\0'};
inline const char* EmptyString() {
  return kEmptyString + 1;
}
// Returns a heap-allocated copy of `text` up to its first zero byte. Freed by `FreeString()`.
const char* NewString(std::string_view text);
// Returns a string that consists of `start` and `end`, neither of which has a zero byte. It isn't
// contiguous: only the functions below and `FreeString()` accept it.
const char* NewJoinedString(std::string_view start, std::shared_ptr<const std::string> end);
// Returns a joined string with the same start, which shares the end.
const char* CopyJoinedString(const char* text);
void AppendJoinedString(std::string& to, const char* text);
void FreeHeapString(const char* text);
// Replaces the string `text` by a copy of `newText`, which may be a part of the old string. The old
// string may be joined.
void AssignString(const char*& text, std::string_view newText);

inline unsigned char StringKindOf(const char* text) {
  return static_cast<unsigned char>(text[-1]);
}

inline bool IsJoined(const char* text) {
  return StringKindOf(text) == kJoinedString;
}

inline void FreeString(const char* text) {
  const unsigned char kind = StringKindOf(text);
  if (kind == kHeapString || kind == kJoinedString) FreeHeapString(text);
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
