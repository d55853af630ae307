#pragma once

#include <sys/stat.h>

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "platform/files/posix/PosixError.h"

namespace tarn::posix {

// The folders that files were looked at in last. One in which several were is held open, and the
// way to the next file starts there: the machine follows a path name by name, and for a project in
// its usual place that is most of the work. Whoever renames a folder is not noticed, so a table
// lives for one run through some files.
//
// For one thread.
class FolderHandles {
 public:
  // As the system call: the answer, with errno set when it is not 0.
  int Stat(const char* path, struct stat& info);

 private:
  // An open costs as much as it saves in some files.
  static constexpr std::uint32_t kFilesToOpen = 6;

  struct Folder {
    std::string path;
    Descriptor handle;
    std::uint32_t files = 0;  // looked at
    std::uint64_t lastUse = 0;
  };

  Folder& FolderAt(std::string_view path);

  std::array<Folder, 4> folders;  // sources, outputs and headers take turns
  std::uint64_t uses = 0;
};

}  // namespace tarn::posix
