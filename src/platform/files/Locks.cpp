#include "platform/files/Locks.h"

#include <thread>

#include "platform/files/ProjectFolder.h"
#include "platform/paths/Paths.h"

namespace tarn {

Result<std::unique_ptr<FileLock>> WaitForLock(FileSystem& files, const std::string& path,
                                              LockPurpose purpose,
                                              std::chrono::milliseconds longestWait) {
  constexpr std::chrono::milliseconds kBetweenTries(10);
  const auto end = std::chrono::steady_clock::now() + longestWait;
  while (true) {
    auto lock = files.TryLock(path, purpose);
    const bool isBusy = !lock && lock.GetError().code == ErrorCode::Busy;
    if (!isBusy || std::chrono::steady_clock::now() >= end) return lock;
    std::this_thread::sleep_for(kBetweenTries);
  }
}

std::string FindLockPath(FileSystem& files, const std::string& projectPath, const std::string& file,
                         bool mayLeave) {
  const ProjectFolder folder(files, projectPath);
  for (const std::string& each : {files.ResolveLinks(file), file}) {
    const std::string path = WithExtension(each, kLockExtension);
    if (mayLeave || folder.Holds(FolderOf(path))) return path;
  }
  return {};
}

bool NeedsNoLock(const Error& error) {
  return error.code == ErrorCode::ReadOnly || error.code == ErrorCode::NotFound;
}

}  // namespace tarn
