// User actions in the project window of a complete server while the host performs other actions.

#include <tarn/commands.h>

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <future>
#include <set>

#include "automation/WatchedFixture.h"
#include "support/AnsweringUser.h"
#include "support/TinyBitmap.h"
#include "xml/XmlNode.h"

namespace tarn::test {
namespace {

// Project in its window: two applications, the first of which has a folder with two files.
class Windowed : public Watched {
 public:
  Windowed() {
    auto& defaults = components.Properties().defaults;
    defaults = {{".Internal.Icon", "/app/type.bmp"},
                {".Internal.Open", "33039"},
                {".Internal.MDblClick", "33040"},
                {".Internal.Menu", "Files"},
                {"C.Build.TranslateTool", "cc"},
                {"Application.Build.TranslateTool", "ld"},
                {"Application.Build.OutputFile", "/p/demo.elf"}};
    disk.AddFile("/app/type.bmp", TinyBitmap(16, 16));
    for (const char* picture : {"marker", "dependencies"}) {
      disk.AddFile("/app/config/resources/" + std::string(picture) + ".bmp", TinyBitmap(16, 16));
    }
    for (const char* file : {"/p/main.c", "/p/b.c", "/p/new.c", "/p/more.c"})
      disk.AddFile(file, "");
    disk.AddFile("/p/demo.tapp",
                 "<Application Header=\"demo\" Extern=\".\\demo.tapp\" Path=\".\\demo.tapp\" >"
                 "<Group Header=\"Sources\" ><C Header=\"main.c\" Path=\".\\main.c\" />"
                 "<C Header=\"b.c\" Path=\".\\b.c\" /></Group><Group Header=\"Other\" />"
                 "</Application>");
    EXPECT_EQ(Init(), "1");
    EXPECT_EQ(Call("InitToolManager", {DispatchPtr(&components.Tools())}), "1");
    disk.AddFile("/p/other.tprj",
                 "<Project Header=\"other\" ActiveApp=\"demo\" ><Application "
                 "Header=\"demo\" Extern=\".\\demo.tapp\" Path=\".\\demo.tapp\" /></Project>");
    Window().NotifyResized({300, 400});  // like a host that has docked it
    Open();
  }
  void Open() {
    EXPECT_EQ(Call("ProjectOpen", {"/p/demo.tprj"}), "1");
    Pump();
  }
  static void Pump() {
    while (MessageLoop::ForCurrentThread()->Pump()) {
    }
  }
  CProjectModel& Model() { return *Manager().GetModel(); }
  Builder& GetBuilder() { return *Manager().GetBuilder(); }
  CProjectWnd& Window() { return *static_cast<CProjectWnd*>(Model().Services().views.project); }
  CXmlTreeCtrl& Tree() { return Window().GetTree(); }
  CXmlNode* Node(const char* header) {
    return Model().GetProjectRoot().FindDescendantByAttr("Header", header);
  }
  Point LabelOf(const char* header) {
    const CXmlNode* const node = Node(header);
    if (node == nullptr) return {};
    const Rect place = Tree().GetNodeTextRect(*node);
    return {place.left + 1, place.top + 1};
  }
  void Select(const char* header) {
    Tree().SelectNode(Node(header));
    Pump();
  }
  void Press(int key, bool isShiftDown = false) { Tree().NotifyKey({key, isShiftDown, false}); }
  void Drag(const char* from, const char* to) {
    const Point end = LabelOf(to);
    Tree().NotifyBeginDrag(LabelOf(from));
    if (!manager) return;
    Tree().NotifyMouse({MouseAction::Move, MouseButton::Left, end});
    Tree().NotifyMouse({MouseAction::Release, MouseButton::Left, end});
  }
  // Renames the selected node.
  void EditName(const char* name) {
    Tree().NotifyDoubleClick(MouseButton::Left, {1, 1});
    CEditName* const editor = Window().GetNameEditor();
    if (editor == nullptr) return;
    editor->NotifyTextEdited(name, {});
    editor->NotifyKey({kKeyEnter, false, false});
  }
  // Performs `act` inside the message with index `when`, starting at 1.
  void ActInMessage(int when, const std::function<void()>& act) {
    count_ = 0;
    isDone_ = false;
    for (std::uint32_t number = kMsgAnnounceWindow; number <= kMsgShowHelp; ++number) {
      host.actions[number] = [this, when, act] {
        if (++count_ != when) return;
        isDone_ = true;
        act();
      };
    }
    host.actions[kMsgCommand] = host.actions[kMsgAnnounceWindow];
  }
  void LetBuildEnd() {
    MessageLoop::ForCurrentThread()->PumpUntil([&] { return !GetBuilder().IsWorkerAlive(); },
                                               std::chrono::seconds(20));
    Pump();
  }
  // Checks that every item in the window belongs to an existing node.
  void ExpectShown(const std::string& name) {
    std::set<const CXmlNode*> there;
    Collect(Model().GetProjectRoot(), there);
    for (const CTreeItem* item = Tree().GetRootItem(); item != nullptr; item = item->GetNext()) {
      EXPECT_TRUE(there.contains(static_cast<CXmlNode*>(item->GetData()))) << name;
    }
    CXmlNode* const current = Window().GetSelectedNode();
    EXPECT_TRUE(current == nullptr || there.contains(current)) << name;
    EXPECT_TRUE(there.contains(Model().GetCurrentNode())) << name;
    EXPECT_FALSE(Tree().IsDragging()) << name;
  }
  // Returns the labels in order, without the project's.
  std::string Shown() {
    std::string text;
    for (const CTreeItem* item = Tree().GetRootItem(); item != nullptr; item = item->GetNext()) {
      if (item->GetParent() == nullptr) continue;
      text += (text.empty() ? "" : " ") + item->GetText();
    }
    return text;
  }
  bool WasDone() const { return isDone_; }

