#pragma once

#include <span>
#include <string_view>

#include "patterns/DiagnosticPattern.h"

namespace tarn {

// Keyword between { and } in a template.
struct TemplateKeyword {
  std::string_view name;     // compared case-insensitively
  std::string_view pattern;  // the keyword's replacement
  int groups;                // groups in `pattern`; the first is the field's
  int DiagnosticFields::*field;
};

// Keywords that a kind of template supports.
struct TemplateLanguage {
  std::span<const TemplateKeyword> keywords;
  // If true, the text between keywords may have groups of its own. If false, such groups aren't
  // counted, so the fields after one are taken from the wrong group.
  bool allowsGroups = false;
};

// SPECFILE (a path with a drive), SPECERROR, SPECLINE and SPECMESSAGE. The pattern of SPECMESSAGE
// begins with a star and therefore repeats the character before it. Templates can't have additional
// groups.
extern const TemplateLanguage kToolTextTemplates;

// Returns the pattern that a template describes. The template is split like `CParser` splits,
// including quotes; tokens that aren't keywords of the language are part of the regular expression.
// If a keyword occurs twice, the later one wins. Call `IsCompiled()` on the result to check that
// the template is valid.
DiagnosticPattern PatternOfTemplate(std::string_view text, const TemplateLanguage& language);

}  // namespace tarn
