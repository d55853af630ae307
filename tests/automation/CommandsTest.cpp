// All commands: when they are enabled, their result, and their effect on the host and the tree.

#include <tarn/commands.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "automation/ManagerFixture.h"
#include "support/AnsweringUser.h"
#include "support/WizardUser.h"
#include "xml/XmlNode.h"

namespace tarn::test {
namespace {

constexpr std::int32_t kUnknownCommand = TARN_CMD_APPLY_OPTION - 1;

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
      text += (text.empty() ? "" : " ") + OrEmpty(child->GetAttrValue("Header"));
    }
    return text;
  }

  ManagerFixture world;
  AnsweringUser user{world.host.Handle()};
};

class Commands : public ::testing::Test, protected Scene {};

TEST_F(Commands, AreEnabledByTheStateOfTheProject) {
  const std::int32_t ids[] = {kUnknownCommand,
                              TARN_CMD_APPLY_OPTION,
                              TARN_CMD_APPLY_OPTION_AND_REBUILD,
                              TARN_CMD_ADD_FILES,
                              TARN_CMD_NEW_APPLICATION,
                              TARN_CMD_NODE_OPTIONS,
                              TARN_CMD_NEW_GROUP,
                              TARN_CMD_OPEN_LISTING,
                              TARN_CMD_OPEN_BY_TYPE,
                              TARN_CMD_OPEN_FILE,
                              TARN_CMD_SHOW_FILE,
                              TARN_CMD_REBUILD_ALL,
                              TARN_CMD_BUILD_ALL,
                              TARN_CMD_CLEAN_ALL,
                              TARN_CMD_REBUILD_NODE,
                              TARN_CMD_BUILD_NODE,
                              TARN_CMD_CLEAN_NODE,
                              TARN_CMD_TRANSLATE_NODE,
                              TARN_CMD_SET_ACTIVE_APPLICATION,
                              TARN_CMD_SELECT_CONFIGURATION,
                              TARN_CMD_RESET_OPTION,
                              TARN_CMD_RESET_NODE_OPTIONS,
                              TARN_CMD_STOP,
                              TARN_CMD_OPTIONS_LOADED,
                              TARN_CMD_BUILD_APPLICATION,
                              TARN_CMD_APPLICATION_LISTING,
                              TARN_CMD_APPLICATION_OPTIONS,
                              TARN_CMD_LIST_TOOLS,
                              TARN_CMD_LAST_TOOL,
                              TARN_CMD_STOP_PUBLISHING,
                              TARN_CMD_ADD_CONFIGURATION,
                              TARN_CMD_REBUILD_AFTERWARDS,
                              TARN_CMD_CLEAR_DEFAULT_PROJECT,
                              TARN_CMD_REMOVE_NODE,
                              TARN_CMD_COPY,
                              TARN_CMD_PASTE};
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
    EXPECT_EQ(Command(TARN_CMD_STOP), "1");
    whileStopping = disabled();
  };
  EXPECT_EQ(Command(TARN_CMD_BUILD_ALL), "2");
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
      {"nothing that is known", kUnknownCommand, "1", {}, "main.c"},
      {"open the listing", TARN_CMD_OPEN_LISTING, "1", {"OpenFileAtLine /p/demo.lst 0"}, "main.c"},
      {"the node's own open command", TARN_CMD_OPEN_BY_TYPE, "1", {"Command 33039 0"}, "main.c"},
      {"open the file", TARN_CMD_OPEN_FILE, "1", {"OpenFileAtLine /p/main.c 0"}, "main.c"},
      {"show the file", TARN_CMD_SHOW_FILE, "1", {"OpenFile /p/main.c -1"}, "main.c"},
      {"activate what is no application", TARN_CMD_SET_ACTIVE_APPLICATION, "1", {}, "main.c"},
      {"stop where nothing runs", TARN_CMD_STOP, "1", {}, "main.c"},
      {"announce the application",
       TARN_CMD_OPTIONS_LOADED,
       "1",
       {"ApplicationActivated /p/demo.tapp Standard"},
       "main.c"},
      {"the application's listing",
       TARN_CMD_APPLICATION_LISTING,
       "1",
       {"OpenFileAtLine /p/demo.lst 0"},
       "main.c"},
      {"hold publishing", TARN_CMD_STOP_PUBLISHING, "1", {}, "main.c"},
      {"build again", TARN_CMD_REBUILD_AFTERWARDS, "0", {}, "main.c"},
      {"empty the default application only", TARN_CMD_CLEAR_DEFAULT_PROJECT, "1", {}, "main.c"},
      {"copy", TARN_CMD_COPY, "1", {}, "main.c"},
      {"new folder",
       TARN_CMD_NEW_GROUP,
       "1",
       {"PaneCaption New Folder Local Settings 4005", "CurrentNodeChanged \"\" 0"},
       "main.c New Folder"},
      {"remove",
       TARN_CMD_REMOVE_NODE,
       "1",
       {"PaneCaption demo Local Settings 4005", "CurrentNodeChanged /p/demo.tapp 0"},
       ""},
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
  EXPECT_EQ(Command(TARN_CMD_PASTE), "1");
  EXPECT_EQ(Shape(), "main.c") << "with nothing copied";
  Command(TARN_CMD_COPY);
  Command(TARN_CMD_PASTE);
  EXPECT_EQ(Shape(), "main.c main.c");
}