  AnsweringUser user{host.Handle()};

 private:
  static void Collect(const CXmlNode& node, std::set<const CXmlNode*>& found) {
    found.insert(&node);
    for (int i = 0; i < node.GetChildCount(); ++i) Collect(*node.GetChild(i), found);
  }

  int count_ = 0;
  bool isDone_ = false;
};

struct UserAct {
  const char* name;
  std::function<void(Windowed&)> act;
  const char* selected = "main.c";
  // Labels and positions may change at any time; nodes are neither added nor removed during a
  // build.
  const char* shownBesideABuild = "demo Sources main.c b.c Other";
};

const UserAct kUserActs[] = {
    {"click", [](Windowed& w) { w.Tree().NotifyClick(w.LabelOf("b.c")); }},
    {"open",
     [](Windowed& w) { w.Tree().NotifyDoubleClick(MouseButton::Left, w.LabelOf("main.c")); }},
    {"activate",
     [](Windowed& w) { w.Tree().NotifyDoubleClick(MouseButton::Middle, w.LabelOf("main.c")); }},
    {"right click", [](Windowed& w) { w.Tree().NotifyRightClick(w.LabelOf("b.c")); }},
    {"down", [](Windowed& w) { w.Press(kKeyDown); }},
    {"shift and down", [](Windowed& w) { w.Press(kKeyDown, true); }, "main.c",
     "demo Sources b.c main.c Other"},
    {"delete", [](Windowed& w) { w.Press(kKeyDelete); }},
    {"insert",
     [](Windowed& w) {
       w.user.files = {{"/p/new.c", "/p/more.c"}};
       w.Press(kKeyInsert);
     }},
    {"drop files",
     [](Windowed& w) {
       w.Window().NotifyDroppedFiles({"/p/new.c", "/p/more.c"});
     }},
    {"drag", [](Windowed& w) { w.Drag("main.c", "Other"); }},
    {"rename", [](Windowed& w) { w.EditName("Code"); }, "Sources", "demo Code main.c b.c Other"},
    {"properties", [](Windowed& w) { w.Window().GetToolBar().NotifyButton(32776); }},
    {"dependencies",
     [](Windowed& w) {
       w.Model().State().ClearCurrentNode();
       SendWindowMessage(w.Window().GetHandle(), kMsgCommand, 32774, 0);
     }},
    {"publishing",
     [](Windowed& w) {
       w.Model().Derived().ResetNodeCache(w.Model().GetProjectRoot(), false);
       w.Window().StartStepTimer();
       w.clock.Advance(std::chrono::milliseconds(10));
     }},
};

TEST(WindowEvents, ReleasedInsideAnyMessageOfAnEventTheManagerEndsWithTheEvent) {
  for (const UserAct& user : kUserActs) {
    for (int when = 1;; ++when) {
      Windowed world;
      world.Select(user.selected);
      world.ActInMessage(when, [&] { world.LetGo(); });
      user.act(world);
      if (!world.WasDone()) {
        EXPECT_GT(when, 1) << user.name << ": no message at all";
        break;
      }
      EXPECT_TRUE(world.IsGone()) << user.name << ", message " << when;
      Windowed::Pump();
    }
  }
}

struct HostAct {
  const char* name;
  std::function<void(Windowed&)> act;
};

const HostAct kHostActs[] = {
    {"close", [](Windowed& w) { w.Call("ProjectClose"); }},
    {"save", [](Windowed& w) { w.Call("ProjectSave"); }},
    {"other project", [](Windowed& w) { w.Call("ProjectOpen", {"/p/other.tprj"}); }},
    {"remove what is selected", [](Windowed& w) { w.Call("RemoveItem", {NullableText()}); }},
    {"remove the application", [](Windowed& w) { w.Call("RemoveItem", {"demo"}); }},
    {"empty the folder",
     [](Windowed& w) {
       for (const char* file : {"/p/main.c", "/p/b.c"}) w.Call("RemoveItem", {file});
     }},
    {"add",
     [](Windowed& w) {
       w.Call("AddExistingItem", {"/p/inner.c", NullableText()});
     }},
    {"move", [](Windowed& w) { w.Model().Editor().MoveNode(w.Node("b.c"), w.Node("Other")); }},
    {"reset the options", [](Windowed& w) { w.Model().Options().ResetNodeOptions(nullptr); }},
    {"records",
     [](Windowed& w) {
       w.Call("SetBuildInfo", {"", "<I><F Header='/p/demo.elf' ><D Header='x.c' /></F></I>"});
     }},
    {"build",
     [](Windowed& w) {
       w.Call("PrologCommand", {TARN_CMD_BUILD_ALL});
       w.Call("Command", {TARN_CMD_BUILD_ALL});
     }},
    {"build here", [](Windowed& w) { w.Call("ProjectBuild"); }},
    {"another event of the user", [](Windowed& w) { w.Press(kKeyDelete); }},
    {"a drag", [](Windowed& w) { w.Drag("b.c", "Other"); }},
    {"an editor", [](Windowed& w) { w.EditName("Name"); }},
    {"no window", [](Windowed& w) { w.Window().DestroyWindow(); }},
};

TEST(WindowEvents, WhateverAHostDoesInsideAnEventTheWindowShowsTheTreeThatThereIs) {
  for (const UserAct& user : kUserActs) {
    for (const HostAct& host : kHostActs) {
      bool wasDone = true;
      for (int when = 1; wasDone; ++when) {
        const std::string name =
            std::string(user.name) + ", " + host.name + " in message " + std::to_string(when);
        Windowed world;
        world.Select(user.selected);
        world.ActInMessage(when, [&] { host.act(world); });
        user.act(world);
        Windowed::Pump();
        wasDone = world.WasDone();
        world.host.actions.clear();
        world.LetBuildEnd();
        EXPECT_EQ(world.GetBuilder().GetBuildState() == StateBuilding, false) << name;
        world.ExpectShown(name);
        world.Call("ProjectSave");
        Windowed::Pump();
        world.ExpectShown(name + ", saved");
      }
    }
  }
}

TEST(WindowEvents, WhateverAHostDoesInTheMiddleOfAGestureTheWindowShowsTheTreeThatThereIs) {
  const struct {
    const char* name;
    const char* selected;
    std::function<void(Windowed&)> begin;
    std::function<void(Windowed&)> end;
  } gestures[] = {
      {"drag", "main.c",
       [](Windowed& w) {
         const Point target = w.LabelOf("Other");
         w.Tree().NotifyBeginDrag(w.LabelOf("main.c"));
         w.Tree().NotifyMouse({MouseAction::Move, MouseButton::Left, target});
       },
       [](Windowed& w) {
         w.Tree().NotifyMouse({MouseAction::Move, MouseButton::Left, {40, 40}});
         w.Tree().NotifyMouse({MouseAction::Release, MouseButton::Left, {40, 40}});
       }},
      {"drop", "main.c",
       [](Windowed& w) {
         const Point target = w.LabelOf("Other");
         w.Tree().NotifyBeginDrag(w.LabelOf("main.c"));
         w.Tree().NotifyMouse({MouseAction::Move, MouseButton::Left, target});
       },
       [](Windowed& w) {
         w.Tree().NotifyMouse({MouseAction::Release, MouseButton::Left, {40, 40}});
       }},
      {"name", "Sources",
       [](Windowed& w) {
         w.Tree().NotifyDoubleClick(MouseButton::Left, {1, 1});
         ASSERT_NE(w.Window().GetNameEditor(), nullptr);
         w.Window().GetNameEditor()->NotifyTextEdited("Code", {});
       },
       [](Windowed& w) {
         CEditName* const editor = w.Window().GetNameEditor();
         for (const int key : {kKeyEnter, kKeyEscape, kKeyEnter}) {
           if (editor != nullptr) editor->NotifyKey({key, false, false});
         }
       }},
      {"publishing", "main.c",
       [](Windowed& w) {
         w.Model().Derived().ResetNodeCache(w.Model().GetProjectRoot(), false);
         w.Window().StartStepTimer();
       },
       [](Windowed& w) { w.clock.Advance(std::chrono::milliseconds(10)); }},
  };
  for (const auto& gesture : gestures) {
    for (const HostAct& host : kHostActs) {
      const std::string name = std::string(gesture.name) + ", " + host.name;
      Windowed world;
      world.Select(gesture.selected);
      gesture.begin(world);
      host.act(world);
      gesture.end(world);
      Windowed::Pump();
      world.LetBuildEnd();
      world.ExpectShown(name);
    }
    Windowed world;
    world.Select(gesture.selected);
    gesture.begin(world);
    world.LetGo();
    EXPECT_TRUE(world.IsGone()) << gesture.name;
    world.clock.Advance(std::chrono::milliseconds(10));
  }
}

// Build of the project whose first tool runs until the test ends it.
class WindowedBuild : public Windowed {
 public:
  void Start() {
    components.Tools().onRun = [own = tool_](const ToolRun&) {
      if (own->isRunning.exchange(true)) return 1;
      own->loop->Wake();
      own->ended.wait();
      return 1;
    };
    EXPECT_EQ(Call("PrologCommand", {TARN_CMD_BUILD_ALL}), "1");
    EXPECT_EQ(Call("Command", {TARN_CMD_BUILD_ALL}), "2");
    EXPECT_TRUE(
        tool_->loop->PumpUntil([&] { return tool_->isRunning.load(); }, std::chrono::seconds(20)));
    EXPECT_TRUE(GetBuilder().IsWorkerAlive());
    TakeLines();
  }
  void LetToolEnd() {
    if (!std::exchange(isTold_, true)) tool_->mayEnd.set_value();
  }
  ~WindowedBuild() { LetToolEnd(); }

