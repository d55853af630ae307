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
      : files_(fileSystem), trust_(projectTrust) {}

  // Acquires the lock for the project unless it is held already, releasing one held for a different
  // project. Returns false if another process holds it, or with GetProblem() set if it can't be
  // locked for another reason, such as a symbolic link in the place of the lock file.
  bool TryTake(const std::string& projectPath) { return TakeWithin(projectPath, {}); }
  // Same, but retries for several seconds.
  bool Take(const std::string& projectPath);
  void Release();
  bool IsHeldFor(const std::string& projectPath) const { return heldFor_ == projectPath; }

  // Why no process can have the lock; empty if the last attempt succeeded or found a holder.
  const std::string& GetProblem() const { return problem_; }
  // Description of the process that held the lock at the last failure; empty if GetProblem() is the
  // reason.
  const std::string& GetHolder() const { return holder_; }

 private:
  bool TakeWithin(const std::string& projectPath, std::chrono::milliseconds longestWait);

  FileSystem& files_;
  const ProjectTrust& trust_;
  std::unique_ptr<FileLock> lock_;
  std::string heldFor_;  // empty if no lock is held
  std::string holder_;
  std::string problem_;
};

}  // namespace tarn
