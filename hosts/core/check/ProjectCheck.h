#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <vector>

#include "hosts/core/BuildSession.h"
#include "hosts/core/check/Finding.h"

namespace tarn::host {

class CheckScope;
class NodeCheck;
class OptionCheck;

// Checks the open project for problems that prevent a correct build, on this computer or elsewhere:
// damage, files that are missing or listed twice, undefined options, and more (FindingKind). Starts
// no process and writes nothing, but publishes nodes like a tree view does. Main thread only;
// borrows the session and the file system.
//
// Works in steps, for hosts whose windows must stay responsive:
//
//   ProjectCheck check(session, files);
//   while (!check.Continue(20ms)) { ... }
//   for (const Finding& each : check.GetFindings()) ...
class ProjectCheck {
 public:
  ProjectCheck(BuildSession& buildSession, FileSystem& fileSystem);
  ProjectCheck(const ProjectCheck&) = delete;
  ProjectCheck& operator=(const ProjectCheck&) = delete;
  ~ProjectCheck();

  // Works for about `time`; returns true as soon as the check is complete. Restarts if the project
  // was changed since the last call.
  bool Continue(std::chrono::milliseconds time);
  // The findings, by kind and then in tree order; complete after Continue has returned true.
  const std::vector<Finding>& GetFindings() const { return findings_; }

 private:
  void Begin();
  void CheckDefinitions();
  void CheckDamage();
  void CheckLeftovers();
  void Complete();

  BuildSession& session_;
  FileSystem& files_;
  std::unique_ptr<CheckScope> scope_;  // null until all options are published
  std::unique_ptr<NodeCheck> nodeCheck_;
  std::unique_ptr<OptionCheck> optionCheck_;
  std::int32_t changeCount_ = 0;  // of the project, at the start
  std::size_t next_ = 0;          // next node to check
  bool isComplete_ = false;
  std::vector<Finding> findings_;
};

}  // namespace tarn::host
