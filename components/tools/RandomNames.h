#pragma once

#include <string>
#include <vector>

namespace tarn::tools {

// Replaces what programs have made up in the names of their temporary files, so that a further run
// writes the same bytes. In a pattern such as "/cc??????.lto." each "?" stands for a letter or a
// digit. Where one matches, the characters at its "?" become a number with as many digits, which
// counts the different names from 1. Other text stays, and so does the length. Takes linear time in
// the length of `text` for each pattern. Returns whether anything was replaced.
bool ReplaceRandomNames(std::string& text, const std::vector<std::string>& patterns);

}  // namespace tarn::tools
