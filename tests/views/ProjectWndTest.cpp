#include "views/ProjectWnd.h"

#include <gtest/gtest.h>

#include <functional>

#include "platform/text/Text.h"
#include "project/ProjectFixture.h"
#include "support/AnsweringUser.h"
#include "support/ManualClock.h"
#include "support/RecordingToolkit.h"
#include "support/TinyBitmap.h"
#include "widgets/HostMessages.h"
#include "xml/XmlNode.h"

namespace tarn::test {
namespace {

using Lines = std::vector<std::string>;

constexpr const char* kContent =
    "\n\t<Group Header=\"Sources\" >\n\t\t<C Header=\"main.c\" Path=\".\\main.c\" />\n\t\t"
    "<C Header=\"led.c\" Path=\".\\led.c\" />\n\t</Group>\n\t<Group Header=\"Other\" />\n";

// Project window with a real model, connected in the same way as in the manager.
class ProjectWindow : public ::testing::Test {
 protected:
  ProjectWindow() {
    world.AddDemo(kContent);
    for (const char* file : {"/p/main.c", "/p/led.c"}) world.AddFile(file, "x");
    for (const char* picture : {"/app/type.bmp", "/app/config/resources/marker.bmp",
                                "/app/config/resources/dependencies.bmp"}) {
      world.disk.AddFile(picture, TinyBitmap(18, 18));
    }
    world.disk.AddFile(world.model->Services().configFilePath,
                       "<Config><Types><Project /><Application /><Group /><C /></Types>"
                       "<PopupMenus><Sources /><Files /></PopupMenus></Config>");
    auto& defaults = world.components.Properties().defaults;
    defaults[".Internal.Icon"] = "/app/type.bmp";
    defaults["C.Internal.Open"] = "33039";
    defaults["C.Internal.MDblClick"] = "33040x";
    defaults["C.Internal.Menu"] = "Files";
    Create();
  }
  ~ProjectWindow() override {
    window->DetachModel();
    world.model->Services().views = {};
  }

  void Create() {
    window = std::make_unique<CProjectWnd>(world.disk, settings, *world.model,
                                           world.propertyManager, world.host.Handle());
    world.model->Services().views.project = window.get();
    window->Create(kStylePopup, {0, 0, 300, 400}, nullptr, 0);
    window->LoadViewConfig(world.model->Services().configFilePath);
  }
  void Open() {
    ASSERT_EQ(world.OpenDemo(), 1);
    world.model->PublishAll();
    Pump();
    TakeLines();
    world.components.Properties().TakeCalls();
  }
  CXmlTreeCtrl& Tree() { return window->GetTree(); }
  void Key(int key, bool isShiftDown = false) { Tree().NotifyKey({key, isShiftDown, false}); }
  void OpenMenu() { Tree().NotifyContextMenu({40, 50}); }
  static void Pump() {
    while (MessageLoop::ForCurrentThread()->Pump()) {
    }
  }
  // Returns the messages to the host, except for log messages, and the model's current node.
  Lines TakeLines() {
    Lines kept;
    for (std::string& line : world.host.TakeLines()) {
      if (line.rfind("LogLine", 0) != 0) kept.push_back(std::move(line));
    }
    return kept;
  }
  void Select(const char* header) {
    Tree().SelectNode(world.Node(header));
    Pump();
    TakeLines();
  }
  Point LabelOf(const char* header) {
    const Rect place = Tree().GetNodeTextRect(*world.Node(header));
    return {place.left + 1, place.top + 1};
  }
  // Returns the tree as shown, one line per item; the selected one begins with >.
  std::string Shown() {
    std::string text;
    for (int row = 0; row < Tree().GetRows().GetCount(); ++row) {
      const CTreeItem& item = *Tree().GetRows().GetAt(row);
      text += &item == Tree().GetSelectedItem() ? ">" : " ";
      text += std::string(static_cast<std::size_t>(item.GetLevel()), '.') + item.GetText() + "\n";
    }
    return text;
  }

