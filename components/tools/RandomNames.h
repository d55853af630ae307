#pragma once

#include <string>
#include <vector>

namespace tarn::tools {

// Replaces the random parts in the names of temporary files that programs generate, so that
// repeated runs write identical bytes.
//
// In a pattern such as "/cc??????.lto.", each "?" matches a letter or a digit. In each match, the
// characters at "?" are replaced with a number of the same length that counts the distinct names
// from 1. Other text and the total length don't change. Takes time linear in the length of `text`
// per pattern. Returns true if anything was replaced.
bool ReplaceRandomNames(std::string& text, const std::vector<std::string>& patterns);

}  // namespace tarn::tools
