#pragma once

#include <string>

#include "platform/files/FileSystem.h"

namespace tarn {

// Like RelativeDiskPath, but the OS finds the same file by the result: a ".." in it never follows a
// symbolic link by its letters. `folder` and `path` are absolute.
//
// Example, with /link leading to /real/app: from /link to /link/../lib/x.c it is "..\lib\x.c"; from
// /link to /real/lib/x.c too, since "..\real\lib\x.c" would lead from /real/app to /real/real.
// Queries the disk only if the path is outside of the folder or has ".." in it.
std::string RelativeNameOnDisk(FileSystem& files, const std::string& folder,
                               const std::string& path);

}  // namespace tarn
