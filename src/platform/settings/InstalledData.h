#pragma once

#include <string>

#include "platform/files/FileSystem.h"

namespace tarn {

// Default location of the installation's data, with a trailing separator: the folder above the one
// of this library or, if that has no folder "config", the data folder that the installation rules
// define.
std::string InstalledDataFolder(FileSystem& files);

}  // namespace tarn
