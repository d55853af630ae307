#include "widgets/TreeCtrl.h"

#include <gtest/gtest.h>

#include <functional>
#include <random>

#include "platform/text/Text.h"
#include "support/ManualClock.h"
#include "support/TreeMirror.h"
#include "widgets/TipWindow.h"

namespace tarn {
namespace {

using test::TreeText;
using Lines = std::vector<std::string>;

// A tree that records its events.
class TalkingTree : public CTreeCtrl {
 public:
  explicit TalkingTree(Lines& treeLines) : lines_(treeLines) {}
  ~TalkingTree() override { DestroyWindow(); }

  std::function<void()> whenSelected;
  std::function<void()> whenClicked;
  std::function<void()> whenExpanded;

 protected:
  void OnSelectionChanged() override {
    lines_.push_back("selected " + NameOf(GetSelectedItem()));
    if (whenSelected) whenSelected();
  }
  void OnClick(const TreeHit& hit, Point) override {
    static constexpr const char* kParts[] = {"nowhere", "indent", "button",        "state",
                                             "icon",    "label",  "right of label"};
    lines_.push_back("click on " + std::string(kParts[static_cast<int>(hit.part)]) + " of " +
                     NameOf(hit.item));
    if (whenClicked) whenClicked();
  }
  void OnMiddleDoubleClick(Point) override { lines_.push_back("middle double click"); }
  void OnItemActivated(Point) override { lines_.push_back("activated"); }
  void OnRightClick(Point) override { lines_.push_back("right click"); }
  bool OnItemKey(const KeyEvent& event) override { return event.isControlDown; }
  void OnBeginDrag(CTreeItem& item, Point point) override {
    lines_.push_back("drag " + NameOf(&item) + " from " + std::to_string(point.x));
  }
  void OnLeftButtonUp(Point) override { lines_.push_back("button up"); }
  bool OnContextMenu(Point screen) override {
    lines_.push_back("menu at " + std::to_string(screen.x) + "," + std::to_string(screen.y));
    return true;
  }
  void OnItemExpanded(const CTreeItem&) override {
    if (whenExpanded) whenExpanded();
  }
  void OnItemGone(const CTreeItem& item) override { lines_.push_back("gone " + NameOf(&item)); }

 private:
  static std::string NameOf(const CTreeItem* item) { return item ? item->GetText() : "nothing"; }

  Lines& lines_;
};

// The window is four lines of 16 pixels high.
struct TreeCtrlTest : ::testing::Test {
  Lines lines;
  test::TreeMirror mirror;
  TalkingTree tree{lines};
  CTreeItem* p = nullptr;
  CTreeItem* a = nullptr;

