#include "platform/files/posix/FolderHandles.h"

#include <fcntl.h>

namespace tarn::posix {

int FolderHandles::Stat(const char* path, struct stat& info) {
  const std::string_view all(path);
  const std::size_t separator = all.rfind('/');
  const bool hasFolder = separator != all.npos && separator != 0 && separator + 1 != all.size();
  if (!hasFolder) return stat(path, &info);
  Folder& folder = FolderAt(all.substr(0, separator));
  if (++folder.files == kFilesToOpen) {
    folder.handle = Descriptor(
        Retry([&] { return open(folder.path.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC); }));
  }
  if (!folder.handle) return stat(path, &info);
  return fstatat(folder.handle.Get(), path + separator + 1, &info, 0);
}

FolderHandles::Folder& FolderHandles::FolderAt(std::string_view path) {
  Folder* oldest = folders_.data();
  for (Folder& folder : folders_) {
    if (folder.path == path) {
      folder.lastUse = ++uses_;
      return folder;
    }
    if (folder.lastUse < oldest->lastUse) oldest = &folder;
  }
  oldest->path = path;
  oldest->handle = Descriptor();
  oldest->files = 0;
  oldest->lastUse = ++uses_;
  return *oldest;
}

}  // namespace tarn::posix
