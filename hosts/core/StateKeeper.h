#pragma once

#include <string>

#include "hosts/core/ServerDrivers.h"

namespace tarn::host {

// Has the server keep what the tools reported beyond the end of the process, in a file next to the
// project. A state file that isn't whole costs a rebuild and nothing else.
//
// Borrows the drivers. On the main thread.
class StateKeeper {
 public:
  StateKeeper(ProjectManagerDriver& managerDriver, InspectorDriver& inspectorDriver,
              ToolManagerDriver& toolDriver);

  // The project whose state is kept from now on; calls nothing of the server.
  void SetProject(const std::string& projectPath);
  // Reads the state of the open project and hands the records that still hold to its nodes, all of
  // which have to be published.
  void Restore();
  // The same in pieces of a few milliseconds, for a host that has a window: one after the other
  // until it returns false.
  void BeginRestore();
  bool ContinueRestore();
  // Has tools that run from now on recorded, also if nothing was restored.
  void Open();
  // Another process has built since: what is known of the outputs is older than they are.
  bool IsOutdated();

  // A tool has ended well: hands what it reported to the project, which journals it.
  void TakeBuildInformation();
  // After a build. Returns why the state could not be written; empty if it could.
  std::string Finish();

  // How usable the file was: "good", also if there was none, "cut", "damaged", "other-version",
  // "foreign" or "unreadable".
  const std::string& GetVerdict() const { return verdict_; }
  // Why it is unreadable.
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
  bool isOpen_ = false;  // the state of this project
  bool isRestoring_ = false;
};

}  // namespace tarn::host
