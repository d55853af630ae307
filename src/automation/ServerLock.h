#pragma once

#include <cstdint>

namespace tarn {

// Reference that keeps the server library loaded: one for each object that the library created,
// held for the object's lifetime, and those that were requested from its class factories.
// Thread-safe.
class ServerLock {
 public:
  ServerLock() { Hold(); }
  ServerLock(const ServerLock&) = delete;
  ServerLock& operator=(const ServerLock&) = delete;
  ~ServerLock() { LetGo(); }

  // Hold() and LetGo() are for locks that outlive a scope. The library may be unloaded if Count()
  // is 0.
  static void Hold();
  static void LetGo();
  static std::int32_t Count();
};

}  // namespace tarn
