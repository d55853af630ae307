#pragma once

#include <memory>
#include <string>

#include "platform/files/FileSystem.h"

namespace tarn::posix {

// Creates the lock file `name` and takes an exclusive lock on it, which the kernel releases when
// the process dies. The file contains the process that held it last and is never removed: creating
// and removing it would change the folder's modification time with each build. Fails with Busy,
// with the holder in the error's text, while another process or object holds it. Never follows a
// symbolic link. All who can write the folder can take the lock.
Result<std::unique_ptr<FileLock>> TryLockFile(const std::string& name, LockPurpose purpose);

}  // namespace tarn::posix
