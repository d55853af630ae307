#pragma once

#include <string>

#include "xml/XmlNode.h"

namespace tarn {

// What a link of a line that is neither an error nor a warning leads to.
enum class PlaceLinks { FileOnly, WithLine };

// An element of the log tree as a line of rich text: errors and warnings as links in red and blue,
// headings bold between empty lines, all others black, and links where a file is known. A line of
// the host's own, which has its text as its value, is a plain one.
//
// Of the text only backslashes are escaped; its braces go in as they are (see ReadRichText).
std::string MakeLogRichText(const CXmlNode& message, PlaceLinks places = PlaceLinks::FileOnly);

}  // namespace tarn
