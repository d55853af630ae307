#include "build/RecordRestore.h"

#include "platform/text/Text.h"
#include "project/ProjectModel.h"

namespace tarn {

RecordRestore::RecordRestore(CProjectModel& projectModel)
    : model_(projectModel), treeEpoch_(projectModel.GetTreeEpoch()) {
  CXmlNode& root = model_.GetProjectRoot();
  for (int i = 0; i < root.GetChildCount(); ++i) {
    CXmlNode& child = *root.GetChild(i);
    if ((model_.types.FlagsOf(child) & kTypeApplication) != 0) Collect(child, child);
  }
}

void RecordRestore::Collect(CXmlNode& node, const CXmlNode& application) {
  const char* const output = node.GetAttrValue("OutputFile");
  if (output != nullptr && *output != '\0') nodes_.push_back({&node, &application});
  for (int i = 0; i < node.GetChildCount(); ++i) {
    CXmlNode& child = *node.GetChild(i);
    if (IsContentNode(child)) Collect(child, application);
  }
}

bool RecordRestore::Step(std::chrono::milliseconds time) {
  constexpr std::size_t kNodesPerLook = 16;
  const auto end = std::chrono::steady_clock::now() + time;
  while (next_ < nodes_.size() && model_.GetTreeEpoch() == treeEpoch_) {
    const Node& each = nodes_[next_++];
    model_.RestoreRecord(*each.node, TextOf(each.application->GetAttrValue("Path")));
    if (next_ % kNodesPerLook == 0 && std::chrono::steady_clock::now() >= end) return true;
  }
  return false;
}

}  // namespace tarn
