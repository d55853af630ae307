#include "hosts/core/BuildStateManager.h"

#include <chrono>

#include "hosts/core/ProjectFile.h"

namespace tarn::host {

namespace {

// Time limit of one step of a restore.
constexpr std::int32_t kPieceMilliseconds = 5;

}  // namespace

BuildStateManager::BuildStateManager(ProjectManagerDriver& managerDriver,
                                     InspectorDriver& inspectorDriver,
                                     ToolManagerDriver& toolDriver)
    : manager_(managerDriver), inspector_(inspectorDriver), tools_(toolDriver) {}

void BuildStateManager::SetProject(const std::string& projectPath) {
  path_ = StatePathOf(projectPath);
  isOpen_ = false;
  isRestoring_ = false;
}

void BuildStateManager::Restore() {
  BeginRestore();
  while (ContinueRestore()) {
  }
}

void BuildStateManager::BeginRestore() {
  isOpen_ = false;
  Open();
  isRestoring_ = isOpen_;
}

void BuildStateManager::Open() {
  if (isOpen_) return;
  verdict_ = inspector_.OpenBuildState(path_);
  reason_ = inspector_.GetBuildStateProblem();
  isOpen_ = !verdict_.empty();
}

bool BuildStateManager::ContinueRestore() {
  if (!isRestoring_) return false;
  isRestoring_ = inspector_.RestoreFor(kPieceMilliseconds) == 0;
  return isRestoring_;
}

bool BuildStateManager::IsOutdated() {
  return !inspector_.IsBuildStateCurrent(path_);
}

void BuildStateManager::TakeBuildInformation(const std::string& output) {
  const std::string xml = tools_.TakeBuildInformation();
  if (xml.empty()) return;
  manager_.SetBuildInfo(xml);
  outputs_.push_back(output);
}

std::string BuildStateManager::Finish() {
  return inspector_.FinishBuildState(true);
}

}  // namespace tarn::host
