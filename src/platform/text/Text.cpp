#include "platform/text/Text.h"

#include <algorithm>
#include <charconv>
#include <ctime>
#include <string>
#include <utility>

#include "platform/time/CivilTime.h"

namespace tarn {

namespace {

constexpr char Fold(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
}

constexpr bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

}  // namespace

bool EqualNoCase(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](char x, char y) { return Fold(x) == Fold(y); });
}

int CompareNoCase(std::string_view a, std::string_view b) {
  const std::size_t common = std::min(a.size(), b.size());
  for (std::size_t i = 0; i < common; ++i) {
    const int difference =
        static_cast<unsigned char>(Fold(a[i])) - static_cast<unsigned char>(Fold(b[i]));
    if (difference != 0) return difference;
  }
  return static_cast<int>(a.size() > common) - static_cast<int>(b.size() > common);
}

bool StartsWithNoCase(std::string_view text, std::string_view prefix) {
  return text.size() >= prefix.size() && EqualNoCase(text.substr(0, prefix.size()), prefix);
}

bool EndsWithNoCase(std::string_view text, std::string_view suffix) {
  return text.size() >= suffix.size() &&
         EqualNoCase(text.substr(text.size() - suffix.size()), suffix);
}

std::string FoldCase(std::string_view text) {
  std::string folded(text);
  std::transform(folded.begin(), folded.end(), folded.begin(), Fold);
  return folded;
}

bool IsSpace(char c) {
  return c == ' ' || (c >= '\t' && c <= '\r');
}

std::string_view Trim(std::string_view text) {
  while (!text.empty() && IsSpace(text.front())) text.remove_prefix(1);
  while (!text.empty() && IsSpace(text.back())) text.remove_suffix(1);
  return text;
}

std::string ReplaceAll(std::string_view text, std::string_view from, std::string_view to) {
  std::string result;
  if (from.empty()) return result.assign(text);
  std::size_t start = 0;
  for (std::size_t hit = text.find(from); hit != text.npos; hit = text.find(from, start)) {
    result.append(text, start, hit - start).append(to);
    start = hit + from.size();
  }
  return result.append(text, start, text.npos);
}

std::vector<std::string_view> Split(std::string_view text, char separator) {
  std::vector<std::string_view> pieces;
  if (text.empty()) return pieces;
  std::size_t start = 0;
  for (std::size_t hit = text.find(separator); hit != text.npos;
       hit = text.find(separator, start)) {
    pieces.push_back(text.substr(start, hit - start));
    start = hit + 1;
  }
  pieces.push_back(text.substr(start));
  return pieces;
}

std::vector<std::string> SplitLines(std::string_view text) {
  std::vector<std::string> lines;
  for (const std::string_view line : Split(text, '\n')) {
    if (!Trim(line).empty()) lines.emplace_back(Trim(line));
  }
  return lines;
}

std::vector<std::string> SplitQuotedList(std::string_view list) {
  std::vector<std::string> entries;
  for (std::size_t start = list.find('"'); start != list.npos;) {
    // A quote without a comma after it is part of the entry.
    std::size_t end = list.find("\",", start + 1);
    if (end == list.npos) end = list.rfind('"');
    if (end <= start) end = list.size();
    entries.emplace_back(list.substr(start + 1, end - start - 1));
    start = list.find('"', end + 1);
  }
  return entries;
}

std::int32_t ParseDecimal(const char* text) {
  if (text == nullptr) return 0;
  while (IsSpace(*text)) ++text;
  const bool negative = *text == '-';
  if (*text == '-' || *text == '+') ++text;
  std::uint32_t value = 0;
  for (; IsDigit(*text); ++text) value = value * 10 + static_cast<std::uint32_t>(*text - '0');
  return static_cast<std::int32_t>(negative ? 0U - value : value);
}

std::optional<std::int64_t> ParseInt64(std::string_view text) {
  while (!text.empty() && IsSpace(text.front())) text.remove_prefix(1);
  if (text.starts_with('+')) {
    text.remove_prefix(1);
    if (text.starts_with('-')) return std::nullopt;
  }
  std::int64_t value = 0;
  const auto parsed = std::from_chars(text.data(), text.data() + text.size(), value);
  if (parsed.ec != std::errc()) return std::nullopt;
  return value;
}

std::string ToDecimal(std::int64_t number) {
  return std::to_string(number);
}

std::string FormatMessageText(std::string_view format, std::span<const std::string> arguments) {
  std::string result;
  std::size_t next = 0;
  for (std::size_t i = 0; i < format.size(); ++i) {
    const char kind = format[i] == '%' && i + 1 < format.size() ? format[i + 1] : '\0';
    if (kind == '%') {
      result += '%';
    } else if (kind == 's' || kind == 'd') {
      if (next < arguments.size()) result += arguments[next];
      ++next;
    } else {
      result += format[i];
      continue;
    }
    ++i;
  }
  return result;
}

std::string FormatLocalTime(std::int64_t seconds) {
  // Cache of the last result: tools write many files in the same second, and these are displayed
  // consecutively.
  struct LastText {
    std::int64_t seconds;
    std::size_t length;
    char text[128];
  };
  static thread_local constinit LastText last = {};
  if (last.seconds == seconds && last.length > 0) return {last.text, last.length};
  const std::optional<std::tm> parts = ToLocalTime(seconds);
  if (!parts) return {};
  last.seconds = seconds;
  last.length = std::strftime(last.text, sizeof last.text, "%x %X", &*parts);
  return {last.text, last.length};
}

}  // namespace tarn
