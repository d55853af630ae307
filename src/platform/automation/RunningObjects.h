#pragma once

#include <cstdint>
#include <map>
#include <mutex>
#include <string>
#include <string_view>

#include "platform/automation/Dispatch.h"

namespace tarn {

// The running objects of this process, by class id. Entries are weak: they keep nothing alive, so
// whoever registers an object revokes it before its end. May be used from any thread.
class RunningObjectTable {
 public:
  // A token for Revoke, never 0.
  std::uint32_t RegisterActiveObject(std::string_view classId, IDispatch* object);
  void RevokeActiveObject(std::uint32_t token);
  // A further reference to the object registered last; null when there is none.
  DispatchPtr GetActiveObject(std::string_view classId);

  static RunningObjectTable& Native();

 private:
  struct Entry {
    std::string classId;
    IDispatch* object = nullptr;
  };

  std::mutex lock;
  std::uint32_t lastToken = 0;
  std::map<std::uint32_t, Entry> entries;
};

}  // namespace tarn
