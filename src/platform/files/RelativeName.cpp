#include "platform/files/RelativeName.h"

#include <algorithm>
#include <vector>

#include "platform/paths/Paths.h"
#include "platform/text/Text.h"

namespace tarn {

namespace {

bool HasParentStep(const std::string& path) {
  return FindParentStep(path) != std::string::npos;
}

// Returns whether going up `levels` levels from the folder passes through a symbolic link.
bool LeavesLink(FileSystem& files, std::string folder, std::size_t levels) {
  for (; levels > 0; --levels) {
    const std::string above = FolderOf(folder);
    if (files.Canonical(JoinPath(folder, "..")) != above) return true;
    folder = above;
  }
  return false;
}

// Computes the relative path by components, treating ".." like any other name. Returns an empty
// string if there is no result that the OS would resolve to the same file.
std::string ByComponents(FileSystem& files, const std::string& folder, const std::string& path) {
  const std::vector<std::string_view> from = Split(folder, kSeparator);
  const std::vector<std::string_view> to = Split(path, kSeparator);
  const auto [fromRest, toRest] = std::mismatch(from.begin(), from.end(), to.begin(), to.end());
  const auto levels = static_cast<std::size_t>(from.end() - fromRest);
  if (toRest == to.end() || std::find(fromRest, from.end(), "..") != from.end()) return {};
  if (LeavesLink(files, folder, levels)) return {};
  std::string relative = levels == 0 && *toRest != ".." ? ".\\" : "";
  for (std::size_t i = 0; i < levels; ++i) relative += "..\\";
  for (auto name = toRest; name != to.end(); ++name) {
    relative.append(name == toRest ? "" : "\\").append(*name);
  }
  return relative;
}

std::string ByRealNames(FileSystem& files, const std::string& folder, const std::string& path) {
  const std::string name = FileNameOf(path);
  const std::string real =
      name.empty() ? files.ResolveLinks(path) : JoinPath(files.ResolveLinks(FolderOf(path)), name);
  return RelativeDiskPath(files.ResolveLinks(folder), real);
}

}  // namespace

std::string RelativeNameOnDisk(FileSystem& files, const std::string& folder,
                               const std::string& path) {
  const std::string from = files.Canonical(folder);
  const std::string to = files.Canonical(path);
  std::string relative = RelativeDiskPath(from, to);
  if (IsRelativePath(from) || HasDrive(from) || IsNetworkPath(from)) return relative;
  const bool staysInside = !relative.starts_with("..");
  const bool keepsSteps = HasParentStep(from) || HasParentStep(to);
  if (relative.empty() || (staysInside && !keepsSteps)) return relative;
  std::string byComponents = ByComponents(files, from, to);
  return byComponents.empty() ? ByRealNames(files, from, to) : byComponents;
}

}  // namespace tarn
