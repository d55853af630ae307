#pragma once

#include <cstdint>
#include <map>
#include <mutex>
#include <string>
#include <string_view>

#include "platform/automation/Dispatch.h"

namespace tarn {

// Table of the running objects of this process, by class id. Entries are weak: they keep nothing
// alive, so an object must be revoked before it is destroyed. Thread-safe.
class RunningObjectTable {
 public:
  // Returns a token for RevokeActiveObject(), never 0.
  std::uint32_t RegisterActiveObject(std::string_view classId, IDispatch* object);
  // No-op for an unknown or already revoked token.
  void RevokeActiveObject(std::uint32_t token);
  // Returns an additional reference to the object of the class registered last, or null if there is
  // none.
  DispatchPtr GetActiveObject(std::string_view classId);

  // Returns the table of the process.
  static RunningObjectTable& Native();

 private:
  struct Entry {
    std::string classId;
    IDispatch* object = nullptr;
  };

  std::mutex lock_;
  std::uint32_t lastToken_ = 0;
  std::map<std::uint32_t, Entry> entries_;
};

}  // namespace tarn
