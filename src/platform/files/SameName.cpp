#include "platform/files/SameName.h"

#include "platform/paths/Paths.h"
#include "platform/text/Text.h"

namespace tarn {

bool IsSameName(FileSystem& files, const std::string& a, const std::string& b) {
  if (a == b) return true;
  if (!EqualNoCase(a, b)) return false;
  return files.NameOnDisk(a) == files.NameOnDisk(b) || !files.Exists(a) || !files.Exists(b);
}

std::string RealName(FileSystem& files, const std::string& path) {
  if (IsRelativePath(path) || HasDrive(path) || IsNetworkPath(path)) return path;
  const std::string name = files.NameOnDisk(path);
  return JoinPath(files.ResolveLinks(FolderOf(name)), FileNameOf(name));
}

}  // namespace tarn
