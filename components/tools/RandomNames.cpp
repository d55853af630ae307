#include "components/tools/RandomNames.h"

#include <map>

#include "platform/text/Text.h"

namespace tarn::tools {

namespace {

constexpr char kAny = '?';

bool IsLetterOrDigit(char c) {
  return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool Matches(std::string_view text, std::string_view pattern) {
  if (text.size() < pattern.size()) return false;
  for (std::size_t i = 0; i < pattern.size(); ++i) {
    if (pattern[i] == kAny ? !IsLetterOrDigit(text[i]) : text[i] != pattern[i]) return false;
  }
  return true;
}

// Returns the number padded to `width` digits, or its last digits if it is longer.
std::string Padded(std::size_t number, std::size_t width) {
  std::string digits = std::to_string(number);
  if (digits.size() > width) return digits.substr(digits.size() - width);
  return std::string(width - digits.size(), '0') + digits;
}

}  // namespace

bool ReplaceRandomNames(std::string& text, const std::vector<std::string>& patterns) {
  std::map<std::string, std::size_t> numbers;  // by random part, in the order of the patterns
  bool hasReplaced = false;
  for (const std::string& pattern : patterns) {
    const std::size_t lead = pattern.find(kAny);
    if (lead == pattern.npos || lead == 0) continue;
    const std::string_view start = std::string_view(pattern).substr(0, lead);
    const std::size_t end = pattern.find_last_of(kAny) + 1;
    for (std::size_t at = text.find(start); at != text.npos; at = text.find(start, at + lead)) {
      if (!Matches(std::string_view(text).substr(at), pattern)) continue;
      const std::string random = text.substr(at + lead, end - lead);
      const std::size_t number = numbers.try_emplace(random, numbers.size() + 1).first->second;
      text.replace(at + lead, end - lead, Padded(number, end - lead));
      hasReplaced = true;
    }
  }
  return hasReplaced;
}

}  // namespace tarn::tools
