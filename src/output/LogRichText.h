#pragma once

#include <string>

namespace tarn {

class CXmlNode;

// Target of the links in lines that are neither errors nor warnings.
enum class PlaceLinks { FileOnly, WithLine };

// Returns an element of the log tree as a line of rich text: errors and warnings as links in red
// and blue, headings in bold between empty lines, all others in black, with links where a file is
// known. A line supplied by the host, whose string is its value, is a plain one.
//
// Only backslashes are escaped in the string; braces are inserted unchanged (see ReadRichText).
std::string MakeLogRichText(const CXmlNode& message, PlaceLinks places = PlaceLinks::FileOnly);

}  // namespace tarn
