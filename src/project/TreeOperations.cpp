// Changes to the shape of the tree and to what in it is active.

#include "platform/text/Text.h"
#include "project/ProjectModel.h"
#include "project/TreeSearch.h"
#include "project/WorkerControl.h"

namespace tarn {

CXmlNode* CProjectModel::GetCurrentNode() {
  if (CXmlNode* selected = views.GetSelectedNode()) return selected;
  // A build goes through the nodes without choosing them.
  if (IsWorkerAlive() && worker->notedNode != nullptr) return worker->notedNode;
  if (walksHere > 0 && notedHere != nullptr) return notedHere;
  if (currentNode != nullptr) return currentNode;
  if (activeApplication != nullptr) return activeApplication;
  return projectRoot.get();
}

std::int32_t CProjectModel::SetActiveApplication(CXmlNode* application) {
  if (application == nullptr || (types.FlagsOf(*application) & kTypeApplication) == 0) return 0;
  CXmlNode* present = nullptr;
  FindChildNode(projectRoot->GetAttrValue("ActiveApp"), "Header", projectRoot.get(), present);
  if (present != nullptr) {
    if (CXmlAttr* highlight = present->GetAttr("highlight")) present->RemoveAttr(highlight);
    if (present != application) modified = 1;
  }
  application->SetAttrValue("highlight", "yes");
  projectRoot->SetAttrValue("ActiveApp", TextOf(application->GetAttrValue("Header")));
  views.RepaintTree();
  return 1;
}

void CProjectModel::ClearDefaultApplicationItems() {
  if (!CanStartOperation()) return;
  if (isDefaultProject != 0 && activeApplication != nullptr) {
    const TreeUpdate update(views);
    RemoveContentChildren(*activeApplication);
  }
  RunAutoDebugStep();
}

void CProjectModel::RemoveAllChildren(CXmlNode& node) {
  for (int i = node.GetChildCount() - 1; i >= 0; --i) FreeSubtree(node, node.GetChild(i));
}

void CProjectModel::RemoveContentChildren(CXmlNode& node) {
  for (int i = node.GetChildCount() - 1; i >= 0; --i) {
    CXmlNode* child = node.GetChild(i);
    if (IsContentNode(*child)) FreeSubtree(node, child);
  }
}

void CProjectModel::FreeSubtree(CXmlNode& parent, CXmlNode* node) {
  ForgetPointersInto(*node);
  parent.RemoveChild(node);
  NoteTreeChange();
}

void CProjectModel::ForgetPointersInto(const CXmlNode& node) {
  const auto liesBelow = [&node](const CXmlNode* pointer) {
    while (pointer != nullptr && pointer != &node) pointer = pointer->GetParent();
    return pointer != nullptr;
  };
  for (CXmlNode** pointer : {&currentNode, &activeApplication, &walkApplication}) {
    if (*pointer != nullptr && liesBelow(*pointer)) *pointer = nullptr;
  }
  if (liesBelow(notedHere)) notedHere = nullptr;
  if (!IsWorkerAlive()) return;
  if (liesBelow(worker->notedNode)) worker->notedNode = nullptr;
  // A walk that began there has lost its tree.
  if (liesBelow(worker->node)) ++treeEpoch;
}

void CProjectModel::NoteTreeChange() {
  ++treeEpoch;
  NoteUnpublished();
}

void CProjectModel::NoteUnpublished() {
  ++publishEpoch;
  ++outputEpoch;
  ForgetKeptTexts();
}

}  // namespace tarn
