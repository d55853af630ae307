#include "project/ProjectModel.h"

#include "builder/BuildWalk.h"
#include "builder/RecordRestore.h"
#include "project/WorkerControl.h"

namespace tarn {

CProjectModel::CProjectModel(FileSystem& disk)
    : files(disk),
      guard(disk),
      trust(disk),
      editLock(disk, trust),
      projectRoot(CXmlNode::CreateNode("Project")),
      loop(MessageLoop::ForCurrentThread()),
      fileTimes(disk),
      buildRecords(disk),
      toolCommands(toolManager,
                   [this](const CXmlNode& node, std::string& tool, std::string& fileList) {
                     return GetToolInput(node, tool, fileList);
                   }),
      recordCheck(buildRecords, toolCommands, disk, fileTimes) {}

CProjectModel::~CProjectModel() {
  StopAndWait();
}

void CProjectModel::ForgetHost() {
  mainframeHandle = 0;
  output->ForgetHost();
}

void CProjectModel::StopAndWait() {
  if (!IsWorkerAlive()) return;
  ForgetHost();
  RequestStop();
  const std::shared_ptr<WorkerControl> control = worker;
  while (control->alive) {
    loop->ServeUntil([&] { return !control->alive; }, std::chrono::milliseconds(100));
  }
}

}  // namespace tarn
