#include "platform/automation/ServerLibrary.h"

#include "platform/modules/Modules.h"

namespace tarn {

Result<GetClassObjectEntry*> FindClassObjectEntry(const std::string& libraryPath) {
  const Result<void*> entry = FindModuleEntry(libraryPath, "DllGetClassObject");
  if (!entry) return entry.GetError();
  return reinterpret_cast<GetClassObjectEntry*>(*entry);
}

Result<std::int32_t> CallServerEntry(const std::string& libraryPath, const char* name) {
  const Result<void*> entry = FindModuleEntry(libraryPath, name);
  if (!entry) return entry.GetError();
  return reinterpret_cast<PlainServerEntry*>(*entry)();
}

}  // namespace tarn
