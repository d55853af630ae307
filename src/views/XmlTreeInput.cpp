// Mouse and keyboard input, converted to messages to the owner.

#include <chrono>
#include <utility>

#include "platform/text/Text.h"
#include "views/XmlTreeCtrl.h"
#include "widgets/Toolkit.h"
#include "xml/XmlNode.h"

namespace tarn {

namespace {

constexpr int kTipStyle = 6;
constexpr std::chrono::milliseconds kTipDuration{5000};

}  // namespace

void CXmlTreeCtrl::SendSelected(XmlTreeMessage message) {
  const CTreeItem* const item = GetSelectedItem();
  if (item == nullptr) return;
  currentNode_ = NodeOf(*item);
  SendOwner(message, 0, 0);
}

void CXmlTreeCtrl::OnSelectionChanged() {
  if (!isEmpty_ && !isSelectingNode_) SendSelected(kXmlTreeSelect);
}

void CXmlTreeCtrl::OnClick(const TreeHit& hit, Point point) {
  const bool isHelp = helpMode_;
  const bool isDescribed = hit.part == TreePart::Icon || hit.part == TreePart::StateIcon ||
                           hit.part == TreePart::Label || hit.part == TreePart::RightOfLabel;
  const CXmlNode* const node = isDescribed ? NodeOf(*hit.item) : nullptr;
  const char* const description = node == nullptr ? nullptr : node->GetAttrValue("Desc");
  // Copied because the node may be freed by the handler of the selection message.
  const bool hasDescription = description != nullptr;
  const std::string title = hasDescription ? OrEmpty(node->GetAttrValue("Header")) : std::string();
  const std::string body = OrEmpty(description);

  const WindowHandle own = GetHandle();
  if (hit.part == TreePart::RightOfLabel) SelectItem(hit.item);
  if (!isHelp || !IsWindow(own)) return;
  helpMode_ = false;
  WindowToolkit::Current().SetCursor(CursorShape::Arrow);
  if (!hasDescription) return;
  tipWindow_.SetFrameStyle(kTipStyle);
  tipWindow_.ShowTip(title, body, point, std::chrono::milliseconds(0), kTipDuration);
}

// A double click doesn't expand or collapse the item.
void CXmlTreeCtrl::OnLeftDoubleClick(Point /*point*/) {
  SendSelected(kXmlTreeOpen);
}

void CXmlTreeCtrl::OnMiddleDoubleClick(Point /*point*/) {
  SendSelected(kXmlTreeActivate);
}

void CXmlTreeCtrl::OnItemActivated(Point point) {
  tipWindow_.Hide();
  const TreeHit hit = HitTest(point);
  if (hit.part != TreePart::Label) return;
  currentNode_ = NodeOf(*hit.item);
  SendOwner(kXmlTreeActivate, 0, 0);
}

void CXmlTreeCtrl::OnRightClick(Point point) {
  const WindowHandle own = GetHandle();
  const TreeHit hit = HitTest(point);
  if (hit.item != nullptr) SelectItem(hit.item);
  if (!IsWindow(own)) return;
  tipWindow_.Hide();
  const CTreeItem* const item = GetSelectedItem();
  if (item == nullptr) return;
  currentNode_ = NodeOf(*item);
  SendOwner(kXmlTreeRightClick, point.x, point.y);
}

bool CXmlTreeCtrl::OnItemKey(const KeyEvent& event) {
  if (event.isShiftDown && (event.key == kKeyUp || event.key == kKeyDown)) {
    ReorderSelected(event.key == kKeyUp);
    return true;
  }
  SendOwner(kXmlTreeKey, event.key, 0);
  return false;
}

// Swaps the selected node with its neighbour; the selection stays on its row.
void CXmlTreeCtrl::ReorderSelected(bool upwards) {
  const CTreeItem* const item = GetSelectedItem();
  if (item == nullptr) return;
  const CTreeItem* const sibling =
      upwards ? item->GetPreviousSibling() : item->GetNextSiblingItem();
  const CTreeItem* const above = item->GetParent();
  if (sibling == nullptr || above == nullptr) return;
  CXmlNode* const siblingNode = NodeOf(*sibling);
  CXmlNode* const aboveNode = NodeOf(*above);
  if (siblingNode == nullptr || aboveNode == nullptr || NodeOf(*item) == nullptr) return;
  if (aboveNode->NameView() == "Dependencies") return;

  // The fill restores the expanded state that was saved last.
  SaveExpansion();
  const CXmlNode* const upper = upwards ? siblingNode : NodeOf(*item);
  const CXmlNode* const lower = upwards ? NodeOf(*item) : siblingNode;
  std::unique_ptr<CXmlNode> moved = aboveNode->DetachChild(lower);
  if (moved == nullptr) return;
  aboveNode->InsertChildBefore(std::move(moved), upper);
  const WindowHandle own = GetHandle();
  Refill();
  if (!IsWindow(own)) return;
  SelectNode(siblingNode);
  SendOwner(kXmlTreeReorder, 0, 0);
}

}  // namespace tarn
