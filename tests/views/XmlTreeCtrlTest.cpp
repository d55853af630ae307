#include "views/XmlTreeCtrl.h"

#include <gtest/gtest.h>

#include <functional>
#include <random>

#include "platform/text/Text.h"
#include "support/ManualClock.h"
#include "views/XmlTreeFixture.h"
#include "xml/XmlNode.h"

namespace tarn {
namespace {

using test::LabelOf;
using test::ReadNode;
using test::TreeText;
using test::XmlTreeTest;
using Lines = std::vector<std::string>;

TEST_F(XmlTreeTest, TheOwnerIsNotifiedOfEachActionOnce) {
  const struct {
    const char* what;
    std::function<void()> action;
    const char* messages;
    const char* tree = nullptr;  // nullptr if unchanged
  } rows[] = {
      {"click on a label", [&] { tree.NotifyClick(At("a.c")); }, "select a.c",
       "P{G{*a.c b.c} H{c.c{D{d.h e.h}}}}"},
      {"again", [&] { tree.NotifyClick(At("a.c")); }, ""},
      {"click to the right of a label", [&] { tree.NotifyClick(Beside("b.c")); }, "select b.c",
       "P{G{a.c *b.c} H{c.c{D{d.h e.h}}}}"},
      {"click on a button",
       [&] {
         tree.NotifyClick({At("D").x - 30, At("D").y});
       },
       "", "P{G{a.c *b.c} H{c.c{D(d.h e.h)}}}"},
      {"left double click on an item with children",
       [&] { tree.NotifyDoubleClick(MouseButton::Left, At("D")); }, "open b.c"},
      {"middle double click", [&] { tree.NotifyDoubleClick(MouseButton::Middle, At("D")); },
       "activate b.c"},
      {"activated by a gesture of the toolkit", [&] { tree.NotifyItemActivated(At("H")); },
       "activate H"},
      {"the same beside the label", [&] { tree.NotifyItemActivated(Beside("H")); }, ""},
      {"right click on an item", [&] { RightClick(40, 100); },
       "select D\nright click 40,100 D\nmenu 140,170", "P{G{a.c b.c} H{c.c{*D(d.h e.h)}}}"},
      {"right click on nothing", [&] { RightClick(40, 300); },
       "right click 40,300 D\nmenu 140,370"},
      {"plain up", [&] { Press(kKeyUp); }, "key 38 D\nselect c.c",
       "P{G{a.c b.c} H{*c.c{D(d.h e.h)}}}"},
      {"another key", [&] { Press(kKeyDelete); }, "key 46 c.c"},
      {"left closes", [&] { Press(kKeyLeft); }, "key 37 c.c", "P{G{a.c b.c} H{*c.c(D(d.h e.h))}}"},
      {"closing over the selection", [&] { tree.Expand(*tree.GetRootItem(), false); }, "select P",
       "*P(G{a.c b.c} H{c.c(D(d.h e.h))})"},
      {"selected by the owner, below closed ones", [&] { tree.SelectNode(Node("e.h")); },
       "select e.h", "P{G{a.c b.c} H{c.c{D{d.h *e.h}}}}"},
      {"the same by the owner", [&] { tree.SelectNode(Node("e.h")); }, "select e.h"},
      {"what isn't shown", [&] { tree.SelectNode(Node("x.c")); }, ""},
      {"reorder below Dependencies", [&] { Press(kKeyUp, true); }, ""},
      {"reorder a first child",
       [&] {
         tree.SelectNode(Node("a.c"));
         Press(kKeyUp, true);
       },
       "select a.c", "P{G{*a.c b.c} H{c.c{D{d.h e.h}}}}"},
      {"reorder downwards: the selection stays on its line", [&] { Press(kKeyDown, true); },
       "reorder b.c\nselect b.c", "P{G{*b.c a.c} H{c.c{D{d.h e.h}}}}"},
      {"reorder upwards",
       [&] {
         tree.SelectNode(Node("H"));
         Press(kKeyUp, true);
       },
       "reorder G\nselect G\nselect G", "P{H{c.c{D{d.h e.h}}} *G{b.c a.c}}"},
      {"reorder a last child", [&] { Press(kKeyDown, true); }, ""},
      {"reorder the root",
       [&] {
         tree.SelectNode(root.get());
         Press(kKeyDown, true);
       },
       "select P", "*P{H{c.c{D{d.h e.h}}} G{b.c a.c}}"},
      {"drag to another item", [&] { Drag("a.c", "d.h"); }, "select a.c\ndrop a.c on d.h",
       "P{H{c.c{D{d.h e.h}}} G{b.c *a.c}}"},
      {"drag on itself", [&] { Drag("G", "G"); }, "select G", "P{H{c.c{D{d.h e.h}}} *G{b.c a.c}}"},
      {"drag below itself", [&] { Drag("H", "e.h"); }, "select H",
       "P{*H{c.c{D{d.h e.h}}} G{b.c a.c}}"},
      {"drag to a closed item",
       [&] {
         Press(kKeyLeft);
         Drag("a.c", "H");
       },
       "key 37 H\nselect a.c\ndrop a.c on H", "P{H{c.c{D{d.h e.h}}} G{b.c *a.c}}"},
      {"a drag that never meets an item",
       [&] {
         BeginDrag("a.c");
         Mouse(MouseAction::Release, MouseButton::Left, {250, 310});
       },
       ""},
      {"a drag that loses the keyboard",
       [&] {
         BeginDrag("a.c");
         Mouse(MouseAction::Move, MouseButton::Left, At("H"));
         EXPECT_TRUE(tree.IsDragging());
         EXPECT_EQ(LabelOf(Node("H")), tree.GetDropHighlight()->GetText());
         tree.NotifyFocusLost();
         EXPECT_FALSE(tree.IsDragging());
         Mouse(MouseAction::Release, MouseButton::Left, At("H"));
       },
       ""},
      {"a drag without a picture",
       [&] {
         mirror.dragWorks = false;
         Drag("a.c", "H");
         mirror.dragWorks = true;
       },
       ""},
  };
  EXPECT_EQ(TreeText(tree), "P{G{a.c b.c} H{c.c{D{d.h e.h}}}}");
  std::string wanted = TreeText(tree);
  for (const auto& row : rows) {
    row.action();
    if (row.tree != nullptr) wanted = row.tree;
    EXPECT_EQ(owner.TakeMessages(), SplitLines(row.messages)) << row.what;
    EXPECT_EQ(TreeText(tree), wanted) << row.what;
    EXPECT_EQ(mirror.Text(), wanted) << row.what;
    const CTreeItem* const item = tree.GetSelectedItem();
    if (item != nullptr && std::string(row.what).find("gesture") == std::string::npos &&
        std::string(row.what).find("beside") == std::string::npos) {
      EXPECT_EQ(LabelOf(tree.GetCurrentNode()), item->GetText()) << row.what;
    }
  }
}

TEST_F(XmlTreeTest, WhatIsClosedStaysClosedWhenSiblingsChangePlaces) {
  tree.SelectNode(Node("H"));
  tree.Expand(*tree.GetRootItem()->GetFirstChildItem(), false);
  Press(kKeyUp, true);
  EXPECT_EQ(TreeText(tree), "P{H{c.c{D{d.h e.h}}} *G(a.c b.c)}");
}

TEST_F(XmlTreeTest, ADragFollowsTheCursorAndGivesTheMouseBackAtTheFirstMove) {
  tree.SelectNode(Node("a.c"));
  tree.MoveWindow({0, 20, 300, 20 + 3 * 16});
  mirror.TakeLines();
  tree.NotifyBeginDrag(At("a.c"));
  Mouse(MouseAction::Move, MouseButton::Left, {60, 33});
  Mouse(MouseAction::Move, MouseButton::Left, {60, 60});  // outside, and without mouse capture
  Mouse(MouseAction::Release, MouseButton::Left, {60, 60});
  EXPECT_TRUE(tree.IsDragging());
  Mouse(MouseAction::Move, MouseButton::None, {60, 40});
  Mouse(MouseAction::Release, MouseButton::Left, {60, 40});
  EXPECT_EQ(mirror.TakeLines(),
            (Lines{"picture a.c -15,-15 at 177,110", "capture", "picture to 160,103", "scrolled 1",
                   "no capture", "picture to 160,110", "scrolled 2", "no picture"}));
  EXPECT_EQ(owner.TakeMessages(), (Lines{"drop a.c on b.c", "select a.c"}));
}

TEST_F(XmlTreeTest, NoDragBeginsWhenTheOwnerSelectsAnotherItemFirst) {
  int left = 1;
  owner.then = [&] {
    if (left-- > 0) tree.SelectNode(Node("b.c"));
  };
  BeginDrag("a.c");
  EXPECT_FALSE(tree.IsDragging());
  EXPECT_EQ(owner.TakeMessages(), (Lines{"select a.c", "select b.c"}));
}

TEST_F(XmlTreeTest, HelpIsSpentByTheNextClickWhateverItHits) {
  const auto helpAt = [&](Point point) {
    tree.SetHelpMode(true);
    Mouse(MouseAction::Move, MouseButton::None, point);
    tree.NotifyClick(point);
    EXPECT_FALSE(tree.IsHelpMode());
    EXPECT_EQ(mirror.TakeLines().front(), "cursor help");
    return tree.GetTipWindow().IsVisible();
  };
  test::ManualClock clock;
  const CTipWindow& tip = tree.GetTipWindow();
  EXPECT_FALSE(helpAt(At("b.c"))) << "nothing to say";
  EXPECT_FALSE(helpAt({5, 310})) << "no item";
  EXPECT_FALSE(helpAt({40, At("a.c").y})) << "indent";
  for (const int x : {At("a.c").x, At("a.c").x - 10, 250}) {
    EXPECT_TRUE(helpAt({x, At("a.c").y})) << x;
    EXPECT_EQ(tip.GetTitle() + ": " + tip.GetControlText(), "a.c: About a");
    EXPECT_EQ(tip.GetFrameStyle(), 6);
    clock.Advance(std::chrono::milliseconds(4999));
    EXPECT_TRUE(tip.IsVisible());
    clock.Advance(std::chrono::milliseconds(1));
    EXPECT_FALSE(tip.IsVisible());
  }
  helpAt(At("a.c"));
  tree.NotifyRightClick(At("b.c"));
  EXPECT_FALSE(tip.IsVisible());
  tree.NotifyClick(At("a.c"));
  EXPECT_FALSE(tip.IsVisible()) << "without help";
}

TEST_F(XmlTreeTest, MessagesMayDoAnything) {
  const std::function<void()> actions[] = {
      [&] { owner.tree->NotifyClick(At("a.c")); },
      [&] { owner.tree->NotifyClick(Beside("b.c")); },
      [&] {
        owner.tree->SetHelpMode(true);
        owner.tree->NotifyClick(Beside("a.c"));
      },
      [&] { owner.tree->NotifyDoubleClick(MouseButton::Left, At("G")); },
      [&] { owner.tree->NotifyDoubleClick(MouseButton::Middle, At("G")); },
      [&] { owner.tree->NotifyItemActivated(At("G")); },
      [&] { owner.tree->NotifyRightClick(At("c.c")); },
      [&] { Press(kKeyDown); },
      [&] { Press(kKeyUp, true); },
      [&] { Press(kKeyDown, true); },
      [&] { Drag("c.c", "a.c"); },
      [&] { owner.tree->SelectNode(Node("a.c")); },
      [&] { owner.tree->Expand(*owner.tree->GetRootItem(), false); },
      [&] {
        owner.tree->SetSelectedLabel("c.c");
        owner.tree->Refill();
      },
  };
  const std::function<void()> reactions[] = {
      [&] { owner.tree = std::make_unique<CXmlTreeCtrl>(); },
      [&] { owner.tree->DestroyWindow(); },
      [&] { owner.DestroyWindow(); },
      [&] { owner.tree->SetXmlRoot(nullptr); },
      [&] {
        owner.tree->SaveViewState();
        owner.tree->Refill();
      },
      [&] {
        Free("G");
        owner.tree->Refill();
      },
      [&] {
        owner.tree->InvalidateNode(*root);
        root = ReadNode(test::kTreeProject);
        owner.tree->SetXmlRoot(root.get());
      },
      [&] { owner.tree->NotifyFocusLost(); },
  };
  for (const auto& action : actions) {
    for (const auto& reaction : reactions) {
      owner.tree = std::make_unique<CXmlTreeCtrl>();
      owner.DestroyWindow();
      owner.Create(kStylePopup, {100, 50, 400, 450}, nullptr, 0);
      root = ReadNode(test::kTreeProject);
      Node("G")->AddChild("File")->SetAttrValue("Header", "c.c");
      root->AddChild("Group")->SetAttrValue("Header", "L");
      CreateTree(*owner.tree);
      owner.tree->SetXmlRoot(root.get());
      owner.tree->SelectNode(Node("H"));
      owner.TakeMessages();
      int left = 1;  // the handlers triggered by the reaction run without one
      owner.then = [&] {
        if (left-- > 0) reaction();
      };
      owner.tree->SetFocus();
      action();
      while (MessageLoop::ForCurrentThread()->Pump()) {
      }
      owner.then = nullptr;
      EXPECT_LE(left, 0) << "no message came of action " << &action - actions;
      if (!owner.tree->IsCreated()) continue;
      EXPECT_EQ(mirror.Text(), TreeText(*owner.tree));
    }
  }
}

}  // namespace
}  // namespace tarn
