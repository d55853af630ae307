#pragma once

#include <sys/stat.h>

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "platform/files/posix/PosixError.h"

namespace tarn::posix {

// LRU cache of a few open folders that makes stat() of many files cheaper. A folder that several
// files were examined in is opened, and the next files are resolved relative to its handle with
// fstatat(): resolving the path component by component is most of the cost for a project at a
// typical depth. A renamed folder is not noticed, so a table must live only for one pass over some
// files.
//
// Not thread-safe.
class FolderHandles {
 public:
  // Like the system call: returns its result, and sets errno on error.
  int Stat(const char* path, struct stat& info);

 private:
  // Opening a folder costs about as much as it saves for a few files.
  static constexpr std::uint32_t kFilesToOpen = 6;

  struct Folder {
    std::string path;
    Descriptor handle;
    std::uint32_t files = 0;  // files examined in the folder
    std::uint64_t lastUse = 0;
  };

  Folder& FolderAt(std::string_view path);

  std::array<Folder, 4> folders_;  // sources, outputs and headers alternate
  std::uint64_t uses_ = 0;
};

}  // namespace tarn::posix
