#pragma once

#include <string>

namespace tarn::host {

// Returns a symbol's name as in the source: C++ names without the compiler's encoding of types.
// Other names, and very long ones, are unchanged.
std::string ReadableSymbol(const std::string& name);

}  // namespace tarn::host
