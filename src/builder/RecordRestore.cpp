#include "builder/RecordRestore.h"

#include "builder/BuildInformation.h"
#include "platform/text/Text.h"
#include "xml/XmlNode.h"

namespace tarn {

RecordRestore::RecordRestore(BuildInformation& information, const ProjectState& state,
                             const NodeTypes& types)
    : information_(information), state_(state), treeGeneration_(state.treeGeneration) {
  CXmlNode& root = *state.projectRoot;
  for (int i = root.GetChildCount() - 1; i >= 0; --i) {
    CXmlNode& child = *root.GetChild(i);
    if ((types.FlagsOf(child) & kTypeApplication) != 0) pending_.push_back({&child, &child});
  }
}

RecordRestore::RecordRestore(BuildInformation& information, const ProjectState& state,
                             CXmlNode& application)
    : information_(information),
      state_(state),
      treeGeneration_(state.treeGeneration),
      pending_{{&application, &application}} {}

bool RecordRestore::Step(std::chrono::milliseconds time) {
  constexpr int kNodesPerLook = 16;
  const auto end = std::chrono::steady_clock::now() + time;
  for (int done = 1; !pending_.empty() && !IsTreeStale(); ++done) {
    const Node next = pending_.back();
    pending_.pop_back();
    for (int i = next.node->GetChildCount() - 1; i >= 0; --i) {
      CXmlNode& child = *next.node->GetChild(i);
      if (IsContentNode(child)) pending_.push_back({&child, next.application});
    }
    information_.RestoreRecord(*next.node, OrEmpty(next.application->GetAttrValue("Path")));
    if (done % kNodesPerLook == 0 && std::chrono::steady_clock::now() >= end) return true;
  }
  return false;
}

}  // namespace tarn
