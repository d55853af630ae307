#pragma once

#include <cstdint>

namespace tarn {

// What keeps the library of the server loaded: one for each object that it made, held for the
// object's whole life, and those that its class factories were asked for. May be used from any
// thread.
class ServerLock {
 public:
  ServerLock() { Hold(); }
  ServerLock(const ServerLock&) = delete;
  ServerLock& operator=(const ServerLock&) = delete;
  ~ServerLock() { LetGo(); }

  static void Hold();
  static void LetGo();
  static std::int32_t Count();
};

}  // namespace tarn
