#pragma once

#include <chrono>
#include <memory>
#include <string>

#include "platform/files/FileSystem.h"
#include "project/ProjectTrust.h"

namespace tarn {

// Exclusive right of one process to change the files of a project. Ends with the process. A
// project whose folder is missing or can't be written is used without a lock. Borrows everything;
// main thread only.
class ProjectLock {
 public:
  ProjectLock(FileSystem& fileSystem, const ProjectTrust& projectTrust)
      : files(fileSystem), trust(projectTrust) {}

  // Acquires the lock for the project unless it is held already, releasing one held for a different
  // project. Returns false if another process holds it, or with GetProblem() set if it can't be
  // locked for another reason, such as a symbolic link in the place of the lock file.
  bool TryTake(const std::string& projectPath) { return TakeWithin(projectPath, {}); }
  // Same, but retries for several seconds.
  bool Take(const std::string& projectPath);
  void Release();
  bool IsHeldFor(const std::string& projectPath) const { return heldFor == projectPath; }

  // Why no process can have the lock; empty if the last attempt succeeded or found a holder.
  const std::string& GetProblem() const { return problem; }
  // Description of the process that held the lock at the last failure; empty if GetProblem() is the
  // reason.
  const std::string& GetHolder() const { return holder; }

 private:
  bool TakeWithin(const std::string& projectPath, std::chrono::milliseconds longestWait);

  FileSystem& files;
  const ProjectTrust& trust;
  std::unique_ptr<FileLock> lock;
  std::string heldFor;  // empty if no lock is held
  std::string holder;
  std::string problem;
};

}  // namespace tarn
