#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tarn {

// Returns the names in the include directives of a C, C++ or assembler source, without duplicates:
// the quoted or bracketed name after "include", "include_next", "import", "embed", ".include" or
// ".incbin", also within a string, and in a test such as "__has_include(...)". Comments, continued
// lines and a byte order mark don't hide a directive. Directives that the preprocessor would skip
// are included; names that result from macros aren't.
std::vector<std::string> FindIncludes(std::string_view text);

// Names in a linker script, verbatim and without duplicates.
struct ScriptNames {
  // Files to read: after INCLUDE, and in INPUT(...), GROUP(...) and STARTUP(...), where "-lNAME"
  // denotes a library.
  std::vector<std::string> inputs;
  // Library search folders from SEARCH_DIR(...), in order.
  std::vector<std::string> folders;
};
ScriptNames FindScriptNames(std::string_view text);

}  // namespace tarn
