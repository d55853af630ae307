#include "components/tools/MessageRules.h"

#include <array>

namespace tarn::tools {

namespace {

constexpr std::array<TemplateKeyword, 4> kKeywords{{
    {"SPECFILE", R"(([^ :<{-][^:]*(:[0-9]*:?[^ 0-9:][^:]*)*))", 2, &LineFields::file},
    {"SPECERROR", "([A-Za-z ]*(error|Error|ERROR|warning|Warning|WARNING)[ 0-9]*)", 2,
     &LineFields::type},
    {"SPECLINE", "([0-9]+)", 1, &LineFields::line},
    {"SPECMESSAGE", "*(.*)", 1, &LineFields::message},
}};

}  // namespace

const TemplateLanguage kMessageTemplates{kKeywords, true};

std::optional<MessageRules::Effect> MessageRules::Recognise(const std::string& line,
                                                            ToolLine& found) const {
  const std::lock_guard guard(lock_);
  for (MessageRule& rule : rules_) {
    if (rule.with && !rule.with->Match(line.c_str())) continue;
    if (!rule.shape.Recognise(line, found)) continue;
    if (rule.kind) found.kind = *rule.kind;
    return Effect{rule.folder, rule.failing};
  }
  return std::nullopt;
}

}  // namespace tarn::tools
