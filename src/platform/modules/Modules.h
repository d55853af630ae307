#pragma once

#include <string>

#include "platform/Result.h"

namespace tarn {

// Loaded libraries of this process ("modules"). All functions are thread-safe.

// Returns the address of the function `name` of a library, which is loaded if necessary and never
// unloaded. Fails with ErrorCode::NotFound if the file cannot be loaded, is truncated or does not
// export the name; the error's text has the reason.
Result<void*> FindModuleEntry(const std::string& libraryPath, const char* name);

// Returns the resolved path of the file that the code or data at `address` was loaded from, or an
// empty string if it was not loaded from a file.
std::string ModulePathOf(const void* address);

// Returns the folder of the platform library, which also contains the other libraries of Tarn.
std::string ModuleFolder();

// Returns the file name of the library `name`: libNAME.so on this platform.
std::string ModuleFileName(const std::string& name);

}  // namespace tarn