TEST_F(Commands, AskWhichFilesOrWhatApplication) {
  Open();
  user.files = {{"/p/a.c"}};
  EXPECT_EQ(Command(TARN_CMD_ADD_FILES), "1");
  EXPECT_EQ(Shape(), "main.c a.c");
  std::string proposed;
  user.useSheet = [&proposed](CPropertySheet& sheet) {
    const WizardUser shown(sheet);
    proposed = shown.Control<CEdit>(kIdLocation).GetControlText() + " " +
               shown.Control<CEdit>(kIdName).GetControlText();
    return kSheetCancel;
  };
  EXPECT_EQ(Command(TARN_CMD_NEW_APPLICATION), "1");
  EXPECT_EQ(proposed, "/p/ Application0");
}

TEST_F(Commands, ConfigurationsAreAddedAndChosenByTheNameOfTheOptionsWindow) {
  Open();
  EXPECT_EQ(Command(TARN_CMD_ADD_CONFIGURATION), "1");
  EXPECT_EQ(Model().Publishing().GetCurrentConfigName(), "Standard");
  EXPECT_EQ(Command(TARN_CMD_SELECT_CONFIGURATION), "1");
  EXPECT_EQ(Model().Publishing().GetCurrentConfigName(), "Debug");
  EXPECT_THAT(world.TakeLines(), Contains("ApplicationActivated /p/demo.tapp Debug"));
}

TEST_F(Commands, AnOptionChangeReachesTheProjectAndTellsWhichOutputIsOld) {
  for (const std::int32_t id :
       {TARN_CMD_APPLY_OPTION, TARN_CMD_APPLY_OPTION_AND_REBUILD, TARN_CMD_RESET_OPTION}) {
    Open();
    CXmlNode* node = Model().GetOwnCurrentNode();
    node->SetAttrValue("LastBuilt", "5");
    world.components.Properties().changedProperty = "C.Build.Tool";
    EXPECT_EQ(Command(id), "1");
    EXPECT_THAT(world.TakeLines(), Contains("OutputInvalid /p/demo.o -1")) << id;
    node = Model().GetOwnCurrentNode();
    ASSERT_NE(node, nullptr);
    EXPECT_EQ(node->FindChild("PropState") != nullptr, id == TARN_CMD_APPLY_OPTION);
    EXPECT_NE(node->FindChild("#CDATA"), nullptr) << "published again";
    EXPECT_EQ(node->FindChild("Options") != nullptr, id != TARN_CMD_RESET_OPTION);
    ASSERT_EQ(Command(TARN_CMD_RESET_NODE_OPTIONS), "1");
    EXPECT_EQ(Model().GetOwnCurrentNode()->FindChild("Options"), nullptr);
    ASSERT_EQ(world.Call("ProjectClose"), "1");
  }
}

TEST_F(Commands, TheOptionsWindowShowsWhatIsSelected) {
  Open();
  for (const std::int32_t id : {TARN_CMD_NODE_OPTIONS, TARN_CMD_APPLICATION_OPTIONS}) {
    world.components.Properties().TakeCalls();
    EXPECT_EQ(Command(id), "1");
    EXPECT_EQ(world.components.Properties().CallsOf("ShowOptions").size(), 1u) << id;
    EXPECT_EQ(world.components.Properties().holds, 0) << id;
  }
}

