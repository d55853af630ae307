#pragma once

#include <string>
#include <utility>
#include <vector>

#include "platform/files/FileSystem.h"

namespace tarn {

class CXmlNode;

// Finds sources of the application that are the same file under two names, for example through a
// link to a folder. Returns pairs of the first name in document order and one further name. Ignores
// files listed twice under the same name. Accesses the disk only for paths whose last component is
// repeated.
std::vector<std::pair<std::string, std::string>> FindSameFiles(FileSystem& files,
                                                               const CXmlNode& application);

}  // namespace tarn
