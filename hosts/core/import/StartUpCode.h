#pragma once

#include <string>

namespace tarn::host {

// Returns true if a source in C, C++ or assembler defines what runs after a reset: a table of
// vectors in its own section, or the entry point of the start-up code. Nothing is preprocessed.
bool HasStartUpCode(const std::string& text);

}  // namespace tarn::host
