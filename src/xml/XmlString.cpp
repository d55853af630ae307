#include "xml/XmlString.h"

#include <new>

namespace tarn {

const char* NewString(std::string_view text) {
  text = text.substr(0, text.find('\0'));
  if (text.empty()) return EmptyString();
  char* memory = static_cast<char*>(::operator new(text.size() + 2));
  memory[0] = static_cast<char>(kHeapString);
  std::memcpy(memory + 1, text.data(), text.size());
  memory[text.size() + 1] = '\0';
  return memory + 1;
}

void FreeHeapString(const char* text) {
  ::operator delete(const_cast<char*>(text - 1));
}

void AssignString(const char*& text, std::string_view newText) {
  const std::string_view old = StringView(text);
  if (old == newText) return;
  newText = newText.substr(0, newText.find('\0'));
  if (StringKindOf(text) <= kLongString && newText.size() <= old.size()) {
    char* place = const_cast<char*>(text);
    std::memmove(place, newText.data(), newText.size());
    EndStringInside(place, newText.size());
    return;
  }
  const char* replaced = text;
  text = NewString(newText);
  FreeString(replaced);
}

bool IsBlank(const char* text) {
  while (IsXmlSpace(*text)) ++text;
  return *text == '\0';
}

}  // namespace tarn
