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
      FindLockPath(files, projectPath, projectPath, !trust.IsWithheldFrom(projectPath));
  auto taken = WaitForLock(files, path, LockPurpose::Edit, longestWait);
  problem.clear();
  holder.clear();
  if (!taken && taken.GetError().code == ErrorCode::Busy) {
    holder = taken.GetError().text.empty() ? "unknown process" : taken.GetError().text;
    return false;
  }
  if (!taken && !NeedsNoLock(taken.GetError())) {
    problem = path + " can't be locked: " + taken.GetError().text;
    return false;
  }
  if (taken) lock = std::move(*taken);
  heldFor = projectPath;
  return true;
}

void ProjectLock::Release() {
  lock.reset();
  heldFor.clear();
}

}  // namespace tarn
