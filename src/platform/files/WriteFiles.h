#pragma once

#include <span>
#include <string>
#include <string_view>

#include "platform/Result.h"

namespace tarn {

class FileSystem;

// What a file is to hold.
struct FileBytes {
  std::string path;
  std::string_view bytes;  // borrowed
};

// FileSystem::WriteFiles for a disk that can only write one file after the other: if one fails, the
// others get back what they held. On a full disk that may fail as well; the error says so then.
Status WriteOneByOne(FileSystem& files, std::span<const FileBytes> list);

}  // namespace tarn
