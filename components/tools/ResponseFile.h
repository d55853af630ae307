#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace tarn::tools {

// Syntax in which a program reads a file of arguments.
enum class ResponseStyle {
  None,  // not supported
  Gnu,   // @file; whitespace and quotes escaped with backslashes
};

// Returns the content of a response file with these arguments, one per line.
std::string ResponseText(ResponseStyle style, const std::vector<std::string>& arguments);

// Returns the length of the arguments on a command line, in bytes.
std::size_t CommandLength(const std::vector<std::string>& arguments);

}  // namespace tarn::tools
