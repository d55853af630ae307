#include "automation/NodeSelection.h"

#include "platform/text/Text.h"
#include "project/TreeSearch.h"

namespace tarn {

void NodeSelection::SelectByHeader(const char* header) {
  CXmlNode* found = nullptr;
  FindTreeNode(header, "Header", &model.GetProjectRoot(), found);
  Select(found, header);
}

void NodeSelection::SelectByPath(const char* path) {
  CXmlNode* found = nullptr;
  FindChildNode(path, "Path", model.GetActiveApplication(), found);
  if (found == nullptr && model.Publishing().PublishChildren(model.GetActiveApplication())) {
    FindChildNode(path, "Path", model.GetActiveApplication(), found);
  }
  Select(found, path);
}

void NodeSelection::Select(CXmlNode* found, const char* key) {
  model.SetCurrentNode(found);
  missedKey.reset();
  if (found != nullptr) return;
  missedKey = TextOf(key);
  nodeInstead = model.GetCurrentNode();
}

std::optional<std::string> NodeSelection::GetMissedKey() const {
  const bool isStill = missedKey && model.GetCurrentNode() == nodeInstead;
  return isStill ? missedKey : std::nullopt;
}

}  // namespace tarn
