// A host that calls back inside every message of a complete session.

#include <tarn/commands.h>

#include <gtest/gtest.h>

#include "automation/ManagerFixture.h"
#include "support/AnsweringUser.h"
#include "support/WizardUser.h"
#include "xml/XmlNode.h"

namespace tarn::test {
namespace {

constexpr const char* kMenus =
    "<ToolBar><Item id='1'/></ToolBar><MainMenus><Menu Header='m'/></MainMenus>";

// A call that a host makes inside a message.
struct Act {
  const char* name;
  const char* method;
  std::vector<Variant> arguments;
};

const Act kActs[] = {
    {"close", "ProjectClose", {}},
    {"remove a file", "RemoveItem", {"/p/main.c"}},
    {"remove the current node", "RemoveItem", {NullableText()}},
    {"remove the application", "RemoveItem", {"demo"}},
    {"add", "AddExistingItem", {"/p/inner.c", NullableText()}},
    {"report",
     "SetBuildInfo",
     {"", "<I><F Header=\"/p/main.o\" Infos=\"i\" Date=\"1\" ><D Header=\"/p/x.h\" /></F></I>"}},
};

class Session {
 public:
  Session() {
    world.disk.AddFile(ManagerFixture::kConfigFile, ManagerFixture::Configuration(kMenus));
    std::string rows;
    for (int row = 0x20000; row < 0x20027; ++row) {
      rows += "<m Id='" + std::to_string(row) + "' String='row %s' />";
    }
    world.disk.AddFile("/app/config/message.xslt",
                       "<a><Messages Tab='Build' >" + rows + "</Messages></a>");
    world.AddDemo();
    world.AddDefaultProject();
    world.disk.AddFile("/p/script.lua", "text");
    world.components.Properties().newConfigName = "Debug";
    world.components.Properties().defaults = {
        {"C.Build.TranslateTool", "cc"},           {"C.Build.OutputFile", "/p/main.o"},
        {"Application.Build.TranslateTool", "ld"}, {"Application.Build.OutputFile", "/p/demo.elf"},
        {".Build.ListingFile", "/p/demo.lst"},     {".Internal.Open", "0x810F"}};
    world.disk.AddFile(
        "/app/targets/t.xml",
        "<Targets Header='T' ><Target Header='t1' ><![CDATA[text]]></Target></Targets>");
    user_.useSheet = [](CPropertySheet& sheet) {
      const WizardUser shown(sheet);
      EXPECT_TRUE(shown.ClickTarget("t1"));
      shown.Type(kIdName, "boot");
      return kSheetFinish;
    };
    world.components.Tools().onRun = [this](const ToolRun&) { return fails_ ? 0 : 1; };
  }

  // Runs the complete session; `act` is performed at the message with index `when`, starting at 1.
  void Play(std::size_t when, const Act* act) {
    std::size_t count = 0;
    for (std::uint32_t number = kMsgAnnounceWindow; number <= kMsgShowHelp; ++number) {
      world.host.actions[number] = [this, when, act, &count] {
        if (++count == when) Perform(*act);
      };
    }
    world.host.actions[kMsgCommand] = world.host.actions[kMsgAnnounceWindow];
    EXPECT_EQ(world.Init(), "1");
    world.Call("InitToolManager", {DispatchPtr(&world.components.Tools())});
    world.Call("ProjectNew", {"/p/new.tprj"});
    world.Call("ProjectOpen", {"/p/demo.tprj"});
    world.Call("SelectApplication", {"demo"});
    hasStored_ = IsDemoOpen();
    world.Call("SavePropertyValue", {"Application", "Build", "Flag", "edited"});
    world.Call("Command", {TARN_CMD_APPLY_OPTION_AND_REBUILD});
    world.Call("AddExistingItem", {"/p/outer.c", NullableText()});
    world.Call("AddNewItem", {NullableText(), "Group"});
    world.Call("AddExistingItem", {"/nowhere/x.c", NullableText()});
    world.Call("SelectApplication", {"New Folder"});
    world.Call("AddExistingItem", {"/p/gone.tapp", "Application"});
    world.Call("SelectApplication", {"main.c"});
    for (const TarnCommand id :
         {TARN_CMD_NODE_OPTIONS, TARN_CMD_OPEN_LISTING, TARN_CMD_OPEN_BY_TYPE, TARN_CMD_OPEN_FILE,
          TARN_CMD_SHOW_FILE, TARN_CMD_SELECT_CONFIGURATION, TARN_CMD_RESET_OPTION,
          TARN_CMD_OPTIONS_LOADED, TARN_CMD_APPLICATION_OPTIONS, TARN_CMD_ADD_CONFIGURATION,
          TARN_CMD_COPY, TARN_CMD_PASTE}) {
      world.Call("Command", {id});
    }
    world.Call("SelectApplication", {"Tarn Project 'demo'"});
    world.Call("AddNewItem", {NullableText(), "Application"});
    world.Call("ExecuteScript", {"/p/script.lua"});
    for (fails_ = false; Build(); fails_ = true) {
    }
    world.Call("ProjectBuild");
    world.Call("ProjectSave");
    world.Call("ProjectClose");
    world.host.actions.clear();
    messages = count;
  }

