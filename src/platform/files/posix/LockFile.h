#pragma once

#include <memory>
#include <string>

#include "platform/files/FileSystem.h"

namespace tarn::posix {

// Creates the lock file `name` and takes an exclusive flock on it, which the kernel releases when
// the process dies. The file names the process that held it last, and stays: making and removing it
// would change the folder with each build. Fails with Busy, the holder as the error's text, while
// another process holds it. Never follows a symbolic link.
Result<std::unique_ptr<FileLock>> TryLockFile(const std::string& name, LockPurpose purpose);

}  // namespace tarn::posix
