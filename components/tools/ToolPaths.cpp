#include "components/tools/ToolPaths.h"

#include "platform/paths/Paths.h"

namespace tarn::tools {

std::string AbsolutePath(FileSystem* disk, const std::string& folder, std::string_view path) {
  if (path.empty()) return {};
  const std::string native = ToNativeSeparators(path);
  // A letter and a colon without a separator begin a name of this machine.
  const bool isDriveless = HasDrive(native) && (native.size() == 2 || !IsSeparator(native[2]));
  const bool isRelative = IsRelativePath(native) || isDriveless;
  const std::string full = isRelative ? AddSeparator(folder) + native : native;
  return disk == nullptr ? CanonicalPath(full) : disk->Canonical(full);
}

std::string AbsolutePath(const std::string& folder, std::string_view path) {
  return AbsolutePath(nullptr, folder, path);
}

std::string SpelledPath(FileSystem* disk, const std::string& path) {
  if (disk == nullptr || path.empty() || IsNetworkPath(path)) return path;
  std::string name = disk->NameOnDisk(path);
  if (name != path || disk->Exists(path)) return name;
  return SpelledOutput(disk, path);
}

std::string SpelledOutput(FileSystem* disk, const std::string& path) {
  const std::string folder = FolderOf(path);
  const bool isFixed = IsNetworkPath(path) || folder.empty() || folder.size() == path.size();
  if (disk == nullptr || isFixed) return path;
  return JoinPath(SpelledPath(disk, folder), FileNameOf(path));
}

}  // namespace tarn::tools
