// Opening, closing and the default project from the host's point of view, and the calls that are
// only forwarded.

#include <tarn/commands.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

#include "automation/ManagerFixture.h"
#include "automation/ProjectInspector.h"
#include "xml/XmlNode.h"

namespace tarn::test {
namespace {

using ::testing::ElementsAre;

class ProjectCalls : public ::testing::Test {
 protected:
  ProjectCalls() {
    world.AddDemo();
    world.AddDefaultProject();
    EXPECT_EQ(world.Init(), "1");
  }

  // Returns the application path of the open project, with a star before it for the default
  // project.
  std::string Open() {
    const std::string path = world.Call("GetSelectedApplication");
    return (world.Call("EnableCommand", {TARN_CMD_BUILD_ALL}) == "0" ? "*" : "") + path;
  }

  ManagerFixture world;
};

constexpr const char* kDemo = "/p/demo.tprj";
constexpr const char* kDefault = "/data/demo/demo.tprj";

TEST_F(ProjectCalls, AFailureBringsTheDefaultProjectAndARefusalChangesNothing) {
  const struct {
    const char* name;
    const char* first;  // project opened before; nullptr: none
    const char* method;
    Variant path;
    bool refuses;
    const char* answer;
    const char* open;
  } rows[] = {
      {"open", nullptr, "ProjectOpen", kDemo, false, "1", "'/p/demo.tapp'"},
      {"open another", kDefault, "ProjectOpen", kDemo, false, "1", "'/p/demo.tapp'"},
      {"open the same", kDemo, "ProjectOpen", kDemo, false, "0", "'/p/demo.tapp'"},
      {"the same in capitals", kDemo, "ProjectOpen", "/P/DEMO.TPRJ", false, "0", "'/p/demo.tapp'"},
      {"open the default", nullptr, "ProjectOpen", kDefault, false, "1", "*'/data/demo/demo.tapp'"},
      {"the default in capitals", nullptr, "ProjectOpen", "/data/demo/DEMO.tprj", false, "1",
       "*'/data/demo/demo.tapp'"},
      {"open what is not there", kDemo, "ProjectOpen", "/p/none.tprj", false, "0",
       "*'/data/demo/demo.tapp'"},
      {"open an empty path", kDemo, "ProjectOpen", "", false, "0", "*'/data/demo/demo.tapp'"},
      {"open what the user does not choose", kDemo, "ProjectOpen", NullableText(), false, "0",
       "*'/data/demo/demo.tapp'"},
      {"open a folder", kDemo, "ProjectOpen", "/p", false, "0", "*'/data/demo/demo.tapp'"},
      {"refused first open", nullptr, "ProjectOpen", kDemo, true, "0", "*''"},
      {"refused open", kDemo, "ProjectOpen", kDefault, true, "0", "'/p/demo.tapp'"},
      {"close", kDemo, "ProjectClose", {}, false, "1", "*'/data/demo/demo.tapp'"},
      {"close the default", kDefault, "ProjectClose", {}, false, "0", "*''"},
      {"refused close", kDemo, "ProjectClose", {}, true, "0", "'/p/demo.tapp'"},
      {"new", kDemo, "ProjectNew", "/p/new.tprj", false, "1", "''"},
      {"new without the wizard", kDemo, "ProjectNew", NullableText(), false, "0",
       "*'/data/demo/demo.tapp'"},
      {"new over one that the user wants to keep", kDefault, "ProjectNew", kDemo, false, "0",
       "*'/data/demo/demo.tapp'"},
      {"refused new", kDemo, "ProjectNew", "/p/new.tprj", true, "0", "'/p/demo.tapp'"},
      {"save", kDemo, "ProjectSave", {}, false, "1", "'/p/demo.tapp'"},
      {"refused save", kDemo, "ProjectSave", {}, true, "1", "'/p/demo.tapp'"},
  };
  for (const auto& row : rows) {
    ManagerFixture fresh;
    fresh.AddDemo();
    fresh.AddDefaultProject();
    ASSERT_EQ(fresh.Init(), "1");
    if (row.first != nullptr) {
      ASSERT_EQ(fresh.Call("ProjectOpen", {row.first}), "1") << row.name;
    }
    if (row.refuses) fresh.host.answers[kMsgProjectClosing] = 0;
    const bool takesPath =
        std::string(row.method) == "ProjectOpen" || std::string(row.method) == "ProjectNew";
    EXPECT_EQ(takesPath ? fresh.Call(row.method, {row.path}) : fresh.Call(row.method), row.answer)
        << row.name;
    const std::string star = fresh.Call("EnableCommand", {TARN_CMD_BUILD_ALL}) == "0" ? "*" : "";
    EXPECT_EQ(star + fresh.Call("GetSelectedApplication"), row.open) << row.name;
    EXPECT_EQ(fresh.Call("EnableCommand", {TARN_CMD_BUILD_NODE}), "1") << row.name;
    EXPECT_NE(fresh.disk.BytesOf("/p/demo.tapp"), std::nullopt) << row.name;
  }
}

TEST_F(ProjectCalls, WithoutADefaultProjectAFailedOpenLeavesNothingOpenAndTheNextOneWorks) {
  world.disk.Erase(kDefault);
  EXPECT_EQ(world.Call("ProjectOpen", {"/p/none.tprj"}), "0");
  EXPECT_EQ(world.Call("GetSelectedApplication"), "''");
  EXPECT_EQ(world.Call("ProjectOpen", {kDemo}), "1");
  EXPECT_EQ(Open(), "'/p/demo.tapp'");
}

TEST_F(ProjectCalls, AProjectThatWasClosedCanBeOpenedAgain) {
  EXPECT_EQ(world.Call("ProjectOpen", {kDefault}), "1");
  EXPECT_EQ(world.Call("ProjectClose"), "0");
  EXPECT_EQ(world.Call("ProjectOpen", {kDefault}), "1");
  EXPECT_EQ(world.Call("ProjectOpen", {kDemo}), "1");
  EXPECT_EQ(world.Call("ProjectNew", {"/p/new.tprj"}), "1");
  EXPECT_EQ(world.Call("ProjectOpen", {kDemo}), "1");
  EXPECT_EQ(Open(), "'/p/demo.tapp'");
}

TEST_F(ProjectCalls, OnlyAnAnswerOfZeroRefuses) {
  const struct {
    std::intptr_t answer;
    const char* close;
    const char* build;
  } rows[] = {{0, "0", "0"}, {1, "1", "1"}, {-1, "1", "-1"}, {std::intptr_t{1} << 40, "1", "1"}};
  for (const auto& row : rows) {
    ASSERT_EQ(world.Call("ProjectOpen", {kDemo}), "1");
    world.host.answers = {{kMsgBuildStarting, row.answer}, {kMsgProjectClosing, row.answer}};
    EXPECT_EQ(world.Call("PrologCommand", {TARN_CMD_BUILD_ALL}), row.build) << row.answer;
    EXPECT_EQ(world.Call("EpilogCommand", {TARN_CMD_BUILD_ALL}), "1") << row.answer;
    EXPECT_EQ(world.Call("ProjectClose"), row.close) << row.answer;
    world.host.answers.clear();
    world.Call("ProjectClose");
  }
}

TEST_F(ProjectCalls, ToolsRunOnlyWhileTheHostHasAToolManager) {
  world.components.Properties().defaults = {{"C.Build.TranslateTool", "cc"},
                                            {"C.Build.OutputFile", "/p/main.o"}};
  ASSERT_EQ(world.Call("ProjectOpen", {kDemo}), "1");
  const DispatchPtr tools(&world.components.Tools());
  const std::uint32_t references = ManagerFixture::ReferencesTo(*tools.Get());
  EXPECT_EQ(world.Call("ProjectBuild"), "0");
  EXPECT_EQ(world.Call("InitToolManager", {tools}), "1");
  EXPECT_EQ(ManagerFixture::ReferencesTo(*tools.Get()), references);
  EXPECT_EQ(world.Call("ProjectBuild"), "1");
  EXPECT_EQ(world.components.Tools().CallsOf("RunTool").size(), 1u);
  EXPECT_EQ(world.Call("InitToolManager", {DispatchPtr()}), "1");
  EXPECT_EQ(world.Call("ProjectBuild"), "0");
}

TEST_F(ProjectCalls, AHostThatOpensAnotherProjectInsideAMessageGetsThatOne) {
  world.disk.AddFile("/p/none.tprj", "<Project");
  world.host.actions[kMsgProjectOpened] = [&] {
    world.host.actions.clear();
    EXPECT_EQ(world.Call("ProjectOpen", {kDemo}), "1");
  };
  EXPECT_EQ(world.Call("ProjectOpen", {kDefault}), "0");
  EXPECT_EQ(Open(), "'/p/demo.tapp'");
}

TEST_F(ProjectCalls, SettingsReachThePropertyManagerAsTheyCameWithNothingOpen) {
  const struct {
    const char* method;
    const char* arguments;  // as recorded: null, \"\", numbers and words
    const char* recorded;
    const char* answer = "1";
  } rows[] = {
      {"GetPropertyValue", "C Build Tool", "GetPropertyValue C Build Tool", "'cc'"},
      {"GetPropertyValue", "null \"\" Tool", "GetPropertyValue null \"\" Tool", "''"},
      {"GetPropertyStringValue", "C Build Tool", "GetPropertyStringValue C Build Tool", "'cc'"},
      {"SetPropertyValue", "C Build Tool null", "SetPropertyValue C Build Tool null"},
      {"EnableProperty", "C Build Tool -3", "EnableProperty C Build Tool -3"},
      {"HideProperty", "C Build Tool 1", "HideProperty C Build Tool 1"},
      {"HideProperty", "C Build \"\" 0", "HideSection C Build 0"},
      {"HideProperty", "C Build null 1", "HideSection C Build 1"},
      {"HideProperty", "C null \"\" 1", "HideSet C 1"},
      {"HideProperty", "null null null 1", "HideSet null 1"},
      {"HideProperty", "C \"\" Tool 1", "HideProperty C \"\" Tool 1"},
      {"ReadDefsFromFile", "C x.options", "ReadDefsFromFile C x.options"},
      {"ReadDefsFromFile", "null null", "ReadDefsFromFile null null"},
      {"UpdateCurNodeConfig", "C /p/demo.tprj", "ReadDefsFromFile C /p/demo.tprj"},
      {"UpdateCurNodeConfig", "C x.options", "ReadDefsFromFile C /app/config/x.options"},
      {"ReadConfigFromFile", "Debug C \"\" \"\" x.options",
       "ReadConfigFromFile Debug C \"\" \"\" /app/config/x.options"},
      {"ReadConfigFromFile", "Debug C \"\" \"\" /p/demo.tprj",
       "ReadConfigFromFile Debug C \"\" \"\" /p/demo.tprj"},
      {"ReadConfigFromFile", "Debug C S P null", "ReadConfigFromFile Debug C S P null"},
      {"ReadConfigFromFile", "Debug C S P \"\"", "ReadConfigFromFile Debug C S P /app/config/"},
      {"GetCurConfig", "", "GetConfigText Standard \"\" \"\" \"\"",
       "'<Opt Header=\"Standard\" />'"},
  };
  world.components.Properties().defaults["C.Build.Tool"] = "cc";
  for (const auto& row : rows) {
    world.components.Properties().TakeCalls();
    std::vector<Variant> arguments;
    std::istringstream words(row.arguments);
    for (std::string word; words >> word;) {
      const bool isNumber = word.find_first_not_of("-0123456789") == word.npos;
      arguments.push_back(isNumber         ? Variant(std::stoi(word))
                          : word == "null" ? Variant(NullableText())
                          : word == "\"\"" ? Variant("")
                                           : Variant(word));
    }
    DispatchId id = 0;
    Variant result;
    ASSERT_TRUE(world.manager->GetIDsOfNames(row.method, id));
    const DispatchResult outcome = world.manager->Invoke(id, arguments, result);
    EXPECT_EQ(Show(outcome, result), row.answer) << row.recorded;
    EXPECT_THAT(world.components.Properties().TakeCalls(), ElementsAre(row.recorded));
  }
}

TEST_F(ProjectCalls, ASavedValueReachesTheProjectAndASetOneDoesNot) {
  ASSERT_EQ(world.Call("ProjectOpen", {kDemo}), "1");
  ASSERT_EQ(world.Call("SelectNode", {".\\main.c"}), "1");
  const std::string before = *world.disk.BytesOf("/p/demo.tapp");
  EXPECT_EQ(world.Call("SetPropertyValue", {"C", "Build", "Tool", "cc"}), "1");
  EXPECT_EQ(world.Call("ProjectSave"), "1");
  EXPECT_EQ(*world.disk.BytesOf("/p/demo.tapp"), before);
  ASSERT_EQ(world.Call("SelectNode", {".\\main.c"}), "1");
  EXPECT_EQ(world.Call("SavePropertyValue", {"C", "Build", "Tool", "cc"}), "1");
  EXPECT_EQ(world.Call("ProjectSave"), "1");
  EXPECT_NE(world.disk.BytesOf("/p/demo.tapp")->find("Header=\"Tool\""), std::string::npos);
  ASSERT_EQ(world.Call("SelectNode", {".\\main.c"}), "1");
  EXPECT_EQ(world.Call("ResetPropertyValue", {"", "Build", "Tool"}), "1");
  EXPECT_EQ(world.Call("ProjectSave"), "1");
  EXPECT_EQ(world.disk.BytesOf("/p/demo.tapp")->find("Header=\"Tool\""), std::string::npos);
}

TEST_F(ProjectCalls, ANodeIsFoundByItsFullPathBeforeAnythingIsPublished) {
  ASSERT_EQ(world.Call("ProjectOpen", {kDemo}), "1");
  CProjectModel& model = *world.Manager().GetModel();
  ASSERT_TRUE(model.Publishing().HasUnpublished());
  EXPECT_EQ(world.Call("SelectNode", {"/p/main.c"}), "1");
  EXPECT_EQ(OrEmpty(model.GetCurrentNode()->GetAttrValue("Header")), "main.c");
}

// The methods return 1 in either case, so a host needs a way to find out.
TEST_F(ProjectCalls, ASelectionThatFindsNothingIsKnownUntilThereIsAnother) {
  ASSERT_EQ(world.Call("ProjectOpen", {kDemo}), "1");
  DispatchPtr object = DispatchPtr::Adopt(new ProjectInspector);
  auto& inspector = static_cast<ProjectInspector&>(*object.Get());
  ASSERT_EQ(inspector.Attach(world.manager.Get()), 1);
  const struct {
    const char* method;
    const char* argument;
    const char* missed;
  } rows[] = {
      {"SelectNode", "/p/none.c", "\"/p/none.c\""},
      {"SelectNode", "/p/main.c", ""},
      {"SelectApplication", "nobody", "\"nobody\""},
      {"RemoveItem", "nobody", "\"nobody\""},
      {"SelectApplication", "demo", ""},
      {"SelectNode", "", "\"\""},
      {"ProjectClose", nullptr, ""},
  };
  for (const auto& row : rows) {
    if (row.argument == nullptr) {
      world.Call(row.method);
    } else {
      world.Call(row.method, {row.argument});
    }
    EXPECT_EQ(inspector.GetMissedSelection(), row.missed) << row.method;
  }
}

TEST_F(ProjectCalls, TheActiveApplicationAnswersForItsFiles) {
  ASSERT_EQ(world.Call("ProjectOpen", {kDemo}), "1");
  EXPECT_EQ(world.Call("GetSelectedDBI"), "'/p/demo.dbi'");
  EXPECT_EQ(world.Call("SelectApplication", {"nobody"}), "1");
  EXPECT_EQ(world.Call("SelectApplication", {nullptr}), "1");
  EXPECT_EQ(world.Call("SelectNode", {nullptr}), "1");
  EXPECT_EQ(world.Call("GetSelectedApplication"), "'/p/demo.tapp'");
}

TEST_F(ProjectCalls, AScriptIsHandedOverWholeOrNotAtAll) {
  world.disk.AddFile("/p/a.lua", "one\r\ntwo");
  world.disk.AddFile("/p/damaged.lua", "x");
  world.disk.FailOn("read", "/p/damaged.lua", ErrorCode::Io);
  world.TakeLines();
  EXPECT_EQ(world.Call("ExecuteScript", {"/p/a.lua"}), "1");
  EXPECT_THAT(world.TakeLines(), ElementsAre("RunScript one\r\ntwo 0"));
  EXPECT_EQ(world.Call("ExecuteScript", {"/p/damaged.lua"}), "1");
  for (const Variant& none :
       {Variant("/p/none.lua"), Variant(""), Variant(nullptr), Variant("/p")}) {
    EXPECT_EQ(world.Call("ExecuteScript", {none}), "0");
  }
  EXPECT_TRUE(world.host.lines.empty());
}

}  // namespace
}  // namespace tarn::test
