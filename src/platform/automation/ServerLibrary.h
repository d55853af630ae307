#pragma once

#include <cstdint>
#include <string>

#include "platform/Result.h"

namespace tarn {

class IClassFactory;

// What a server library exports, each as extern "C" and with 0 for success or yes:
//   std::int32_t DllGetClassObject(const char* classId, IClassFactory** factory);
//     a factory that lives as long as the library, or another number when it has no such class
//   std::int32_t DllCanUnloadNow();
//     1 while an object or a lock is left
//   std::int32_t DllRegisterServer();
//   std::int32_t DllUnregisterServer();
//     for the scope that ClassStore::Native() is set to, which tells why it failed
// A library that is only found by its name in the module folder needs the first alone.
using GetClassObjectEntry = std::int32_t(const char* classId, IClassFactory** factory);
using PlainServerEntry = std::int32_t();

// Calls one of the entries without arguments and returns its result.
Result<std::int32_t> CallServerEntry(const std::string& libraryPath, const char* name);

}  // namespace tarn
