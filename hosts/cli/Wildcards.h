#pragma once

#include <string_view>

namespace tarn::host {

// Whether the text fits the pattern, case aside: * stands for any bytes, ? for one, and a pattern
// without either is looked for anywhere in the text. At most pattern times text steps.
bool FitsPattern(std::string_view text, std::string_view pattern);

}  // namespace tarn::host
