#pragma once

#include <cstdint>
#include <string>

#include "platform/Result.h"

namespace tarn {

class IClassFactory;

// Exports of a server library, each as extern "C", with 0 for success or yes:
//   std::int32_t DllGetClassObject(const char* classId, IClassFactory** factory);
//     a factory that lives as long as the library; non-zero if it has no such class
//   std::int32_t DllCanUnloadNow();
//     1 while an object or a lock exists
//   std::int32_t DllRegisterServer();
//   std::int32_t DllUnregisterServer();
//     for the scope of ClassStore::Native(), whose LastFailure() has the reason of a failure
// A library that is only found by its name in the module folder needs only the first one.
using GetClassObjectEntry = std::int32_t(const char* classId, IClassFactory** factory);
using PlainServerEntry = std::int32_t();

// Loads the library and returns its entry that creates class factories. The only place that knows
// the entry's name: where the system's own loader claims DllGetClassObject() for another signature,
// a port exports this one under another name. Fails like FindModuleEntry().
Result<GetClassObjectEntry*> FindClassObjectEntry(const std::string& libraryPath);

// Loads the library, calls one of the entry points without arguments and returns its result.
Result<std::int32_t> CallServerEntry(const std::string& libraryPath, const char* name);

}  // namespace tarn
