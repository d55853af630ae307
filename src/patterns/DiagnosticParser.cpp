#include "patterns/DiagnosticParser.h"

#include <algorithm>
#include <string_view>

#include "patterns/CaseInsensitive.h"

namespace tarn {
namespace {

constexpr std::array<std::string_view, 4> kPathWords{"error", "warning", "erreur", "averti"};

}  // namespace

DiagnosticParser::DiagnosticParser() {
  patterns_.reserve(kBuiltInPatterns.size());
  for (const BuiltInPattern& row : kBuiltInPatterns)
    patterns_.emplace_back(row.pattern, row.fields);
}

Diagnostic DiagnosticParser::Parse(const std::string& line, DiagnosticPattern* special) {
  Diagnostic found;
  found.message = line;
  if (special == nullptr || !special->Match(line, found)) {
    std::find_if(patterns_.begin(), patterns_.end(),
                 [&](DiagnosticPattern& pattern) { return pattern.Match(line, found); });
  }
  if (!found.file.empty()) return found;
  const bool hasWord = std::any_of(kPathWords.begin(), kPathWords.end(),
                                   [&](std::string_view word) { return HasWord(line, word); });
  if (hasWord && path_.Match(line.c_str())) found.file = path_.SubString(1);
  return found;
}

}  // namespace tarn
