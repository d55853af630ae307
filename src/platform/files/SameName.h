#pragma once

#include <string>

#include "platform/files/FileSystem.h"

namespace tarn {

// Returns whether a project means one file by both paths: they are equal, or differ in letter case
// alone and the disk has no file of its own for each.
bool IsSameName(FileSystem& files, const std::string& a, const std::string& b);

// The path as the disk spells it, with the symbolic links among its folders resolved. A link to a
// file is a file of its own.
std::string RealName(FileSystem& files, const std::string& path);

}  // namespace tarn
