#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "widgets/Geometry.h"
#include "widgets/TextRange.h"

namespace tarn {

// A part of a text with uniform formatting.
struct RichTextRun {
  TextRange range;
  Color color = 0;
  bool isBold = false;
  std::shared_ptr<const std::string> target;  // target of the link that it belongs to; null if none
};

struct RichText {
  std::string text;               // lines end in a newline
  std::vector<RichTextRun> runs;  // in order; they cover the whole text
};

// Parses the subset of rich text that log lines are written in: groups in braces, a colour table
// (\colortbl with \red, \green, \blue), colours (\cf), weight (\b, \b0), ends of paragraphs (\par),
// links (\field with a HYPERLINK in \fldinst, and \fldrslt), escaped backslashes and braces. Other
// control words are ignored. A text without the header "{\rtf" is plain text.
//
// Tool output inside the text may contain unescaped braces. A brace that does not open or close a
// group is a literal character: an opening brace starts a group only before a control word, and of
// the closing braces between two control words the last ones close groups. A control byte is shown
// as a space. One pass with a stack of open groups, linear in the length of the text; never fails.
RichText ReadRichText(std::string_view richText);

}  // namespace tarn
