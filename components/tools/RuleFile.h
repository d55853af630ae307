#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tarn::tools {

// The dependencies in a make rule file such as compilers leave: everything behind the colons, of
// all rules, each name once, in order, with make's escapes taken off. Understands continued lines,
// several targets, comments and names with a drive. Never fails: what is no rule gives no name.
std::vector<std::string> ReadRuleFile(std::string_view text);

}  // namespace tarn::tools
