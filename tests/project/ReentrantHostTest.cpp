// A host may perform any operation inside a message handler.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <set>

#include "project/EditedFixture.h"
#include "project/RecordingWindows.h"

namespace tarn::test {
namespace {

using Lines = std::vector<std::string>;

struct Act {
  const char* name;
  std::function<void(EditedFixture&)> run;
};

const Act kInnerActs[] = {
    {"close", [](EditedFixture& world) { world.model->CloseProject(); }},
    {"open the same", [](EditedFixture& world) { world.OpenDemo(); }},
    {"open another", [](EditedFixture& world) { world.model->OpenProject("/p/next.tprj", 0); }},
    {"open a default", [](EditedFixture& world) { world.model->OpenProject("/p/next.tprj", 1); }},
    {"open what is missing", [](EditedFixture& world) { world.model->OpenProject("/x.tprj", 0); }},
    {"save", [](EditedFixture& world) { world.model->SaveProject(); }},
    {"new", [](EditedFixture& world) { world.model->Items().NewProject("/p/new.tprj"); }},
    {"remove", [](EditedFixture& world) { world.model->Editor().RemoveItem("one.c"); }},
    {"remove the current node",
     [](EditedFixture& world) { world.model->Editor().RemoveItem(nullptr); }},
    {"remove an application",
     [](EditedFixture& world) { world.model->Editor().RemoveItem("one"); }},
    {"add", [](EditedFixture& world) { world.model->Items().AddExistingItem("/p/in.c", nullptr); }},
    {"build", [](EditedFixture& world) { world.builder->StartBuildThread(kWorkerBuildAll); }},
    {"build here", [](EditedFixture& world) { world.builder->BuildSynchronously(); }},
    {"select", [](EditedFixture& world) { world.model->SetCurrentNode(world.Node("two.c")); }},
    {"select the project",
     [](EditedFixture& world) { world.model->SetCurrentNode(&world.model->GetProjectRoot()); }},
    {"store",
     [](EditedFixture& world) { world.model->Options().StoreChangedProperty("Build.Tool"); }},
    {"rename",
     [](EditedFixture& world) { world.model->Options().StoreChangedProperty("General.Header"); }},
    {"reset", [](EditedFixture& world) { world.model->Options().ResetNodeOptions(nullptr); }},
    {"configure",
     [](EditedFixture& world) {
       world.model->Options().AddConfiguration();
       world.model->Options().SelectConfiguration("Debug");
     }},
    {"publish", [](EditedFixture& world) { world.model->PublishAll(); }},
    {"tick", [](EditedFixture& world) { world.model->Publishing().PublishTick(); }},
    {"clear", [](EditedFixture& world) { world.model->Editor().ClearDefaultApplicationItems(); }},
    {"report",
     [](EditedFixture& world) {
       world.builder->Information().SetBuildInfo(
           "", "<I><F Header=\"\" Infos=\"i\" Date=\"1\" ><D Header=\"a.c\" /></F></I>");
     }},
};

const Act kOuterActs[] = {
    {"open", [](EditedFixture& world) { world.OpenDemo(); }},
    {"open a default", [](EditedFixture& world) { world.model->OpenProject("/p/demo.tprj", 1); }},
    {"save", [](EditedFixture& world) { world.model->SaveProject(); }},
    {"close", [](EditedFixture& world) { world.model->CloseProject(); }},
    {"publish",
     [](EditedFixture& world) {
       while (world.model->Publishing().PublishTick()) {
       }
     }},
    {"select", [](EditedFixture& world) { world.model->SetCurrentNode(world.Node("one.c")); }},
    {"configure",
     [](EditedFixture& world) { world.model->Options().SelectConfiguration("Debug"); }},
    {"reset",
     [](EditedFixture& world) { world.model->Options().ResetNodeOptions(world.Node("two")); }},
    {"add",
     [](EditedFixture& world) { world.model->Items().AddExistingItem("/p/new.c", nullptr); }},
    {"add an application",
     [](EditedFixture& world) {
       world.model->Items().AddExistingItem("/p/n.tapp", "Application");
     }},
    {"new group", [](EditedFixture& world) { world.model->Items().AddNewItem(nullptr, "Group"); }},
    {"remove", [](EditedFixture& world) { world.model->Editor().RemoveItem("two.c"); }},
    {"paste",
     [](EditedFixture& world) {
       world.model->Editor().CopyNode(world.Node("one.c"));
       world.model->Editor().PasteNode(world.Node("two"));
     }},
    {"move",
     [](EditedFixture& world) {
       world.model->Editor().MoveNode(world.Node("one.c"), world.Node("two"));
     }},
};

// A window that sends messages when it is refilled at the end of a change, as toolkit windows do.
class RefillingWindow final : public RecordingProjectWindow {
 public:
  std::function<void()> onRefill;

