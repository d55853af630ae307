// Validity of a move that the user has specified: what may become of each node of the project.

#include <algorithm>

#include "hosts/core/ProjectTemplate.h"
#include "hosts/core/Relocation.h"
#include "platform/files/SameName.h"
#include "platform/paths/Paths.h"

namespace tarn::host {

Status Relocation::CheckMove(const std::string& configurationFile) {
  const auto typeOf = [&](const std::string& path) {
    const std::string extension = ExtensionOf(path);
    const std::string bare = extension.substr(std::min<std::size_t>(1, extension.size()));
    return FindSourceType(files_, configurationFile, bare, "");
  };
  const bool isFolder = files_.IsFolder(to_);
  for (const MovedPath& each : found_) {
    const bool isOption = each.kind == MovedPath::Kind::Option;
    if (isOption || MapPath(each.oldPath, from_, to_) == each.oldPath) continue;
    const bool isFile = each.oldPath == from_;
    if (isFile && isFolder) {
      return Error{ErrorCode::NotAFile, "is a folder, not a file", to_};
    }
    if (!isFile && !isFolder) return Error{ErrorCode::NotAFile, "is not a folder", to_};
    if (isFile && (IsSameName(files_, to_, project_) || typeOf(from_) != typeOf(to_))) {
      return Error{ErrorCode::InvalidName, "is a different kind of file", to_};
    }
    if (!each.newPath.empty() && !files_.Examine(each.newPath)) {
      return Error{ErrorCode::NotAFile, "is not a regular file", each.newPath};
    }
    if (!each.newPath.empty() && IsUsed(each.file, each.newPath)) {
      return Error{ErrorCode::AlreadyExists, "is already in the project", each.newPath};
    }
  }
  return {};
}

}  // namespace tarn::host