 private:
  // The worker may still be in the tool when this object is destroyed.
  struct Tool {
    const std::shared_ptr<MessageLoop> loop = MessageLoop::ForCurrentThread();
    std::atomic<bool> isRunning = false;
    std::promise<void> mayEnd;
    std::future<void> ended = mayEnd.get_future();
  };
  const std::shared_ptr<Tool> tool_ = std::make_shared<Tool>();
  bool isTold_ = false;
};

TEST(WindowEvents, EventsBesideABuildLeaveItsTreeAlone) {
  for (const UserAct& user : kUserActs) {
    WindowedBuild world;
    world.Select(user.selected);
    world.Start();
    user.act(world);
    Windowed::Pump();
    EXPECT_TRUE(world.GetBuilder().IsWorkerAlive()) << user.name;
    world.LetToolEnd();
    world.LetBuildEnd();
    EXPECT_EQ(world.GetBuilder().GetBuildState(), StateSucceeded) << user.name;
    EXPECT_EQ(world.components.Tools().CallsOf("RunTool").size(), 3u) << user.name;
    EXPECT_EQ(world.Shown(), user.shownBesideABuild) << user.name;
    world.ExpectShown(user.name);
  }
}

TEST(WindowEvents, ReleasedInsideAnEventBesideABuildItWaitsForTheTool) {
  for (const UserAct& user : kUserActs) {
    for (int when = 1;; ++when) {
      WindowedBuild world;
      world.Select(user.selected);
      world.Start();
      world.ActInMessage(when, [&] {
        world.LetToolEnd();
        world.LetGo();
      });
      user.act(world);
      if (!world.WasDone()) break;
      EXPECT_TRUE(world.IsGone()) << user.name << ", message " << when;
      Windowed::Pump();
    }
  }
}

TEST(WindowEvents, ABuildGivesBackWhatWasSelected) {
  for (const std::int32_t command :
       {TARN_CMD_REBUILD_ALL, TARN_CMD_BUILD_ALL, TARN_CMD_CLEAN_ALL, TARN_CMD_REBUILD_NODE,
        TARN_CMD_BUILD_NODE, TARN_CMD_CLEAN_NODE}) {
    Windowed world;
    world.Select("b.c");
    world.Call("PrologCommand", {command});
    world.Call("Command", {command});
    world.LetBuildEnd();
    world.Call("EpilogCommand", {command});
    Windowed::Pump();
    EXPECT_EQ(world.Window().GetSelectedNode(), world.Node("b.c")) << command;
    EXPECT_EQ(world.Model().GetOwnCurrentNode(), world.Node("b.c")) << command;
  }
}

}  // namespace
}  // namespace tarn::test
