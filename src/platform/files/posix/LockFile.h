#pragma once

#include <memory>
#include <string>

#include "platform/files/FileSystem.h"

namespace tarn::posix {

// Creates the lock file `name` and takes an exclusive flock on it, which the kernel releases when
// the process dies. The file names the holder's process and is removed on release. Fails with Busy,
// that process as the error's text, while another holds it. Never follows a symbolic link.
Result<std::unique_ptr<FileLock>> TryLockFile(const std::string& name);

}  // namespace tarn::posix
