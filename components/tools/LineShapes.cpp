#include "components/tools/LineShapes.h"

#include <array>

#include "platform/paths/Paths.h"
#include "platform/text/Text.h"

namespace tarn::tools {

namespace {

struct Word {
  std::string_view text;
  Severity severity;
};

constexpr std::array<Word, 9> kWords{{
    {"fatal error", Severity::Error},
    {"internal compiler error", Severity::Error},
    {"internal error", Severity::Error},
    {"syntax error", Severity::Error},
    {"sorry, unimplemented", Severity::Error},
    {"error", Severity::Error},
    {"warning", Severity::Warning},
    {"note", Severity::Plain},
    {"info", Severity::Plain},
}};

std::size_t SkipDigits(std::string_view text, std::size_t at) {
  while (at < text.size() && IsDigit(text[at])) ++at;
  return at;
}

// The place whose file ends at the colon `colon`, if digits and a colon follow.
std::optional<LocatedLine> LocationAt(std::string_view text, std::size_t colon) {
  const std::size_t end = SkipDigits(text, colon + 1);
  if (end == colon + 1 || end >= text.size() || text[end] != ':') return std::nullopt;
  LocatedLine found{text.substr(0, colon), text.substr(colon + 1, end - colon - 1), {}};
  std::size_t behind = end + 1;
  const std::size_t column = SkipDigits(text, behind);
  if (column > behind && column < text.size() && text[column] == ':') behind = column + 1;
  found.rest = SkipBlanks(text.substr(behind));
  return found;
}

}  // namespace

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

std::string_view SkipBlanks(std::string_view text) {
  const std::size_t start = text.find_first_not_of(' ');
  return start == std::string_view::npos ? std::string_view() : text.substr(start);
}

bool Contains(std::string_view text, std::string_view part) {
  return text.find(part) != std::string_view::npos;
}

std::optional<Judgement> Judge(std::string_view text) {
  for (const Word& word : kWords) {
    if (!StartsWithNoCase(text, word.text)) continue;
    std::size_t at = word.text.size();
    if (at < text.size() && text[at] == ' ') at = SkipDigits(text, at + 1);
    if (at >= text.size() || text[at] != ':') continue;
    return Judgement{word.severity, SkipBlanks(text.substr(at + 1))};
  }
  return std::nullopt;
}

std::optional<LocatedLine> FindLocation(std::string_view text) {
  std::optional<LocatedLine> first;
  std::size_t at = HasDrive(text) ? 2 : 1;
  // A handful of colons is all that a place can lie behind; hostile lines hold thousands.
  for (int tries = 0; tries < 16; ++tries) {
    const std::size_t colon = text.find(':', at);
    if (colon == std::string_view::npos) break;
    if (const auto found = LocationAt(text, colon)) {
      if (Judge(found->rest)) return found;
      if (!first) first = found;
    }
    at = colon + 1;
  }
  return first;
}

bool IsPlaceholder(std::string_view file) {
  return file.empty() || file.front() == '<' || file.front() == '{' || file == "-";
}

void SetPlace(ToolMessage& message, std::string_view file, std::string_view line) {
  if (IsPlaceholder(file)) return;
  message.file = file;
  message.line = line;
}

void SetJudgement(ToolMessage& message, const Judgement& judgement) {
  message.severity = judgement.severity;
  if (judgement.severity != Severity::Plain) message.content = judgement.content;
}

}  // namespace tarn::tools
