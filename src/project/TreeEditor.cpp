// Changes to the tree's structure, and to which of its nodes are active.

#include "project/TreeEditor.h"

#include "project/TreeSearch.h"

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

void TreeEditor::ClearDefaultApplicationItems() {
  if (!services.build.CanStartOperation()) return;
  if (state.isDefaultProject != 0 && state.activeApplication != nullptr) {
    const TreeUpdate update(views);
    state.RemoveContentChildren(*state.activeApplication);
  }
  publisher.RunAutoDebugStep();
}

CXmlNode* TreeEditor::FindItem(const char* itemname) {
  if (itemname == nullptr) return state.GetCurrentNode();
  CXmlNode* found = nullptr;
  if (*itemname == '\0') return found;
  FindTreeNode(itemname, "Path", state.projectRoot.get(), found);
  if (found == nullptr) FindTreeNode(itemname, "Header", state.projectRoot.get(), found);
  return found;
}

std::int32_t TreeEditor::RemoveItem(const char* itemname) {
  if (!services.build.CanStartOperation()) return 0;
  CXmlNode* const node = FindItem(itemname);
  if (node == nullptr) return 0;
  CXmlNode* const holder = node->GetParent();
  state.NoteModified();
  std::uint64_t epoch = state.treeEpoch;
  if (holder == nullptr) {
    if (state.currentNode == node) state.currentNode = nullptr;
  } else {
    const TreeUpdate update(views, UpdateScope::Told);
    state.FreeSubtree(*holder, node);
    views.TellUpdated(*holder);
    // Otherwise a node with the same name would be selected for a moment.
    if (views.GetSelectedNode() == nullptr) views.SelectTreeNode(holder);
    epoch = state.treeEpoch;
  }
  if (state.treeEpoch == epoch) publisher.SetCurrentNode(holder);
  publisher.RunAutoDebugStep();
  return 1;
}

std::int32_t TreeEditor::CopyNode(CXmlNode* node) {
  if (!services.build.CanStartOperation()) return 0;
  if (node == nullptr) node = state.GetCurrentNode();
  if (node == nullptr) return 0;
  clipboardNode = std::make_unique<CXmlNode>();
  clipboardNode->CopyFrom(*node);
  // The copy may be pasted into an application in a different folder.
  paths.MakePathsAbsolute(*clipboardNode, paths.PathBaseOf(*node));
  return 1;
}

// Pastes a copy of the clipboard at the target without selecting it. Returns nullptr if the types
// forbid it.
CXmlNode* TreeEditor::Paste(CXmlNode* target) {
  const bool isBefore = target != nullptr && (types.FlagsOf(*target) & kTypeIsLeaf) != 0;
  CXmlNode* const holder = isBefore ? target->GetParent() : target;
  if (!types.CanContain(holder, clipboardNode.get())) return nullptr;
  auto copy = std::make_unique<CXmlNode>();
  copy->CopyFrom(*clipboardNode);
  ForgetDerived(*copy);
  derived.ResetNodeCache(*copy, true);
  state.NoteModified();
  return AttachNode(*holder, std::move(copy), Opens::No, isBefore ? target : nullptr);
}

std::int32_t TreeEditor::PasteNode(CXmlNode* target) {
  if (!services.build.CanStartOperation()) return 0;
  CXmlNode* const copy = Paste(target == nullptr ? state.GetCurrentNode() : target);
  if (copy == nullptr) return 0;
  publisher.SetCurrentNode(copy);
  return 1;
}

void TreeEditor::MoveNode(CXmlNode* node, CXmlNode* target) {
  if (node == nullptr || !services.build.CanStartOperation()) return;
  for (const CXmlNode* above = target; above != nullptr; above = above->GetParent()) {
    if (above == node) return;
  }
  const TreeUpdate update(views);
  state.NoteModified();
  if (!CopyNode(node)) return;
  CXmlNode* const copy = Paste(target == nullptr ? state.GetCurrentNode() : target);
  if (copy == nullptr) return;
  if (CXmlNode* parent = node->GetParent()) state.FreeSubtree(*parent, node);
  publisher.SetCurrentNode(copy);
}

CXmlNode* TreeEditor::AttachNode(CXmlNode& parent, std::unique_ptr<CXmlNode> node, Opens opens,
                                 const CXmlNode* before) {
  CXmlNode* attached = nullptr;
  std::uint64_t epoch = 0;
  {
    const TreeUpdate update(views, UpdateScope::Told);  // records first which nodes are expanded
    if (opens == Opens::Yes) parent.SetAttrValue("sate", "32");
    attached = parent.InsertChildBefore(std::move(node), before);
    views.TellUpdated(parent);
    state.NoteTreeChange();
    epoch = state.treeEpoch;
  }
  return state.treeEpoch == epoch ? attached : nullptr;
}

}  // namespace tarn
