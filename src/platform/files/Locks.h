#pragma once

#include <chrono>
#include <memory>
#include <string>

#include "platform/files/FileSystem.h"

namespace tarn {

// Takes the lock as soon as it is free. Fails like FileSystem::TryLock, with Busy after
// `longestWait`; zero tries once. Blocks the calling thread.
Result<std::unique_ptr<FileLock>> WaitForLock(FileSystem& files, const std::string& path,
                                              LockPurpose purpose,
                                              std::chrono::milliseconds longestWait);

// The lock file of a project or application file: beside the file that links lead to, so that all
// of its names have one lock. If that is outside the folder of the project and `mayLeave` is false,
// it is beside `file` itself; empty if that is outside, too. All paths are absolute.
std::string FindLockPath(FileSystem& files, const std::string& projectPath, const std::string& file,
                         bool mayLeave);

}  // namespace tarn
