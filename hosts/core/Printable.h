#pragma once

#include <cstddef>
#include <string>
#include <string_view>

// Makes text harmless to a terminal. Control characters (C0, DEL, U+0080 to U+009F, also as single
// bytes) and bidirectional controls (U+202A to U+202E, U+2066 to U+2069) are replaced; all other
// bytes are unchanged. Every function is idempotent.
namespace tarn::host {

// Returns the text as one line with such characters written as "\x1b" or "\u202e". Tabs are
// unchanged.
std::string Printable(std::string_view text);
// Like Printable(), but keeps line breaks.
std::string PrintableLines(std::string_view text);
// Returns a JSON document with the same meaning.
std::string PrintableJson(std::string_view text);
// Returns an XML document with the same meaning.
std::string PrintableXml(std::string_view text);
// Like PrintableXml(), but also replaces all other bytes that no XML parser accepts: those that are
// not valid UTF-8, and the codes U+FFFE and U+FFFF.
std::string ValidXml(std::string_view text);
// Returns the length of the text without an incomplete character of UTF-8 at its end, for text that
// arrives in chunks.
std::size_t WholeCharacters(std::string_view text);

}  // namespace tarn::host
