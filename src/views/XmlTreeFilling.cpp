// Incremental fill: existing items are compared with the nodes, one list of children at a time. The
// common prefix and suffix of each list are kept; items are built only for the differing part in
// between. Linear in the number of nodes that are visited. Nodes are identified by address only, so
// an item may outlive its node until it is compared.

#include <algorithm>
#include <cstring>
#include <utility>

#include "platform/text/Text.h"
#include "views/XmlTreeCtrl.h"
#include "xml/XmlNode.h"

namespace tarn {

namespace {

constexpr int kExpandedBit = 32;

// Up to this number the toolkit processes each change separately; beyond, redrawing is suspended
// and everything is updated once.
constexpr int kManyChanges = 64;

const char* LabelOf(const CXmlNode& node) {
  const char* label = node.GetAttrValue("Header");
  if (label == nullptr) label = node.GetAttrValue("Path");
  return label == nullptr ? "" : label;
}

bool IsKeptExpanded(const CXmlNode& node) {
  const char* const state = node.GetAttrValue("sate");
  return state == nullptr || (ParseDecimal(state) & kExpandedBit) != 0;
}

}  // namespace

// State of one fill.
struct CXmlTreeCtrl::Filling {
  const CXmlNode* topNode = nullptr;  // node of the top row, if that isn't the first row
  int changes = 0;
  // Siblings usually have the same name, stored at the same address.
  const char* lastName = nullptr;
  const CXmlTreeImage* lastImage = nullptr;
};

const CXmlTreeImage* CXmlTreeCtrl::ImageOf(const CXmlNode& node, Filling& filling) const {
  if (node.NameText() == filling.lastName) return filling.lastImage;
  const auto found = std::find_if(
      imageEntries_.rbegin(), imageEntries_.rend(),
      [name = node.NameView()](const CXmlTreeImage& entry) { return entry.name == name; });
  filling.lastName = node.NameText();
  filling.lastImage = found == imageEntries_.rend() ? nullptr : &*found;
  return filling.lastImage;
}

std::vector<CXmlNode*> CXmlTreeCtrl::ShownChildren(const CXmlNode& node, Filling& filling) const {
  std::vector<CXmlNode*> shown;
  for (int i = 0; i < node.GetChildCount(); ++i) {
    CXmlNode* const child = node.GetChild(i);
    if (ImageOf(*child, filling) != nullptr) shown.push_back(child);
  }
  return shown;
}

void CXmlTreeCtrl::SetXmlRoot(CXmlNode* newRoot) {
  Filling filling;
  BeginFilling(filling);
  if (newRoot != rootNode_) areMatchesKnown_ = false;
  rootNode_ = newRoot;
  isEmpty_ = newRoot == nullptr;
  if (isEmpty_) selectedNode_ = nullptr;
  std::vector<CXmlNode*> shown;
  if (newRoot != nullptr && ImageOf(*newRoot, filling) != nullptr) shown.push_back(newRoot);
  UpdateChildren(nullptr, shown, filling);
  EndFilling(filling);
}

void CXmlTreeCtrl::RefillNodes(const std::vector<const CXmlNode*>& nodes) {
  Filling filling;
  BeginFilling(filling);
  for (const CXmlNode* const node : nodes) {
    CTreeItem* item = FindItem(node);
    const bool isNew = item == nullptr && ImageOf(*node, filling) != nullptr;
    if (isNew) item = FindItem(node->GetParent());  // inserted together with its siblings
    const bool isGoing = item != nullptr && ImageOf(*NodeOf(*item), filling) == nullptr;
    if (isGoing || (isNew && node == rootNode_)) {
      Refill();
      return;
    }
    if (item != nullptr) UpdateItem(*item, filling);
  }
  EndFilling(filling);
}

void CXmlTreeCtrl::BeginFilling(Filling& filling) {
  ++fillCount_;
  const CTreeItem* const topItem = GetTopRow() == 0 ? nullptr : GetRows().GetAt(GetTopRow());
  filling.topNode = topItem == nullptr ? nullptr : NodeOf(*topItem);
  currentNode_ = nullptr;
  DropSelection();
}

void CXmlTreeCtrl::EndFilling(Filling& filling) {
  SetRedraw(true);
  if (filling.topNode != nullptr) {
    const CTreeItem* newTop = FindItem(filling.topNode);
    while (newTop != nullptr && GetRows().IndexOf(*newTop) < 0) newTop = newTop->GetParent();
    SetTopRow(newTop == nullptr ? GetTopRow() : GetRows().IndexOf(*newTop));
  }
  // Attributes other than the item's label may have changed.
  Invalidate();
  RestoreSelection();
}

void CXmlTreeCtrl::Refill() {
  SetXmlRoot(rootNode_);
}

std::unique_ptr<CTreeItem> CXmlTreeCtrl::BuildItem(CXmlNode& node, Filling& filling) {
  const int image = ImageOf(node, filling)->imageIndex;
  auto item = std::make_unique<CTreeItem>(LabelOf(node), image, image, &node);
  items_[&node] = item.get();
  item->ReserveChildren(node.GetChildCount());
  for (int i = 0; i < node.GetChildCount(); ++i) {
    CXmlNode& child = *node.GetChild(i);
    if (ImageOf(child, filling) != nullptr) item->AppendChild(BuildItem(child, filling));
  }
  item->SetExpanded(IsKeptExpanded(node));
  unsaved_.insert(item.get());
  return item;
}

void CXmlTreeCtrl::UpdateItem(CTreeItem& item, Filling& filling) {
  const CXmlNode& node = *NodeOf(item);
  const int image = ImageOf(node, filling)->imageIndex;
  if (SetItem(item, LabelOf(node), image, image)) CountChange(filling);
  UpdateChildren(&item, ShownChildren(node, filling), filling);
  const bool expand = IsKeptExpanded(node);
  if (item.IsExpanded() == expand) return;
  unsaved_.insert(&item);
  if (!item.HasChildren()) return;
  CountChange(filling);
  Expand(item, expand);
}

// Children that are unchanged at both ends of the list are kept.
void CXmlTreeCtrl::UpdateChildren(CTreeItem* item, const std::vector<CXmlNode*>& nodes,
                                  Filling& filling) {
  const int oldCount = GetItemCount(item);
  const int newCount = static_cast<int>(nodes.size());
  const auto isSame = [&](int oldAt, int newAt) {
    return NodeOf(*GetItemAt(item, oldAt)) == nodes[static_cast<std::size_t>(newAt)];
  };
  const int common = std::min(oldCount, newCount);
  int head = 0;
  while (head < common && isSame(head, head)) ++head;
  int tail = 0;
  while (tail < common - head && isSame(oldCount - 1 - tail, newCount - 1 - tail)) ++tail;

  std::vector<CTreeItem*> reused;
  if (head + tail < std::max(oldCount, newCount)) {
    reused = ReplaceChildren(item, nodes, head, tail, filling);
  }
  for (int i = 0; i < head; ++i) UpdateItem(*GetItemAt(item, i), filling);
  for (CTreeItem* const moved : reused) UpdateItem(*moved, filling);
  for (int i = newCount - tail; i < newCount; ++i) UpdateItem(*GetItemAt(item, i), filling);
}

// Returns the new children whose items, including all descendants, existed before.
std::vector<CTreeItem*> CXmlTreeCtrl::ReplaceChildren(CTreeItem* item,
                                                      const std::vector<CXmlNode*>& nodes, int head,
                                                      int tail, Filling& filling) {
  CountChange(filling);
  CTreeItems old = TakeItems(item, head, GetItemCount(item) - head - tail);
  CTreeItems built;
  std::vector<CTreeItem*> reused;
  for (auto node = nodes.begin() + head; node != nodes.end() - tail; ++node) {
    CTreeItem* const known = FindItem(*node);
    // An item that was taken out keeps its index.
    const std::size_t at =
        known == nullptr ? 0 : static_cast<std::size_t>(known->GetIndex() - head);
    if (known != nullptr && at < old.size() && old[at].get() == known) {
      reused.push_back(known);
      built.push_back(std::move(old[at]));
    } else {
      built.push_back(BuildItem(**node, filling));
    }
  }
  std::erase(old, nullptr);
  DiscardItems(std::move(old));
  InsertItems(item, head, std::move(built));
  return reused;
}

void CXmlTreeCtrl::CountChange(Filling& filling) {
  areMatchesKnown_ = false;
  if (++filling.changes == kManyChanges) SetRedraw(false);
}

// Keeps the selected node selected; the label is used only if that node isn't shown any more. The
// handler of each message may destroy the control, free nodes, or refill the control, in which case
// the nested fill has already restored the selection.
void CXmlTreeCtrl::RestoreSelection() {
  const WindowHandle own = GetHandle();
  const unsigned fill = fillCount_;
  std::vector<const CXmlNode*> matches;
  if (FindItem(selectedNode_) != nullptr) {
    matches = {selectedNode_};
  } else {
    if (!areMatchesKnown_ || matchedLabel_ != selectedLabel_) FindMatches();
    matches = labelMatches_;
  }
  for (const CXmlNode* const node : matches) {
    CTreeItem* const item = FindItem(node);
    if (item == nullptr) continue;
    ChooseItem(item);
    if (!IsWindow(own) || fillCount_ != fill) return;
  }
  NotifySelection();
  if (CTreeItem* const item = GetSelectedItem()) EnsureVisible(*item);
}

void CXmlTreeCtrl::FindMatches() {
  labelMatches_.clear();
  matchedLabel_ = selectedLabel_;
  areMatchesKnown_ = true;
  for (const CTreeItem* item = GetRootItem(); item != nullptr; item = item->GetNext()) {
    if (EqualNoCase(item->GetText(), matchedLabel_)) labelMatches_.push_back(NodeOf(*item));
  }
}

void CXmlTreeCtrl::SaveViewState() {
  if (isEmpty_) return;
  SaveExpansion();
  const CTreeItem* const chosen = GetSelectedItem();
  if (chosen == nullptr || NodeOf(*chosen) == nullptr) return;
  selectedNode_ = NodeOf(*chosen);
  selectedLabel_ = LabelOf(*selectedNode_);
}

void CXmlTreeCtrl::SaveExpansion() {
  for (const CTreeItem* const item : std::exchange(unsaved_, {})) {
    CXmlNode* const node = NodeOf(*item);
    if (node == nullptr) continue;
    const char* const state = item->IsExpanded() ? "32" : "0";
    const char* const old = node->GetAttrValue("sate");
    if (old == nullptr || std::strcmp(old, state) != 0) node->SetAttrValue("sate", state);
  }
}

void CXmlTreeCtrl::InvalidateNode(const CXmlNode& node) {
  if (InvalidateSubtree(node)) SetXmlRoot(nullptr);
}

bool CXmlTreeCtrl::InvalidateSubtree(const CXmlNode& node) {
  bool isRootGoing = &node == rootNode_;
  if (&node == currentNode_) currentNode_ = nullptr;
  if (&node == selectedNode_) selectedNode_ = nullptr;
  const auto found = items_.find(&node);
  if (found != items_.end()) {
    found->second->SetData(nullptr);
    items_.erase(found);
  }
  for (int i = 0; i < node.GetChildCount(); ++i) {
    isRootGoing = InvalidateSubtree(*node.GetChild(i)) || isRootGoing;
  }
  return isRootGoing;
}

void CXmlTreeCtrl::OnItemGone(const CTreeItem& item) {
  unsaved_.erase(&item);
  // A node that was moved may already have a new item.
  const auto found = items_.find(NodeOf(item));
  if (found != items_.end() && found->second == &item) items_.erase(found);
  if (&item == dragItem_) dragItem_ = nullptr;
  if (&item == dropTarget_) dropTarget_ = nullptr;
}

}  // namespace tarn
