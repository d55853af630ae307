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

// What a linker script names, each once, verbatim.
struct ScriptNames {
  // Files to read: after INCLUDE, and in INPUT(...), GROUP(...) and STARTUP(...), where "-lNAME"
  // stands for a library.
  std::vector<std::string> inputs;
  // Folders to search libraries in, by SEARCH_DIR(...), in order.
  std::vector<std::string> folders;
};
ScriptNames FindScriptNames(std::string_view text);

}  // namespace tarn
