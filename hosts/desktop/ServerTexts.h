#pragma once

#include <string_view>

namespace tarn::host {

// Returns true if the text of the server is in the list of those that are translated; see
// Translated().
bool IsServerText(std::string_view text);

}  // namespace tarn::host