  RecordingToolkit toolkit;
  ManualClock clock;
  ProjectFixture world;
  Settings settings{world.disk, {"/machine", "/user", "/userdata"}};
  AnsweringUser user{world.host.Handle()};
  std::unique_ptr<CProjectWnd> window;
};

TEST_F(ProjectWindow, WhatTheUserDoesReachesModelAndHost) {
  const struct {
    const char* name;
    const char* selected;
    std::function<void()> act;
    // Shift and Up: the fill selects the node that was selected at the last change, then the row is
    // selected.
    const char* host;
    const char* shape = "demo[Sources[main.c led.c] Other]";
  } rows[] = {
      {"left double click on a file", "led.c",
       [this] { Tree().NotifyDoubleClick(MouseButton::Left, LabelOf("led.c")); },
       "Command 33039 0"},
      {"middle double click on a file", "led.c",
       [this] { Tree().NotifyDoubleClick(MouseButton::Middle, LabelOf("led.c")); },
       "Command 33040 0"},
      {"middle double click where no command stands", "Other",
       [this] { Tree().NotifyDoubleClick(MouseButton::Middle, LabelOf("Other")); }, "Command 0 0"},
      {"context menu of a file", "led.c", [this] { OpenMenu(); }, "ShowPopupMenu * Files"},
      {"context menu of a type without one", "Other", [this] { OpenMenu(); }, ""},
      {"tool bar: properties", "led.c", [this] { window->GetToolBar().NotifyButton(32776); },
       "Command 33035 0"},
      {"a key without a meaning", "led.c", [this] { Key(kKeyF2); }, ""},
      {"Shift and Up", "led.c", [this] { Key(kKeyUp, true); },
       "PaneCaption demo Local Settings 4005\nCurrentNodeChanged /p/demo.tapp 0\nPaneCaption "
       "main.c Local Settings 4005\n"
       "CurrentNodeChanged /p/main.c 0",
       "demo[Sources[led.c main.c] Other]"},
  };
  for (const auto& row : rows) {
    Open();
    Select(row.selected);
    row.act();
    Pump();
    EXPECT_EQ(TakeLines(), SplitLines(row.host)) << row.name;
    EXPECT_EQ(ProjectFixture::Labels(world.model->GetProjectRoot()), row.shape) << row.name;
    world.model->CloseProject();
    world.AddDemo(kContent);
  }
}

TEST_F(ProjectWindow, TheTreeFollowsTheProject) {
  Open();
  EXPECT_EQ(Shown(), " Tarn Project 'demo'\n>.demo\n ..Sources\n ...main.c\n ...led.c\n ..Other\n");
  Key(kKeyDelete);
  EXPECT_EQ(Shown(), ">Tarn Project 'demo'\n");
  world.model->CloseProject();
  EXPECT_EQ(Shown(), "");
}

TEST_F(ProjectWindow, RemovalOfTheSelectedNodeByAnyRoadLeavesNoPointer) {
  const std::function<void()> roads[] = {
      [&] { Key(kKeyDelete); },
      [&] { world.model->Editor().RemoveItem("Sources"); },
      [&] { world.model->Editor().RemoveItem(".\\main.c"); },
      [&] { world.model->CloseProject(); },
      [&] { world.model->SaveProject(); },
      [&] { world.model->Editor().MoveNode(world.Node("Sources"), world.Node("Other")); },
  };
  for (const auto& road : roads) {
    Open();
    Select("main.c");
    road();
    Pump();
    const CXmlNode* const selected = window->GetSelectedNode();
    if (selected != nullptr) {
      EXPECT_EQ(world.Node(OrEmpty(selected->GetAttrValue("Header")).c_str()), selected);
    }
    world.model->GetCurrentNode()->GetName();
    world.model->CloseProject();
    world.AddDemo(kContent);
  }
}

TEST_F(ProjectWindow, NamesAreEditedInPlace) {
  Open();
  Select("Other");
  Tree().NotifyDoubleClick(MouseButton::Left, LabelOf("Other"));
  CEditName* editor = window->GetNameEditor();
  ASSERT_NE(editor, nullptr);
  EXPECT_TRUE(editor->HasFocus());
  const Rect label = Tree().GetNodeTextRect(*world.Node("Other"));
  EXPECT_EQ(editor->GetRect(),
            (Rect{label.left - 1, label.top - 1, label.right + 101, label.bottom + 1}));
  EXPECT_EQ(editor->GetControlText(), "");

  // Escape and loss of the keyboard focus keep the old name.
  editor->NotifyKey({kKeyEscape, false, false});
  EXPECT_FALSE(editor->IsCreated());
  Tree().NotifyDoubleClick(MouseButton::Left, LabelOf("Other"));
  window->GetNameEditor()->NotifyTextEdited("Lost", {});
  Tree().SetFocus();
  EXPECT_NE(world.Node("Other"), nullptr);

  // A second double click closes the first editor; Enter commits, and Escape then has no effect.
  Tree().NotifyDoubleClick(MouseButton::Left, LabelOf("Other"));
  Tree().NotifyDoubleClick(MouseButton::Left, LabelOf("Other"));
  editor = window->GetNameEditor();
  editor->NotifyTextEdited("Docs", {});
  editor->NotifyKey({kKeyEnter, false, false});
  editor->NotifyKey({kKeyEscape, false, false});
  editor->NotifyKey({kKeyEnter, false, false});
  Pump();
  EXPECT_EQ(Shown(), " Tarn Project 'demo'\n .demo\n ..Sources\n ...main.c\n ...led.c\n>..Docs\n");
  EXPECT_EQ(window->GetNameEditor(), nullptr);

  // An empty name is not rejected.
  Tree().NotifyDoubleClick(MouseButton::Left, LabelOf("Docs"));
  window->GetNameEditor()->NotifyKey({kKeyEnter, false, false});
  EXPECT_EQ(ProjectFixture::Labels(world.model->GetProjectRoot()), "demo[Sources[main.c led.c] ]");
}

// Two folders contain a main.c. A change of one must neither select nor remove the other.
TEST_F(ProjectWindow, ChangesOfANodeLeaveItsNamesakeAlone) {
  const struct {
    const char* name;
    std::function<void(CXmlNode& main)> act;
    const char* selected;  // with its parent folder
  } rows[] = {
      {"a report about another file",
       [&](CXmlNode& main) {
         world.Node("led.c")->SetAttrValue("OutputFile", "/p/led.o");
         world.builder->Information().SetBuildInfo(
             nullptr,
             "<Files><File Header=\"/p/led.o\" Date=\"0\"><F Header=\"x.h\"/></File></Files>");
         EXPECT_NE(world.Node("led.c")->FindChild("Dependencies"), nullptr);
         EXPECT_EQ(world.model->GetCurrentNode(), &main);
       },
       "main.c in Sources"},
      {"renamed like another",
       [&](CXmlNode&) {
         world.components.Properties().SetPropertyValue("C", "General", "Header", "led.c");
         Tree().SendOwner(kXmlTreeRename, reinterpret_cast<std::intptr_t>("led.c"), 0);
       },
       "led.c in Sources"},
      {"removed", [&](CXmlNode&) { Key(kKeyDelete); }, "Sources in demo"},
      {"moved", [&](CXmlNode& main) { world.model->Editor().MoveNode(&main, world.Node("Third")); },
       "main.c in Third"},
  };
  for (const auto& row : rows) {
    world.AddDemo(
        "<Group Header=\"Sources\" ><C Header=\"main.c\" Path=\".\\main.c\" /></Group>"
        "<Group Header=\"Third\" /><Group Header=\"Other\" >"
        "<C Header=\"main.c\" Path=\".\\o\\main.c\" /><C Header=\"led.c\" Path=\".\\led.c\" />"
        "</Group>");
    Open();
    CXmlNode* const main = world.Node("Sources")->GetChild(0);
    Tree().SelectNode(main);
    Pump();
    row.act(*main);
    Pump();
    const CXmlNode* const selected = window->GetSelectedNode();
    ASSERT_NE(selected, nullptr) << row.name;
    EXPECT_EQ(OrEmpty(selected->GetAttrValue("Header")) + " in " +
                  OrEmpty(selected->GetParent()->GetAttrValue("Header")),
              row.selected)
        << row.name;
    for (const std::string& line : TakeLines()) {
      EXPECT_EQ(line.find("/p/o/main.c"), std::string::npos) << row.name << ": " << line;
    }
    world.model->CloseProject();
  }
}

TEST_F(ProjectWindow, TheSwitchesAreKeptAndChangeWhatIsShown) {
  Open();
  CXmlNode* const dependencies = world.Node("main.c")->AddChild("Dependencies");
  dependencies->AddAttr("Header", "Dependencies");
  Select("Sources");
  const std::string without =
      " Tarn Project 'demo'\n .demo\n>..Sources\n ...main.c\n ...led.c\n ..Other\n";
  EXPECT_EQ(Shown(), without);
  toolkit.menuAnswers = {32774, 32773, 32774};
  window->GetToolBar().NotifyDropDown(32772);
  // An item without children was saved as collapsed.
  EXPECT_EQ(Shown(), without);
  EXPECT_EQ(Tree().GetRows().GetAt(3)->GetFirstChildItem()->GetText(), "Dependencies");
  window->GetToolBar().NotifyDropDown(32772);
  EXPECT_FALSE(Tree().IsShowInfo());
  EXPECT_EQ(settings.ReadProfile("Project", "ViewDeps", ""), "TRUE");
  EXPECT_EQ(settings.ReadProfile("Project", "ViewSizes", ""), "FALSE");
  window->GetToolBar().NotifyDropDown(32772);
  EXPECT_FALSE(Tree().GetRows().GetAt(3)->HasChildren());
  EXPECT_EQ(toolkit.lines.back().substr(toolkit.lines.back().find(": ")),
            ": Build information 32773 | [x] Dependencies 32774");
}

TEST_F(ProjectWindow, HelpModeIsArmedByTheBarAndSpentByAClick) {
  Open();
  window->GetToolBar().NotifyButton(32779);
  RunIdle();
  EXPECT_TRUE(window->GetToolBar().GetButtons()[1].isChecked);
  Tree().NotifyClick(LabelOf("led.c"));
  RunIdle();
  EXPECT_FALSE(window->GetToolBar().GetButtons()[1].isChecked);
}

TEST_F(ProjectWindow, PublishingRunsOnItsTimerAndHoldsTheOptions) {
  ASSERT_EQ(world.OpenDemo(), 1);
  EXPECT_TRUE(world.model->Publishing().HasUnpublished());
  EXPECT_EQ(world.components.Properties().holds, 1);
  world.model->Publishing().SetPublishingSuspended(true);
  clock.Advance(std::chrono::milliseconds(50));
  EXPECT_TRUE(world.model->Publishing().HasUnpublished());
  world.model->Publishing().SetPublishingSuspended(false);
  clock.Advance(std::chrono::milliseconds(10));
  clock.Advance(std::chrono::milliseconds(10));
  EXPECT_FALSE(world.model->Publishing().HasUnpublished());
  EXPECT_EQ(world.components.Properties().holds, 0);
}

TEST_F(ProjectWindow, FilesAreAddedInTheOrderOfTheDrop) {
  Open();
  Select("Other");
  for (const char* file : {"/p/b.c", "/p/a.c"}) world.AddFile(file, "x");
  window->NotifyDroppedFiles({"/p/b.c", "/p/a.c"});
  EXPECT_EQ(ProjectFixture::Labels(*world.Node("Other")), "b.c a.c");
}

TEST_F(ProjectWindow, AWindowThatGoesInsideAMessageIsUsedNoMore) {
  const std::function<void()> events[] = {
      [&] { Tree().NotifyDoubleClick(MouseButton::Left, LabelOf("led.c")); },
      [&] { OpenMenu(); },
      [&] { window->GetToolBar().NotifyButton(32776); },
      [&] { world.model->Editor().RemoveItem("main.c"); },
      [&] { Key(kKeyDown); },
  };
  for (const auto& event : events) {
    Open();
    Select("led.c");
    for (const std::uint32_t message :
         {std::uint32_t{kMsgCommand}, std::uint32_t{kMsgShowPopupMenu},
          std::uint32_t{kMsgCurrentNodeChanged}}) {
      world.host.actions[message] = [&] {
        world.model->Services().views = {};
        window->DestroyWindow();
      };
    }
    event();
    EXPECT_FALSE(window->IsCreated());
    world.host.actions.clear();
    Create();
    world.model->CloseProject();
    world.AddDemo(kContent);
  }
}

}  // namespace
}  // namespace tarn::test
