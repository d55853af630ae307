#pragma once

#include <string>
#include <utility>
#include <vector>

#include "hosts/core/ServerDrivers.h"

namespace tarn::host {

// Makes the server persist build records in a file next to the project. A state file that is
// damaged costs a rebuild and nothing else.
//
// Borrows the drivers. Main thread only.
class BuildStateManager {
 public:
  BuildStateManager(ProjectManagerDriver& managerDriver, InspectorDriver& inspectorDriver,
                    ToolManagerDriver& toolDriver);

  // Sets the project whose state is stored; does not call the server.
  void SetProject(const std::string& projectPath);
  // Reads the state of the open project and restores the records that are still valid into its
  // nodes, all of which must have been published.
  void Restore();
  // Restore() in steps of a few milliseconds, for a host with a window: BeginRestore once, then
  // ContinueRestore until it returns false.
  void BeginRestore();
  bool ContinueRestore();
  // Starts recording tool runs, even if nothing was restored.
  void Open();
  // Returns true if another process has built since: the known records are older than the outputs.
  bool IsOutdated();

  // Call this after a tool has succeeded that has made `output`: passes its records to the project,
  // which appends them to its journal.
  void TakeBuildInformation(const std::string& output);
  // Returns the outputs of the runs since the last call.
  std::vector<std::string> TakeOutputs() { return std::exchange(outputs_, {}); }
  // Call this after a build. Returns why the state could not be written; an empty string if it
  // could.
  std::string Finish();

  // How usable the file was: "good" (also if there was none), "cut", "damaged", "other-version",
  // "foreign" or "unreadable".
  const std::string& GetVerdict() const { return verdict_; }
  // Why the file is unreadable.
  const std::string& GetReason() const { return reason_; }
  bool IsUsable() const { return verdict_ == "good"; }
  const std::string& GetPath() const { return path_; }

 private:
  ProjectManagerDriver& manager_;
  InspectorDriver& inspector_;
  ToolManagerDriver& tools_;

  std::string path_;
  std::string verdict_ = "good";
  std::string reason_;
  std::vector<std::string> outputs_;
  bool isOpen_ = false;  // the state of this project
  bool isRestoring_ = false;
};

}  // namespace tarn::host
