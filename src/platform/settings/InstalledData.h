#pragma once

#include <string>

#include "platform/files/FileSystem.h"

namespace tarn {

// Where the installation's data lies for whoever isn't told it, with a separator at its end: the
// folder above this library's, or, when that has no folder "config", where the installation rules
// put the data.
std::string InstalledDataFolder(FileSystem& files);

}  // namespace tarn
