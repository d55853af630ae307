// What the project requires of its builder. BuildWorker.cpp builds.

#include "builder/Builder.h"

#include "builder/BuildWalk.h"
#include "builder/WorkerControl.h"
#include "project/TreeSearch.h"

namespace tarn {

Builder::Builder(CProjectModel& projectModel)
    : model(projectModel),
      services(projectModel.Services()),
      state(projectModel.State()),
      information(services, state, projectModel.Paths(), projectModel.Extensions()),
      loop(MessageLoop::ForCurrentThread()) {
  services.build.builder = this;
}

Builder::~Builder() {
  StopAndWait();
  services.build.builder = nullptr;
}

void Builder::StopAndWait() {
  if (!IsWorkerAlive()) return;
  model.Host().ForgetHost();
  RequestStop();
  const std::shared_ptr<WorkerControl> control = worker;
  while (control->alive) {
    loop->ServeUntil([&] { return !control->alive; }, std::chrono::milliseconds(100));
  }
}

CXmlNode* Builder::GetNotedNode() {
  if (IsWorkerAlive() && worker->notedNode != nullptr) return worker->notedNode;
  return walksHere > 0 ? notedHere : nullptr;
}

void Builder::NoteSelected(CXmlNode* node) {
  if (!IsWorkerAlive() || IsInWorkerStep() || node == worker->chosenByWalk) return;
  worker->chosenByWalk = nullptr;
  worker->notedNode = node;
  model.Paths().FindEnclosingApplication(node, worker->notedApplication);
}

void Builder::NoteChosenByWalk(const CXmlNode& node) {
  if (IsWorkerAlive()) worker->chosenByWalk = &node;
}

void Builder::NotePublished(CXmlNode& node) {
  information.GetToolCommands().Invalidate();
  information.GetFileTimes().Forget();
  if (IsNodeUpToDate(&node)) return;
  for (const char* name : {"LastBuilt", "Info"}) {
    if (CXmlAttr* attribute = node.GetAttr(name)) node.RemoveAttr(attribute);
  }
  information.RecordBuildInfo(&node, nullptr, nullptr);
}

void Builder::NoteUnpublished() {
  information.GetToolCommands().Invalidate();
  information.GetFileTimes().Forget();
}

void Builder::ForgetNode(const CXmlNode& node) {
  information.ForgetNode(node);
  if (IsAtOrBelow(notedHere, node)) notedHere = nullptr;
  if (!IsWorkerAlive()) return;
  if (IsAtOrBelow(worker->notedNode, node)) worker->notedNode = nullptr;
  // A build that started in this subtree has lost its tree.
  if (IsAtOrBelow(worker->node, node)) ++state.treeEpoch;
}

void Builder::RestoreRecords(CXmlNode& application) {
  information.RestoreRecords(application);
}

void Builder::CloseJournal() {
  information.GetBuildRecords().CloseJournal();
}

}  // namespace tarn
