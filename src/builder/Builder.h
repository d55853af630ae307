#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <future>
#include <memory>
#include <mutex>
#include <string>
#include <thread>

#include "builder/BuildCommands.h"
#include "builder/BuildInformation.h"
#include "builder/StaleVerdict.h"
#include "project/BuildControl.h"
#include "project/ProjectModel.h"
#include "widgets/MessageLoop.h"

namespace tarn {

class BuildWalk;
struct BuildWorkerState;

// Builds the project of a model: synchronously, or on a single worker thread. One per model.
//
// Calling sequence: construct it after the model, which it registers with (see BuildControl), and
// destroy it first. StartBuildThread or BuildSynchronously starts a build; CanStartOperation and
// the queries of the worker tell other operations whether one is running.
//
// Threads: everything runs on the main thread (the one that created the builder), except where the
// worker is mentioned; see BuildWorker.cpp. Errors: operations return 1 if done and 0 if not; the
// reasons are in the log.
class Builder final : public IBuildControl {
 public:
  // `projectModel` is borrowed.
  explicit Builder(CProjectModel& projectModel);
  // Requests a running worker to stop and runs its posted tasks until it has ended.
  ~Builder();
  Builder(const Builder&) = delete;
  Builder& operator=(const Builder&) = delete;

  CProjectModel& GetModel() { return model_; }
  BuildInformation& Information() { return information_; }

  // Number of failures after which the following builds end; 0 for no limit. Until then they go on
  // with what doesn't need the outputs that are missing. 1 unless set.
  void SetFailureLimit(int limit) { failureLimit_ = limit; }
  int GetFailureLimit() const { return failureLimit_; }

  // Run on the calling thread until done, and return 1 on success. A null node means the current
  // one.
  std::int32_t BuildNode(CXmlNode* node, std::int32_t mode);
  std::int32_t TranslateNode(CXmlNode* node);
  std::int32_t RunToolOnNode(CXmlNode* node, const std::string& tool);
  // Builds the current node synchronously on the calling thread. Returns 0 also while a worker is
  // running.
  std::int32_t BuildSynchronously();
  // Returns true if the node and its descendants are up to date. Checks the files again unless a
  // build is running.
  bool IsNodeUpToDate(CXmlNode* node);
  // Returns why `node` itself, regardless of its children, is out of date; the reason is None if it
  // is up to date. Uses cached file times; see InvalidateMtimes.
  StaleVerdict ExamineNode(CXmlNode& node);

  // Starts a worker for a BuildMode, a WorkerCommand or a dynamic command. Returns 0 if another
  // operation is running, the project is protected because of damage, or no thread can be created.
  // The host is notified of the end with kMsgWorkerEnded.
  std::int32_t StartBuildThread(std::int32_t command);
  // Requests the running build to stop. Thread-safe, like GetBuildState.
  void RequestStop();
  std::int32_t GetBuildState();
  // Returns true if called from a task of the worker, which is blocked until the task returns.
  bool IsInWorkerStep() const;
  // Returns true if the worker can't end before the caller returns: the caller runs inside a task
  // of the worker, or inside a host's handler of a message sent by a running tool.
  bool IsWorkerWaiting() const;
  // Runs the task that a worker has posted, if there is one and none is running.
  void RunPendingStep();
  // Requests a running worker to stop and runs its tasks until it has ended. The host receives no
  // more messages from it.
  void StopAndWait();
  // Runs `work` on the main thread after the running worker has sent its last message.
  void RunAfterWorker(std::function<void()> work);
  // Records that the running walk itself is about to select this node, so that the selection isn't
  // taken for one by the user.
  void RecordChosenByWalk(const CXmlNode& node);

  // IBuildControl implementation.
  std::int32_t CanStartOperation() override;
  bool IsWorkerAlive() const override;
  bool IsBuildingSynchronously() const override { return syncBuildDepth_ > 0; }
  CXmlNode* GetSavedNode() override;
  void MarkSelected(CXmlNode* node) override;
  void MarkPublished(CXmlNode& node) override;
  void MarkUnpublished() override;
  void InvalidateNode(const CXmlNode& node) override;
  void RestoreRecords(CXmlNode& application) override;
  void CloseJournal() override;

 private:
  void RestoreAfterWalk(CXmlNode* application, CXmlNode* node, std::uint64_t epoch);
  std::int32_t RunSynchronously(BuildWalk& walk);
  void EndUnstartedWorker(const std::string& reason);
  static void BuildThreadMain(std::shared_ptr<BuildWorkerState> control) noexcept;
  bool EndWorker();
  void ReleaseThread(std::chrono::milliseconds wait);

  CProjectModel& model_;
  ProjectServices& services_;
  ProjectState& state_;
  BuildInformation information_;

  std::mutex buildLock_;  // guards buildState only
  std::int32_t buildState_ = StateIdle;
  std::int32_t buildCommand_ = 0;
  int failureLimit_ = 1;
  std::shared_ptr<MessageLoop> loop_;  // of the main thread
  std::shared_ptr<BuildWorkerState> worker_;
  std::thread thread_;                    // of the last worker
  std::future<void> threadReturns_;       // ready once the thread has nothing left to do
  CXmlNode* savedCurrentNode_ = nullptr;  // current node at the start of a synchronous build
  int syncBuildDepth_ = 0;                // number of nested synchronous builds
  std::unique_ptr<BuildWalk> workerWalk_;
};

// Returns the name of a BuildMode in messages.
std::string GetOperationText(std::int32_t mode);

}  // namespace tarn
