#include "builder/RecordRestore.h"

#include "platform/text/Text.h"
#include "project/ProjectModel.h"

namespace tarn {

RecordRestore::RecordRestore(CProjectModel& projectModel)
    : model_(projectModel), treeEpoch_(projectModel.GetTreeEpoch()) {
  CXmlNode& root = model_.GetProjectRoot();
  for (int i = root.GetChildCount() - 1; i >= 0; --i) {
    CXmlNode& child = *root.GetChild(i);
    if ((model_.types.FlagsOf(child) & kTypeApplication) != 0) pending_.push_back({&child, &child});
  }
}

RecordRestore::RecordRestore(CProjectModel& projectModel, CXmlNode& application)
    : model_(projectModel),
      treeEpoch_(projectModel.GetTreeEpoch()),
      pending_{{&application, &application}} {}

bool RecordRestore::Step(std::chrono::milliseconds time) {
  constexpr int kNodesPerLook = 16;
  const auto end = std::chrono::steady_clock::now() + time;
  for (int done = 1; !pending_.empty() && model_.GetTreeEpoch() == treeEpoch_; ++done) {
    const Node next = pending_.back();
    pending_.pop_back();
    for (int i = next.node->GetChildCount() - 1; i >= 0; --i) {
      CXmlNode& child = *next.node->GetChild(i);
      if (IsContentNode(child)) pending_.push_back({&child, next.application});
    }
    model_.RestoreRecord(*next.node, TextOf(next.application->GetAttrValue("Path")));
    if (done % kNodesPerLook == 0 && std::chrono::steady_clock::now() >= end) return true;
  }
  return false;
}

}  // namespace tarn
