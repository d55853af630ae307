// Initialisation of a manager: the files that it reads, the objects that it creates, their order,
// and the state after a failed step.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <future>
#include <stdexcept>
#include <thread>

#include "automation/ManagerFixture.h"
#include "platform/modules/Modules.h"
#include "platform/paths/Paths.h"
#include "xml/XmlNode.h"

namespace tarn::test {
namespace {

using ::testing::AllOf;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::Gt;
using ::testing::SizeIs;

// Returns the notification of the project that is opened instead of one that can't be opened.
std::string ShownInstead(ManagerFixture& world, const std::string& file) {
  world.disk.AddFile(file, "<Project Header='x' />");
  world.TakeLines();
  world.Call("ProjectOpen", {"/p/none.tprj"});
  const std::vector<std::string> opened = world.host.LinesOf(kMsgProjectOpened);
  return opened.empty() ? std::string() : opened.front();
}

TEST(Init, TakesTheConfigurationAndDefaultProjectOfItsFolders) {
  const std::string module = CanonicalPath(ModuleFolder() + "/..");
  const struct {
    const char* name;
    Variant application;
    Variant data;
    std::string config;  // configuration file that exists
    const char* result;
    std::string defaultProject;
  } rows[] = {
      {"the usual", "/app/", "/data/demo", "/app/config/projectmanager.config", "1",
       "/data/demo/demo.tprj"},
      {"one of the data folder's name", "/app/", "/data/demo",
       "/app/config/demo_projectmanager.config", "1", "/data/demo/demo.tprj"},
      {"a data folder with a separator at its end", "/app/", "/data/demo/",
       "/app/config/_projectmanager.config", "1", "/data/demo/.tprj"},
      {"a backslash there", "/app/", "/data\\demo", "/app/config/demo_projectmanager.config", "1",
       "/data/demo/demo.tprj"},
      {"no data folder", "/app/", NullableText(), "/app/config/_projectmanager.config", "1",
       "/userdata/.tprj"},
      {"an empty data folder", "/app/", "", "/app/config/_projectmanager.config", "1",
       "/userdata/.tprj"},
      {"a data folder of one name", "/app/", "mine", "/app/config/mine_projectmanager.config", "1",
       "/start/mine/mine.tprj"},
      {"a relative application folder", "../app/", "/data/demo",
       "/app/config/projectmanager.config", "1", "/data/demo/demo.tprj"},
      {"an application folder without its separator", "/app", "/data/demo",
       "/app/config/projectmanager.config", "0", ""},
      {"no application folder", NullableText(), "/data/demo",
       module + "/config/projectmanager.config", "1", "/data/demo/demo.tprj"},
      {"an empty application folder", "", "/data/demo", module + "/config/projectmanager.config",
       "1", "/data/demo/demo.tprj"},
      {"a configuration of another name", "/app/", "/data/demo",
       "/app/config/other_projectmanager.config", "0", ""},
  };
  for (const auto& row : rows) {
    ManagerFixture world;
    world.disk.Erase(ManagerFixture::kConfigFile);
    world.disk.AddFile(row.config, ManagerFixture::Configuration());
    world.disk.AddFolder("/start");
    world.disk.SetCurrentFolder("/start");
    EXPECT_EQ(world.Init(row.application, row.data), row.result) << row.name;
    const std::vector<std::string> defs = world.components.Properties().CallsOf("ReadDefsFromFile");
    EXPECT_EQ(defs.size(), row.result == std::string("1") ? 1u : 0u) << row.name;
    if (!defs.empty()) {
      const std::string named = defs.front().substr(std::string("ReadDefsFromFile \"\" ").size());
      EXPECT_EQ(CanonicalPath(named), row.config) << row.name;
    }
    if (defs.empty()) continue;
    EXPECT_EQ(ShownInstead(world, row.defaultProject), "ProjectOpened " + row.defaultProject + " 1")
        << row.name;
  }
}

// Adds a target folder with the files from which a new user's default project is created.
void AddTarget(ManagerFixture& world, const std::string& name) {
  world.disk.AddFile("/machine/registry.ini",
                     "[Software\\Corvane\\app\\Default Directories]\r\n"
                     "LastTargetConfig=/targets\r\n");
  for (const char* extension : {".tprj", ".tapp"}) {
    world.disk.AddFile("/targets/" + name + extension, "seed");
  }
}

// One list of all externally visible events in order.
TEST(Init, DoesItsStepsInOrder) {
  ManagerFixture world;
  world.disk.AddFile(
      ManagerFixture::kConfigFile,
      ManagerFixture::Configuration(
          "<ToolBar><Item Header='Build' /></ToolBar>"
          "<MainMenus><Menu Header='Project' /><Menu Header='Build' /></MainMenus><Other />"));
  AddTarget(world, "demo");
  std::vector<std::string> events;
  const auto note = [&](const std::string& event) {
    for (const std::string& line : world.disk.TakeOperations()) events.push_back(line);
    events.push_back(event);
  };
  FakePropertyManager& properties = world.components.Properties();
  properties.onCall = [&](std::string_view) { note(properties.Calls().back()); };
  world.classes.RegisterFactory(CPropertyManagerDriver::kProgId, [&] {
    note("create properties");
    return DispatchPtr(&properties);
  });
  for (const std::uint32_t message : {kMsgCreateToolbar, kMsgAddMainMenu}) {
    world.host.actions[message] = [&] {
      note(world.host.lines.back());
      EXPECT_FALSE(world.runningObjects.GetActiveObject(CProjectManager::kClassId));
    };
  }
  world.disk.TakeOperations();
  ASSERT_EQ(world.Init(), "1");
  note("end");
  properties.onCall = nullptr;
  std::erase_if(events, [](const std::string& event) {
    return event.starts_with("read /app/config/resources/");  // images of the windows
  });
  // The names of temporary files are irrelevant.
  for (std::string& event : events) {
    if (event.starts_with("reserve ") || event.starts_with("remove ")) {
      event.erase(event.find(' '));
    }
  }
  EXPECT_THAT(
      events,
      ElementsAre(
          "exists /app/config/demo_projectmanager.config",
          "exists /app/config/projectmanager.config", "create properties",
          "InitOptions /app/ /data/demo " + std::to_string(world.host.Handle()) + " 1",
          "ReadDefsFromFile \"\" /app/config/projectmanager.config",
          "exists /app/config/projectmanager.config", "read /app/config/message.xslt", "reserve",
          "remove", "read /app/config/projectmanager.config",
          "CreateToolbar Tarn Project \r\n<ToolBar>\r\n\t<Item Header=\"Build\" />\r\n</ToolBar>",
          "AddMainMenu Tarn Project \r\n<Menu Header=\"Project\" />",
          "AddMainMenu Tarn Project \r\n<Menu Header=\"Build\" />", "read /user/profile.ini",
          "read /user/profile.ini", "read /user/profile.ini", "read /user/profile.ini",
          "read /app/config/projectmanager.config", "GetPropertyValue Project Internal Icon",
          "GetPropertyValue Application Internal Icon", "GetPropertyValue Group Internal Icon",
          "GetPropertyValue C Internal Icon", "read /user/profile.ini",
          "exists /data/demo/demo.tprj", "read /user/registry.ini", "read /machine/registry.ini",
          "copy /targets/demo.tprj /data/demo/demo.tprj",
          "copy /targets/demo.tapp /data/demo/demo.tapp", "enter /app", "end"));
  EXPECT_EQ(world.disk.CurrentFolder(), "/app");
  EXPECT_THAT(world.components.Tools().Calls(), ElementsAre());
  EXPECT_EQ(world.runningObjects.GetActiveObject(CProjectManager::kClassId).Get(),
            world.manager.Get());
}

TEST(Init, ComponentsGetTheFoldersAsTheyCame) {
  for (const bool isNull : {true, false}) {
    ManagerFixture world;
    world.disk.AddFile(CanonicalPath(ModuleFolder() + "/../config/projectmanager.config"),
                       ManagerFixture::Configuration());
    const Variant folder = isNull ? Variant(NullableText()) : Variant("");
    const std::string shown = isNull ? "null" : "\"\"";
    ASSERT_EQ(world.Call("Init", {folder, folder, 0}), "1");
    EXPECT_THAT(world.components.Tools().Calls(),
                ElementsAre("InitTools " + shown + " " + shown + " 0"));
    EXPECT_EQ(world.components.Properties().Calls().front(),
              "InitOptions " + ModuleFolder() + "/../ " + shown + " 0 1");
    EXPECT_EQ(world.disk.CurrentFolder(), "/");
  }
}

TEST(Init, AFailedStepLeavesNothingAndIsRecognisableByWhatWasDone) {
  const struct {
    const char* name;
    std::function<void(ManagerFixture&)> damage;
    std::size_t calls;      // to the property manager
    const char* again;      // result of Init after the cause is gone
    std::size_t lines = 0;  // received by the host
  } rows[] = {
      {"no configuration", [](ManagerFixture& world) { world.disk.Erase("/app/config"); }, 0, "1"},
      {"an unreadable one",
       [](ManagerFixture& world) {
         world.disk.FailOn("read", ManagerFixture::kConfigFile, ErrorCode::Io);
       },
       2, "0", 1},
      {"one that breaks off",
       [](ManagerFixture& world) {
         world.disk.AddFile(ManagerFixture::kConfigFile, "<ProjectManager><ToolBar /><!-- ");
       },
       2, "0"},
      {"an empty one",
       [](ManagerFixture& world) { world.disk.AddFile(ManagerFixture::kConfigFile, ""); }, 2, "0"},
  };
  for (const auto& row : rows) {
    ManagerFixture world;
    row.damage(world);
    EXPECT_EQ(world.Init(), "0") << row.name;
    EXPECT_EQ(world.components.Properties().Calls().size(), row.calls) << row.name;
    EXPECT_EQ(world.host.lines.size(), row.lines) << row.name;
    EXPECT_FALSE(world.runningObjects.GetActiveObject(CProjectManager::kClassId)) << row.name;
    EXPECT_EQ(world.settings.GetProfileKey(), "Corvane\\Tarn") << row.name;
    EXPECT_EQ(world.disk.CurrentFolder(), "/") << row.name;
    world.Call("ProjectOpen", {"/p/none.tprj"});
    world.disk.ClearFailures();
    world.disk.AddFile(ManagerFixture::kConfigFile, ManagerFixture::Configuration());
    EXPECT_EQ(world.Init(), row.again) << row.name;
  }
}

TEST(Init, ASecondOneIsRefusedAndHarmsNothing) {
  ManagerFixture world;
  world.AddDemo();
  ASSERT_EQ(world.Init(), "1");
  ASSERT_EQ(world.Call("ProjectOpen", {"/p/demo.tprj"}), "1");
  world.TakeLines();
  world.components.Properties().TakeCalls();
  EXPECT_EQ(world.Call("Init", {"/other/", "/else", 0}), "0");
  EXPECT_TRUE(world.host.lines.empty());
  EXPECT_TRUE(world.components.Properties().Calls().empty());
  EXPECT_EQ(world.Call("GetSelectedApplication"), "'/p/demo.tapp'");
  EXPECT_EQ(world.disk.CurrentFolder(), "/p");
}

TEST(Init, OneFromInsideAnotherIsRefused) {
  ManagerFixture world;
  world.disk.AddFile(ManagerFixture::kConfigFile, ManagerFixture::Configuration("<ToolBar />"));
  std::vector<std::string> answers;
  world.components.Properties().onCall = [&](std::string_view) { answers.push_back(world.Init()); };
  world.host.actions[kMsgCreateToolbar] = [&] { answers.push_back(world.Init()); };
  EXPECT_EQ(world.Init(), "1");
  EXPECT_THAT(answers, AllOf(SizeIs(Gt(2u)), Each("0")));
  EXPECT_EQ(world.components.Properties().CallsOf("InitOptions").size(), 1u);
}

TEST(Init, KeepsSettingsUnderTheNameOfTheApplicationFolder) {
  const struct {
    const char* application;
    const char* profile;
    const char* value;  // in the registry
  } rows[] = {
      {"/opt/Tarn/", "Corvane\\Tarn", "'standard'"},
      {"/opt/tARN/", "Corvane\\Tarn", "'standard'"},
      {"/opt/Demo/", "Corvane\\Demo", "'demo'"},
      {"/opt/Other/", "Corvane\\Other", "''"},
      {"/opt/Tarn/../Demo/", "Corvane\\Demo", "'demo'"},
      {"/opt/Tarn2/", "Corvane\\Tarn2", "''"},
      {"/", "Corvane\\Tarn", "'standard'"},
  };
  for (const auto& row : rows) {
    ManagerFixture world;
    world.disk.AddFolder("/opt/Tarn");
    world.disk.AddFile(CanonicalPath(row.application + std::string("config/projectmanager.config")),
                       ManagerFixture::Configuration());
    world.disk.AddFile("/machine/registry.ini",
                       "[Software\\Corvane\\Tarn7\\Keys]\r\nName=standard\r\n"
                       "[Software\\Corvane\\Demo\\Keys]\r\nName=demo\r\n");
    ASSERT_EQ(world.Init(row.application, "/data/demo"), "1") << row.application;
    EXPECT_EQ(world.settings.GetProfileKey(), row.profile) << row.application;
    EXPECT_EQ(world.Call("ReadRegistryValue", {"keys", "NAME"}), row.value) << row.application;
    EXPECT_EQ(world.Call("ReadRegistryValue", {"Keys", "None"}), "''");
    EXPECT_EQ(world.Call("ReadRegistryValue", {nullptr, nullptr}), "''");
  }
}

TEST(Init, SeedsTheDefaultProjectWithoutTouchingWhatIsThere) {
  const struct {
    const char* name;
    bool hasProject;
    bool hasApplication;
    bool hasRegistry;
    const char* project;
    const char* application;
    std::size_t copies;
  } rows[] = {
      {"nothing there", false, false, true, "seed", "seed", 2},
      {"the project alone", true, false, true, "mine", "seed", 2},
      {"the application alone", false, true, true, "seed", "mine", 2},
      {"both", true, true, true, "mine", "mine", 0},
      {"no target", false, false, false, "none", "none", 2},
  };
  for (const auto& row : rows) {
    ManagerFixture world;
    if (row.hasProject) world.disk.AddFile("/data/demo/demo.tprj", "mine");
    if (row.hasApplication) world.disk.AddFile("/data/demo/demo.tapp", "mine");
    AddTarget(world, "demo");
    if (!row.hasRegistry) world.disk.Erase("/machine/registry.ini");
    world.disk.TakeOperations();
    EXPECT_EQ(world.Init(), "1") << row.name;
    EXPECT_EQ(world.disk.Operations("copy").size(), row.copies) << row.name;
    EXPECT_EQ(world.disk.BytesOf("/data/demo/demo.tprj").value_or("none"), row.project) << row.name;
    EXPECT_EQ(world.disk.BytesOf("/data/demo/demo.tapp").value_or("none"), row.application)
        << row.name;
  }
}

// On a new account, the folder for user data doesn't exist until it is created.
TEST(Init, ANewUserWithoutADataFolderGetsTheDefaultProject) {
  ManagerFixture world;
  AddTarget(world, "");
  ASSERT_EQ(world.Init("/app/", NullableText()), "1");
  EXPECT_EQ(world.disk.BytesOf("/userdata/.tprj"), "seed");
  EXPECT_EQ(world.disk.BytesOf("/userdata/.tapp"), "seed");
}

TEST(Init, WithoutATemporaryFolderThereIsNoLogFileAndMessagesAreSavedAtOnce) {
  for (const bool fails : {false, true}) {
    ManagerFixture world;
    if (fails) world.disk.FailOn("reserve", "", ErrorCode::ReadOnly);
    ASSERT_EQ(world.Init(), "1");
    const CBuildOutput& output = *world.Manager().GetModel()->Services().output;
    EXPECT_EQ(output.GetLogFile().empty(), fails);
    EXPECT_EQ(output.GetFlags(), fails ? 33u | 16u : 2u);
    EXPECT_EQ(output.GetLogFile().find("/tmp/$opj"), fails ? std::string::npos : 0u);
  }
}

// A component that responds to all calls in the same way.
class StubbornComponent : public IDispatch {
 public:
  using Answerer = std::function<DispatchResult(Variant& result)>;
  explicit StubbornComponent(Answerer how) : answer_(std::move(how)) {}
  std::uint32_t AddRef() override { return ++references_; }
  std::uint32_t Release() override { return --references_; }
  DispatchResult GetIDsOfNames(std::string_view, DispatchId&) override {
    return {DispatchStatus::UnknownMember, "no names", -1};
  }
  DispatchResult Invoke(DispatchId, std::span<const Variant>, Variant& result) override {
    ++calls;
    return answer_(result);
  }
  std::vector<MethodInfo> GetMethods() override { return {}; }

