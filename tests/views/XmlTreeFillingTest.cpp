// Filling of the XML tree control from a tree, and what the control preserves.

#include "views/XmlTreeCtrl.h"

#include <gtest/gtest.h>

#include <functional>
#include <random>
#include <set>

#include "platform/text/Text.h"
#include "views/XmlTreeFixture.h"

namespace tarn {
namespace {

using test::ReadNode;
using test::TreeText;
using test::XmlTreeTest;
using Lines = std::vector<std::string>;

TEST_F(XmlTreeTest, FillingShowsWhatHasAnImageUnderItsLabel) {
  const struct {
    const char* what;
    const char* xml;
    const char* tree;
  } rows[] = {
      {"root without an image", "<Hidden><File Header='a'/></Hidden>", ""},
      {"names are exact", "<Project Header='P'><file Header='a'/><File Header='b'/></Project>",
       "P{b}"},
      {"texts and comments", "<Project Header='P'><!-- n --><File Header='b'/>t</Project>", "P{b}"},
      {"labels", "<Project Header='P' Path='q'><File Path='f'/><File Header=''/><File/></Project>",
       "P{f  *}"},
      {"expansion",
       "<Project Header='P' sate='33'><Group Header='A' sate='0'><File Header='x'/></Group>"
       "<Group Header='B' sate='31'><File Header='x'/></Group>"
       "<Group Header='C' sate=''><File Header='x'/></Group>"
       "<Group Header='D' sate='32'/></Project>",
       "P{A(x) B(x) C(x) D}"},
  };
  for (const auto& row : rows) {
    tree.SetXmlRoot(nullptr);
    EXPECT_EQ(TreeText(tree), "");
    root = ReadNode(row.xml);
    tree.SetSelectedLabel("");
    tree.SetXmlRoot(root.get());
    EXPECT_EQ(TreeText(tree), row.tree) << row.what;
    EXPECT_EQ(mirror.Text(), TreeText(tree)) << row.what;
  }
}

TEST_F(XmlTreeTest, ImagesHideAndShowWholeSubtrees) {
  tree.AddImage("Group", test::MakeBitmap(16, 16));  // already has an image
  tree.AddImage("Hidden", nullptr);
  tree.RemoveImage("Dependencies");
  tree.Refill();
  EXPECT_EQ(TreeText(tree), "P{G{a.c b.c} H{c.c}}");
  tree.AddImage("Dependencies", test::MakeBitmap(16, 16));
  tree.Refill();
  EXPECT_EQ(TreeText(tree), "P{G{a.c b.c} H{c.c{D{d.h e.h}}}}");
  EXPECT_EQ(mirror.Text(), TreeText(tree));
  EXPECT_EQ(tree.GetImageList()->GetCount(), 5);
  EXPECT_EQ(tree.GetRootItem()->GetImage(), 0);
  EXPECT_EQ(tree.GetRootItem()->GetFirstChildItem()->GetSelectedImage(), 1);
}

TEST_F(XmlTreeTest, ViewStateIsWrittenIntoEveryShownNodeAndComesBack) {
  tree.SelectNode(Node("c.c"));
  tree.Expand(*tree.GetRootItem()->GetFirstChildItem(), false);
  tree.SaveViewState();
  EXPECT_EQ(tree.GetSelectedLabel(), "c.c");
  std::string states;
  for (const char* header : {"P", "G", "a.c", "H", "d.h"}) {
    states += std::string(header) + "=" + Node(header)->GetAttrValue("sate") + " ";
  }
  EXPECT_EQ(states, "P=32 G=0 a.c=0 H=32 d.h=0 ");
  EXPECT_EQ(Node("x.c")->GetAttrValue("sate"), nullptr);
  owner.TakeMessages();
  tree.SetXmlRoot(nullptr);
  tree.SaveViewState();
  EXPECT_EQ(tree.GetCurrentNode(), nullptr);
  tree.SetXmlRoot(root.get());
  EXPECT_EQ(TreeText(tree), "P{G(a.c b.c) H{*c.c{D{d.h e.h}}}}");
  EXPECT_EQ(owner.TakeMessages(), (Lines{"select c.c"}));
}

TEST_F(XmlTreeTest, EveryItemWithTheSelectedLabelIsSelectedInTurn) {
  for (const char* header : {"G", "H"}) {
    Node(header)->AddChild("File")->SetAttrValue("Header", "Main.c");
  }
  tree.SetSelectedLabel("main.C");
  tree.Refill();
  EXPECT_EQ(owner.TakeMessages(), (Lines{"select Main.c", "select Main.c"}));
  EXPECT_EQ(TreeText(tree), "P{G{a.c b.c Main.c} H{c.c{D{d.h e.h}} *Main.c}}");
  EXPECT_EQ(tree.GetCurrentNode(), Node("H")->GetChild(1));
  // If a message handler refills the tree, the selections of that fill are the last ones.
  int left = 1;
  owner.then = [&] {
    if (left-- <= 0) return;
    tree.SetSelectedLabel("a.c");
    tree.Refill();
  };
  tree.Refill();
  owner.then = nullptr;
  EXPECT_EQ(owner.TakeMessages(), (Lines{"select Main.c", "select a.c"}));
  tree.SetSelectedLabel("main.C");
  // If the only match is selected already, the message is sent anyway.
  Free("Main.c");
  tree.Refill();
  EXPECT_EQ(owner.TakeMessages(), (Lines{"select Main.c"}));
  tree.SetSelectedLabel("none");
  tree.Refill();
  EXPECT_EQ(owner.TakeMessages(), Lines{});
  EXPECT_EQ(tree.GetCurrentNode(), nullptr);
  EXPECT_EQ(tree.GetSelectedItem(), nullptr);
  EXPECT_EQ(mirror.Text(), TreeText(tree));
}

TEST_F(XmlTreeTest, ANamesakeIsSelectedOnlyIfTheSelectedNodeIsGone) {
  CXmlNode* const main = Node("G")->AddChild("File");
  main->SetAttrValue("Header", "main.c");
  Node("H")->AddChild("File")->SetAttrValue("Header", "main.c");
  tree.Refill();
  tree.SelectNode(main);
  owner.TakeMessages();
  const struct {
    const char* what;
    std::function<void()> change;
    const char* messages;
    const char* tree;
  } rows[] = {
      {"a change elsewhere", [&] { Node("H")->AddChild("File")->SetAttrValue("Header", "i.c"); },
       "select main.c", "P{G{a.c b.c *main.c} H{c.c{D{d.h e.h}} main.c i.c}}"},
      {"a namesake's name in use", [&] { main->SetAttrValue("Header", "i.c"); }, "select i.c",
       "P{G{a.c b.c *i.c} H{c.c{D{d.h e.h}} main.c i.c}}"},
      {"in another folder",
       [&] { Node("H")->InsertChildBefore(Node("G")->DetachChild(main), Node("c.c")); },
       "select i.c", "P{G{a.c b.c} H{*i.c c.c{D{d.h e.h}} main.c i.c}}"},
      {"gone", [&] { Free("i.c"); }, "select i.c", "P{G{a.c b.c} H{c.c{D{d.h e.h}} main.c *i.c}}"},
      {"gone, with another chosen before the filling",
       [&] {
         const CXmlNode* const added = Node("G")->AddChild("File");
         Free("i.c");
         tree.SelectNode(added);
       },
       "select nameless", "P{G{a.c b.c *} H{c.c{D{d.h e.h}} main.c}}"},
  };
  for (const auto& row : rows) {
    tree.SaveViewState();
    row.change();
    tree.Refill();
    EXPECT_EQ(TreeText(tree), row.tree) << row.what;
    EXPECT_EQ(owner.TakeMessages(), SplitLines(row.messages)) << row.what;
  }
}

// The items of a moved node are created in the new position while the old ones still exist.
TEST_F(XmlTreeTest, AFillingOfChangedNodesFindsThemWhereverTheyAreAndWhateverTheirKind) {
  const struct {
    const char* what;
    std::function<std::vector<const CXmlNode*>()> change;  // returns the changed nodes
    const char* tree;
  } rows[] = {
      {"moved, with new children",
       [&]() -> std::vector<const CXmlNode*> {
         CXmlNode* const moved = Node("c.c");
         moved->AddChild("File")->SetAttrValue("Header", "new");
         Node("G")->AppendChild(Node("H")->DetachChild(moved));
         return {Node("G"), moved, Node("H")};
       },
       "P{G{a.c b.c c.c{D{d.h e.h} new}} H}"},
      {"a kind that is not shown",
       [&]() -> std::vector<const CXmlNode*> {
         CXmlNode* const moved = Node("b.c");
         moved->AddChild("File")->SetAttrValue("Header", "new");
         Node("H")->AppendChild(Node("G")->DetachChild(moved));
         Node("a.c")->SetName("Hidden");
         Node("X")->SetName("Group");
         return {Node("H"), moved, Node("a.c"), Node("G"), Node("X"), Node("x.c")};
       },
       "P{G H{c.c{D{d.h e.h}} b.c{new}} X{x.c}}"},
      {"the root shown again",
       [&]() -> std::vector<const CXmlNode*> {
         root->SetName("Hidden");
         tree.Refill();
         root->SetName("Project");
         return {root.get()};
       },
       "P{G{a.c b.c} H{c.c{D{d.h e.h}}}}"},
  };
  for (const auto& row : rows) {
    for (const bool isBackwards : {false, true}) {
      tree.InvalidateNode(*root);
      root = ReadNode(test::kTreeProject);
      tree.SetXmlRoot(root.get());
      std::vector<const CXmlNode*> changed = row.change();
      if (isBackwards) std::reverse(changed.begin(), changed.end());
      tree.RefillNodes(changed);
      EXPECT_EQ(TreeText(tree), row.tree) << row.what;
      EXPECT_EQ(mirror.Text(), TreeText(tree)) << row.what;
      for (const CTreeItem* item = tree.GetRootItem(); item != nullptr; item = item->GetNext()) {
        tree.SelectNode(static_cast<const CXmlNode*>(item->GetData()));
        EXPECT_EQ(tree.GetSelectedItem(), item) << row.what << ": " << item->GetText();
      }
    }
  }
}

TEST_F(XmlTreeTest, APeerHearsOfWhatHasChangedAndOfNothingElse) {
  tree.MoveWindow({0, 20, 300, 20 + 4 * 16});
  tree.SelectNode(Node("d.h"));
  tree.SaveViewState();
  owner.TakeMessages();
  mirror.TakeLines();
  const struct {
    const char* what;
    std::function<void()> change;
    Lines lines;
  } rows[] = {
      {"nothing", [] {}, {}},
      {"what isn't shown", [&] { Node("X")->SetAttrValue("Header", "Y"); }, {}},
      {"a label", [&] { Node("b.c")->SetAttrValue("Header", "b2.c"); }, {"changed b2.c"}},
      {"one more at the end",
       [&] { Node("G")->AddChild("File")->SetAttrValue("Header", "new.c"); },
       {"inserted 1 at 2 below G", "scrolled 5"}},
      {"one less in the middle", [&] { Free("b2.c"); }, {"removed 1 at 1 below G", "scrolled 4"}},
      {"a swap",
       [&] {
         auto group = root->DetachChild(Node("H"));
         root->InsertChildBefore(std::move(group), Node("G"));
       },
       {"removed 2 at 0 below P", "inserted 2 at 0 below P", "expanded P", "scrolled 1",
        "selected d.h"}},
      {"expansion", [&] { Node("D")->SetAttrValue("sate", "0"); }, {"collapsed D", "expanded D"}},
      {"the selected one", [&] { Free("d.h"); }, {"removed 1 at 0 below D", "collapsed D"}},
  };
  for (const auto& row : rows) {
    row.change();
    tree.Refill();
    EXPECT_EQ(mirror.TakeLines(), row.lines) << row.what;
    EXPECT_EQ(mirror.Text(), TreeText(tree)) << row.what;
  }
  EXPECT_EQ(TreeText(tree), "P{H{c.c{D(e.h)}} G{a.c new.c}}");
  // Many changes are processed as one.
  for (int i = 0; i < 100; ++i) {
    CXmlNode* const group = root->AddChild("Group");
    group->SetAttrValue("Header", "g");
    tree.Refill();
    group->AddChild("File");
  }
  for (CXmlNode* const group : root->GetChildren()) group->AddChild("File");
  mirror.TakeLines();
  tree.Refill();
  const Lines lines = mirror.TakeLines();
  EXPECT_EQ(lines.back(), "reset");
  EXPECT_LT(lines.size(), 140u);
  EXPECT_EQ(mirror.Text(), TreeText(tree));
}

// After any changes between two fills, the second fill must show the same as a control that is
// filled for the first time; this also applies to a fill that is limited to the changed nodes.
TEST_F(XmlTreeTest, AFillingOverAnOldOneGivesWhatAFreshOneGives) {
  std::mt19937 random(11);
  const auto pick = [&](int count) { return static_cast<int>(random() % unsigned(count)); };
  const auto any = [&] {
    CXmlNode* node = root.get();
    while (node->GetChildCount() > 0 && pick(4) > 0)
      node = node->GetChild(pick(node->GetChildCount()));
    return node;
  };
  std::set<const CXmlNode*> changed;
  CXmlTreeCtrl fresh;
  CWnd other;
  other.Create(kStylePopup, {}, nullptr, 0);
  const std::function<void(const CXmlNode&)> forget = [&](const CXmlNode& node) {
    changed.erase(&node);
    for (const CXmlNode* const child : node.GetChildren()) forget(*child);
  };
  for (int step = 0; step < 800; ++step) {
    tree.SaveViewState();
    for (const CTreeItem* item = tree.GetRootItem(); item != nullptr; item = item->GetNext()) {
      const auto* const node = static_cast<const CXmlNode*>(item->GetData());
      ASSERT_STREQ(node->GetAttrValue("sate"), item->IsExpanded() ? "32" : "0") << step;
    }
    changed.clear();
    for (int change = pick(4); change >= 0; --change) {
      CXmlNode* const node = any();
      CXmlNode* const above = node->GetParent();
      switch (pick(5)) {
        case 0:
        case 1: {
          auto child = CXmlNode::CreateNode(pick(5) == 0 ? "Hidden" : "File");
          child->SetAttrValue("Header", std::to_string(pick(30)));
          node->InsertChildBefore(std::move(child),
                                  node->GetChildCount() == 0 ? nullptr : node->GetChild(0));
          changed.insert(node);
          break;
        }
        case 2:
          if (above == nullptr) break;
          tree.InvalidateNode(*node);
          forget(*node);
          above->RemoveChild(node);
          changed.insert(above);
          break;
        case 3: {  // to another position
          if (above == nullptr) break;
          auto moved = above->DetachChild(node);
          CXmlNode* const place = any();
          place->AppendChild(std::move(moved));
          changed.insert({above, place});
          break;
        }
        default:
          node->SetAttrValue("sate", pick(2) == 0 ? "0" : "32");
          changed.insert(node);
      }
    }
    if (pick(2) == 0) tree.SetSelectedLabel(std::to_string(pick(30)));
    if (pick(3) == 0) {
      tree.Refill();
    } else {
      tree.RefillNodes({changed.begin(), changed.end()});
    }
    fresh.DestroyWindow();
    WindowToolkit::SetCurrent(nullptr);  // the mirror supports one tree
    fresh.Create(2, kStyleChild, {0, 20, 300, 340}, &other, 100);
    WindowToolkit::SetCurrent(&mirror);
    if (step == 0) {
      for (const char* name : {"Project", "Group", "File", "Dependencies"}) {
        fresh.AddImage(name, test::MakeBitmap(16, 16));
      }
    }
    fresh.SetSelectedLabel(tree.GetSelectedLabel());
    fresh.SetSelectedNode(tree.GetSelectedNode());
    fresh.SetXmlRoot(root.get());
    ASSERT_EQ(TreeText(tree), TreeText(fresh)) << step;
    ASSERT_EQ(TreeText(tree), mirror.Text()) << step;
  }
}

TEST_F(XmlTreeTest, NothingPointsAtNodesThatAreForgotten) {
  tree.SelectNode(Node("a.c"));
  BeginDrag("a.c");
  Mouse(MouseAction::Move, MouseButton::Left, At("H"));
  owner.TakeMessages();
  Free("G");
  EXPECT_EQ(tree.GetCurrentNode(), nullptr);
  Mouse(MouseAction::Release, MouseButton::Left, At("H"));
  EXPECT_FALSE(tree.IsDragging());
  // The items exist until the next fill, without their nodes.
  tree.SaveViewState();
  tree.NotifyDoubleClick(MouseButton::Left, {60, 40});
  Press(kKeyDown, true);
  tree.DrawItem(*tree.GetSelectedItem());
  EXPECT_EQ(owner.TakeMessages(), (Lines{"open nothing"}));
  // A drag also continues if one of its items is removed.
  for (const auto& [from, to] : {std::pair("c.c", "P"), std::pair("L", "d.h")}) {
    tree.InvalidateNode(*root);
    root = ReadNode(test::kTreeProject);
    root->AddChild("Group")->SetAttrValue("Header", "L");
    tree.SetXmlRoot(root.get());
    BeginDrag(from);
    Mouse(MouseAction::Move, MouseButton::Left, At(to));
    Free("H");
    tree.Refill();
    Mouse(MouseAction::Release, MouseButton::Left, {60, 8});
    EXPECT_EQ(owner.TakeMessages(), (Lines{std::string("select ") + from}));
    EXPECT_EQ(mirror.Text(), TreeText(tree));
  }
  tree.InvalidateNode(*root);
  root.reset();
  tree.Refill();
  EXPECT_EQ(TreeText(tree), "");
}

TEST_F(XmlTreeTest, AnUpdateKeepsTheLineAtTheTop) {
  for (int i = 0; i < 40; ++i) {
    Node("H")->AddChild("File")->SetAttrValue("Header", "f" + std::to_string(i));
  }
  tree.SetSelectedLabel("f20");
  tree.Refill();
  tree.SetTopRow(tree.GetRows().IndexOf(*tree.GetSelectedItem()) - 2);
  const std::string topLabel = tree.GetRows().GetAt(tree.GetTopRow())->GetText();
  EXPECT_EQ(topLabel, "f18");
  Node("G")->AddChild("File")->SetAttrValue("Header", "z");
  tree.Refill();
  EXPECT_EQ(tree.GetRows().GetAt(tree.GetTopRow())->GetText(), topLabel);
  Free("G");
  tree.Refill();
  EXPECT_EQ(tree.GetRows().GetAt(tree.GetTopRow())->GetText(), topLabel);
  // The node of the top row is hidden now.
  tree.SetSelectedLabel("none");
  Node("H")->SetAttrValue("sate", "0");
  for (int i = 0; i < 40; ++i) root->AddChild("Group");
  tree.Refill();
  EXPECT_EQ(tree.GetRows().GetAt(tree.GetTopRow())->GetText(), "H");
}

}  // namespace
}  // namespace tarn
