#include "platform/automation/RunningObjects.h"

#include "platform/text/Text.h"

namespace tarn {

std::uint32_t RunningObjectTable::RegisterActiveObject(std::string_view classId,
                                                       IDispatch* object) {
  const std::lock_guard guard(lock_);
  do {
    ++lastToken_;
  } while (lastToken_ == 0 || entries_.contains(lastToken_));
  entries_.emplace(lastToken_, Entry{std::string(classId), object});
  return lastToken_;
}

void RunningObjectTable::RevokeActiveObject(std::uint32_t token) {
  const std::lock_guard guard(lock_);
  entries_.erase(token);
}

DispatchPtr RunningObjectTable::GetActiveObject(std::string_view classId) {
  // Take the reference under the lock, so that the object cannot be revoked in between.
  const std::lock_guard guard(lock_);
  for (auto entry = entries_.rbegin(); entry != entries_.rend(); ++entry) {
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
