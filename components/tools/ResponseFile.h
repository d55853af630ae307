#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace tarn::tools {

// How a program reads a file of arguments.
enum class ResponseStyle {
  None,  // it reads none
  Gnu,   // @file; blanks and quotes protected by backslashes
};

// The content of a response file for these arguments, one a line.
std::string ResponseText(ResponseStyle style, const std::vector<std::string>& arguments);

// What the arguments take up on a command line, in bytes.
std::size_t CommandLength(const std::vector<std::string>& arguments);

}  // namespace tarn::tools
