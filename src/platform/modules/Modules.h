#pragma once

#include <string>

#include "platform/Result.h"

namespace tarn {

// Loaded libraries of this process ("modules"). All functions may be called from any thread.

// Returns the address of the function `name` of a library, which is loaded for it and never
// unloaded. Fails with ErrorCode::NotFound if the file can't be loaded, is cut short or exports no
// such name; the error's text says which.
Result<void*> FindModuleEntry(const std::string& libraryPath, const char* name);

// Returns the resolved path of the file that the code or data at `address` was loaded from, or an
// empty string if it wasn't loaded from one.
std::string ModulePathOf(const void* address);

// Returns the folder of the platform library, where the system's other libraries are, too.
std::string ModuleFolder();

// Returns the file name of the library `name`: libNAME.so here.
std::string ModuleFileName(const std::string& name);

}  // namespace tarn
