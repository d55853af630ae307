#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tarn {

// Names in the include directives of a source in C, C++ or assembler, each once: what is written in
// quotes or angle brackets after "include", "include_next", "import", "embed", ".include" or
// ".incbin", also within a string, and in a test such as "__has_include(...)". Comments, continued
// lines and a byte order mark don't hide a directive. Directives that the preprocessor would skip
// are included, names that a macro yields are not.
std::vector<std::string> FindIncludes(std::string_view text);

// Names that a linker script reads further files by, each once: after INCLUDE, and in INPUT(...)
// and GROUP(...), where "-lNAME" stands for a library.
std::vector<std::string> FindScriptInputs(std::string_view text);

}  // namespace tarn
