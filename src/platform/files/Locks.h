#pragma once

#include <chrono>
#include <memory>
#include <string>

#include "platform/files/FileSystem.h"

namespace tarn {

// Takes the lock, waiting up to `longestWait` for it (zero tries once). Fails like
// FileSystem::TryLock(), with Busy on timeout. Blocks the calling thread.
Result<std::unique_ptr<FileLock>> WaitForLock(FileSystem& files, const std::string& path,
                                              LockPurpose purpose,
                                              std::chrono::milliseconds longestWait);

// Path of the lock file of a project or application file: next to the file that symbolic links
// resolve to, so that all names of a file share one lock. If that location is outside the project
// folder and `mayLeave` is false, the lock is next to `file` itself. Returns an empty string if
// that is outside, too. All paths are absolute.
std::string FindLockPath(FileSystem& files, const std::string& projectPath, const std::string& file,
                         bool mayLeave);

// Returns true if the lock can't be taken because there is nothing to protect: the folder is
// missing or can't be written.
bool NeedsNoLock(const Error& error);

}  // namespace tarn
