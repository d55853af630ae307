#pragma once

#include <string>
#include <utility>
#include <vector>

#include "platform/files/FileSystem.h"
#include "xml/XmlNode.h"

namespace tarn {

// Sources of the application that are one file under two names, which a link to a folder gives it:
// the first name in document order and each further one. A file that is listed twice under one name
// is not among them. Examines the disk only for names whose last part occurs again.
std::vector<std::pair<std::string, std::string>> FindSameFiles(FileSystem& files,
                                                               const CXmlNode& application);

}  // namespace tarn
