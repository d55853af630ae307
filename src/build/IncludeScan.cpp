#include "build/IncludeScan.h"

#include <algorithm>
#include <array>

namespace tarn {

namespace {

constexpr std::array<std::string_view, 4> kDirectives = {"include", "include_next", "import",
                                                         "incbin"};

void SkipSpace(std::string_view& line) {
  while (!line.empty() && (line.front() == ' ' || line.front() == '\t')) line.remove_prefix(1);
}

std::string_view TakeWord(std::string_view& line) {
  std::size_t length = 0;
  const auto isWord = [](char c) { return (c >= 'a' && c <= 'z') || c == '_'; };
  while (length < line.size() && isWord(line[length])) ++length;
  const std::string_view word = line.substr(0, length);
  line.remove_prefix(length);
  return word;
}

std::string_view NameIn(std::string_view line) {
  SkipSpace(line);
  if (line.empty() || (line.front() != '#' && line.front() != '.')) return {};
  line.remove_prefix(1);
  SkipSpace(line);
  const std::string_view word = TakeWord(line);
  if (std::find(kDirectives.begin(), kDirectives.end(), word) == kDirectives.end()) return {};
  SkipSpace(line);
  if (line.empty() || (line.front() != '"' && line.front() != '<')) return {};
  const std::size_t end = line.find(line.front() == '<' ? '>' : '"', 1);
  return end == line.npos ? std::string_view() : line.substr(1, end - 1);
}

}  // namespace

std::vector<std::string> FindIncludes(std::string_view text) {
  std::vector<std::string> names;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    const std::string_view name = NameIn(text.substr(0, end));
    if (!name.empty() && std::find(names.begin(), names.end(), name) == names.end()) {
      names.emplace_back(name);
    }
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return names;
}

}  // namespace tarn
