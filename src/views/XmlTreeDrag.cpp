// Drag and drop. The control tracks the gesture; the owner decides if a drop is allowed and what it
// means.

#include "views/XmlTreeCtrl.h"
#include "widgets/Toolkit.h"
#include "xml/XmlNode.h"

namespace tarn {

namespace {

// The drag image is below and to the right of the cursor.
constexpr Point kHotSpot{-15, -15};

}  // namespace

void CXmlTreeCtrl::OnBeginDrag(CTreeItem& item, Point point) {
  const WindowHandle own = GetHandle();
  const CXmlNode* const node = NodeOf(item);
  SelectItem(&item);
  if (!IsWindow(own)) return;
  // The handler of the selection message may have refilled the tree.
  CTreeItem* const source = GetSelectedItem();
  if (source == nullptr || NodeOf(*source) != node) return;
  if (dragging_) EndDrag();
  if (!BeginDragImage(*source, kHotSpot, point)) return;
  dragging_ = true;
  dragItem_ = source;
  dropTarget_ = nullptr;
  SetCapture();
}

void CXmlTreeCtrl::OnMouseMove(Point point) {
  if (dragging_) {
    MoveDragImage(point);
    if (CTreeItem* const item = HitTest(point).item) {
      SetDropHighlight(item);
      dropTarget_ = item;
      // Makes the view scroll when the cursor approaches its edge.
      if (CTreeItem* const above = item->GetPreviousVisible()) EnsureVisible(*above);
      if (CTreeItem* const below = item->GetNextVisible()) EnsureVisible(*below);
    }
    ReleaseCapture();
  }
  if (helpMode_) WindowToolkit::Current().SetCursor(CursorShape::Help);
}

void CXmlTreeCtrl::OnLeftButtonUp(Point /*point*/) {
  if (!dragging_) return;
  const CTreeItem* const source = dragItem_;
  CTreeItem* const target = dropTarget_;
  EndDrag();
  if (source == nullptr || target == nullptr) return;
  if (source == target || target->IsBelow(*source)) return;
  Expand(*target, true);
  const CXmlNode* const from = NodeOf(*source);
  const CXmlNode* const to = NodeOf(*target);
  if (from == nullptr || to == nullptr) return;
  SendOwner(kXmlTreeDrop, reinterpret_cast<std::intptr_t>(from),
            reinterpret_cast<std::intptr_t>(to));
}

bool CXmlTreeCtrl::OnDragCancelled() {
  if (!dragging_) return false;
  EndDrag();
  return true;
}

void CXmlTreeCtrl::EndDrag() {
  dragging_ = false;
  dragItem_ = nullptr;
  dropTarget_ = nullptr;
  EndDragImage();
  ReleaseCapture();
  SetDropHighlight(nullptr);
}

void CXmlTreeCtrl::OnKillFocus() {
  if (dragging_) EndDrag();
  CTreeCtrl::OnKillFocus();
}

}  // namespace tarn
