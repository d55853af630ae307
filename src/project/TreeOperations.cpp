// Changes to the tree's structure, and to which of its nodes are active.

#include "platform/paths/Paths.h"
#include "platform/text/Text.h"
#include "project/ProjectModel.h"
#include "project/TreeSearch.h"
#include "project/WorkerControl.h"

namespace tarn {

namespace {

// Removes data derived for the location that the copy was taken from.
void ForgetDerived(CXmlNode& node) {
  if (CXmlAttr* built = node.GetAttr("LastBuilt")) node.RemoveAttr(built);
  for (int i = node.GetChildCount() - 1; i >= 0; --i) {
    CXmlNode* child = node.GetChild(i);
    if (IsContentNode(*child)) {
      ForgetDerived(*child);
    } else if (child->NameView() == "PropState" || child->NameView() == "Dependencies") {
      node.RemoveChild(child);
    }
  }
}

}  // namespace

CXmlNode* CProjectModel::GetCurrentNode() {
  if (CXmlNode* selected = views.GetSelectedNode()) return selected;
  // A build traverses the nodes without selecting them.
  if (IsWorkerAlive() && worker->notedNode != nullptr) return worker->notedNode;
  if (walksHere > 0 && notedHere != nullptr) return notedHere;
  if (currentNode != nullptr) return currentNode;
  if (activeApplication != nullptr) return activeApplication;
  return projectRoot.get();
}

std::int32_t CProjectModel::SetActiveApplication(CXmlNode* application) {
  if (!CanStartOperation()) return 0;
  if (application == nullptr || (types.FlagsOf(*application) & kTypeApplication) == 0) return 0;
  CXmlNode* present = nullptr;
  FindChildNode(projectRoot->GetAttrValue("ActiveApp"), "Header", projectRoot.get(), present);
  if (present != nullptr) {
    if (CXmlAttr* highlight = present->GetAttr("highlight")) present->RemoveAttr(highlight);
    if (present != application) NoteModified();
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

bool CProjectModel::CanContain(const CXmlNode* parent, const CXmlNode* child) const {
  if (parent == nullptr || child == nullptr) return false;
  const std::uint32_t above = types.FlagsOf(*parent);
  const std::uint32_t below = types.FlagsOf(*child);
  if ((above & kTypeIsLeaf) != 0) return false;
  if ((above & kTypeProject) != 0) return (below & kTypeApplication) != 0;
  const bool builds = (above & kTypeBuild) != 0;
  const bool debugs = (above & kTypeDebug) != 0;
  if (builds && (below & kTypeInBuild) == 0) return debugs && (below & kTypeInDebug) != 0;
  if (debugs && (below & kTypeDebug) == 0) return builds && (below & kTypeInBuild) != 0;
  return true;
}

CXmlNode* CProjectModel::FindItem(const char* itemname) {
  if (itemname == nullptr) return GetCurrentNode();
  CXmlNode* found = nullptr;
  if (*itemname == '\0') return found;
  FindTreeNode(itemname, "Path", projectRoot.get(), found);
  if (found == nullptr) FindTreeNode(itemname, "Header", projectRoot.get(), found);
  return found;
}

std::int32_t CProjectModel::RemoveItem(const char* itemname) {
  if (!CanStartOperation()) return 0;
  CXmlNode* const node = FindItem(itemname);
  if (node == nullptr) return 0;
  CXmlNode* const holder = node->GetParent();
  NoteModified();
  std::uint64_t epoch = treeEpoch;
  if (holder == nullptr) {
    if (currentNode == node) currentNode = nullptr;
  } else {
    const TreeUpdate update(views, UpdateScope::Told);
    FreeSubtree(*holder, node);
    views.TellUpdated(*holder);
    // Otherwise a node with the same name would be selected for a moment.
    if (views.GetSelectedNode() == nullptr) views.SelectTreeNode(holder);
    epoch = treeEpoch;
  }
  if (treeEpoch == epoch) SetCurrentNode(holder);
  RunAutoDebugStep();
  return 1;
}

std::int32_t CProjectModel::CopyNode(CXmlNode* node) {
  if (!CanStartOperation()) return 0;
  if (node == nullptr) node = GetCurrentNode();
  if (node == nullptr) return 0;
  clipboardNode = std::make_unique<CXmlNode>();
  clipboardNode->CopyFrom(*node);
  // The copy may be pasted into an application in a different folder.
  MakePathsAbsolute(*clipboardNode, PathBaseOf(*node));
  return 1;
}

void CProjectModel::MakePathsAbsolute(CXmlNode& node, const std::string& base) const {
  for (const char* name : {"Path", "Extern"}) {
    std::string full;
    const char* path = node.GetAttrValue(name);
    if (path == nullptr || !MakeAbsolutePath(path, full, base.empty() ? nullptr : base.c_str())) {
      continue;
    }
    node.SetAttrValue(name, full);
  }
  const bool ownsPaths = (types.FlagsOf(node) & (kTypeApplication | kTypeProject)) != 0;
  const char* path = node.GetAttrValue("Path");
  const std::string below = ownsPaths && path != nullptr ? FolderOf(path) : base;
  for (int i = 0; i < node.GetChildCount(); ++i) {
    if (IsContentNode(*node.GetChild(i))) MakePathsAbsolute(*node.GetChild(i), below);
  }
}

// Pastes a copy of the clipboard at the target without selecting it. Returns nullptr if the types
// forbid it.
CXmlNode* CProjectModel::Paste(CXmlNode* target) {
  const bool isBefore = target != nullptr && (types.FlagsOf(*target) & kTypeIsLeaf) != 0;
  CXmlNode* const holder = isBefore ? target->GetParent() : target;
  if (!CanContain(holder, clipboardNode.get())) return nullptr;
  auto copy = std::make_unique<CXmlNode>();
  copy->CopyFrom(*clipboardNode);
  ForgetDerived(*copy);
  ResetNodeCache(*copy, true);
  NoteModified();
  return AttachNode(*holder, std::move(copy), Opens::No, isBefore ? target : nullptr);
}

std::int32_t CProjectModel::PasteNode(CXmlNode* target) {
  if (!CanStartOperation()) return 0;
  CXmlNode* const copy = Paste(target == nullptr ? GetCurrentNode() : target);
  if (copy == nullptr) return 0;
  SetCurrentNode(copy);
  return 1;
}

void CProjectModel::MoveNode(CXmlNode* node, CXmlNode* target) {
  if (node == nullptr || !CanStartOperation()) return;
  for (const CXmlNode* above = target; above != nullptr; above = above->GetParent()) {
    if (above == node) return;
  }
  const TreeUpdate update(views);
  NoteModified();
  if (!CopyNode(node)) return;
  CXmlNode* const copy = Paste(target == nullptr ? GetCurrentNode() : target);
  if (copy == nullptr) return;
  if (CXmlNode* parent = node->GetParent()) FreeSubtree(*parent, node);
  SetCurrentNode(copy);
}

CXmlNode* CProjectModel::AttachNode(CXmlNode& parent, std::unique_ptr<CXmlNode> node, Opens opens,
                                    const CXmlNode* before) {
  CXmlNode* attached = nullptr;
  std::uint64_t epoch = 0;
  {
    const TreeUpdate update(views, UpdateScope::Told);  // records first which nodes are expanded
    if (opens == Opens::Yes) parent.SetAttrValue("sate", "32");
    attached = parent.InsertChildBefore(std::move(node), before);
    views.TellUpdated(parent);
    NoteTreeChange();
    epoch = treeEpoch;
  }
  return treeEpoch == epoch ? attached : nullptr;
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
  views.ForgetNode(node);
  buildRecords.Forget(node);
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
  // A build that started in this subtree has lost its tree.
  if (liesBelow(worker->node)) ++treeEpoch;
}

void CProjectModel::NoteTreeChange() {
  ++treeEpoch;
  NoteUnpublished();
}

void CProjectModel::NoteUnpublished() {
  ++publishEpoch;
  ++outputEpoch;
  toolCommands.Invalidate();
  ForgetKeptTexts();
  fileTimes.Forget();  // also invalidates what a build prefetched
}

}  // namespace tarn
