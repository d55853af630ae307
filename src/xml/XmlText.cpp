#include "xml/XmlText.h"

#include <cstring>
#include <new>

namespace tarn {

const char* EmptyText() {
  static const char empty[] = {kTextStatic, '\0'};
  return empty + 1;
}

const char* NewText(std::string_view text) {
  text = text.substr(0, text.find('\0'));
  if (text.empty()) return EmptyText();
  char* memory = static_cast<char*>(::operator new(text.size() + 2));
  memory[0] = kTextOwn;
  std::memcpy(memory + 1, text.data(), text.size());
  memory[text.size() + 1] = '\0';
  return memory + 1;
}

void FreeText(const char* text) {
  if (text[-1] == kTextOwn) ::operator delete(const_cast<char*>(text - 1));
}

void ReplaceText(const char*& text, std::string_view newText) {
  const std::string_view old(text);
  if (old == newText) return;
  newText = newText.substr(0, newText.find('\0'));
  if (text[-1] == kTextInside && newText.size() <= old.size()) {
    char* place = const_cast<char*>(text);
    std::memmove(place, newText.data(), newText.size());
    place[newText.size()] = '\0';
    return;
  }
  const char* replaced = text;
  text = NewText(newText);
  FreeText(replaced);
}

bool IsBlank(const char* text) {
  while (IsXmlSpace(*text)) ++text;
  return *text == '\0';
}

}  // namespace tarn
