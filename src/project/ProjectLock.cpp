#include "project/ProjectLock.h"

#include <chrono>
#include <thread>

#include "platform/paths/Paths.h"

namespace tarn {

namespace {

// Other programs hold the right while they read, change and write, which takes far less.
constexpr std::chrono::seconds kLongestWait(10);
constexpr std::chrono::milliseconds kBetweenTries(10);

}  // namespace

bool ProjectLock::TryTake(const std::string& projectPath) {
  if (IsHeldFor(projectPath)) return true;
  Release();
  const std::string path = WithExtension(files.ResolveLinks(projectPath), kLockExtension);
  auto taken = files.TryLock(path, LockPurpose::Edit);
  if (!taken && taken.GetError().code == ErrorCode::Busy) {
    holder = taken.GetError().text;
    return false;
  }
  problem.clear();
  if (taken) {
    lock = std::move(*taken);
  } else if (taken.GetError().code != ErrorCode::ReadOnly) {
    problem =
        path + " can't be locked, so other programs are not held back: " + taken.GetError().text;
  }
  heldFor = projectPath;
  return true;
}

bool ProjectLock::Take(const std::string& projectPath) {
  const auto end = std::chrono::steady_clock::now() + kLongestWait;
  while (!TryTake(projectPath)) {
    if (std::chrono::steady_clock::now() >= end) return false;
    std::this_thread::sleep_for(kBetweenTries);
  }
  return true;
}

void ProjectLock::Release() {
  lock.reset();
  heldFor.clear();
}

}  // namespace tarn
