#include "hosts/core/BuildLock.h"

#include <tarn/commands.h>

#include <algorithm>
#include <array>
#include <set>

#include "hosts/core/ProjectTree.h"
#include "platform/files/Locks.h"

namespace tarn::host {

bool StartsTools(std::uint32_t command) {
  constexpr std::array kBuildCommands = {TARN_CMD_REBUILD_ALL,    TARN_CMD_BUILD_ALL,
                                         TARN_CMD_CLEAN_ALL,      TARN_CMD_REBUILD_NODE,
                                         TARN_CMD_BUILD_NODE,     TARN_CMD_CLEAN_NODE,
                                         TARN_CMD_TRANSLATE_NODE, TARN_CMD_BUILD_APPLICATION};
  const bool isTool = command >= TARN_CMD_FIRST_TOOL && command <= TARN_CMD_LAST_TOOL;
  return isTool || std::ranges::find(kBuildCommands, command) != kBuildCommands.end();
}

// Takes all locks or none, so that two processes can't deadlock.
bool BuildLock::Try(const std::string& projectPath, bool mayLeave) {
  if (!held_.empty()) return true;
  holder_.clear();
  problem_.clear();
  if (paths_.empty()) paths_ = FindPaths(projectPath, mayLeave);
  std::vector<std::unique_ptr<FileLock>> taken;
  for (const std::string& path : paths_) {
    auto lock = files_.TryLock(path, LockPurpose::Build);
    if (lock) {
      taken.push_back(std::move(*lock));
    } else if (lock.GetError().code == ErrorCode::Busy) {
      holder_ = lock.GetError().text;
      return false;
    } else if (!NeedsNoLock(lock.GetError())) {
      problem_ = path + " can't be locked: " + lock.GetError().text;
      return false;
    }
  }
  held_ = std::move(taken);
  return true;
}

// Returns the paths in a fixed order, so that all processes lock in the same order.
std::vector<std::string> BuildLock::FindPaths(const std::string& projectPath, bool mayLeave) {
  std::set<std::string> found = {FindLockPath(files_, projectPath, projectPath, mayLeave)};
  for (const ApplicationEntry& each : ListApplications(inspector_)) {
    if (!each.path.empty()) found.insert(FindLockPath(files_, projectPath, each.path, mayLeave));
  }
  found.erase(std::string());
  return {found.begin(), found.end()};
}

void BuildLock::Release() {
  held_.clear();
  paths_.clear();
}

}  // namespace tarn::host
