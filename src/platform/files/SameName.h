#pragma once

#include <string>

#include "platform/files/FileSystem.h"

namespace tarn {

// Returns whether both paths name the same project file: they are equal, or they differ only in
// letter case and the disk does not have a separate file for each.
bool IsSameName(FileSystem& files, const std::string& a, const std::string& b);

// Returns the path with the spelling used on disk and with the symbolic links among its folders
// resolved. A link to a file is not resolved: it is treated as a separate file.
std::string RealName(FileSystem& files, const std::string& path);

}  // namespace tarn
