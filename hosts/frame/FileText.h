#pragma once

#include <vector>

#include "platform/files/FileSystem.h"
#include "platform/files/FileTexts.h"

namespace tarn::host {

// Writes all of the texts, or none: the files of a project belong together. One that holds its text
// already is left alone. If one can't be written, the others get back what they held.
Status WriteAllFiles(FileSystem& files, const std::vector<FileText>& texts);

}  // namespace tarn::host
