#pragma once

#include <span>
#include <string_view>

#include "patterns/LineShape.h"

namespace tarn {

// A word that stands between { and } in a template.
struct TemplateKeyword {
  std::string_view name;     // compared without regard to case
  std::string_view pattern;  // what the word stands for
  int groups;                // how many the pattern opens; the first is the field's
  int LineFields::*field;
};

// The words that a kind of templates knows.
struct TemplateLanguage {
  std::span<const TemplateKeyword> keywords;
  // The text between the words may open groups of its own. Where it may not, they are not counted,
  // so fields behind one come from the wrong place.
  bool allowsGroups = false;
};

// SPECFILE (a path with a drive), SPECERROR, SPECLINE and SPECMESSAGE, whose pattern begins with a
// star and so repeats the character in front of it. Without groups of one's own.
extern const TemplateLanguage kToolTextTemplates;

// The shape that a template describes. It is split as CParser splits, quotes included; what is no
// word of the language counts as the text of a regular expression. Of a word that stands there
// twice the later one counts. IsCompiled of the result tells whether the template is good.
LineShape ShapeOfTemplate(std::string_view text, const TemplateLanguage& language);

}  // namespace tarn
