#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "views/TreeOwner.h"
#include "views/XmlTreeCtrl.h"

namespace tarn::test {

// The tree that the tests of the XML tree control begin with.
inline constexpr const char* kTreeProject =
    "<Project Header='P'>"
    "<Group Header='G'><File Header='a.c' Desc='About a'/><File Header='b.c'/></Group>"
    "<Group Header='H'><File Header='c.c'><Dependencies Header='D'><File Header='d.h'/>"
    "<File Header='e.h'/></Dependencies></File></Group>"
    "<Hidden Header='X'><File Header='x.c'/></Hidden>"
    "</Project>";

// A shown tree with its owner and a mirror of what its peer is notified of.
struct XmlTreeTest : ::testing::Test {
  TreeMirror mirror;
  TreeOwner owner;
  std::unique_ptr<CXmlNode> root = ReadNode(kTreeProject);
  CXmlTreeCtrl& tree = *owner.tree;

  void SetUp() override {
    CreateTree(tree);
    tree.SetXmlRoot(root.get());
    owner.TakeMessages();
    mirror.TakeLines();
  }
  void CreateTree(CXmlTreeCtrl& control) {
    control.Create(2, kStyleChild | kStyleVisible, {0, 20, 300, 340}, &owner, 100);
    for (const char* name : {"Project", "Group", "File", "Dependencies"}) {
      control.AddImage(name, MakeBitmap(16, 16));
    }
  }
  CXmlNode* Node(const std::string& header) const {
    if (LabelOf(root.get()) == header) return root.get();
    return root->FindDescendantByAttr("Header", header);
  }
  // Returns the position of a label; positions to the left and right of it are relative to that.
  Point At(const std::string& header) const {
    const CXmlNode* const node = Node(header);
    if (node == nullptr) return {1, 1};
    const Rect rect = owner.tree->GetNodeTextRect(*node);
    return {rect.left + 1, (rect.top + rect.bottom) / 2};
  }
  // Returns a position on the item's row, to the right of the label.
  Point Beside(const std::string& header) const { return {250, At(header).y}; }
  void Mouse(MouseAction action, MouseButton button, Point point) {
    owner.tree->NotifyMouse({action, button, point});
  }
  void RightClick(int x, int y) { owner.tree->NotifyRightClick({x, y}); }
  void Press(int key, bool isShiftDown = false) { owner.tree->NotifyKey({key, isShiftDown}); }
  void BeginDrag(const std::string& header) {
    const Point start = At(header);
    Mouse(MouseAction::Press, MouseButton::Left, start);
    Mouse(MouseAction::Move, MouseButton::Left, {start.x + 5, start.y});
  }
  void Drag(const std::string& from, const std::string& to) {
    BeginDrag(from);
    Mouse(MouseAction::Move, MouseButton::Left, At(to));
    Mouse(MouseAction::Release, MouseButton::Left, At(to));
  }
  // Frees a node like an owner does: notifies the tree first.
  void Free(const std::string& header) {
    CXmlNode* const node = Node(header);
    owner.tree->InvalidateNode(*node);
    node->GetParent()->RemoveChild(node);
  }
};

}  // namespace tarn::test
