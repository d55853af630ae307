#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "widgets/Geometry.h"
#include "widgets/TextRange.h"

namespace tarn {

// A part of a text that looks the same throughout.
struct RichTextRun {
  TextRange range;
  Color color = 0;
  bool isBold = false;
  std::shared_ptr<const std::string> target;  // of the link that it belongs to; null: of none
};

struct RichText {
  std::string text;               // lines end in a newline
  std::vector<RichTextRun> runs;  // in order, together the whole text
};

// Reads the rich text that log lines are written in: groups in braces, a colour table (\colortbl
// with \red, \green, \blue), colours (\cf), weight (\b, \b0), ends of paragraphs (\par), links
// (\field with a HYPERLINK in \fldinst, and \fldrslt), escaped backslashes and braces. Other
// control words are passed over, and text without the header "{\rtf" counts as it stands.
//
// A tool's text may bring braces of its own. One that does not open or close a group of the rich
// text is a plain character: braces open a group only in front of a control word, and of the
// closing ones between two control words the last ones are the group's. A control byte shows as a
// blank. Linear in the text, and there is nothing that it fails on.
RichText ReadRichText(std::string_view richText);

}  // namespace tarn
