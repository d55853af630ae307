#pragma once

#include <tarn/commands.h>

#include <cstdint>
#include <utility>

#include "builder/Builder.h"
#include "project/ProjectModel.h"

namespace tarn {

// The work of the commands that need more than one call. Main thread only.
//
// A command without a current node, or one that the state of a build doesn't allow, is a no-op.
class CommandActions {
 public:
  // Both are borrowed and must outlive this object.
  CommandActions(CProjectModel& projectModel, Builder& projectBuilder)
      : model_(projectModel), builder_(projectBuilder) {}

  CProjectModel& Model() const { return model_; }
  Builder& GetBuilder() const { return builder_; }

  // Starts the worker with a value of WorkerCommand or a mode. Always returns 2, the result for
  // work in the background.
  std::int32_t StartWorker(std::int32_t command);
  // Selects the active application and builds what is out of date in it.
  std::int32_t BuildApplication();
  // Runs the tool with the number `id` for the current node. Returns 1 if the node has no tools.
  std::int32_t RunNodeTool(std::uint32_t id);
  // Stores the option that was changed in the options window, and publishes the node again. Unless
  // `keepsOutputs`, the node and everything below it are then out of date.
  void ApplyOptionChange(bool keepsOutputs);
  void ResetProperty();
  void ShowNodeOptions();
  void ShowApplicationOptions();
  // Opens the listing of `node` in the host; nullptr for the current node.
  void OpenListing(CXmlNode* node);
  void RunOpenCommand();
  void OpenCurrentFile();
  void ShowCurrentFile();
  void AnnounceActiveApplication();
  void StopPublishing();

  // Requests that everything is rebuilt after the running build.
  void RequestRebuild() { isRebuildRequested_ = true; }
  void DropRebuildRequest() { isRebuildRequested_ = false; }
  bool IsRebuildRequested() const { return isRebuildRequested_; }

 private:
  CPropertyManagerDriver& Properties() const;
  void RenewNode(bool keepsOutputs);
  void ReloadOptions(CXmlNode& node);

  CProjectModel& model_;
  Builder& builder_;
  bool isRebuildRequested_ = false;
};

}  // namespace tarn
