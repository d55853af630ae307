#include "platform/files/Destination.h"

#include "platform/paths/Paths.h"

namespace tarn {

bool LeadsInto(FileSystem& files, const std::string& folder, const std::string& path) {
  const std::string root = files.ResolveLinks(folder);
  std::string rest;
  std::string there = files.Canonical(path);
  while (!files.Exists(there)) {
    if (files.ExamineLink(there)) return false;
    const std::string parent = FolderOf(there);
    if (parent.empty() || parent == there) break;
    rest = rest.empty() ? FileNameOf(there) : JoinPath(FileNameOf(there), rest);
    there = parent;
  }
  const std::string real = files.ResolveLinks(there);
  const std::string target = rest.empty() ? real : JoinPath(real, rest);
  return target == root || target.starts_with(AddSeparator(root));
}

}  // namespace tarn
