// What the project requires of its builder. BuildWorker.cpp builds.

#include "builder/Builder.h"

#include "builder/BuildWalk.h"
#include "builder/WorkerControl.h"
#include "project/TreeSearch.h"
#include "xml/XmlNode.h"

namespace tarn {

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
  services_.build.builder = nullptr;
}

void Builder::StopAndWait() {
  if (!IsWorkerAlive()) return;
  model_.Host().ForgetHost();
  RequestStop();
  const std::shared_ptr<WorkerControl> control = worker_;
  while (control->alive) {
    loop_->ServeUntil([&] { return !control->alive; }, std::chrono::milliseconds(100));
  }
}

CXmlNode* Builder::GetNotedNode() {
  if (IsWorkerAlive() && worker_->notedNode != nullptr) return worker_->notedNode;
  return walksHere_ > 0 ? notedHere_ : nullptr;
}

void Builder::NoteSelected(CXmlNode* node) {
  if (!IsWorkerAlive() || IsInWorkerStep() || node == worker_->chosenByWalk) return;
  worker_->chosenByWalk = nullptr;
  worker_->notedNode = node;
  model_.Paths().FindEnclosingApplication(node, worker_->notedApplication);
}

void Builder::NoteChosenByWalk(const CXmlNode& node) {
  if (IsWorkerAlive()) worker_->chosenByWalk = &node;
}

void Builder::NotePublished(CXmlNode& node) {
  information_.GetToolCommands().Invalidate();
  information_.GetFileTimes().Forget();
  if (IsNodeUpToDate(&node)) return;
  for (const char* name : {"LastBuilt", "Info"}) {
    if (CXmlAttr* attribute = node.GetAttr(name)) node.RemoveAttr(attribute);
  }
  information_.RecordBuildInfo(&node, nullptr, nullptr);
}

void Builder::NoteUnpublished() {
  information_.GetToolCommands().Invalidate();
  information_.GetFileTimes().Forget();
}

void Builder::ForgetNode(const CXmlNode& node) {
  information_.ForgetNode(node);
  if (IsAtOrBelow(notedHere_, node)) notedHere_ = nullptr;
  if (!IsWorkerAlive()) return;
  if (IsAtOrBelow(worker_->notedNode, node)) worker_->notedNode = nullptr;
  // A build that started in this subtree has lost its tree.
  if (IsAtOrBelow(worker_->node, node)) ++state_.treeEpoch;
}

void Builder::RestoreRecords(CXmlNode& application) {
  information_.RestoreRecords(application);
}

void Builder::CloseJournal() {
  information_.GetBuildRecords().CloseJournal();
}

}  // namespace tarn
