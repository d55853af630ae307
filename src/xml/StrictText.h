#pragma once

#include <cstddef>
#include <string>
#include <string_view>

// Texts that must come through a conforming XML reader as well as through this system's own, which
// knows no references but those of its table and hands all others on as they stand. So a text that
// is encoded before it gets into a tree stays encoded in the tree and in every file made of it.
namespace tarn {

// The text with the standard references for & < > and numeric ones for the vertical bar, whose own
// reference is unknown elsewhere, and for the characters of UTF-8, since files call themselves
// Latin-1. Bytes that are no UTF-8 stay. Control bytes, which no reference can stand for, become
// blanks; a tab stays. Quotes are left to whoever writes the text.
std::string EncodeStrict(std::string_view text);

// Takes the standard references back, named and numeric, the latter as UTF-8. Anything else that
// begins with & stays as it is.
std::string DecodeStrict(std::string_view text);

// Returns the position of the first "<" from `at` on that begins a tag if `text` is read as the
// text of an element, npos if there is none. One after an odd number of backslashes doesn't.
std::size_t FindBareMarkup(std::string_view text, std::size_t at);

// A whole file of the system's writer, made fit for a conforming reader: inside values and texts
// everything becomes what EncodeStrict makes of it, but for references that are standard already.
// A "<" in an element's text that no backslash protects can't be told from a tag and stays.
std::string MakeFileStrict(std::string_view file);

}  // namespace tarn
