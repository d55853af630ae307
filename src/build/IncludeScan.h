#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tarn {

// The names in the include directives of a source in C, C++ or assembler, each once: what is
// written in quotes or angle brackets on lines whose first word is "include", "include_next",
// "import" or "incbin", after an optional # or full stop. Directives that the preprocessor would
// skip are among them, names that a macro yields are not.
std::vector<std::string> FindIncludes(std::string_view text);

}  // namespace tarn
