#include "platform/automation/RunningObjects.h"

#include "platform/text/Text.h"

namespace tarn {

std::uint32_t RunningObjectTable::RegisterActiveObject(std::string_view classId,
                                                       IDispatch* object) {
  const std::lock_guard guard(lock);
  do {
    ++lastToken;
  } while (lastToken == 0 || entries.contains(lastToken));
  entries.emplace(lastToken, Entry{std::string(classId), object});
  return lastToken;
}

void RunningObjectTable::RevokeActiveObject(std::uint32_t token) {
  const std::lock_guard guard(lock);
  entries.erase(token);
}

DispatchPtr RunningObjectTable::GetActiveObject(std::string_view classId) {
  // Take the reference under the lock, so that the object cannot be revoked in between.
  const std::lock_guard guard(lock);
  for (auto entry = entries.rbegin(); entry != entries.rend(); ++entry) {
    if (EqualNoCase(entry->second.classId, classId)) return DispatchPtr(entry->second.object);
  }
  return {};
}

RunningObjectTable& RunningObjectTable::Native() {
  // Never destroyed: objects that outlive main still revoke themselves.
  static auto* const table = new RunningObjectTable;
  return *table;
}

}  // namespace tarn
