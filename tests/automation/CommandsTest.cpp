// All commands: when they are enabled, their result, and their effect on the host and the tree.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "automation/ManagerWorld.h"
#include "support/AnsweringUser.h"
#include "support/WizardUser.h"

namespace tarn::test {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;

struct Scene {
  Scene() {
    world.AddDemo();
    world.AddDefaultProject();
    world.components.Properties().defaults[".Build.ListingFile"] = "/p/demo.lst";
    world.components.Properties().defaults[".Build.OutputFile"] = "/p/demo.o";
    world.components.Properties().defaults[".Build.TranslateTool"] = "cc";
    world.components.Properties().defaults[".Internal.Open"] = "0x810F";
    world.components.Properties().newConfigName = "Debug";
    world.components.Tools().tools[""] = "<Tools><Tool Header=\"lint\" /></Tools>";
    EXPECT_EQ(world.Init(), "1");
    EXPECT_EQ(world.Call("InitToolManager", {DispatchPtr(&world.components.Tools())}), "1");
  }
  void Open() {
    ASSERT_EQ(world.Call("ProjectOpen", {"/p/demo.tprj"}), "1");
    Model().PublishAll();
    ASSERT_EQ(world.Call("SelectNode", {"/p/main.c"}), "1");
    world.TakeLines();
  }
  std::string Command(std::int32_t id) { return world.Call("Command", {id}); }
  std::string Enabled(std::int32_t id) { return world.Call("EnableCommand", {id}); }
  CProjectModel& Model() { return *world.Manager().GetModel(); }
  Builder& GetBuilder() { return *world.Manager().GetBuilder(); }
  // Processes the worker's tasks until it has finished.
  void EndWorker() {
    EXPECT_TRUE(MessageLoop::ForCurrentThread()->PumpUntil(
        [this] { return !GetBuilder().IsWorkerAlive(); }, std::chrono::seconds(20)));
  }
  std::string Shape() {
    std::string text;
    for (const CXmlNode* child : Model().GetProjectRoot().GetChild(0)->GetChildren()) {
      if (!IsContentNode(*child)) continue;
      text += (text.empty() ? "" : " ") + TextOf(child->GetAttrValue("Header"));
    }
    return text;
  }

