// Changes to the tree's structure, and to which of its nodes are active.

#include "project/TreeEditor.h"

#include "project/TreeSearch.h"
#include "xml/XmlNode.h"

namespace tarn {

namespace {

// Removes data derived for the location that the copy was taken from.
void ClearDerived(CXmlNode& node) {
  if (CXmlAttr* built = node.GetAttr("LastBuilt")) node.RemoveAttr(built);
  for (int i = node.GetChildCount() - 1; i >= 0; --i) {
    CXmlNode* child = node.GetChild(i);
    if (IsContentNode(*child)) {
      ClearDerived(*child);
    } else if (child->NameView() == "PropState" || child->NameView() == "Dependencies") {
      node.RemoveChild(child);
    }
  }
}

}  // namespace

TreeEditor::TreeEditor(ProjectServices& projectServices, ProjectState& projectState,
                       const ProjectPaths& projectPaths, DerivedData& derivedData,
                       Publisher& nodePublisher)
    : services_(projectServices),
      types_(projectServices.types),
      views_(projectServices.views),
      state_(projectState),
      paths_(projectPaths),
      derived_(derivedData),
      publisher_(nodePublisher) {}

TreeEditor::~TreeEditor() = default;

void TreeEditor::ClearDefaultApplicationItems() {
  if (!services_.build.CanStartOperation()) return;
  if (state_.isDefaultProject != 0 && state_.activeApplication != nullptr) {
    const TreeUpdate update(views_);
    state_.RemoveContentChildren(*state_.activeApplication);
  }
  publisher_.RunAutoDebugStep();
}

CXmlNode* TreeEditor::FindItem(const char* itemname) {
  if (itemname == nullptr) return state_.GetCurrentNode();
  CXmlNode* found = nullptr;
  if (*itemname == '\0') return found;
  FindTreeNode(itemname, "Path", state_.projectRoot.get(), found);
  if (found == nullptr) FindTreeNode(itemname, "Header", state_.projectRoot.get(), found);
  return found;
}

std::int32_t TreeEditor::RemoveItem(const char* itemname) {
  if (!services_.build.CanStartOperation()) return 0;
  CXmlNode* const node = FindItem(itemname);
  if (node == nullptr) return 0;
  CXmlNode* const holder = node->GetParent();
  state_.MarkModified();
  std::uint64_t epoch = state_.treeGeneration;
  if (holder == nullptr) {
    if (state_.currentNode == node) state_.currentNode = nullptr;
  } else {
    const TreeUpdate update(views_, UpdateScope::ReportedNodes);
    state_.FreeSubtree(*holder, node);
    views_.NotifyNodeUpdated(*holder);
    // Otherwise a node with the same name would be selected for a moment.
    if (views_.GetSelectedNode() == nullptr) views_.SelectTreeNode(holder);
    epoch = state_.treeGeneration;
  }
  if (state_.treeGeneration == epoch) publisher_.SetCurrentNode(holder);
  publisher_.RunAutoDebugStep();
  return 1;
}

std::int32_t TreeEditor::CopyNode(CXmlNode* node) {
  if (!services_.build.CanStartOperation()) return 0;
  if (node == nullptr) node = state_.GetCurrentNode();
  if (node == nullptr) return 0;
  clipboardNode_ = std::make_unique<CXmlNode>();
  clipboardNode_->CopyFrom(*node);
  // The copy may be pasted into an application in a different folder.
  paths_.MakePathsAbsolute(*clipboardNode_, paths_.PathBaseOf(*node));
  return 1;
}

// Pastes a copy of the clipboard at the target without selecting it. Returns nullptr if the types
// forbid it.
CXmlNode* TreeEditor::Paste(CXmlNode* target) {
  const bool isBefore = target != nullptr && (types_.FlagsOf(*target) & kTypeIsLeaf) != 0;
  CXmlNode* const holder = isBefore ? target->GetParent() : target;
  if (!types_.CanContain(holder, clipboardNode_.get())) return nullptr;
  auto copy = std::make_unique<CXmlNode>();
  copy->CopyFrom(*clipboardNode_);
  ClearDerived(*copy);
  derived_.ResetNodeCache(*copy, true);
  state_.MarkModified();
  return AttachNode(*holder, std::move(copy), Opens::No, isBefore ? target : nullptr);
}

std::int32_t TreeEditor::PasteNode(CXmlNode* target) {
  if (!services_.build.CanStartOperation()) return 0;
  CXmlNode* const copy = Paste(target == nullptr ? state_.GetCurrentNode() : target);
  if (copy == nullptr) return 0;
  publisher_.SetCurrentNode(copy);
  return 1;
}

void TreeEditor::MoveNode(CXmlNode* node, CXmlNode* target) {
  if (node == nullptr || !services_.build.CanStartOperation()) return;
  for (const CXmlNode* above = target; above != nullptr; above = above->GetParent()) {
    if (above == node) return;
  }
  const TreeUpdate update(views_);
  state_.MarkModified();
  if (!CopyNode(node)) return;
  CXmlNode* const copy = Paste(target == nullptr ? state_.GetCurrentNode() : target);
  if (copy == nullptr) return;
  if (CXmlNode* parent = node->GetParent()) state_.FreeSubtree(*parent, node);
  publisher_.SetCurrentNode(copy);
}

CXmlNode* TreeEditor::AttachNode(CXmlNode& parent, std::unique_ptr<CXmlNode> node, Opens opens,
                                 const CXmlNode* before) {
  CXmlNode* attached = nullptr;
  std::uint64_t epoch = 0;
  {
    const TreeUpdate update(views_,
                            UpdateScope::ReportedNodes);  // records first which nodes are expanded
    if (opens == Opens::Yes) parent.SetAttrValue("sate", "32");
    attached = parent.InsertChildBefore(std::move(node), before);
    views_.NotifyNodeUpdated(parent);
    state_.MarkTreeChanged();
    epoch = state_.treeGeneration;
  }
  return state_.treeGeneration == epoch ? attached : nullptr;
}

}  // namespace tarn
