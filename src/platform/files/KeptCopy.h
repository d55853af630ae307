#pragma once

#include <string>
#include <string_view>

#include "platform/files/FileSystem.h"

namespace tarn {

// Saves `bytes` in the first of path + suffix, path + suffix + "2", ... that does not exist yet;
// stops without writing at a file that already has the same content. Sets `copy` to that name, also
// on error.
Status KeepCopy(FileSystem& files, const std::string& path, std::string_view bytes,
                const std::string& suffix, std::string& copy);

}  // namespace tarn
