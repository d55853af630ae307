#include "automation/ServerLock.h"

#include <atomic>

namespace tarn {

namespace {

std::atomic<std::int32_t> locks{0};

}  // namespace

void ServerLock::Hold() {
  ++locks;
}

void ServerLock::LetGo() {
  --locks;
}

std::int32_t ServerLock::Count() {
  return locks;
}

}  // namespace tarn
