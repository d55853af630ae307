#include "components/tools/ToolPaths.h"

#include "platform/files/ExactNames.h"
#include "platform/paths/Paths.h"

namespace tarn::tools {

namespace {

std::string InSpelledFolder(FileSystem* disk, const std::string& path) {
  const std::string folder = FolderOf(path);
  const bool isFixed = IsNetworkPath(path) || folder.empty() || folder.size() == path.size();
  if (disk == nullptr || isFixed) return path;
  return JoinPath(SpelledPath(disk, folder), FileNameOf(path));
}

}  // namespace

std::string AbsolutePath(FileSystem* disk, const std::string& folder, std::string_view path) {
  if (path.empty()) return {};
  const std::string native = ToNativeSeparators(path);
  const std::string full = IsRelativePath(native) ? AddSeparator(folder) + native : native;
  return disk == nullptr ? CanonicalPath(full) : disk->Canonical(full);
}

std::string AbsolutePath(const std::string& folder, std::string_view path) {
  return AbsolutePath(nullptr, folder, path);
}

std::string SpelledPath(FileSystem* disk, const std::string& path, bool* isExact) {
  const bool isFixed = disk == nullptr || path.empty() || IsNetworkPath(path);
  std::string name = isFixed ? path : disk->NameOnDisk(path);
  const bool isFound = isFixed || name != path || disk->Exists(path);
  if (isExact != nullptr) *isExact = isFound && name == path;
  return isFound ? name : InSpelledFolder(disk, path);
}

std::vector<std::string> SpelledPaths(FileSystem* disk, std::vector<std::string> paths) {
  if (disk == nullptr) return paths;
  const std::vector<bool> isExact = AreExactFiles(*disk, paths);
  for (std::size_t i = 0; i < paths.size(); ++i) {
    if (!isExact[i]) paths[i] = SpelledPath(disk, paths[i]);
  }
  return paths;
}

std::string SpelledOutput(FileSystem* disk, const std::string& path, const std::string& folder,
                          const std::string& spelled) {
  const std::string prefix = AddSeparator(folder);
  if (path.starts_with(prefix)) {
    const std::string rest = path.substr(prefix.size());
    const bool isMapped = HasDrive(folder) && !HasDrive(spelled);
    return AddSeparator(spelled) + (isMapped ? ToNativeSeparators(rest) : rest);
  }
  return InSpelledFolder(disk, path);
}

}  // namespace tarn::tools
