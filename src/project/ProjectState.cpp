#include "project/ProjectState.h"

#include "project/TreeSearch.h"
#include "xml/XmlNode.h"

namespace tarn {

ProjectState::ProjectState(ProjectServices& projectServices)
    : projectRoot(CXmlNode::CreateNode("Project")), services_(projectServices) {}

ProjectState::~ProjectState() = default;

CXmlNode* ProjectState::GetCurrentNode() {
  if (CXmlNode* selected = services_.views.GetSelectedNode()) return selected;
  // A build traverses the nodes without selecting them.
  if (CXmlNode* noted = services_.build.GetSavedNode()) return noted;
  if (currentNode != nullptr) return currentNode;
  if (activeApplication != nullptr) return activeApplication;
  return projectRoot.get();
}

void ProjectState::RemoveAllChildren(CXmlNode& node) {
  for (int i = node.GetChildCount() - 1; i >= 0; --i) FreeSubtree(node, node.GetChild(i));
}

void ProjectState::RemoveContentChildren(CXmlNode& node) {
  for (int i = node.GetChildCount() - 1; i >= 0; --i) {
    CXmlNode* child = node.GetChild(i);
    if (IsContentNode(*child)) FreeSubtree(node, child);
  }
}

void ProjectState::FreeSubtree(CXmlNode& parent, CXmlNode* node) {
  InvalidatePointersInto(*node);
  parent.RemoveChild(node);
  MarkTreeChanged();
}

void ProjectState::InvalidatePointersInto(const CXmlNode& node) {
  services_.views.InvalidateNode(node);
  for (CXmlNode** pointer : {&currentNode, &activeApplication}) {
    if (IsAtOrBelow(*pointer, node)) *pointer = nullptr;
  }
  services_.build.InvalidateNode(node);
}

void ProjectState::MarkTreeChanged() {
  ++treeGeneration;
  MarkUnpublished();
}

void ProjectState::MarkUnpublished() {
  ++publishGeneration;
  ++outputGeneration;
  ClearCachedTexts();
  services_.build.MarkUnpublished();
}

void ProjectState::ClearCachedTexts() {
  if (!optionTexts.empty()) optionTexts.clear();
  if (!configurationTexts.empty()) configurationTexts.clear();
}

}  // namespace tarn
