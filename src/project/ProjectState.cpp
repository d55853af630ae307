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
  if (CXmlNode* noted = services_.build.GetNotedNode()) return noted;
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
  ForgetPointersInto(*node);
  parent.RemoveChild(node);
  NoteTreeChange();
}

void ProjectState::ForgetPointersInto(const CXmlNode& node) {
  services_.views.ForgetNode(node);
  for (CXmlNode** pointer : {&currentNode, &activeApplication}) {
    if (IsAtOrBelow(*pointer, node)) *pointer = nullptr;
  }
  services_.build.ForgetNode(node);
}

void ProjectState::NoteTreeChange() {
  ++treeEpoch;
  NoteUnpublished();
}

void ProjectState::NoteUnpublished() {
  ++publishEpoch;
  ++outputEpoch;
  ForgetKeptTexts();
  services_.build.NoteUnpublished();
}

void ProjectState::ForgetKeptTexts() {
  if (!optionTexts.empty()) optionTexts.clear();
}

}  // namespace tarn
