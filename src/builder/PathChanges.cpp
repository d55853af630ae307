#include "builder/PathChanges.h"

#include <algorithm>

#include "platform/paths/Paths.h"

namespace tarn {

namespace {

bool IsBelow(const std::string& path, const std::string& folder) {
  return path.size() > folder.size() && path.starts_with(folder) &&
         (folder.ends_with(kSeparator) || path[folder.size()] == kSeparator);
}

}  // namespace

bool PathChanges::MayHaveChanged(const std::string& path) {
  const std::optional<FileStatus> link = files_.ExamineLink(path);
  return (link && isDuringRun_(link->changed)) || IsFolderChanged(FolderOf(path));
}

bool PathChanges::IsFolderChanged(const std::string& folder) {
  if (const auto known = folders_.find(folder); known != folders_.end()) return known->second;
  const bool isWatched = std::any_of(roots_.begin(), roots_.end(), [&](const std::string& root) {
    return !root.empty() && (folder == root || IsBelow(folder, root));
  });
  const bool isChanged = isWatched && (IsReplaced(folder) || IsFolderChanged(FolderOf(folder)));
  return folders_[folder] = isChanged;
}

// Adding or removing an entry sets both times of a folder; renaming the folder sets only one.
bool PathChanges::IsReplaced(const std::string& folder) {
  const std::optional<FileStatus> link = files_.ExamineLink(folder);
  if (link && isDuringRun_(link->changed)) return true;
  const std::optional<FileStatus> status = files_.ExamineFolder(folder);
  if (!status || !isDuringRun_(status->changed)) return false;
  const std::int64_t modified =
      status->modifiedSeconds * 1'000'000'000 + status->modifiedNanoseconds;
  if (modified != status->changed) return true;
  return !IsBelow(output_, folder) &&
         !IsBelow(files_.ResolveLinks(output_), files_.ResolveLinks(folder));
}

}  // namespace tarn