  void SetUp() override {
    tree.Create(kStyleChild | kTreeHasButtons | kTreeLinesAtRoot, {100, 50, 300, 114}, nullptr, 1);
    p = &tree.InsertItem(nullptr, "p", -1, -1, nullptr);
    a = &tree.InsertItem(p, "a", -1, -1, nullptr);
    for (const char* name : {"a1", "a2", "a3"}) tree.InsertItem(a, name, -1, -1, nullptr);
    tree.InsertItem(p, "b", -1, -1, nullptr);
    tree.Expand(*p, true);
    mirror.TakeLines();
  }
  void Press(int key, bool isControlDown = false) { tree.NotifyKey({key, false, isControlDown}); }
  void Mouse(MouseAction action, MouseButton button, int x, int y) {
    tree.NotifyMouse({action, button, {x, y}});
  }
  void Click(int x, int y) {
    Mouse(MouseAction::Press, MouseButton::Left, x, y);
    Mouse(MouseAction::Release, MouseButton::Left, x, y);
  }
  CTreeItem& At(const CTreeItem* above, int at) { return *tree.GetItemAt(above, at); }
};

TEST_F(TreeCtrlTest, WhatTheUserDoesChangesTheTreeAsToldAndFiresOnce) {
  // A label starts 19 pixels after its level's indent, including the top level, and is 8 pixels
  // wide per byte.
  const struct {
    const char* what;
    std::function<void()> action;
    const char* events;
    const char* tree = nullptr;  // null: unchanged
  } rows[] = {
      {"right of a label", [&] { Click(60, 20); }, "click on right of label of a\nbutton up",
       "p{a(a1 a2 a3) b}"},
      {"below the last line", [&] { Click(60, 63); }, "click on nowhere of nothing\nbutton up"},
      {"a label", [&] { Click(39, 20); }, "click on label of a\nselected a\nbutton up",
       "p{*a(a1 a2 a3) b}"},
      {"the same label again", [&] { Click(39, 20); }, "click on label of a\nbutton up"},
      {"a button", [&] { Click(20, 20); }, "click on button of a\nbutton up", "p{*a{a1 a2 a3} b}"},
      {"where a leaf has no button", [&] { Click(39, 40); }, "click on indent of a1\nbutton up"},
      {"a double click", [&] { Mouse(MouseAction::DoubleClick, MouseButton::Left, 39, 20); },
       "activated", "p{*a(a1 a2 a3) b}"},
      {"a middle one", [&] { Mouse(MouseAction::DoubleClick, MouseButton::Middle, 39, 20); },
       "middle double click"},
      {"a right click", [&] { Mouse(MouseAction::Release, MouseButton::Right, 39, 40); },
       "right click\nmenu at 139,90"},
      {"a slip of the mouse",
       [&] {
         Mouse(MouseAction::Press, MouseButton::Left, 39, 36);
         Mouse(MouseAction::Move, MouseButton::Left, 43, 40);
         Mouse(MouseAction::Release, MouseButton::Left, 43, 40);
       },
       "click on label of b\nselected b\nbutton up", "p{a(a1 a2 a3) *b}"},
      {"a drag",
       [&] {
         Mouse(MouseAction::Press, MouseButton::Left, 39, 36);
         Mouse(MouseAction::Move, MouseButton::Left, 44, 36);
         Mouse(MouseAction::Release, MouseButton::Left, 44, 36);
       },
       "drag b from 39\nbutton up"},
      {"a press that loses the keyboard, and a move without a button",
       [&] {
         Mouse(MouseAction::Press, MouseButton::Left, 39, 36);
         tree.NotifyFocusLost();
         Mouse(MouseAction::Move, MouseButton::None, 99, 36);
       },
       ""},
      {"a release outside", [&] { Mouse(MouseAction::Release, MouseButton::Left, 39, 64); }, ""},
      {"up", [&] { Press(kKeyUp); }, "selected a", "p{*a(a1 a2 a3) b}"},
      {"a key that the control has used", [&] { Press(kKeyUp, true); }, ""},
      {"right opens", [&] { Press(kKeyRight); }, "", "p{*a{a1 a2 a3} b}"},
      {"right goes in", [&] { Press(kKeyRight); }, "selected a1", "p{a{*a1 a2 a3} b}"},
      {"right on a leaf", [&] { Press(kKeyRight); }, ""},
      {"end", [&] { Press(kKeyEnd); }, "selected b", "p{a{a1 a2 a3} *b}"},
      {"down at the end", [&] { Press(kKeyDown); }, ""},
      {"up from behind an open item", [&] { Press(kKeyUp); }, "selected a3", "p{a{a1 a2 *a3} b}"},
      {"page up", [&] { Press(kKeyPageUp); }, "selected p", "*p{a{a1 a2 a3} b}"},
      {"page down", [&] { Press(kKeyPageDown); }, "selected a3", "p{a{a1 a2 *a3} b}"},
      {"left goes out", [&] { Press(kKeyLeft); }, "selected a", "p{*a{a1 a2 a3} b}"},
      {"a key of its own meaning", [&] { Press(kKeyDelete); }, ""},
      {"closing over the selection",
       [&] {
         Press(kKeyDown);
         tree.Expand(*p, false);
       },
       "selected a1\nselected p", "*p(a{a1 a2 a3} b)"},
      {"home", [&] { Press(kKeyHome); }, ""},
      {"left on a closed top", [&] { Press(kKeyLeft); }, ""},
  };
  std::string wanted = TreeText(tree);
  for (const auto& row : rows) {
    lines.clear();
    row.action();
    if (row.tree != nullptr) wanted = row.tree;
    EXPECT_EQ(lines, SplitLines(row.events)) << row.what;
    EXPECT_EQ(TreeText(tree), wanted) << row.what;
    EXPECT_EQ(mirror.Text(), wanted) << row.what;
  }
}

TEST_F(TreeCtrlTest, DeletingFiresNothingAndNothingPointsAtWhatIsGone) {
  tree.SelectItem(&At(a, 1));
  tree.SetDropHighlight(&At(a, 1));
  lines.clear();
  tree.DeleteItems(p, 0, 1);
  EXPECT_EQ(lines, (Lines{"gone a1", "gone a2", "gone a3", "gone a"}));
  EXPECT_EQ(tree.GetSelectedItem(), nullptr);
  EXPECT_EQ(tree.GetDropHighlight(), nullptr);
  EXPECT_EQ(tree.GetRows().GetCount(), 2);
  tree.DeleteItems(p, 0, 9);
  EXPECT_FALSE(p->IsExpanded()) << "without children";
  tree.Expand(*p, true);
  EXPECT_FALSE(p->IsExpanded());
  tree.DeleteAllItems();
  EXPECT_EQ(mirror.Text(), "");
  EXPECT_EQ(tree.HitTest({39, 2}), TreeHit{});
  EXPECT_EQ(tree.GetTopRow(), 0);
}

TEST_F(TreeCtrlTest, ScrollsNoFurtherThanNeeded) {
  tree.EnsureVisible(At(a, 0));
  EXPECT_EQ(tree.GetTopRow(), 0);
  tree.EnsureVisible(At(p, 1));
  EXPECT_EQ(tree.GetTopRow(), 2);
  EXPECT_EQ(tree.GetTextRect(At(a, 0)), (Rect{57, 0, 73, 16}));
  EXPECT_EQ(tree.HitTest({58, 3}), (TreeHit{&At(a, 0), TreePart::Label}));
  tree.EnsureVisible(*p);
  EXPECT_EQ(tree.GetTopRow(), 0);
  EXPECT_EQ(mirror.TakeLines(), (Lines{"expanded a", "scrolled 2", "scrolled 0"}));
  tree.NotifyScrolled(99);
  EXPECT_EQ(tree.GetTopRow(), 5);
  tree.Expand(*p, false);
  EXPECT_EQ(tree.GetTopRow(), 0);
  EXPECT_EQ(tree.GetTextRect(At(a, 0)), Rect{});
  EXPECT_EQ(tree.GetRows().IndexOf(*a), -1);
}

TEST_F(TreeCtrlTest, WithoutRedrawThePeerHearsOneReset) {
  tree.SetRedraw(false);
  tree.SetRedraw(true);
  EXPECT_EQ(mirror.TakeLines(), Lines{});
  tree.SetRedraw(false);
  tree.DeleteItems(p, 0, 1);
  tree.SetItem(*p, "q", 1, 1);
  tree.SelectItem(&tree.InsertItem(p, "c", -1, -1, nullptr));
  EXPECT_EQ(mirror.TakeLines(), (Lines{"resetting"}));
  tree.SetRedraw(true);
  EXPECT_EQ(mirror.TakeLines(), (Lines{"reset"}));
  EXPECT_EQ(mirror.Text(), "q{b *c}");
}

TEST_F(TreeCtrlTest, AnEventMayEndTheTree) {
  tree.DestroyWindow();
  auto own = std::make_unique<TalkingTree>(lines);
  const auto rebuild = [&] {
    own = std::make_unique<TalkingTree>(lines);
    own->Create(kStyleChild, {0, 0, 200, 64}, nullptr, 1);
    CTreeItem& root = own->InsertItem(nullptr, "r", -1, -1, nullptr);
    own->InsertItem(&root, "s", -1, -1, nullptr);
    own->SelectItem(&root);
    own->whenSelected = own->whenClicked = [&] { own.reset(); };
  };
  const std::function<void()> actions[] = {
      [&] {
        own->NotifyClick({2, 2});
      },
      [&] { own->NotifyKey({kKeyRight}), own->NotifyKey({kKeyRight}); },
      [&] {
        own->Expand(*own->GetRootItem(), true);
        own->NotifyMouse({MouseAction::Press, MouseButton::Left, {25, 20}});
        own->NotifyMouse({MouseAction::Release, MouseButton::Left, {25, 20}});
      },
      [&] {
        own->whenExpanded = [&] { own.reset(); };
        own->Expand(*own->GetRootItem(), true);
      },
      [&] {
        own->whenExpanded = [&] { own.reset(); };
        own->SelectItem(own->GetItemAt(own->GetRootItem(), 0));
      },
  };
  for (const auto& action : actions) {
    rebuild();
    action();
    EXPECT_EQ(own, nullptr);
  }
}

TEST_F(TreeCtrlTest, AClickThatTakesItsItemAwaySelectsNothing) {
  tree.whenClicked = [&] { tree.DeleteItems(p, 0, 1); };
  lines.clear();
  tree.NotifyClick({39, 20});
  EXPECT_EQ(lines.front(), "click on label of a");
  EXPECT_EQ(lines.back(), "gone a");
  EXPECT_EQ(TreeText(tree), "p{b}");
}

// A long sequence of random changes; a peer maintains a copy of the tree from its notifications.
TEST_F(TreeCtrlTest, WhatThePeerHearsIsWhatHasHappened) {
  std::mt19937 random(7);
  const auto pick = [&](int count) { return static_cast<int>(random() % unsigned(count)); };
  for (int step = 0; step < 1000; ++step) {
    CTreeItem* above = nullptr;
    for (int depth = pick(4); depth > 0 && tree.GetItemCount(above) > 0; --depth) {
      above = tree.GetItemAt(above, pick(tree.GetItemCount(above)));
    }
    CTreeItems items;
    switch (pick(6)) {
      case 0:
      case 1:
        for (int i = pick(3); i >= 0; --i) {
          items.push_back(std::make_unique<CTreeItem>(std::to_string(step), -1, -1, nullptr));
          items.back()->AppendChild(std::make_unique<CTreeItem>("x", -1, -1, nullptr));
          items.back()->SetExpanded(pick(2) == 0);
        }
        tree.InsertItems(above, pick(tree.GetItemCount(above) + 1), std::move(items));
        break;
      case 2:
        tree.DeleteItems(above, pick(4), pick(4));
        break;
      case 3:
        if (above != nullptr) tree.Expand(*above, pick(2) == 0);
        break;
      case 4:
        if (above != nullptr) tree.SetItem(*above, "n" + std::to_string(step), -1, -1);
        break;
      default:
        tree.SelectItem(above);
    }
    ASSERT_EQ(mirror.Text(), TreeText(tree)) << step;
    // The lines are numbered after several changes, too.
    if (pick(2) == 0) continue;
    const CTreeItem* before = nullptr;
    for (int row = 0; row < tree.GetRows().GetCount(); ++row) {
      CTreeItem* const item = tree.GetRows().GetAt(row);
      ASSERT_EQ(tree.GetRows().IndexOf(*item), row);
      ASSERT_EQ(item->GetPreviousVisible(), before);
      ASSERT_TRUE(before == nullptr || before->GetNextVisible() == item);
      before = item;
    }
  }
}

TEST(TipWindowTest, ShowsAfterItsDelayForItsTime) {
  using std::chrono::milliseconds;
  test::ManualClock clock;
  CWnd owner;
  owner.Create(kStylePopup, {0, 0, 100, 100}, nullptr, 0);
  CTipWindow tip;
  ASSERT_TRUE(tip.Create(&owner));
  EXPECT_FALSE(tip.IsVisible());
  tip.SetMargins({3, 2});
  tip.SetLineSpace(4);
  tip.ShowTip("Title", "a line\nmore", {10, 20}, milliseconds(0), milliseconds(5000));
  EXPECT_EQ(tip.GetRect(), (Rect{10, 20, 10 + 6 * 8 + 6, 20 + 3 * 16 + 2 * 4 + 4}));
  clock.Advance(milliseconds(4999));
  EXPECT_TRUE(tip.IsVisible());
  tip.ShowTip("Other", "", {0, 0}, milliseconds(300), milliseconds(1000));
  EXPECT_FALSE(tip.IsVisible()) << "the new one waits";
  clock.Advance(milliseconds(300));
  EXPECT_TRUE(tip.IsVisible());
  clock.Advance(milliseconds(1000));
  EXPECT_FALSE(tip.IsVisible());
  tip.ShowTip("Last", "", {0, 0}, milliseconds(300), milliseconds(0));
  tip.Hide();
  clock.Advance(milliseconds(5000));
  EXPECT_FALSE(tip.IsVisible()) << "hidden while it waited";
}

}  // namespace
}  // namespace tarn
