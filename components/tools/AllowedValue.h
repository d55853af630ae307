#pragma once

#include <string_view>

namespace tarn::tools {

// Values of options that an argument may contain. Options come from a project, and some programs
// interpret their arguments: as commands, as names of files to write, or as further arguments.
enum class AllowedValue {
  Any,
  Name,  // letters, digits and `_.+-`; starts with a letter or a digit
  // A name with ":", "," and "=", such as "usb:0123" or "net:host:23", or a device in /dev.
  Port,
  Text,  // nothing that a command language interprets: control characters and `"\'$[]{};` and "`"
};

// Returns true for an empty value, too.
bool IsAllowed(AllowedValue allowed, std::string_view value);
// Returns what is allowed, for a message: "letters, digits and _ . + -".
std::string_view DescribeAllowed(AllowedValue allowed);

}  // namespace tarn::tools
