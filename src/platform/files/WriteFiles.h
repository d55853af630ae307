#pragma once

#include <span>
#include <string>
#include <string_view>

#include "platform/Result.h"

namespace tarn {

class FileSystem;

// Path and new content of a file to be written.
struct FileBytes {
  std::string path;
  std::string_view bytes;  // borrowed
};

// Implements FileSystem::WriteFiles() by writing one file after the other. If one fails, the files
// before it get their old content back. On a full disk that may fail as well; the error then says
// so.
Status WriteOneByOne(FileSystem& files, std::span<const FileBytes> list);

}  // namespace tarn
