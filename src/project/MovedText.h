#pragma once

#include <string>

#include "platform/files/FileSystem.h"

namespace tarn {

// Returns the content of an application file as adapted to a different folder. Sources that were
// moved along with it keep their paths.
std::string MoveText(FileSystem& files, const std::string& text, const std::string& from,
                     const std::string& to);

}  // namespace tarn
