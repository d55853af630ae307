#include "hosts/frame/BuildLock.h"

#include <set>

#include "hosts/frame/ProjectFile.h"
#include "hosts/frame/ProjectTree.h"

namespace tarn::host {

// All or none, so that two processes never wait for each other.
bool BuildLock::Try(const std::string& projectPath) {
  if (!held.empty()) return true;
  holder.clear();
  if (paths.empty()) paths = FindPaths(projectPath);
  std::vector<std::unique_ptr<FileLock>> taken;
  for (const std::string& path : paths) {
    auto lock = files.TryLock(path, LockPurpose::Build);
    if (lock) {
      taken.push_back(std::move(*lock));
    } else if (lock.GetError().code == ErrorCode::Busy) {
      holder = lock.GetError().text;
      return false;
    }
  }
  held = std::move(taken);
  return true;
}

// In a fixed order. A file that a link leads to is locked where it is.
std::vector<std::string> BuildLock::FindPaths(const std::string& projectPath) {
  std::set<std::string> found = {LockPathOf(files.ResolveLinks(projectPath))};
  for (const ApplicationEntry& each : ListApplications(inspector)) {
    if (!each.path.empty()) found.insert(LockPathOf(files.ResolveLinks(each.path)));
  }
  return {found.begin(), found.end()};
}

void BuildLock::Release() {
  held.clear();
  paths.clear();
}

}  // namespace tarn::host
