#pragma once

#include <memory>
#include <string>
#include <vector>

#include "hosts/core/ServerDrivers.h"
#include "platform/files/FileSystem.h"

namespace tarn::host {

// Keeps other processes from building in a project at the same time, and in another one that has an
// application in common with it. What is in a folder that can't be written has no lock. For one
// thread.
class BuildLock {
 public:
  BuildLock(FileSystem& fileSystem, InspectorDriver& inspectorDriver)
      : files(fileSystem), inspector(inspectorDriver) {}

  // Returns false while another process holds the lock or a part of it, which GetHolder then names.
  // `mayLeave` is false for a project that is not trusted: applications outside its folder have no
  // lock then, since nothing may be written there.
  bool Try(const std::string& projectPath, bool mayLeave);
  void Release();
  // Another project is open: the next Try asks which applications it has.
  void ForgetPaths() { paths.clear(); }
  const std::string& GetHolder() const { return holder; }

 private:
  std::vector<std::string> FindPaths(const std::string& projectPath, bool mayLeave);

  FileSystem& files;
  InspectorDriver& inspector;
  std::vector<std::unique_ptr<FileLock>> held;  // empty: not locked
  std::vector<std::string> paths;               // known from the first Try on
  std::string holder;
};

}  // namespace tarn::host
