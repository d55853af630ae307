#include "xml/XmlString.h"

#include <new>
#include <utility>

namespace tarn {

namespace {

// Stored before a joined string and the byte of its kind.
struct JoinedHead {
  std::shared_ptr<const std::string> end;
  std::size_t length;  // of the start
};

JoinedHead& HeadOf(const char* text) {
  return *reinterpret_cast<JoinedHead*>(const_cast<char*>(text) - 1 - sizeof(JoinedHead));
}

}  // namespace

const char* NewString(std::string_view text) {
  text = text.substr(0, text.find('\0'));
  if (text.empty()) return EmptyString();
  char* memory = static_cast<char*>(::operator new(text.size() + 2));
  memory[0] = static_cast<char>(kHeapString);
  std::memcpy(memory + 1, text.data(), text.size());
  memory[text.size() + 1] = '\0';
  return memory + 1;
}

const char* NewJoinedString(std::string_view start, std::shared_ptr<const std::string> end) {
  void* const memory = ::operator new(sizeof(JoinedHead) + start.size() + 2);
  ::new (memory) JoinedHead{std::move(end), start.size()};
  char* const kind = static_cast<char*>(memory) + sizeof(JoinedHead);
  *kind = static_cast<char>(kJoinedString);
  std::memcpy(kind + 1, start.data(), start.size());
  kind[start.size() + 1] = '\0';
  return kind + 1;
}

const char* CopyJoinedString(const char* text) {
  const JoinedHead& head = HeadOf(text);
  return NewJoinedString({text, head.length}, head.end);
}

void AppendJoinedString(std::string& to, const char* text) {
  const JoinedHead& head = HeadOf(text);
  to.reserve(to.size() + head.length + head.end->size());
  to.append(text, head.length).append(*head.end);
}

void FreeHeapString(const char* text) {
  if (!IsJoined(text)) return ::operator delete(const_cast<char*>(text - 1));
  JoinedHead& head = HeadOf(text);
  head.~JoinedHead();
  ::operator delete(&head);
}

void AssignString(const char*& text, std::string_view newText) {
  const bool wasJoined = IsJoined(text);
  const std::string_view old = wasJoined ? std::string_view() : StringView(text);
  if (old == newText && !wasJoined) return;
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