TEST_F(Commands, AToolOfTheNodeRunsInTheBackground) {
  EXPECT_EQ(Command(TARN_CMD_LIST_TOOLS), "1") << "nothing selected";
  Open();
  EXPECT_EQ(Command(TARN_CMD_FIRST_TOOL), "2");
  EndWorker();
  ASSERT_EQ(world.components.Tools().CallsOf("RunTool").size(), 1u);
  EXPECT_THAT(world.components.Tools().CallsOf("RunTool")[0], ::testing::HasSubstr("lint"));
  world.TakeLines();
  EXPECT_EQ(Command(TARN_CMD_LAST_TOOL), "2") << "no entry has it";
  EndWorker();
  EXPECT_THAT(world.TakeLines(), ElementsAre());
}

TEST_F(Commands, ABuildHasAPrologAndAnEpilog) {
  Open();
  for (const std::int32_t id : std::initializer_list<std::int32_t>{
           kUnknownCommand, TARN_CMD_SHOW_FILE, TARN_CMD_SET_ACTIVE_APPLICATION,
           TARN_CMD_OPTIONS_LOADED, TARN_CMD_APPLICATION_OPTIONS, TARN_CMD_STOP_PUBLISHING}) {
    EXPECT_EQ(world.Call("PrologCommand", {id}), "1");
    EXPECT_EQ(world.Call("EpilogCommand", {id}), "1");
  }
  EXPECT_THAT(world.TakeLines(), ElementsAre());
  for (const std::int32_t id :
       {TARN_CMD_REBUILD_ALL, TARN_CMD_TRANSLATE_NODE, TARN_CMD_BUILD_APPLICATION,
        TARN_CMD_LIST_TOOLS, TARN_CMD_LAST_TOOL}) {
    EXPECT_EQ(world.Call("PrologCommand", {id}), "1");
    EXPECT_EQ(world.Call("EpilogCommand", {id}), "1");
    EXPECT_EQ(world.components.Properties().holds, 0) << id;
    EXPECT_THAT(world.TakeLines(), ElementsAre("BuildStarting 0 0")) << id;
  }
}

TEST_F(Commands, ABuildThatTheHostRefusesCostsNothing) {
  Open();
  ASSERT_EQ(world.Call("SavePropertyValue", {"C", "Build", "Flag", "kept"}), "1");
  world.Call("ReportMessage", {"said before"});
  const int lines = Model().Services().output->GetRoot().GetChildCount();
  world.host.answers[kMsgBuildStarting] = 0;
  EXPECT_EQ(world.Call("PrologCommand", {TARN_CMD_BUILD_ALL}), "0");
  EXPECT_EQ(world.components.Tools().CallsOf("RunTool").size(), 0u);
  EXPECT_EQ(world.components.Properties().holds, 0);
  EXPECT_EQ(Model().Services().output->GetRoot().GetChildCount(), lines)
      << "the log of the build before";
  EXPECT_EQ(Enabled(TARN_CMD_STOP) + world.Call("GetPropertyValue", {"C", "Build", "Flag"}),
            "0'kept'");
  EXPECT_EQ(world.Call("ProjectSave"), "1");
  EXPECT_NE(world.disk.BytesOf("/p/demo.tapp")->find("kept"), std::string::npos);
}

TEST_F(Commands, ARerunIsPostedOnceAndTakenBackByTheNextBuild) {
  Open();
  EXPECT_EQ(Command(TARN_CMD_REBUILD_AFTERWARDS), "0");
  EXPECT_EQ(world.Call("EpilogCommand", {TARN_CMD_BUILD_ALL}), "0");
  MessageLoop::ForCurrentThread()->Pump();
  EXPECT_THAT(world.TakeLines(), ElementsAre("Command 33030 0", "Command 33041 0"));
  EXPECT_EQ(world.Call("PrologCommand", {TARN_CMD_REBUILD_ALL}), "1");
  EXPECT_EQ(world.Call("EpilogCommand", {TARN_CMD_REBUILD_ALL}), "1");
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
