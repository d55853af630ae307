#include "automation/NodeSelection.h"

#include "platform/text/Text.h"
#include "project/TreeSearch.h"

namespace tarn {

void NodeSelection::SelectByHeader(const char* header) {
  CXmlNode* found = nullptr;
  FindTreeNode(header, "Header", &model_.GetProjectRoot(), found);
  Select(found, header);
}

void NodeSelection::SelectByPath(const char* path) {
  CXmlNode* found = nullptr;
  FindChildNode(path, "Path", model_.GetActiveApplication(), found);
  if (found == nullptr && model_.Publishing().PublishChildren(model_.GetActiveApplication())) {
    FindChildNode(path, "Path", model_.GetActiveApplication(), found);
  }
  Select(found, path);
}

void NodeSelection::Select(CXmlNode* found, const char* key) {
  model_.SetCurrentNode(found);
  missedKey_.reset();
  if (found != nullptr) return;
  missedKey_ = OrEmpty(key);
  nodeInstead_ = model_.GetCurrentNode();
}

std::optional<std::string> NodeSelection::GetMissedKey() const {
  const bool isStill = missedKey_ && model_.GetCurrentNode() == nodeInstead_;
  return isStill ? missedKey_ : std::nullopt;
}

}  // namespace tarn
