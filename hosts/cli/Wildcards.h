#pragma once

#include <string_view>

namespace tarn::host {

// Returns true if the text matches the pattern, ignoring case: * matches any bytes, ? matches one
// byte, and a pattern without either matches anywhere in the text. Backtracks only to the last *,
// so the time is O(pattern x text).
bool FitsPattern(std::string_view text, std::string_view pattern);

}  // namespace tarn::host
