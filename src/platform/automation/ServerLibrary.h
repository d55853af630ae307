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

// An entry of the library, which is loaded for it and never unloaded. May be called from any
// thread.
Result<void*> FindServerEntry(const std::string& libraryPath, const char* name);

// The result of one of the entries without arguments.
Result<std::int32_t> CallServerEntry(const std::string& libraryPath, const char* name);

// The file that this process loaded the code or data at `address` from; empty when there is none.
std::string LibraryPathOf(const void* address);

// The folder that holds the platform library, where the other libraries of the system lie too.
std::string ModuleFolder();

}  // namespace tarn
