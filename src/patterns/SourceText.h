#pragma once

#include <string>
#include <string_view>

namespace tarn {

// A source as the phases before preprocessing directives leave it.

// Lines that end in a backslash are joined with the next.
std::string JoinLines(std::string_view text);

// The text with a space for each comment between /* and */. What looks like one in a string that
// isn't closed on its line is a comment.
std::string WithoutComments(std::string_view text);

// Removes what is before the next word, spaces and tabs.
void SkipSpace(std::string_view& line);

// Removes a word of letters, digits and underscores from the start of the line and returns it.
std::string_view TakeWord(std::string_view& line);

}  // namespace tarn
