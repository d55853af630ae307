#pragma once

#include <optional>

#include "widgets/Geometry.h"
#include "widgets/Wnd.h"

namespace tarn {

class CTreeCtrl;
class CTreeItem;
struct TreeHit;

// Events of a tree that report user input. The default implementations do nothing.
class TreeInputEvents {
 public:
  // Called before a click on a button expands, or before one on an icon or label selects.
  virtual void OnClick(const TreeHit& /*hit*/, Point /*point*/) {}
  virtual void OnLeftDoubleClick(Point /*point*/) {}
  virtual void OnMiddleDoubleClick(Point /*point*/) {}
  virtual void OnItemActivated(Point /*point*/) {}
  virtual void OnRightClick(Point /*point*/) {}
  // Return true if the key must not move the selection.
  virtual bool OnItemKey(const KeyEvent& /*event*/) { return false; }
  virtual void OnBeginDrag(CTreeItem& /*item*/, Point /*point*/) {}
  virtual void OnMouseMove(Point /*point*/) {}
  virtual void OnLeftButtonUp(Point /*point*/) {}
  // Returns false without a drag in progress.
  virtual bool OnDragCancelled() { return false; }

 protected:
  ~TreeInputEvents() = default;
};

// User input of a tree: recognises gestures in mouse events, handles the keys that move the
// selection, and fires the events for them. Every function except CancelPress() may run an event
// handler that destroys the control.
class TreeInput {
 public:
  // The control and the receiver of the events are borrowed.
  TreeInput(CTreeCtrl& tree, TreeInputEvents& events) : tree_(tree), events_(events) {}

  void OnMouse(const MouseEvent& event);
  // Returns true if the key was used.
  bool OnKey(const KeyEvent& event);

  // --- Single gestures; see the functions of CTreeCtrl that report them ---

  void Click(Point point);
  void DoubleClick(MouseButton button, Point point);
  void RightClick(Point point);
  void BeginDrag(Point point);

  // Makes the current press of the left button neither a click nor a drag.
  void CancelPress();

 private:
  // Returns false if the control was destroyed.
  bool TakeFocus();
  void Press(Point point);
  void Release(Point point);
  void Move(Point point);

  CTreeCtrl& tree_;
  TreeInputEvents& events_;
  std::optional<Point> pressed_;  // position of a left press that may become a drag
};

}  // namespace tarn
