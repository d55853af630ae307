#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tarn::tools {

// Splits a list of quoted paths separated by commas; a comma inside quotes is part of the path, and
// unquoted names are accepted. Converts separators to those of the platform. Skips empty entries.
std::vector<std::string> SplitFileList(std::string_view list);

// Splits an option value at ";" and trims the entries. Skips empty entries.
std::vector<std::string> SplitOptionList(std::string_view list);

// Splits a command line as typed by a user: words are separated by whitespace, both kinds of quotes
// group, and a backslash escapes a quote, a backslash or a space. Nothing is expanded.
std::vector<std::string> SplitWords(std::string_view line);

// Joins words for display; words that contain whitespace or quotes are quoted.
std::string JoinWords(const std::vector<std::string>& words);

}  // namespace tarn::tools
