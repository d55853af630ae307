#include "project/ProjectLock.h"

#include "platform/files/Locks.h"

namespace tarn {

bool ProjectLock::Take(const std::string& projectPath) {
  // Other programs hold the lock only while they read, change and write, which takes far less.
  return TakeWithin(projectPath, std::chrono::seconds(10));
}

bool ProjectLock::TakeWithin(const std::string& projectPath,
                             std::chrono::milliseconds longestWait) {
  if (IsHeldFor(projectPath)) return true;
  Release();
  const std::string path =
      FindLockPath(files_, projectPath, projectPath, !trust_.IsWithheldFrom(projectPath));
  auto taken = WaitForLock(files_, path, LockPurpose::Edit, longestWait);
  problem_.clear();
  holder_.clear();
  if (!taken && taken.GetError().code == ErrorCode::Busy) {
    holder_ = taken.GetError().text.empty() ? "unknown process" : taken.GetError().text;
    return false;
  }
  if (!taken && !NeedsNoLock(taken.GetError())) {
    problem_ = path + " can't be locked: " + taken.GetError().text;
    return false;
  }
  if (taken) lock_ = std::move(*taken);
  heldFor_ = projectPath;
  return true;
}

void ProjectLock::Release() {
  lock_.reset();
  heldFor_.clear();
}

}  // namespace tarn
