#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tarn::tools {

// The dependencies in a dependency file: make rules as written by compilers.
struct DepFile {
  std::vector<std::string> names;  // of all rules, in order, unescaped, without duplicates
  std::string problem;             // why the names may be incomplete; empty if they are complete
};

// Parses the prerequisites of all rules. Supports line continuations, several targets, comments and
// names with a drive letter. Text that is empty, has no rule, contains control characters or ends
// in the middle of a line is a problem, because an interrupted program leaves such a file; the
// names found are returned anyway. Takes time and memory linear in the text.
DepFile ReadDepFile(std::string_view text);

}  // namespace tarn::tools