  ManagerWorld world;
  AnsweringUser user{world.host.Handle()};
};

class Commands : public ::testing::Test, protected Scene {};

TEST_F(Commands, AreEnabledByTheStateOfTheProject) {
  const std::int32_t ids[] = {0x8104, 0x8105, 0x8106, 0x8108, 0x8109, 0x810B, 0x810C, 0x810D,
                              0x810E, 0x810F, 0x8110, 0x8111, 0x8112, 0x8113, 0x8114, 0x8115,
                              0x8116, 0x8117, 0x8118, 0x8119, 0x811A, 0x811B, 0x811C, 0x811E,
                              0x811F, 0x8120, 0x8121, 0x8122, 0x8136, 0x8137, 0x8138, 0x8139,
                              0x813A, 0xE120, 0xE122, 0xE125};
  const auto disabled = [&] {
    std::string list;
    for (const std::int32_t id : ids) {
      if (Enabled(id) == "1") continue;
      char number[16];
      std::snprintf(number, sizeof number, "%X ", static_cast<unsigned>(id));
      list += number;
    }
    return list;
  };
  EXPECT_EQ(disabled(), "8109 810B 810C 8111 8112 8113 8118 811C E120 E122 E125 ")
      << "the default project";
  Open();
  EXPECT_EQ(disabled(), "811C ");
  std::string whileBuilding;
  std::string whileStopping;
  world.host.actions[kMsgToolSucceeded] = [&] {
    if (GetBuilder().GetBuildState() != StateBuilding || !whileBuilding.empty()) return;
    whileBuilding = disabled() + "none";
    EXPECT_EQ(Command(0x811C), "1");
    whileStopping = disabled();
  };
  EXPECT_EQ(Command(0x8112), "2");
  EndWorker();
  EXPECT_EQ(whileBuilding, "none");
  EXPECT_EQ(whileStopping, "811C ") << "a stop is asked for once";
}

TEST_F(Commands, DoWhatTheirMenuSays) {
  const struct {
    const char* name;
    std::int32_t id;
    const char* answer;
    std::vector<std::string> lines;
    const char* shape;
  } rows[] = {
      {"nothing that is known", 0x8104, "1", {}, "main.c"},
      {"open the listing", 0x810D, "1", {"0x8008 /p/demo.lst 0"}, "main.c"},
      {"the node's own open command", 0x810E, "1", {"273 33039 0"}, "main.c"},
      {"open the file", 0x810F, "1", {"0x8008 /p/main.c 0"}, "main.c"},
      {"show the file", 0x8110, "1", {"0x800F /p/main.c -1"}, "main.c"},
      {"activate what is no application", 0x8118, "1", {}, "main.c"},
      {"stop where nothing runs", 0x811C, "1", {}, "main.c"},
      {"announce the application", 0x811E, "1", {"0x8010 /p/demo.tapp Standard"}, "main.c"},
      {"the application's listing", 0x8120, "1", {"0x8008 /p/demo.lst 0"}, "main.c"},
      {"hold publishing", 0x8137, "1", {}, "main.c"},
      {"build again", 0x8139, "0", {}, "main.c"},
      {"empty the default application only", 0x813A, "1", {}, "main.c"},
      {"copy", 0xE122, "1", {}, "main.c"},
      {"new folder",
       0x810C,
       "1",
       {"0x8019 New Folder Local Settings 4005", "0x8011 \"\" 0"},
       "main.c New Folder"},
      {"remove", 0xE120, "1", {"0x8019 demo Local Settings 4005", "0x8011 /p/demo.tapp 0"}, ""},
  };
  for (const auto& row : rows) {
    Scene each;
    each.Open();
    EXPECT_EQ(each.Command(row.id), row.answer) << row.name;
    EXPECT_EQ(each.world.TakeLines(), row.lines) << row.name;
    EXPECT_EQ(each.Shape(), row.shape) << row.name;
  }
}

TEST_F(Commands, CopyAndPasteStandForTheSelectedNode) {
  Open();
  EXPECT_EQ(Command(0xE125), "1");
  EXPECT_EQ(Shape(), "main.c") << "with nothing copied";
  Command(0xE122);
  Command(0xE125);
  EXPECT_EQ(Shape(), "main.c main.c");
}

TEST_F(Commands, AskWhichFilesOrWhatApplication) {
  Open();
  user.files = {{"/p/a.c"}};
  EXPECT_EQ(Command(0x8108), "1");
  EXPECT_EQ(Shape(), "main.c a.c");
  std::string proposed;
  user.useSheet = [&proposed](CPropertySheet& sheet) {
    const WizardUser shown(sheet);
    proposed = shown.Control<CEdit>(kIdLocation).GetWindowText() + " " +
               shown.Control<CEdit>(kIdName).GetWindowText();
    return kSheetCancel;
  };
  EXPECT_EQ(Command(0x8109), "1");
  EXPECT_EQ(proposed, "/p/ Application0");
}

TEST_F(Commands, ConfigurationsAreAddedAndChosenByTheNameOfTheOptionsWindow) {
  Open();
  EXPECT_EQ(Command(0x8138), "1");
  EXPECT_EQ(Model().Publishing().GetCurrentConfigName(), "Standard");
  EXPECT_EQ(Command(0x8119), "1");
  EXPECT_EQ(Model().Publishing().GetCurrentConfigName(), "Debug");
  EXPECT_THAT(world.TakeLines(), Contains("0x8010 /p/demo.tapp Debug"));
}

TEST_F(Commands, AnOptionChangeReachesTheProjectAndTellsWhichOutputIsOld) {
  for (const std::int32_t id : {0x8105, 0x8106, 0x811A}) {
    Open();
    CXmlNode* node = Model().GetOwnCurrentNode();
    node->SetAttrValue("LastBuilt", "5");
    world.components.Properties().changedProperty = "C.Build.Tool";
    EXPECT_EQ(Command(id), "1");
    EXPECT_THAT(world.TakeLines(), Contains("0x8021 /p/demo.o -1")) << id;
    node = Model().GetOwnCurrentNode();
    ASSERT_NE(node, nullptr);
    EXPECT_EQ(node->FindChild("PropState") != nullptr, id == 0x8105);
    EXPECT_NE(node->FindChild("#CDATA"), nullptr) << "published again";
    EXPECT_EQ(node->FindChild("Options") != nullptr, id != 0x811A);
    ASSERT_EQ(Command(0x811B), "1");
    EXPECT_EQ(Model().GetOwnCurrentNode()->FindChild("Options"), nullptr);
    ASSERT_EQ(world.Call("ProjectClose"), "1");
  }
}

TEST_F(Commands, TheOptionsWindowShowsWhatIsSelected) {
  Open();
  for (const std::int32_t id : {0x810B, 0x8121}) {
    world.components.Properties().TakeCalls();
    EXPECT_EQ(Command(id), "1");
    EXPECT_EQ(world.components.Properties().CallsOf("ShowOptions").size(), 1u) << id;
    EXPECT_EQ(world.components.Properties().holds, 0) << id;
  }
}

TEST_F(Commands, AToolOfTheNodeRunsInTheBackground) {
  EXPECT_EQ(Command(0x8122), "1") << "nothing selected";
  Open();
  EXPECT_EQ(Command(0x8123), "2");
  EndWorker();
  ASSERT_EQ(world.components.Tools().CallsOf("RunTool").size(), 1u);
  EXPECT_THAT(world.components.Tools().CallsOf("RunTool")[0], ::testing::HasSubstr("lint"));
  world.TakeLines();
  EXPECT_EQ(Command(0x8136), "2") << "no entry has it";
  EndWorker();
  EXPECT_THAT(world.TakeLines(), ElementsAre());
}

TEST_F(Commands, ABuildHasAPrologAndAnEpilog) {
  Open();
  for (const std::int32_t id : {0x8104, 0x8110, 0x8118, 0x811E, 0x8121, 0x8137}) {
    EXPECT_EQ(world.Call("PrologCommand", {id}), "1");
    EXPECT_EQ(world.Call("EpilogCommand", {id}), "1");
  }
  EXPECT_THAT(world.TakeLines(), ElementsAre());
  for (const std::int32_t id : {0x8111, 0x8117, 0x811F, 0x8122, 0x8136}) {
    EXPECT_EQ(world.Call("PrologCommand", {id}), "1");
    EXPECT_EQ(world.Call("EpilogCommand", {id}), "1");
    EXPECT_EQ(world.components.Properties().holds, 0) << id;
    EXPECT_THAT(world.TakeLines(), ElementsAre("0x800C 0 0")) << id;
  }
}

TEST_F(Commands, ABuildThatTheHostRefusesCostsNothing) {
  Open();
  ASSERT_EQ(world.Call("SavePropertyValue", {"C", "Build", "Flag", "kept"}), "1");
  world.Call("ReportMessage", {"said before"});
  const int lines = Model().Services().output->GetRoot().GetChildCount();
  world.host.answers[kMsgBuildStarting] = 0;
  EXPECT_EQ(world.Call("PrologCommand", {0x8112}), "0");
  EXPECT_EQ(world.components.Tools().CallsOf("RunTool").size(), 0u);
  EXPECT_EQ(world.components.Properties().holds, 0);
  EXPECT_EQ(Model().Services().output->GetRoot().GetChildCount(), lines)
      << "the log of the build before";
  EXPECT_EQ(Enabled(0x811C) + world.Call("GetPropertyValue", {"C", "Build", "Flag"}), "0'kept'");
  EXPECT_EQ(world.Call("ProjectSave"), "1");
  EXPECT_NE(world.disk.BytesOf("/p/demo.tapp")->find("kept"), std::string::npos);
}

TEST_F(Commands, ARerunIsPostedOnceAndTakenBackByTheNextBuild) {
  Open();
  EXPECT_EQ(Command(0x8139), "0");
  EXPECT_EQ(world.Call("EpilogCommand", {0x8112}), "0");
  MessageLoop::ForCurrentThread()->Pump();
  EXPECT_THAT(world.TakeLines(), ElementsAre("273 33030 0", "273 33041 0"));
  EXPECT_EQ(world.Call("PrologCommand", {0x8111}), "1");
  EXPECT_EQ(world.Call("EpilogCommand", {0x8111}), "1");
}

TEST_F(Commands, IniFilesKeepWhatTheyHold) {
  EXPECT_EQ(world.Call("ReadIniValue", {"s", "k", "/p/none.ini"}), "''");
  world.disk.AddFile("/p/x.ini", "; note\r\n[s]\r\na=\" b \"\r\nlong=x\r\n");
  EXPECT_EQ(world.Call("ReadIniValue", {"S", "A", "/p/x.ini"}), "' b '");
  EXPECT_EQ(world.Call("WriteIniValue", {"s", "long", NullableText(), "/p/x.ini"}), "1");
  EXPECT_EQ(*world.disk.BytesOf("/p/x.ini"), "; note\r\n[s]\r\na=\" b \"\r\n");
  EXPECT_EQ(world.Call("WriteIniValue", {"s", NullableText(), "", "/p/x.ini"}), "1");
  EXPECT_EQ(*world.disk.BytesOf("/p/x.ini"), "; note\r\n");
}

TEST_F(Commands, AnItemMadeFromOutsideNeverRunsTheToolAndLeavesTheUsersChoice) {
  Open();
  std::string seen;
  const auto profile = [&] { return world.disk.BytesOf("/user/profile.ini").value_or("none"); };
  for (const char* chosen : {"", "Yes"}) {
    if (*chosen != '\0') world.settings.WriteProfile("Project", "UseCobbler", chosen);
    const std::string before = profile();
    std::string during;
    user.useSheet = [&](CPropertySheet&) {
      seen = world.settings.ReadProfile("Project", "UseCobbler", "none");
      world.settings.WriteProfile("Project", "UseCobbler", "Maybe");
      during = profile();  // state left by a killed process
      return kSheetCancel;
    };
    EXPECT_EQ(world.Call("AddNewItem", {NullableText(), NullableText()}), "0");
    EXPECT_EQ(seen, "No");
    EXPECT_EQ(during, before);
    EXPECT_EQ(world.Call("AddNewItem", {NullableText(), "Group"}), "1");
    EXPECT_EQ(profile(), before);
  }
}

}  // namespace
}  // namespace tarn::test
