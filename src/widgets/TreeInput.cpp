// User input of the tree control: recognises gestures in mouse events and handles the keys that
// move the selection.

#include <algorithm>
#include <cstdlib>

#include "widgets/TreeCtrl.h"

namespace tarn {

namespace {

// Distance that the mouse may move with the button pressed before a drag starts.
constexpr int kDragDistance = 4;

bool IsOnItem(TreePart part) {
  return part == TreePart::Icon || part == TreePart::StateIcon || part == TreePart::Label;
}

}  // namespace

// The handler of the window that loses the focus may do anything, including destroying this
// control.
bool CTreeCtrl::TakeFocus() {
  const WindowHandle own = GetHandle();
  SetFocus();
  return IsWindow(own);
}

void CTreeCtrl::NotifyClick(Point point) {
  if (!TakeFocus()) return;
  const WindowHandle own = GetHandle();
  const TreeHit hit = HitTest(point);
  OnClick(hit, point);
  // The handler may have refilled the tree.
  if (!IsWindow(own) || !(HitTest(point) == hit)) return;
  if (hit.part == TreePart::Button) {
    Expand(*hit.item, !hit.item->IsExpanded());
  } else if (IsOnItem(hit.part)) {
    SelectItem(hit.item);
  }
}

void CTreeCtrl::NotifyDoubleClick(MouseButton button, Point point) {
  if (!TakeFocus()) return;
  if (button == MouseButton::Left) OnLeftDoubleClick(point);
  if (button == MouseButton::Middle) OnMiddleDoubleClick(point);
}

void CTreeCtrl::OnLeftDoubleClick(Point point) {
  const WindowHandle own = GetHandle();
  const TreeHit hit = HitTest(point);
  OnItemActivated(point);
  if (!IsWindow(own) || !(HitTest(point) == hit)) return;
  if (IsOnItem(hit.part)) Expand(*hit.item, !hit.item->IsExpanded());
}

void CTreeCtrl::NotifyItemActivated(Point point) {
  if (IsCreated()) OnItemActivated(point);
}

void CTreeCtrl::NotifyRightClick(Point point) {
  if (!TakeFocus()) return;
  const WindowHandle own = GetHandle();
  OnRightClick(point);
  if (IsWindow(own)) NotifyContextMenu(ClientToScreen(point));
}

void CTreeCtrl::NotifyBeginDrag(Point point) {
  if (!TakeFocus()) return;
  const TreeHit hit = HitTest(point);
  if (IsOnItem(hit.part)) OnBeginDrag(*hit.item, point);
}

void CTreeCtrl::NotifyScrolled(int newTopRow) {
  topRow_ = std::max(0, std::min(newTopRow, GetRowCount() - 1));
}

void CTreeCtrl::OnMouse(const MouseEvent& event) {
  // The toolkit may have its own mouse grab while a button is down.
  if (!HasCapture() && !GetClientRect().Contains(event.point)) return;
  switch (event.action) {
    case MouseAction::Press:
      if (event.button == MouseButton::Left) OnLeftPress(event.point);
      break;
    case MouseAction::DoubleClick:
      NotifyDoubleClick(event.button, event.point);
      break;
    case MouseAction::Move:
      OnMove(event.point);
      break;
    case MouseAction::Release:
      if (event.button == MouseButton::Left) OnLeftRelease(event.point);
      if (event.button == MouseButton::Right) NotifyRightClick(event.point);
      break;
  }
}

void CTreeCtrl::OnLeftPress(Point point) {
  if (!TakeFocus()) return;
  pressed_ = point;
  SetCapture();
}

void CTreeCtrl::OnMove(Point point) {
  const bool isDrag = pressed_ && (std::abs(point.x - pressed_->x) > kDragDistance ||
                                   std::abs(point.y - pressed_->y) > kDragDistance);
  if (isDrag) {
    const WindowHandle own = GetHandle();
    const Point start = *pressed_;
    pressed_.reset();
    ReleaseCapture();
    NotifyBeginDrag(start);
    if (!IsWindow(own)) return;
  }
  OnMouseMove(point);
}

void CTreeCtrl::OnLeftRelease(Point point) {
  if (pressed_) {
    const WindowHandle own = GetHandle();
    pressed_.reset();
    ReleaseCapture();
    NotifyClick(point);
    if (!IsWindow(own)) return;
  }
  OnLeftButtonUp(point);
}

void CTreeCtrl::OnKillFocus() {
  if (!pressed_) return;
  pressed_.reset();
  ReleaseCapture();
}

bool CTreeCtrl::OnKeyDown(const KeyEvent& event) {
  const WindowHandle own = GetHandle();
  if (OnItemKey(event) || !IsWindow(own)) return true;
  const bool isKnown = event.key >= kKeyPageUp && event.key <= kKeyDown;
  if (!isKnown || GetRootItem() == nullptr) return isKnown;
  if (selected_ == nullptr) {
    SelectItem(GetRootItem());
    return true;
  }
  CTreeItem* target = nullptr;
  switch (event.key) {
    case kKeyUp:
      target = selected_->GetPreviousVisible();
      break;
    case kKeyDown:
      target = selected_->GetNextVisible();
      break;
    case kKeyHome:
      target = GetRootItem();
      break;
    case kKeyEnd:
      target = GetRow(GetRowCount() - 1);
      break;
    case kKeyPageUp:
      target = GetRow(std::max(0, GetRowOf(*selected_) - RowsPerPage()));
      break;
    case kKeyPageDown:
      target = GetRow(std::min(GetRowCount() - 1, GetRowOf(*selected_) + RowsPerPage()));
      break;
    case kKeyLeft:
      if (!selected_->IsExpanded()) {
        target = selected_->GetParent();
      } else {
        Expand(*selected_, false);
      }
      break;
    case kKeyRight:
      if (selected_->IsExpanded()) {
        target = selected_->GetFirstChildItem();
      } else {
        Expand(*selected_, true);
      }
      break;
    default:
      break;
  }
  if (target != nullptr) SelectItem(target);
  return true;
}

bool CTreeCtrl::BeginDragImage(const CTreeItem& item, Point hotSpot, Point point) {
  return Peer() == nullptr || Peer()->OnDragBegun(item, hotSpot, ClientToScreen(point));
}

void CTreeCtrl::MoveDragImage(Point point) {
  if (Peer() != nullptr) Peer()->OnDragMoved(ClientToScreen(point));
}

void CTreeCtrl::EndDragImage() {
  if (Peer() != nullptr) Peer()->OnDragEnded();
}

}  // namespace tarn
