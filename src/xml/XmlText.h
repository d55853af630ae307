#pragma once

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <string_view>

// The texts that nodes and attributes hold: terminated, with one byte in front that says who frees
// them and, for all but long ones, how long they are. Inside the xml folder only.
namespace tarn {

// The byte in front of a text; any smaller number is the length of a text that lies in the memory
// of its node or attribute.
enum XmlTextMark : unsigned char {
  kTextLong = 253,   // lies in that memory as well
  kTextOwn = 254,    // has memory of its own
  kTextStatic = 255  // the one empty text
};

inline constexpr char kEmptyText[] = {static_cast<char>(kTextStatic), '\0'};
inline const char* EmptyText() {
  return kEmptyText + 1;
}
// A text of its own; a zero byte ends `text`.
const char* NewText(std::string_view text);
void FreeOwnText(const char* text);
// Puts a new text in the place of `text`. The new one may lie in the old one.
void ReplaceText(const char*& text, std::string_view newText);

inline unsigned char TextMark(const char* text) {
  return static_cast<unsigned char>(text[-1]);
}

inline void FreeText(const char* text) {
  if (TextMark(text) == kTextOwn) FreeOwnText(text);
}

inline std::string_view TextView(const char* text) {
  return {text, TextMark(text) < kTextLong ? TextMark(text) : std::strlen(text)};
}

// Marks and ends a text of that length that was written inside its node's or attribute's memory.
inline const char* EndTextInside(char* text, std::size_t length) {
  text[-1] = static_cast<char>(std::min<std::size_t>(length, kTextLong));
  text[length] = '\0';
  return text;
}

// Which bytes are white space.
constexpr bool IsXmlSpace(char c) {
  return c == ' ' || (c >= '\t' && c <= '\r');
}
// Empty, or white space only.
bool IsBlank(const char* text);

}  // namespace tarn
