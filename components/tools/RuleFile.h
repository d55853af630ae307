#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tarn::tools {

// The dependencies in a make rule file as compilers write it.
struct RuleFile {
  std::vector<std::string> names;  // of all rules, each once, in order, without make's escapes
  std::string problem;             // why the names can't be all of them; empty if they are
};

// Reads everything after the colons. Understands continued lines, several targets, comments and
// names with a drive. A text that is empty, has no rule, holds control characters or stops before
// the end of a line has a problem: a program that was interrupted leaves such a file. Its names are
// those found nevertheless. Time and memory are linear in the text.
RuleFile ReadRuleFile(std::string_view text);

}  // namespace tarn::tools