  int calls = 0;

 private:
  Answerer answer_;
  std::uint32_t references_ = 1;
};

// Without its components, a manager would find nothing to build in any project.
TEST(Init, AMissingComponentIsAFailureThatTheHostGetsTheReasonOf) {
  const std::string options = CPropertyManagerDriver::kProgId;
  const std::string tools = CToolManagerDriver::kProgId;
  const struct {
    std::string missing;
    std::function<DispatchPtr()> factory;  // nullptr: the class isn't registered
    bool hasHost;
    const char* result;
    std::string line;
  } rows[] = {
      {options, nullptr, true, "0", options + ": /nowhere/libTarnOptionsManager.so: "},
      {options, [] { return DispatchPtr(); }, true, "0", options + ": the class made no object"},
      {options, []() -> DispatchPtr { throw std::runtime_error("no"); }, true, "0",
       options + ": no"},
      {options, nullptr, false, "0", ""},
      {tools, nullptr, false, "0", ""},
      {tools, [] { return DispatchPtr(); }, false, "0", ""},
      {tools, nullptr, true, "1", ""},  // the host supplies one
  };
  for (const auto& row : rows) {
    ManagerFixture world;
    world.AddDemo();
    ClassRegistry classes("/nowhere");
    world.components.RegisterWith(classes);
    classes.RegisterFactory(row.missing, row.factory);
    world.manager = DispatchPtr::Adopt(new CProjectManager(
        ServerPlatform{world.disk, world.settings, classes, world.runningObjects}));
    const std::int32_t window = row.hasHost ? world.host.Handle() : 0;
    SCOPED_TRACE(row.missing + " " + row.line);
    EXPECT_EQ(world.Call("Init", {"/app/", "/data/demo", window}), row.result);
    EXPECT_EQ(world.Call("ProjectOpen", {"/p/demo.tprj"}), row.result);
    EXPECT_EQ(world.runningObjects.GetActiveObject(CProjectManager::kClassId).Get() != nullptr,
              *row.result == '1');
    const std::vector<std::string> reported = world.host.LinesOf(kMsgLogLine);
    ASSERT_EQ(reported.size(), row.line.empty() ? 0u : 1u);
    EXPECT_TRUE(reported.empty() || reported[0].starts_with("LogLine " + row.line)) << reported[0];
    for (const MethodInfo& method : world.manager->GetMethods()) {
      if (method.name == "Init") continue;
      Variant result;
      const std::vector<Variant> arguments(method.arguments.size());
      (void)world.manager->Invoke(method.id, arguments, result);
    }
  }
}

TEST(Init, WorksOnWithComponentsThatMisbehave) {
  using Answerer = StubbornComponent::Answerer;
  const struct {
    const char* name;
    Answerer answer;
  } rows[] = {
      {"knows no method",
       [](Variant&) {
         return DispatchResult{DispatchStatus::UnknownMember, "?", -1};
       }},
      {"answers with numbers",
       [](Variant& result) { return result = Variant(-5), DispatchResult{}; }},
      {"answers with texts",
       [](Variant& result) { return result = Variant("<a/>"), DispatchResult{}; }},
      {"answers with null texts",
       [](Variant& result) { return result = Variant(NullableText()), DispatchResult{}; }},
      {"answers nothing", [](Variant&) { return DispatchResult{}; }},
      {"throws", [](Variant&) -> DispatchResult { throw std::runtime_error("no"); }},
      {"throws what is no exception", [](Variant&) -> DispatchResult { throw 1; }},
      {"fails and answers",
       [](Variant& result) {
         result = Variant(7);
         return DispatchResult{DispatchStatus::Failed, "no", -1};
       }},
  };
  for (const auto& row : rows) {
    StubbornComponent component(row.answer);
    ManagerFixture world;
    world.AddDemo();
    ClassRegistry classes("/nowhere");
    for (const char* progId : {CPropertyManagerDriver::kProgId, CToolManagerDriver::kProgId}) {
      classes.RegisterFactory(progId, [&] { return DispatchPtr(&component); });
    }
    world.manager = DispatchPtr::Adopt(new CProjectManager(
        ServerPlatform{world.disk, world.settings, classes, world.runningObjects}));
    EXPECT_EQ(world.Call("Init", {"/app/", "/data/demo", 0}), "1") << row.name;
    EXPECT_GE(component.calls, 3) << row.name;
    EXPECT_EQ(world.Call("ProjectOpen", {"/p/demo.tprj"}), "1") << row.name;
    // A component that returns strings for everything also returns one as the path of a node.
    const bool hasOwnPath = row.name == std::string("answers with texts");
    const std::string application = hasOwnPath ? "'/p/<a/>'" : "'/p/demo.tapp'";
    EXPECT_EQ(world.Call("SavePropertyValue", {"C", "Build", "Tool", "x"}),
              row.name == std::string("answers with numbers") ? "-5" : "0")
        << row.name;
    world.Call("GetPropertyValue", {"C", "Build", "Tool"});
    world.Call("SelectNode", {".\\main.c"});
    world.Call("ProjectBuild");
    EXPECT_EQ(world.Call("ProjectSave"), "1") << row.name;
    EXPECT_EQ(world.Call("GetSelectedApplication"), application) << row.name;
    world.Call("Clean");
    world.manager.Reset();
  }
}

TEST(Init, AHostOnAnotherThreadAnswersWhenItGetsToIt) {
  ManagerFixture world;
  world.disk.AddFile(ManagerFixture::kConfigFile, ManagerFixture::Configuration("<ToolBar />"));
  world.AddDemo();
  std::promise<WindowHandle> handle;
  std::promise<void> mayServe;
  std::promise<void> done;
  std::vector<std::string> lines;
  std::thread frame([&] {
    RecordingHost host;
    handle.set_value(host.Handle());
    mayServe.get_future().wait();
    std::future<void> end = done.get_future();
    while (end.wait_for(std::chrono::seconds(0)) != std::future_status::ready) {
      MessageLoop::ForCurrentThread()->PumpUntil([] { return false; },
                                                 std::chrono::milliseconds(1));
    }
    lines = host.lines;
  });
  const std::int32_t window = handle.get_future().get();
  bool served = false;
  world.components.Properties().onCall = [&](std::string_view) {
    if (!std::exchange(served, true)) mayServe.set_value();
  };
  EXPECT_EQ(world.Call("Init", {"/app/", "/data/demo", window}), "1");
  EXPECT_EQ(world.Call("ProjectOpen", {"/p/demo.tprj"}), "1");
  done.set_value();
  frame.join();
  ASSERT_GE(lines.size(), 3u);
  EXPECT_TRUE(lines[0].starts_with("CreateToolbar Tarn Project")) << lines[0];
  EXPECT_EQ(lines[1], "ProjectClosing \"\" 0");
  EXPECT_EQ(lines[2], "ProjectOpened /p/demo.tprj 0");
  // The main frame is gone, so the close isn't vetoed and nothing blocks.
  EXPECT_EQ(world.Call("ProjectClose"), "1");
}

}  // namespace
}  // namespace tarn::test
