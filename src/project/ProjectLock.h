#pragma once

#include <chrono>
#include <memory>
#include <string>

#include "platform/files/FileSystem.h"
#include "project/ProjectTrust.h"

namespace tarn {

// The right to change the files of one project, which one process has at a time. It goes with the
// process. A project in a folder where no lock can be made needs none. Borrows everything; host's
// thread only.
class ProjectLock {
 public:
  ProjectLock(FileSystem& fileSystem, const ProjectTrust& projectTrust)
      : files(fileSystem), trust(projectTrust) {}

  // Takes the right for the project, unless it is held already, and lets go of another one. False
  // while another process has it.
  bool TryTake(const std::string& projectPath) { return TakeWithin(projectPath, {}); }
  // Tries again until a time limit of some seconds.
  bool Take(const std::string& projectPath);
  void Release();
  bool IsHeldFor(const std::string& projectPath) const { return heldFor == projectPath; }

  // Why nothing keeps other processes from taking the right; empty if something does, and if the
  // project can't be changed here anyway.
  const std::string& GetProblem() const { return problem; }
  // The process that had it at the last failure.
  const std::string& GetHolder() const { return holder; }

 private:
  bool TakeWithin(const std::string& projectPath, std::chrono::milliseconds longestWait);

  FileSystem& files;
  const ProjectTrust& trust;
  std::unique_ptr<FileLock> lock;
  std::string heldFor;  // empty if nothing is held
  std::string holder;
  std::string problem;
};

}  // namespace tarn
