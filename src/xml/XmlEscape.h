#pragma once

#include <cstddef>
#include <string>
#include <string_view>

// Escaping of strings that must survive both a conforming XML reader and `CXmlNode::Load()`, which
// decodes only the references of its entity table and returns all others unchanged. A string that
// was encoded before it was stored in a tree therefore stays encoded in the tree and in every file
// written from it.
namespace tarn {

// Returns `text` with the standard references for & < > and numeric references for the vertical
// bar, whose own reference is unknown to other readers, and for the UTF-8 characters outside ASCII,
// since the files declare themselves as Latin-1. Bytes that aren't valid UTF-8 stay. Control bytes,
// which no reference can denote, become spaces; a tab stays. Quotes are left to the writer of the
// file.
std::string EscapeXml(std::string_view text);

// Inverse of `EscapeXml()`: decodes the standard references, named and numeric, the latter to
// UTF-8. Anything else that begins with & stays unchanged.
std::string UnescapeXml(std::string_view text);

// Returns the position of the first "<" at or after `at` that begins a tag if `text` is read as the
// text of an element, or npos if there is none. A "<" after an odd number of backslashes doesn't
// begin a tag.
std::size_t FindBareMarkup(std::string_view text, std::size_t at);

// Returns a complete file written by `CXmlNode::ToString()` in a form that a conforming XML reader
// accepts: encodes attribute values and element text like `EscapeXml()`, except for references
// that are standard already. A "<" in an element's text that no backslash protects can't be
// distinguished from a tag and stays.
std::string ToConformingXml(std::string_view file);

}  // namespace tarn
