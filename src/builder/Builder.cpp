// What the project requires of its builder. BuildWorker.cpp builds.

#include "builder/Builder.h"

#include "builder/BuildWalk.h"
#include "builder/BuildWorkerState.h"
#include "project/TreeSearch.h"
#include "xml/XmlNode.h"

namespace tarn {

namespace {

// Maximum delay of the destructor for a thread that only has to return.
constexpr std::chrono::milliseconds kReturnTime(100);

}  // namespace

Builder::Builder(CProjectModel& projectModel)
    : model_(projectModel),
      services_(projectModel.Services()),
      state_(projectModel.State()),
      information_(services_, state_, projectModel.Paths(), projectModel.Extensions()),
      loop_(MessageLoop::ForCurrentThread()) {
  services_.build.builder = this;
}

Builder::~Builder() {
  StopAndWait();
  ReleaseThread(kReturnTime);
  services_.build.builder = nullptr;
}

void Builder::StopAndWait() {
  if (!IsWorkerAlive()) return;
  model_.Host().ClearHost();
  RequestStop();
  const std::shared_ptr<BuildWorkerState> control = worker_;
  while (control->alive) {
    loop_->ServeUntil([&] { return !control->alive; }, std::chrono::milliseconds(100));
  }
}

CXmlNode* Builder::GetSavedNode() {
  if (IsWorkerAlive() && worker_->savedNode != nullptr) return worker_->savedNode;
  return syncBuildDepth_ > 0 ? savedCurrentNode_ : nullptr;
}

void Builder::MarkSelected(CXmlNode* node) {
  if (!IsWorkerAlive() || IsInWorkerStep() || node == worker_->chosenByWalk) return;
  worker_->chosenByWalk = nullptr;
  worker_->savedNode = node;
  model_.Paths().FindEnclosingApplication(node, worker_->savedApplication);
}

void Builder::RecordChosenByWalk(const CXmlNode& node) {
  if (IsWorkerAlive()) worker_->chosenByWalk = &node;
}

void Builder::MarkPublished(CXmlNode& node) {
  information_.GetToolCommands().Invalidate();
  information_.GetMtimes().Invalidate();
  if (IsNodeUpToDate(&node)) return;
  for (const char* name : {"LastBuilt", "Info"}) {
    if (CXmlAttr* attribute = node.GetAttr(name)) node.RemoveAttr(attribute);
  }
  information_.RecordBuildInfo(&node, nullptr, nullptr);
}

void Builder::MarkUnpublished() {
  information_.GetToolCommands().Invalidate();
  information_.GetMtimes().Invalidate();
}

void Builder::InvalidateNode(const CXmlNode& node) {
  information_.InvalidateNode(node);
  if (IsAtOrBelow(savedCurrentNode_, node)) savedCurrentNode_ = nullptr;
  if (!IsWorkerAlive()) return;
  if (IsAtOrBelow(worker_->savedNode, node)) worker_->savedNode = nullptr;
  // A build that started in this subtree has lost its tree.
  if (IsAtOrBelow(worker_->node, node)) ++state_.treeGeneration;
}

void Builder::RestoreRecords(CXmlNode& application) {
  information_.RestoreRecords(application);
}

void Builder::CloseJournal() {
  information_.GetBuildRecords().CloseJournal();
}

}  // namespace tarn