  void BeginTreeUpdate(UpdateScope) override { ++depth_; }
  void EndTreeUpdate() override {
    if (--depth_ == 0) onRefill();
  }

 private:
  int depth_ = 0;
};

constexpr std::uint32_t kRefill = 0;

constexpr std::uint32_t kMessages[] = {kMsgProjectClosing,
                                       kMsgProjectOpened,
                                       kMsgApplicationKnown,
                                       kMsgApplicationActivated,
                                       kMsgCurrentNodeChanged,
                                       kMsgPaneCaption,
                                       kMsgProjectCreated,
                                       kMsgLogLine,
                                       kRefill};

// Every operation that sends messages, combined with every action of a host inside each message.
// Some files are read-only, so that there are log messages too.
TEST(ReentrantHost, NoActionInsideAMessageCrashesOrLosesAnything) {
  // Acts that are meant to remove an edited node or its edit.
  const std::set<std::string> takesAway = {"reset", "remove the current node",
                                           "remove an application"};
  for (const Act& outer : kOuterActs) {
    for (const std::uint32_t message : kMessages) {
      for (const Act& inner : kInnerActs) {
        for (const std::size_t when : {1u, 2u}) {
          if (when == 2 && (message != kMsgApplicationKnown && message != kMsgLogLine)) continue;
          SCOPED_TRACE(std::string(outer.name) + ", " + std::to_string(message) + ", " +
                       inner.name + ", " + std::to_string(when));
          EditedFixture world;
          world.AddNext();
          ASSERT_EQ(world.OpenDemo(), 1);
          world.Edit();
          world.model->SetCurrentNode(world.Node("two.c"));
          world.components.Properties().newConfigName = "Debug";
          if (message == kMsgLogLine) world.disk.SetReadOnly("/p/one.tapp");
          std::size_t count = 0;
          const auto act = [&] {
            if (++count == when) inner.run(world);
          };
          world.host.actions[message] = act;
          RefillingWindow window;
          window.onRefill = act;
          if (message == kRefill) world.model->Services().views.project = &window;
          outer.run(world);
          world.model->Services().views.project = nullptr;
          world.host.actions.clear();
          world.builder->StopAndWait();

          // Afterwards, the tree in memory is as valid as the model says, and every earlier change
          // is in a file if it is not in the tree.
          world.model->Services().mainframeHandle = world.host.Handle();
          world.model->PublishAll();
          EXPECT_EQ(world.model->CloseProject(), 1);
          EXPECT_EQ(world.components.Properties().holds, 0);
          int edited = 0;
          for (const std::string& path : world.disk.AllFiles()) {
            const std::string bytes = *world.disk.BytesOf(path);
            for (const char* name : {"demo", "one", "two"}) {
              const bool holds = path.find(std::string(name) + ".t") != path.npos;
              if (holds && bytes.find("edited") != bytes.npos) ++edited;
            }
          }
          const bool isTaken = count >= when && takesAway.contains(inner.name);
          const bool outerResets = std::string(outer.name) == "reset";
          EXPECT_GE(edited, 3 - isTaken - outerResets);
          ASSERT_EQ(world.OpenDemo(), 1);
          EXPECT_EQ(world.model->GetProjectRoot().FindChild("Application") != nullptr, true);
        }
      }
    }
  }
}

struct OrderRow {
  const char* name;
  std::uint32_t message;
  const char* project;  // opened by the host inside the message
  Lines heard;          // numbers and first arguments
};

const OrderRow kOrderRows[] = {
    {"another project, as soon as the first is there",
     kMsgProjectOpened,
     "/p/next.tprj",
     {"ProjectOpened /p/demo.tprj", "ProjectClosing /p/demo.tprj", "ProjectOpened /p/next.tprj",
      "ApplicationKnown /p/n.tapp", "PaneCaption n Local Settings", "CurrentNodeChanged /p/n.tapp",
      "ApplicationActivated /p/n.tapp"}},
    {"another project, while the applications are told",
     kMsgApplicationKnown,
     "/p/next.tprj",
     {"ProjectOpened /p/demo.tprj", "ApplicationKnown /p/one.tapp", "ProjectClosing /p/demo.tprj",
      "ProjectOpened /p/next.tprj", "ApplicationKnown /p/n.tapp", "PaneCaption n Local Settings",
      "CurrentNodeChanged /p/n.tapp", "ApplicationActivated /p/n.tapp"}},
    {"another project, at the end",
     kMsgApplicationActivated,
     "/p/next.tprj",
     {"ProjectOpened /p/demo.tprj", "ApplicationKnown /p/one.tapp", "ApplicationKnown /p/two.tapp",
      "PaneCaption one Local Settings", "CurrentNodeChanged /p/one.tapp",
      "ApplicationActivated /p/one.tapp", "ProjectClosing /p/demo.tprj",
      "ProjectOpened /p/next.tprj", "ApplicationKnown /p/n.tapp", "PaneCaption n Local Settings",
      "CurrentNodeChanged /p/n.tapp", "ApplicationActivated /p/n.tapp"}},
    {"the same project, while its second file is read",
     kMsgLogLine,
     "/p/demo.tprj",
     {"LogLine row 17 /p/two.tapp", "ProjectClosing /p/demo.tprj", "LogLine row 17 /p/two.tapp",
      "ProjectOpened /p/demo.tprj", "ApplicationKnown /p/one.tapp", "ApplicationKnown /p/two.tapp",
      "PaneCaption one Local Settings", "CurrentNodeChanged /p/one.tapp",
      "ApplicationActivated /p/one.tapp"}},
};

TEST(ReentrantHost, AProjectOpenedInsideTheOpenOfAnotherIsOpenAsAnyOther) {
  for (const OrderRow& row : kOrderRows) {
    EditedFixture world;
    world.AddNext();
    if (row.message == kMsgLogLine) world.disk.SetReadOnly("/p/two.tapp");
    std::int32_t inner = 0;
    world.host.actions[row.message] = [&] {
      world.host.actions.clear();
      inner = world.model->OpenProject(row.project, 0);
    };
    EXPECT_EQ(world.OpenDemo(), 0) << row.name;
    EXPECT_EQ(inner, 1) << row.name;
    Lines heard;
    for (const std::string& line : world.host.TakeLines()) {
      heard.emplace_back(Trim(line.substr(0, line.rfind(' '))));
    }
    EXPECT_EQ(heard, row.heard) << row.name;
    EXPECT_TRUE(world.model->Paths().IsOpenAs(row.project)) << row.name;
    EXPECT_FALSE(world.model->IsModified()) << row.name;
  }
}

// While the host is asked and while files are written, no second open or close may start.
TEST(ReentrantHost, NothingIsOpenedOrClosedInsideTheQuestionOrTheSave) {
  for (const std::uint32_t message :
       {std::uint32_t{kMsgProjectClosing}, std::uint32_t{kMsgLogLine}}) {
    EditedFixture world;
    ASSERT_EQ(world.OpenDemo(), 1);
    world.Edit();
    world.disk.SetReadOnly("/p/two.tapp");
    Lines results;
    world.host.actions[message] = [&] {
      if (!results.empty()) return;
      results.push_back(std::to_string(world.model->CloseProject()) +
                        std::to_string(world.model->SaveProject()) +
                        std::to_string(world.model->OpenProject("/p/demo.tprj", 0)) +
                        std::to_string(world.model->OpenProject(nullptr, 0)));
    };
    EXPECT_EQ(world.model->CloseProject(), 1) << message;
    EXPECT_EQ(results, Lines{"0000"}) << message;
    EXPECT_EQ(world.Heard(), (Lines{"ProjectClosing", "row 17 /p/two.tapp",
                                    "row 9 /p/two.tapp: failed in memory with code 3",
                                    "/p/two.tapp can't be saved: failed in memory with code 3; "
                                    "the unsaved content is in /p/two.tapp.unsaved"}))
        << message;
    EXPECT_EQ(world.Files(), (Lines{"/p/two.tapp old", "/p/two.tapp.unsaved new"})) << message;
  }
}

}  // namespace
}  // namespace tarn::test
