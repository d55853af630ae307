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

// Looks through the open project for what keeps it from being built as it is meant, here or on
// another machine: damage, files that are missing or listed twice, options that no definition has,
// and more (FindingKind). Starts no process and writes nothing; publishes nodes as a look at them
// does. On the session's thread; borrows the session and the disk.
//
// Done in steps, for hosts whose windows must not wait:
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

  // Goes on for about so long; true as soon as nothing is left. Starts again if the project was
  // changed since the last call.
  bool Continue(std::chrono::milliseconds time);
  // The findings, by kind and then in the order of the tree; complete after the last Continue.
  const std::vector<Finding>& GetFindings() const { return findings; }

 private:
  void Begin();
  void CheckDefinitions();
  void CheckDamage();
  void Complete();

  BuildSession& session;
  FileSystem& files;
  std::unique_ptr<CheckScope> scope;  // null until all options are published
  std::unique_ptr<NodeCheck> nodeCheck;
  std::unique_ptr<OptionCheck> optionCheck;
  std::int32_t changeCount = 0;  // of the project, at the start
  std::size_t next = 0;          // node
  bool isComplete = false;
  std::vector<Finding> findings;
};

}  // namespace tarn::host
