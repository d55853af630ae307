#include "patterns/SourceText.h"

#include <algorithm>

namespace tarn {

namespace {

bool IsWordCharacter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
}

// Returns the length of a backslash and the line end after it, 0 if there is none.
std::size_t SpliceAt(std::string_view text, std::size_t at) {
  if (text.substr(at, 2) == "\\\n") return 2;
  return text.substr(at, 3) == "\\\r\n" ? 3 : 0;
}

}  // namespace

std::string JoinLines(std::string_view text) {
  std::string joined;
  joined.reserve(text.size());
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t splice = text[at] == '\\' ? SpliceAt(text, at) : 0;
    if (splice == 0) joined += text[at];
    at += std::max<std::size_t>(splice, 1);
  }
  return joined;
}

std::string WithoutComments(std::string_view text) {
  std::string plain;
  plain.reserve(text.size());
  char quote = '\0';
  for (std::size_t at = 0; at < text.size(); ++at) {
    const char c = text[at];
    if (quote == '\0' && text.substr(at, 2) == "/*") {
      const std::size_t end = text.find("*/", at + 2);
      plain += ' ';
      if (end == text.npos) break;
      at = end + 1;
      continue;
    }
    const bool isEscaped = at > 0 && text[at - 1] == '\\';
    if (c == '\n') {
      quote = '\0';
    } else if (c == '"' && !isEscaped) {
      quote = quote == '"' ? '\0' : '"';
    }
    plain += c;
  }
  return plain;
}

void SkipSpace(std::string_view& line) {
  while (!line.empty() && (line.front() == ' ' || line.front() == '\t')) line.remove_prefix(1);
}

std::string_view TakeWord(std::string_view& line) {
  std::size_t length = 0;
  while (length < line.size() && IsWordCharacter(line[length])) ++length;
  const std::string_view word = line.substr(0, length);
  line.remove_prefix(length);
  return word;
}

}  // namespace tarn
