#include "patterns/DiagnosticTemplate.h"

#include <algorithm>
#include <array>

#include "patterns/CaseInsensitive.h"
#include "patterns/DiagnosticParser.h"
#include "patterns/Parser.h"

namespace tarn {
namespace {

constexpr std::array<TemplateKeyword, 4> kKeywords{{
    {"SPECFILE", kPathPattern, 4, &DiagnosticFields::file},
    {"SPECERROR", "(.*)", 1, &DiagnosticFields::type},
    {"SPECLINE", "([0-9]*)", 1, &DiagnosticFields::line},
    {"SPECMESSAGE", "*(.*)", 1, &DiagnosticFields::message},
}};

// Returns the position after the set that opens at `at`. A ] directly after the opening [ or [^ is
// a member and doesn't end the set.
std::size_t EndOfSet(std::string_view text, std::size_t at) {
  std::size_t first = at + 1;
  if (first < text.size() && text[first] == '^') ++first;
  return std::min(text.find(']', first + 1), text.size() - 1) + 1;
}

// Returns the number of groups that open in a part of a pattern.
int CountGroups(std::string_view text) {
  int count = 0;
  for (std::size_t at = 0; at < text.size();) {
    if (text[at] == '(') ++count;
    if (text[at] == '[') {
      at = EndOfSet(text, at);
    } else {
      at += text[at] == '\\' ? 2 : 1;
    }
  }
  return count;
}

}  // namespace

const TemplateLanguage kToolTextTemplates{kKeywords, false};

DiagnosticPattern PatternOfTemplate(std::string_view text, const TemplateLanguage& language) {
  std::string pattern;
  DiagnosticFields fields;
  int groups = 0;
  const CParser tokens(text, "{}");
  for (int i = 0; i < tokens.GetCount(); ++i) {
    const std::string_view token = tokens.TokenView(i);
    const auto& keywords = language.keywords;
    const auto keyword = std::find_if(keywords.begin(), keywords.end(), [&](const auto& known) {
      return IsSameWord(known.name, token);
    });
    if (keyword == keywords.end()) {
      pattern += token;
      if (language.allowsGroups) groups += CountGroups(token);
    } else {
      pattern += keyword->pattern;
      fields.*keyword->field = groups + 1;
      groups += keyword->groups;
    }
  }
  return {pattern, fields};
}

}  // namespace tarn
