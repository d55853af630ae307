#include "platform/files/ProjectFolder.h"

#include "platform/paths/Paths.h"

namespace tarn {

namespace {

// Like LeadsInto(), for a folder without symbolic links in its path.
bool LeadsIntoReal(FileSystem& files, const std::string& root, const std::string& path) {
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

}  // namespace

bool LeadsInto(FileSystem& files, const std::string& folder, const std::string& path) {
  return LeadsIntoReal(files, files.ResolveLinks(folder), path);
}

ProjectFolder::ProjectFolder(FileSystem& fileSystem, const std::string& projectPath)
    : files_(fileSystem), root_(fileSystem.ResolveLinks(FolderOf(projectPath))) {}

bool ProjectFolder::Holds(const std::string& path) const {
  return LeadsIntoReal(files_, root_, path);
}

std::string ProjectFolder::DescribeWayOut(const std::string& path) const {
  const std::string whole = files_.Canonical(path);
  for (std::size_t end = whole.find(kSeparator, 1);; end = whole.find(kSeparator, end + 1)) {
    const std::string there = whole.substr(0, end);
    if (files_.ExamineLink(there) && !Holds(there) && Holds(FolderOf(there))) {
      return "the link " + there + " leads to " + files_.ReadLink(there);
    }
    if (end == whole.npos) return {};
  }
}

std::string ProjectFolder::WhyOutside(const std::string& path) const {
  if (Holds(path)) return {};
  const std::string wayOut = DescribeWayOut(path);
  return (wayOut.empty() ? "it is" : wayOut + ", which is") + " outside the folder of the project";
}

}  // namespace tarn
