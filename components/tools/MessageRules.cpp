#include "components/tools/MessageRules.h"

#include <array>

namespace tarn::tools {

namespace {

constexpr std::array<TemplateKeyword, 4> kKeywords{{
    {"SPECFILE", R"(([^ :<{-][^:]*(:[0-9]*:?[^ 0-9:][^:]*)*))", 2, &DiagnosticFields::file},
    {"SPECERROR", "([A-Za-z ]*(error|Error|ERROR|warning|Warning|WARNING)[ 0-9]*)", 2,
     &DiagnosticFields::type},
    {"SPECLINE", "([0-9]+)", 1, &DiagnosticFields::line},
    {"SPECMESSAGE", "*(.*)", 1, &DiagnosticFields::message},
}};

}  // namespace

const TemplateLanguage kMessageTemplates{kKeywords, true};

std::optional<MessageRules::Effect> MessageRules::Match(const std::string& line,
                                                        Diagnostic& found) const {
  const std::lock_guard guard(lock_);
  for (MessageRule& rule : rules_) {
    if (rule.with && !rule.with->Match(line.c_str())) continue;
    if (!rule.pattern.Match(line, found)) continue;
    if (rule.kind) found.kind = *rule.kind;
    return Effect{rule.folder, rule.failing};
  }
  return std::nullopt;
}

}  // namespace tarn::tools