  // Every change that was reported as done, and not undone later, must be in a file.
  void ExpectNothingLost() {
    world.Call("ProjectClose");
    std::string all;
    for (const char* path : {"/p/demo.tprj", "/p/demo.tapp", "/p/boot.tapp"}) {
      const std::string text = world.disk.BytesOf(path).value_or("");
      CXmlNode root;
      const bool isMade = std::string(path) != "/p/boot.tapp";
      EXPECT_TRUE(!isMade || root.Load(text, g_xmlParseInfo) != nullptr) << path << text;
      all += text;
    }
    EXPECT_TRUE(hasRemoved_ || Holds(all, "\"main.c\"")) << all;
    EXPECT_TRUE(hasRemoved_ || !hasStored_ || Holds(all, "edited")) << all;
    EXPECT_TRUE(!hasAdded_ || Holds(all, "\"inner.c\"")) << all;
    EXPECT_EQ(world.Call("ProjectOpen", {"/p/demo.tprj"}), "1");
  }

  std::size_t messages = 0;
  ManagerFixture world;

 private:
  static bool Holds(const std::string& text, const char* part) {
    return text.find(part) != std::string::npos;
  }
  bool IsDemoOpen() {
    return world.manager && world.Call("EnableCommand", {TARN_CMD_BUILD_ALL}) == "1" &&
           world.Call("GetSelectedApplication") == "'/p/demo.tapp'";
  }
  void Perform(const Act& act) {
    const bool wasOpen = IsDemoOpen();
    DispatchId id = 0;
    Variant result;
    ASSERT_TRUE(world.manager->GetIDsOfNames(act.method, id));
    ASSERT_TRUE(world.manager->Invoke(id, act.arguments, result));
    if (result.AsLong() == 0) return;
    if (std::string(act.method) == "RemoveItem") hasRemoved_ = true;
    if (std::string(act.method) == "AddExistingItem") hasAdded_ = wasOpen;
  }
  // Returns false if no further build should follow.
  bool Build() {
    if (world.Call("PrologCommand", {TARN_CMD_REBUILD_ALL}) != "0") {
      const std::size_t before = world.host.LinesOf(kMsgWorkerEnded).size();
      world.Call("Command", {TARN_CMD_REBUILD_ALL});
      EXPECT_TRUE(MessageLoop::ForCurrentThread()->PumpUntil(
          [&] { return world.host.LinesOf(kMsgWorkerEnded).size() > before; },
          std::chrono::seconds(20)));
      world.Call("EpilogCommand", {TARN_CMD_REBUILD_ALL});
    }
    return !fails_;
  }

  AnsweringUser user_{world.host.Handle()};
  bool fails_ = false;  // if true, every tool fails
  bool hasStored_ = false;
  bool hasRemoved_ = false;
  bool hasAdded_ = false;
};

TEST(ReentrantSession, NoCallInsideAnyMessageCrashesOrLosesAnything) {
  Session plain;
  plain.Play(0, nullptr);
  for (const std::uint32_t number :
       {kMsgCreationEnded, kMsgOpenFileAtLine, kMsgRunScript, kMsgCreateToolbar, kMsgBuildStarting,
        kMsgWorkerEnded, kMsgOpenFile, kMsgApplicationActivated, kMsgCurrentNodeChanged,
        kMsgAddMainMenu, kMsgProjectOpened, kMsgProjectClosing, kMsgProjectCreated,
        kMsgToolSucceeded, kMsgPaneCaption, kMsgLogLine, kMsgOutputInvalid, kMsgApplicationKnown,
        kMsgCommand}) {
    EXPECT_FALSE(plain.world.host.LinesOf(number).empty()) << std::hex << number;
  }
  plain.ExpectNothingLost();
  for (const Act& act : kActs) {
    for (std::size_t when = 1; when <= plain.messages; ++when) {
      SCOPED_TRACE(std::string(act.name) + " in message " + std::to_string(when));
      Session session;
      session.Play(when, &act);
      session.ExpectNothingLost();
      if (HasFailure()) return;
    }
  }
}

}  // namespace
}  // namespace tarn::test
