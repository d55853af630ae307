#include "widgets/TreeInput.h"

#include <algorithm>
#include <cstdlib>

#include "widgets/TreeCtrl.h"

namespace tarn {

namespace {

// Distance that the mouse may move with the button pressed before a drag starts.
constexpr int kDragDistance = 4;

}  // namespace

// The handler of the window that loses the focus may do anything, including destroying this
// control.
bool TreeInput::TakeFocus() {
  const WindowHandle own = tree_.GetHandle();
  tree_.SetFocus();
  return IsWindow(own);
}

void TreeInput::Click(Point point) {
  if (!TakeFocus()) return;
  const WindowHandle own = tree_.GetHandle();
  const TreeHit hit = tree_.HitTest(point);
  events_.OnClick(hit, point);
  // The handler may have refilled the tree.
  if (!IsWindow(own) || !(tree_.HitTest(point) == hit)) return;
  if (hit.part == TreePart::Button) {
    tree_.Expand(*hit.item, !hit.item->IsExpanded());
  } else if (hit.IsOnItem()) {
    tree_.SelectItem(hit.item);
  }
}

void TreeInput::DoubleClick(MouseButton button, Point point) {
  if (!TakeFocus()) return;
  if (button == MouseButton::Left) events_.OnLeftDoubleClick(point);
  if (button == MouseButton::Middle) events_.OnMiddleDoubleClick(point);
}

void TreeInput::RightClick(Point point) {
  if (!TakeFocus()) return;
  const WindowHandle own = tree_.GetHandle();
  events_.OnRightClick(point);
  if (IsWindow(own)) tree_.NotifyContextMenu(tree_.ClientToScreen(point));
}

void TreeInput::BeginDrag(Point point) {
  if (!TakeFocus()) return;
  const TreeHit hit = tree_.HitTest(point);
  if (hit.IsOnItem()) events_.OnBeginDrag(*hit.item, point);
}

void TreeInput::OnMouse(const MouseEvent& event) {
  // The toolkit may have its own mouse grab while a button is down.
  if (!tree_.HasCapture() && !tree_.GetClientRect().Contains(event.point)) return;
  switch (event.action) {
    case MouseAction::Press:
      if (event.button == MouseButton::Left) Press(event.point);
      break;
    case MouseAction::DoubleClick:
      DoubleClick(event.button, event.point);
      break;
    case MouseAction::Move:
      Move(event.point);
      break;
    case MouseAction::Release:
      if (event.button == MouseButton::Left) Release(event.point);
      if (event.button == MouseButton::Right) RightClick(event.point);
      break;
  }
}

void TreeInput::Press(Point point) {
  if (!TakeFocus()) return;
  pressed_ = point;
  tree_.SetCapture();
}

void TreeInput::Move(Point point) {
  const bool isDrag = pressed_ && (std::abs(point.x - pressed_->x) > kDragDistance ||
                                   std::abs(point.y - pressed_->y) > kDragDistance);
  if (isDrag) {
    const WindowHandle own = tree_.GetHandle();
    const Point start = *pressed_;
    pressed_.reset();
    tree_.ReleaseCapture();
    BeginDrag(start);
    if (!IsWindow(own)) return;
  }
  events_.OnMouseMove(point);
}

void TreeInput::Release(Point point) {
  if (pressed_) {
    const WindowHandle own = tree_.GetHandle();
    pressed_.reset();
    tree_.ReleaseCapture();
    Click(point);
    if (!IsWindow(own)) return;
  }
  events_.OnLeftButtonUp(point);
}

void TreeInput::CancelPress() {
  if (!pressed_) return;
  pressed_.reset();
  tree_.ReleaseCapture();
}

bool TreeInput::OnKey(const KeyEvent& event) {
  const WindowHandle own = tree_.GetHandle();
  if (events_.OnItemKey(event) || !IsWindow(own)) return true;
  const bool isKnown = event.key >= kKeyPageUp && event.key <= kKeyDown;
  if (!isKnown || tree_.GetRootItem() == nullptr) return isKnown;
  CTreeItem* const selected = tree_.GetSelectedItem();
  if (selected == nullptr) {
    tree_.SelectItem(tree_.GetRootItem());
    return true;
  }
  const TreeRows& rows = tree_.GetRows();
  CTreeItem* target = nullptr;
  switch (event.key) {
    case kKeyUp:
      target = selected->GetPreviousVisible();
      break;
    case kKeyDown:
      target = selected->GetNextVisible();
      break;
    case kKeyHome:
      target = tree_.GetRootItem();
      break;
    case kKeyEnd:
      target = rows.GetAt(rows.GetCount() - 1);
      break;
    case kKeyPageUp:
      target = rows.GetAt(std::max(0, rows.IndexOf(*selected) - tree_.GetRowsPerPage()));
      break;
    case kKeyPageDown:
      target = rows.GetAt(
          std::min(rows.GetCount() - 1, rows.IndexOf(*selected) + tree_.GetRowsPerPage()));
      break;
    case kKeyLeft:
      if (!selected->IsExpanded()) {
        target = selected->GetParent();
      } else {
        tree_.Expand(*selected, false);
      }
      break;
    case kKeyRight:
      if (selected->IsExpanded()) {
        target = selected->GetFirstChildItem();
      } else {
        tree_.Expand(*selected, true);
      }
      break;
    default:
      break;
  }
  if (target != nullptr) tree_.SelectItem(target);
  return true;
}

}  // namespace tarn
