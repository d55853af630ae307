#include "components/tools/XmlAttributes.h"

namespace tarn::tools {

namespace {

// Returns true if the text ends in a backslash that escapes the next character.
bool ProtectsNext(std::string_view text) {
  std::size_t count = 0;
  while (count < text.size() && text[text.size() - 1 - count] == '\\') ++count;
  return count % 2 == 1;
}

// A reader converts a line ending to a space or drops it, and a zero byte ends the text.
bool IsUnsafe(char c) {
  return c == '\0' || c == '\r' || c == '\n';
}

std::string Attribute(std::string_view name, std::string_view value, char guard) {
  std::string text = " ";
  text.append(name).append("=\"");
  for (const char c : value) {
    if (c == '"') {
      text += "&quot;";
    } else {
      text += IsUnsafe(c) ? ' ' : c;
    }
  }
  if (ProtectsNext(value)) text += guard;
  return text + '"';
}

}  // namespace

std::string XmlAttribute(std::string_view name, std::string_view value) {
  return Attribute(name, value, ' ');
}

std::string XmlPathAttribute(std::string_view name, std::string_view path) {
  return Attribute(name, path, '\\');
}

std::string XmlContent(std::string_view text) {
  std::string content;
  for (const char c : text) {
    if (c == '<') {
      content += "&lt;";
    } else {
      content += IsUnsafe(c) ? ' ' : c;
    }
  }
  if (ProtectsNext(text)) content += ' ';
  return content;
}

}  // namespace tarn::tools
