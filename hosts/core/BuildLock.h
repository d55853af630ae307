#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "hosts/core/ServerDrivers.h"
#include "platform/files/FileSystem.h"

namespace tarn::host {

// Returns true if this command runs tools of the project, or removes their outputs.
bool StartsTools(std::uint32_t command);

// Prevents other processes from building in the same project at the same time, or in a different
// project that shares an application with it. Folders without write permission are not locked. Not
// thread-safe.
class BuildLock {
 public:
  BuildLock(FileSystem& fileSystem, InspectorDriver& inspectorDriver)
      : files_(fileSystem), inspector_(inspectorDriver) {}

  // Tries to take the lock. Returns false if another process holds it or a part of it; GetHolder()
  // then names that process. Also returns false, with GetProblem() set, if no process can have
  // it, as if something other than a lock file is in its place: a wait is pointless then. Pass
  // `mayLeave` = false for an untrusted project: nothing may be written outside its folder, so
  // applications there are not locked.
  bool Try(const std::string& projectPath, bool mayLeave);
  void Release();
  bool IsHeld() const { return !held_.empty(); }
  // Call this after a different project was opened: the next Try() queries its applications again.
  void ClearPaths() { paths_.clear(); }
  const std::string& GetHolder() const { return holder_; }
  const std::string& GetProblem() const { return problem_; }

 private:
  std::vector<std::string> FindPaths(const std::string& projectPath, bool mayLeave);

  FileSystem& files_;
  InspectorDriver& inspector_;
  std::vector<std::unique_ptr<FileLock>> held_;  // empty: not locked
  std::vector<std::string> paths_;               // set by the first Try
  std::string holder_;
  std::string problem_;
};

}  // namespace tarn::host
