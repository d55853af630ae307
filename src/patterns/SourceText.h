#pragma once

#include <string>
#include <string_view>

namespace tarn {

// Translation phases that precede the preprocessing of directives.

// Joins each line that ends in a backslash with the next one.
std::string JoinLines(std::string_view text);

// Returns `text` with each comment between /* and */ replaced by a space. A comment inside a string
// that isn't closed on its line is replaced too.
std::string WithoutComments(std::string_view text);

// Removes leading spaces and tabs.
void SkipSpace(std::string_view& line);

// Removes a word of letters, digits and underscores from the start of the line and returns it.
std::string_view TakeWord(std::string_view& line);

}  // namespace tarn
