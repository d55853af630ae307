#pragma once

#include <string>

#include "platform/files/FileSystem.h"

namespace tarn {

// Like RelativeDiskPath(), but correct with symbolic links: the OS finds the same file by the
// result, since it contains no ".." whose textual parent differs from the real one. `folder` and
// `path` are absolute.
//
// Example, with /link leading to /real/app: from /link to /link/../lib/x.c it is "..\lib\x.c"; from
// /link to /real/lib/x.c too, since "..\real\lib\x.c" would lead from /real/app to /real/real.
// Queries the disk only if the path is outside of the folder or contains "..".
std::string RelativeNameOnDisk(FileSystem& files, const std::string& folder,
                               const std::string& path);

}  // namespace tarn
