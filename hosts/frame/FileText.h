#pragma once

#include <string>
#include <vector>

#include "platform/files/FileSystem.h"

namespace tarn::host {

// A file as a whole.
struct FileText {
  std::string path;
  std::string text;
};

// Writes all of the texts, or none: the files of a project belong together. One that holds its text
// already is left alone. If one can't be written, the others get back what they held.
Status WriteAllFiles(FileSystem& files, const std::vector<FileText>& texts);

}  // namespace tarn::host
