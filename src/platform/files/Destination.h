#pragma once

#include <string>

#include "platform/files/FileSystem.h"

namespace tarn {

// Returns whether what is written to `path`, and the folders that it needs, end up in `folder` or
// below it, wherever symbolic links on the way lead. What a link to nothing leads to is not inside.
// Both paths are absolute; nothing needs to be at `path` yet.
bool LeadsInto(FileSystem& files, const std::string& folder, const std::string& path);

}  // namespace tarn
