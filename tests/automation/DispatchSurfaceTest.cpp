// The 44 methods through the public interface only: names, ids, arguments, and the result of calls
// with wrong arguments, before Init, or without an open project.

#include <tarn/commands.h>

#include <gtest/gtest.h>

#include <climits>

#include "automation/ManagerFixture.h"
#include "xml/XmlNode.h"

namespace tarn::test {
namespace {

// Kinds of arguments: t string, n number, o object.
struct Row {
  const char* name;
  DispatchId id;
  const char* arguments;
  const char* early;  // before Init
  const char* idle;   // without an open project
};

constexpr Row kMethods[] = {
    {"ProjectOpen", 1, "t", "0", "0"},
    {"ProjectClose", 2, "", "0", "0"},
    {"ProjectSave", 3, "", "0", "1"},
    {"GetProjectWindow", 4, "", "0", "a window"},
    {"GetPropertyWindow", 5, "", "0", "77"},
    {"GetOutputWindow", 6, "", "0", "a window"},
    {"Command", 7, "n", "1", "1"},
    {"Init", 8, "ttn", "0", "0"},
    {"ReadDefsFromFile", 9, "tt", "0", "1"},
    {"ReadConfigFromFile", 10, "ttttt", "0", "1"},
    {"GetPropertyValue", 11, "ttt", "''", "'default'"},
    {"SetPropertyValue", 12, "tttt", "0", "1"},
    {"ReadRegistryValue", 13, "tt", "''", "''"},
    {"ReadIniValue", 14, "ttt", "''", "''"},
    {"UpdateCurNodeConfig", 15, "tt", "1", "1"},
    {"GetCurConfig", 16, "", "''", "'<Opt Header=\"Standard\" />'"},
    {"InitToolManager", 17, "o", "1", "1"},
    {"EpilogCommand", 18, "n", "1", "1"},
    {"PrologCommand", 19, "n", "1", "1"},
    {"ProjectBuild", 20, "", "0", "1"},
    {"Clean", 21, "", "1", "1"},
    {"GetReportWindow", 22, "", "0", "a window"},
    {"SelectApplication", 23, "t", "0", "1"},
    {"WriteIniValue", 24, "tttt", "0", "1"},
    {"GetSelectedDBI", 25, "", "''", "''"},
    {"GetSelectedApplication", 26, "", "''", "''"},
    {"AddExistingItem", 27, "tt", "0", "0"},
    {"AddNewItem", 28, "tt", "0", "0"},
    {"RemoveItem", 29, "t", "0", "0"},
    {"EnableProperty", 30, "tttn", "0", "1"},
    {"EnableCommand", 31, "n", "1", "1"},
    {"ProjectNew", 32, "t", "0", "1"},
    {"SetBuildInfo", 33, "tt", "0", "0"},
    {"SavePropertyValue", 34, "tttt", "0", "1"},
    {"GetDynamicCommands", 35, "n", "''", "''"},
    {"GetSymbolInfo", 36, "t", "''", "''"},
    {"ReportMessage", 37, "t", "nothing", "nothing"},
    {"HideProperty", 38, "tttn", "0", "1"},
    {"ResetPropertyValue", 39, "ttt", "0", "1"},
    {"GetPropertyStringValue", 40, "ttt", "''", "'default'"},
    {"GetSelectedApplicationsList", 41, "t", "''", "''"},
    {"GetSelectedFilesList", 42, "t", "''", "''"},
    {"SelectNode", 43, "t", "0", "1"},
    {"ExecuteScript", 44, "t", "0", "0"},
};

std::vector<Variant> Arguments(const Row& row, const Variant& text, std::int32_t number) {
  std::vector<Variant> arguments;
  for (const char* kind = row.arguments; *kind != '\0'; ++kind) {
    arguments.push_back(*kind == 't' ? text : *kind == 'n' ? Variant(number) : Variant());
  }
  return arguments;
}

std::string Answer(IDispatch& object, const Row& row, const std::vector<Variant>& arguments) {
  Variant result;
  const DispatchResult outcome = object.Invoke(row.id, arguments, result);
  return Show(outcome, result);
}

TEST(DispatchSurface, EveryMethodHasItsNameAndNumberAndNoOtherIsThere) {
  ManagerFixture world;
  const std::vector<MethodInfo> methods = world.manager->GetMethods();
  ASSERT_EQ(methods.size(), std::size(kMethods));
  for (std::size_t i = 0; i < methods.size(); ++i) {
    EXPECT_EQ(methods[i].name, kMethods[i].name);
    EXPECT_EQ(methods[i].id, kMethods[i].id) << kMethods[i].name;
    EXPECT_EQ(methods[i].arguments.size(), std::string(kMethods[i].arguments).size());
    DispatchId id = 0;
    std::string upper = kMethods[i].name;
    for (char& c : upper) c = c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
    EXPECT_TRUE(world.manager->GetIDsOfNames(upper, id)) << upper;
    EXPECT_EQ(id, kMethods[i].id) << upper;
  }
  Variant result;
  for (const DispatchId id : {0, -1, 45, INT_MAX, INT_MIN}) {
    EXPECT_EQ(NameOf(world.manager->Invoke(id, {}, result).status), "UnknownMember") << id;
  }
  EXPECT_EQ(world.Call("GetMainWindow"), "UnknownMember");
}

TEST(DispatchSurface, WrongArgumentsAreToldAndNothingIsDone) {
  ManagerFixture world;
  const DispatchPtr object(&world.components.Tools());
  for (const Row& row : kMethods) {
    const std::vector<Variant> good = Arguments(row, "x", 1);
    std::vector<Variant> wrong = good;
    wrong.emplace_back("one too many");
    EXPECT_EQ(Answer(*world.manager.Get(), row, wrong), "WrongCount") << row.name;
    if (good.empty()) continue;
    wrong.assign(good.begin(), good.end() - 1);
    EXPECT_EQ(Answer(*world.manager.Get(), row, wrong), "WrongCount") << row.name;
    for (std::size_t i = 0; i < good.size(); ++i) {
      for (const Variant& other : {Variant("text"), Variant(7), Variant(object)}) {
        const char kind = row.arguments[i];
        const Variant::Kind right = kind == 't'   ? Variant::Kind::Text
                                    : kind == 'n' ? Variant::Kind::Long
                                                  : Variant::Kind::Object;
        if (other.GetKind() == right) continue;
        wrong = good;
        wrong[i] = other;
        Variant result("left over");
        const DispatchResult outcome = world.manager->Invoke(row.id, wrong, result);
        EXPECT_EQ(NameOf(outcome.status), "WrongType") << row.name << " " << i;
        EXPECT_EQ(outcome.argument, static_cast<int>(i)) << row.name;
        EXPECT_EQ(result.GetKind(), Variant::Kind::Empty) << row.name;
        EXPECT_NE(outcome.text.find(std::to_string(i + 1)), std::string::npos) << outcome.text;
      }
    }
  }
  EXPECT_TRUE(world.host.lines.empty());
  EXPECT_TRUE(world.components.Properties().Calls().empty());
}

TEST(DispatchSurface, BeforeInitEveryCallAnswersAndDoesNothing) {
  ManagerFixture world;
  world.AddDemo();
  world.disk.TakeOperations();
  for (const Row& row : kMethods) {
    if (std::string(row.name) == "Init") continue;
    EXPECT_EQ(Answer(*world.manager.Get(), row, Arguments(row, "/p/demo.tprj", TARN_CMD_BUILD_ALL)),
              row.early)
        << row.name;
  }
  EXPECT_TRUE(world.host.lines.empty());
  EXPECT_TRUE(world.components.Properties().Calls().empty());
  EXPECT_EQ(world.disk.Operations(),
            (std::vector<std::string>{"read /user/registry.ini", "read /machine/registry.ini"}));
}

TEST(DispatchSurface, WithNothingOpenEveryCallAnswers) {
  for (const Row& row : kMethods) {
    ManagerFixture world;
    world.components.Properties().propertyWindow = 77;
    world.components.Properties().defaults[".none.none"] = "default";
    ASSERT_EQ(world.Init(), "1");
    std::string answer =
        Answer(*world.manager.Get(), row, Arguments(row, "none", TARN_CMD_ADD_FILES));
    if (row.idle == std::string("a window") && IsWindow(std::atoi(answer.c_str()))) {
      answer = row.idle;
    }
    EXPECT_EQ(answer, row.idle) << row.name;
  }
}

TEST(DispatchSurface, NoTextAndNoNumberBringsTheManagerDown) {
  const Variant texts[] = {Variant(),
                           Variant(NullableText()),
                           Variant(""),
                           Variant(std::string(5000, 'x')),
                           Variant("%s%n%d"),
                           Variant("a\\b/../..\\."),
                           Variant("]]>\xA7<&\""),
                           Variant(std::string("a\0b", 3)),
                           Variant("/p"),
                           Variant("\n")};
  const std::int32_t numbers[] = {0,
                                  -1,
                                  INT_MIN,
                                  INT_MAX,
                                  TARN_CMD_NODE_OPTIONS,
                                  TARN_CMD_APPLICATION_OPTIONS,
                                  TARN_CMD_OPTIONS_LOADED,
                                  TARN_CMD_REMOVE_NODE,
                                  TARN_CMD_SET_ACTIVE_APPLICATION};
  ManagerFixture world;
  world.AddDemo();
  world.AddDefaultProject();
  ASSERT_EQ(world.Init(), "1");
  for (const Row& row : kMethods) {
    if (std::string(row.name) == "Clean") continue;
    world.Call("ProjectClose");
    ASSERT_EQ(world.Call("ProjectOpen", {"/p/demo.tprj"}), "1") << row.name;
    for (const Variant& text : texts) {
      for (const std::int32_t number : numbers) {
        const std::string answer = Answer(*world.manager.Get(), row, Arguments(row, text, number));
        EXPECT_EQ(answer.find("Wrong"), std::string::npos) << row.name << ": " << answer;
        EXPECT_NE(answer, "Failed") << row.name;
        if (std::string(row.arguments).find('n') == std::string::npos) break;
      }
      if (row.arguments[0] == '\0') break;
    }
  }
  // The user's files are still there.
  EXPECT_NE(world.disk.BytesOf("/p/main.c"), std::nullopt);
}

}  // namespace
}  // namespace tarn::test
