#pragma once

#include <string>
#include <string_view>

// Forms of text that can do nothing to a terminal. Control characters (C0, DEL, U+0080 to U+009F,
// also as single bytes) and those that turn the direction of writing (U+202A to U+202E, U+2066 to
// U+2069) are replaced; all other bytes stay. Each form maps its own result to itself.
namespace tarn::host {

// One line: "\x1b" and "\u202e" stand for such characters. Tabs stay.
std::string Printable(std::string_view text);
// Like Printable, for several lines.
std::string PrintableLines(std::string_view text);
// A JSON document with the same meaning.
std::string PrintableJson(std::string_view text);
// An XML document with the same meaning.
std::string PrintableXml(std::string_view text);

}  // namespace tarn::host
