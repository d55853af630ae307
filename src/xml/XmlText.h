#pragma once

#include <cstddef>
#include <string_view>

// The texts that nodes and attributes hold: terminated, with one byte in front that says who frees
// them. Inside the xml folder only.
namespace tarn {

enum XmlTextOwner : char {
  kTextStatic,  // the one empty text
  kTextInside,  // lies in the memory of its node or attribute
  kTextOwn      // has memory of its own
};

const char* EmptyText();
// A text of its own; a zero byte ends `text`.
const char* NewText(std::string_view text);
void FreeText(const char* text);
// Puts a new text in the place of `text`. The new one may lie in the old one.
void ReplaceText(const char*& text, std::string_view newText);

// Empty, or white space only.
bool IsBlank(const char* text);
constexpr bool IsXmlSpace(char c) {
  return c == ' ' || (c >= '\t' && c <= '\r');
}

}  // namespace tarn
