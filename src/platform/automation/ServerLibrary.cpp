#include "platform/automation/ServerLibrary.h"

#include "platform/modules/Modules.h"

namespace tarn {

Result<std::int32_t> CallServerEntry(const std::string& libraryPath, const char* name) {
  const Result<void*> entry = FindModuleEntry(libraryPath, name);
  if (!entry) return entry.GetError();
  return reinterpret_cast<PlainServerEntry*>(*entry)();
}

}  // namespace tarn
