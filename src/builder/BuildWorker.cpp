// The build's state machine and its single worker thread.
//
// The worker's task is fixed on the main thread before the thread starts, so neither a second start
// nor a stop can be lost. The worker runs tools and queries file times itself and posts everything
// else as tasks to the main thread. While the flag `alive` is set, operations that change the
// project are refused. The last task clears it, and afterwards the worker doesn't access the model.

#include "builder/Builder.h"

#include <tarn/commands.h>

#include <system_error>
#include <utility>

#include "builder/BuildWalk.h"
#include "builder/BuildWorkerState.h"
#include "output/MessageTable.h"
#include "patterns/ParseNumber.h"
#include "platform/text/Text.h"
#include "widgets/Dialogs.h"
#include "xml/XmlNode.h"

namespace tarn {

namespace {

// Maximum time that a task may block the main thread.
constexpr std::chrono::milliseconds kStepTime(5);
// Maximum delay until a stop request is noticed while files are queried.
constexpr std::chrono::milliseconds kStatTime(50);

}  // namespace

bool Builder::IsWorkerAlive() const {
  return worker_ != nullptr && worker_->alive;
}

std::int32_t Builder::GetBuildState() {
  const std::lock_guard<std::mutex> hold(buildLock_);
  return buildState_;
}

bool Builder::IsInWorkerStep() const {
  return IsWorkerAlive() && worker_->isInStep;
}

bool Builder::IsWorkerWaiting() const {
  return IsWorkerAlive() && loop_->IsServing();
}

void Builder::RunPendingStep() {
  if (IsWorkerAlive() && !worker_->isInStep) loop_->ServeWaiting();
}

void Builder::RunAfterWorker(std::function<void()> work) {
  worker_->afterEnd = std::move(work);
}

void Builder::RequestStop() {
  const std::lock_guard<std::mutex> hold(buildLock_);
  buildState_ = StateStopRequested;
}

std::string GetOperationText(std::int32_t mode) {
  return GetMessageText(mode == ModeClean     ? kRowOperationClean
                        : mode == ModeRebuild ? kRowOperationRebuild
                                              : kRowOperationBuild);
}

std::int32_t Builder::CanStartOperation() {
  // A message of a synchronous build is being handled, and its tree must not change.
  if (syncBuildDepth_ > 0) return 0;
  if (!IsWorkerAlive() && GetBuildState() != StateBuilding) return 1;
  const std::string question = FormatMessageText(
      GetMessageText(kRowBusyQuestion), std::vector<std::string>{GetOperationText(buildCommand_)});
  if (AskOkCancel(services_.mainframeHandle, question, GetMessageText(kRowProjectWord))) {
    // The worker may have ended while the question was shown.
    const std::lock_guard<std::mutex> hold(buildLock_);
    if (buildState_ == StateBuilding) buildState_ = StateStopRequested;
  }
  return 0;
}

std::int32_t Builder::StartBuildThread(std::int32_t command) {
  if (!CanStartOperation() || model_.Protection().IsDamageHeld()) return 0;
  CXmlNode* node = nullptr;
  std::string tool;
  bool isTool = false;
  std::int32_t mode = command;
  if (command >= TARN_CMD_LIST_TOOLS && command <= TARN_CMD_LAST_TOOL) {
    const CXmlNode* entry = nullptr;
    const CXmlNode* const commands = model_.Publishing().GetDynamicCommandTree();
    for (int i = 0; commands != nullptr && i < commands->GetChildCount(); ++i) {
      const CXmlNode* child = commands->GetChild(i);
      if (ParseNumber(child->GetAttrValue("Id")) == command) entry = child;
    }
    if (entry == nullptr) return 1;  // silently ignores unknown commands
    tool = OrEmpty(entry->GetAttrValue("Header"));
    isTool = true;
    node = state_.GetCurrentNode();
  } else if (command >= kWorkerBuildAll && command <= kWorkerCleanAll) {
    mode = command - kWorkerBuildAll + ModeBuild;
    node = state_.projectRoot.get();
  } else {
    node = state_.GetCurrentNode();
    if (command == kWorkerTranslate) {
      tool = node == nullptr ? std::string() : OrEmpty(node->GetAttrValue("TranslateTool"));
      isTool = true;
    }
  }

  buildCommand_ = mode;
  if (state_.currentNode != nullptr) model_.Publishing().RenewPropState(*state_.currentNode);
  worker_ = std::make_shared<BuildWorkerState>();
  worker_->loop = loop_;
  worker_->builder = this;
  worker_->node = node;
  worker_->isBuild = !isTool;
  worker_->savedApplication = state_.activeApplication;
  worker_->savedNode = state_.currentNode;
  worker_->epoch = state_.treeGeneration;
  information_.InvalidateMtimes();
  workerWalk_ = std::make_unique<BuildWalk>(*this, true);
  if (!isTool) {
    workerWalk_->BeginBuild(node, mode);
  } else if (!tool.empty()) {
    workerWalk_->BeginTool(node, tool);
  }
  {
    const std::lock_guard<std::mutex> hold(buildLock_);
    buildState_ = StateBuilding;
  }
  try {
    ReleaseThread(std::chrono::milliseconds(0));
    std::packaged_task<void(std::shared_ptr<BuildWorkerState>)> task(BuildThreadMain);
    threadReturns_ = task.get_future();
    thread_ = std::thread(std::move(task), worker_);
  } catch (const std::system_error& failure) {
    EndUnstartedWorker(failure.code().message());
    return 0;
  }
  return 1;
}

// Joins the thread of a worker that has ended, after waiting up to `wait` for its return. If it
// still has a message to send, the caller may be the handler of that message; then the thread is
// detached.
void Builder::ReleaseThread(std::chrono::milliseconds wait) {
  if (!thread_.joinable()) return;
  if (loop_->IsServing()) wait = std::chrono::milliseconds(0);
  if (threadReturns_.wait_for(wait) == std::future_status::ready) {
    thread_.join();
  } else {
    thread_.detach();
  }
}

// Ends a worker whose thread could not be created. Nothing runs, but the host waits for the end and
// must be notified.
void Builder::EndUnstartedWorker(const std::string& reason) {
  worker_->alive = false;
  workerWalk_.reset();
  {
    const std::lock_guard<std::mutex> hold(buildLock_);
    buildState_ = StateFailed;
  }
  const std::string text = "The build can't start because no thread could be created: " + reason;
  services_.output->AddError(text);
  services_.output->SaveLog();
  services_.output->UpdateReport();
  const std::string logFile = services_.output->GetLogFile();
  const WindowHandle host = services_.mainframeHandle;
  model_.Host().SendHost(kMsgLogLine, text, 0);
  SendWindowMessage(host, kMsgWorkerEnded, 0, reinterpret_cast<std::intptr_t>(logFile.c_str()));
}

void Builder::BuildThreadMain(std::shared_ptr<BuildWorkerState> control) noexcept {
  BuildAction request;
  bool toolResult = false;
  FileSystem& disk = control->builder->services_.files;
  const auto step = [&] {
    control->isInStep = true;
    BuildWalk& walk = *control->builder->workerWalk_;
    if (request.kind == BuildAction::Kind::RunTool) {
      walk.TakeToolResult(toolResult, std::move(request.snapshot));
    }
    if (request.kind == BuildAction::Kind::FindAccess) walk.TakeAccess(std::move(request));
    if (request.kind == BuildAction::Kind::Examine) walk.SetMtimes(request.batch);
    request = walk.Advance(BuildWalk::Clock::now() + kStepTime);
    control->isInStep = false;
  };
  do {
    if (!control->loop->RunAndWait(step)) {
      control->alive = false;
      return;
    }
    DropEarlyRuns(request);
    if (request.kind == BuildAction::Kind::RunTool) {
      toolResult = RunRequestedTool(request, disk);
    } else if (request.kind == BuildAction::Kind::FindAccess) {
      FindRequestedAccess(request, disk);
    } else if (request.kind == BuildAction::Kind::Examine) {
      request.batch.Examine(disk, BuildWalk::Clock::now() + kStatTime);
    }
  } while (request.kind != BuildAction::Kind::Done);

  bool succeeded = false;
  std::string logFile;
  WindowHandle host = 0;
  const auto end = [&] {
    control->isInStep = true;
    Builder& builder = *control->builder;
    succeeded = builder.EndWorker();
    logFile = builder.services_.output->GetLogFile();
    host = builder.services_.mainframeHandle;
    control->isInStep = false;
    control->alive = false;
  };
  if (!control->loop->RunAndWait(end)) {
    control->alive = false;
    return;
  }
  SendWindowMessage(host, kMsgWorkerEnded, succeeded ? 1 : 0,
                    reinterpret_cast<std::intptr_t>(logFile.c_str()));
  if (control->afterEnd) control->loop->RunAndWait(control->afterEnd);
}

// Last task of a worker, except for its message to the host.
bool Builder::EndWorker() {
  const BuildWorkerState& control = *worker_;
  const bool succeeded = workerWalk_->Succeeded();
  const bool hasTree = !workerWalk_->IsTreeStale();
  workerWalk_.reset();
  information_.SetWalkApplication(nullptr);
  information_.GetMtimes().Invalidate();
  if (control.isBuild && !succeeded && hasTree) {
    const std::string outputFile =
        control.node == nullptr ? std::string() : OrEmpty(control.node->GetAttrValue("OutputFile"));
    model_.Host().SendHost(kMsgOutputInvalid, outputFile, -1);
    if (state_.treeGeneration == control.epoch)
      information_.RecordBuildInfo(control.node, nullptr, nullptr);
  }
  services_.output->WriteMessage(succeeded ? kRowBuildSucceeded : kRowBuildFailed);
  services_.output->SaveLog();
  services_.output->UpdateReport();
  {
    const std::lock_guard<std::mutex> hold(buildLock_);
    buildState_ = succeeded ? StateSucceeded : StateFailed;
  }
  RestoreAfterWalk(control.savedApplication, control.savedNode, control.epoch);
  return succeeded;
}

// Restores the selected node, so that the options window does not store values of the node built
// last in it.
void Builder::RestoreAfterWalk(CXmlNode* application, CXmlNode* node, std::uint64_t epoch) {
  if (state_.treeGeneration != epoch || node == nullptr) return;
  if (state_.currentNode == node && state_.activeApplication == application) return;
  model_.Publishing().RestoreCurrent(application, node);
  if (state_.treeGeneration == epoch && state_.currentNode != nullptr)
    model_.Publishing().RestorePropState(*state_.currentNode);
}

std::int32_t Builder::RunSynchronously(BuildWalk& walk) {
  information_.InvalidateMtimes();
  ++syncBuildDepth_;
  for (;;) {
    BuildAction request = walk.Advance(std::nullopt);
    DropEarlyRuns(request);
    if (request.kind != BuildAction::Kind::RunTool) break;
    const bool isDone = RunRequestedTool(request, services_.files);
    walk.TakeToolResult(isDone, std::move(request.snapshot));
  }
  --syncBuildDepth_;
  information_.SetWalkApplication(nullptr);
  information_.GetMtimes().Invalidate();
  return walk.Succeeded() ? 1 : 0;
}

std::int32_t Builder::BuildSynchronously() {
  if (IsWorkerAlive() || syncBuildDepth_ > 0 || model_.Protection().IsDamageHeld()) return 0;
  CXmlNode* const application = state_.activeApplication;
  if (state_.currentNode != nullptr) model_.Publishing().RenewPropState(*state_.currentNode);
  savedCurrentNode_ = state_.currentNode;
  const std::uint64_t epoch = state_.treeGeneration;
  const std::int32_t result = BuildNode(nullptr, ModeBuild);
  RestoreAfterWalk(application, savedCurrentNode_, epoch);
  savedCurrentNode_ = nullptr;
  return result;
}

std::int32_t Builder::BuildNode(CXmlNode* node, std::int32_t mode) {
  BuildWalk walk(*this, false);
  walk.BeginBuild(node == nullptr ? state_.GetCurrentNode() : node, mode);
  return RunSynchronously(walk);
}

std::int32_t Builder::TranslateNode(CXmlNode* node) {
  BuildWalk walk(*this, false);
  walk.BeginTranslate(node == nullptr ? state_.GetCurrentNode() : node);
  return RunSynchronously(walk);
}

std::int32_t Builder::RunToolOnNode(CXmlNode* node, const std::string& tool) {
  BuildWalk walk(*this, false);
  walk.BeginTool(node == nullptr ? state_.GetCurrentNode() : node, tool);
  return RunSynchronously(walk);
}

bool Builder::IsNodeUpToDate(CXmlNode* node) {
  if (!IsWorkerAlive() && syncBuildDepth_ == 0) information_.GetMtimes().Invalidate();
  Staleness staleness(services_.types, information_.GetMtimes(), information_.GetRecordCheck());
  // A file that was added to an application decides about it without a look at the others.
  if (node != nullptr && staleness.HasUnbuilt(*node)) return false;
  return staleness.IsUpToDate(node);
}

StaleVerdict Builder::ExamineNode(CXmlNode& node) {
  return Staleness(services_.types, information_.GetMtimes(), information_.GetRecordCheck())
      .Examine(node);
}

}  // namespace tarn
