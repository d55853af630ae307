#pragma once

#include <string>
#include <string_view>

#include "platform/files/FileSystem.h"

namespace tarn {

// Writes `bytes` to the first of path + suffix, path + suffix + "2", ... that is free, or holds the
// same bytes already and is left alone. `copy` is its name, also on failure.
Status KeepCopy(FileSystem& files, const std::string& path, std::string_view bytes,
                const std::string& suffix, std::string& copy);

}  // namespace tarn
