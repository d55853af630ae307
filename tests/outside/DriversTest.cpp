#include <gtest/gtest.h>

#include <functional>

#include "outside/PropertyManagerDriver.h"
#include "outside/ToolManagerDriver.h"
#include "support/FakeComponents.h"

namespace tarn::test {
namespace {

// Numbers and texts of what was called and what came back, so that one line tells both.
struct PropertyRow {
  std::function<std::string(CPropertyManagerDriver&)> call;
  const char* recorded;
  const char* answer;
};

std::string Text(std::int32_t number) {
  return std::to_string(number);
}

const PropertyRow kPropertyRows[] = {
    {[](auto& d) { return Text(d.InitOptions("/app/", "/data", 7, 1)); },
     "InitOptions /app/ /data 7 1", "1"},
    {[](auto& d) { return Text(d.ReadDefsFromFile("", "/a b")); }, "ReadDefsFromFile \"\" /a b",
     "1"},
    {[](auto& d) { return Text(d.ReadConfigFromFile("Debug", "C", "S", "P", nullptr)); },
     "ReadConfigFromFile Debug C S P null", "1"},
    {[](auto& d) { return Text(d.ReadValuesFromText(std::string("<Values/>"))); },
     "ReadValuesFromText <Values/>", "1"},
    {[](auto& d) { return Text(d.SetPropertyValue("C", "General", "Header", "main.c")); },
     "SetPropertyValue C General Header main.c", "1"},
    {[](auto& d) { return d.GetPropertyValue(std::string_view("C"), "General", "Header"); },
     "GetPropertyValue C General Header", "main.c"},
    {[](auto& d) { return d.GetPropertyStringValue("C", "General", "Header"); },
     "GetPropertyStringValue C General Header", "main.c"},
    {[](auto& d) { return Text(d.HideProperty("C", "S", "P", 1)); }, "HideProperty C S P 1", "1"},
    {[](auto& d) { return Text(d.EnableProperty("C", "S", "P", -1)); }, "EnableProperty C S P -1",
     "1"},
    {[](auto& d) { return Text(d.HideSection("C", "S", 0)); }, "HideSection C S 0", "1"},
    {[](auto& d) { return Text(d.HideSet("C", 1)); }, "HideSet C 1", "1"},
    {[](auto& d) { return d.GetConfigText("Debug", "", "", ""); },
     "GetConfigText Debug \"\" \"\" \"\"", "<Opt Header=\"Debug\" />"},
    {[](auto& d) { return Text(d.ShowOptions(7)); }, "ShowOptions 7", "1"},
    {[](auto& d) { return Text(d.GetPropertyWindow()); }, "GetPropertyWindow", "44"},
    {[](auto& d) { return d.GetChangedProperty(); }, "GetChangedProperty", "C.Build.Tool"},
    {[](auto& d) { return d.BeginUpdate(), ""; }, "BeginUpdate", ""},
    {[](auto& d) { return d.EndUpdate(), ""; }, "EndUpdate", ""},
    {[](auto& d) { return d.GetValuesAsText("", "", ""); }, "GetValuesAsText \"\" \"\" \"\"",
     "<Values><V S=\"C\" N=\"General\" P=\"Header\" V=\"main.c\" /></Values>"},
    {[](auto& d) { return d.EndParentLevel(), ""; }, "EndParentLevel", ""},
    {[](auto& d) { return d.BeginChildLevel(), ""; }, "BeginChildLevel", ""},
    {[](auto& d) { return d.GetNewConfigName(), ""; }, "GetNewConfigName", ""},
    {[](auto& d) { return d.SetCurrentConfig("Debug"), ""; }, "SetCurrentConfig Debug", ""},
    {[](auto& d) { return d.SetPropState("open"), ""; }, "SetPropState open", ""},
    {[](auto& d) { return d.GetPropState(); }, "GetPropState", "open"},
    {[](auto& d) { return Text(d.ApplyOptions("Debug", "")); }, "ApplyOptions Debug \"\"", "1"},
    {[](auto& d) { return d.ClearValues(), ""; }, "ClearValues", ""},
    {[](auto& d) { return d.ProjectClosing(), ""; }, "ProjectClosing", ""},
};

TEST(PropertyManagerDriver, EachOperationReachesItsNumberWithItsArguments) {
  ClassRegistry classes("/nowhere");
  const FakeComponents fakes;
  fakes.RegisterWith(classes);
  fakes.Properties().propertyWindow = 44;
  fakes.Properties().changedProperty = "C.Build.Tool";
  CPropertyManagerDriver driver;
  ASSERT_TRUE(driver.CreateDispatch(classes, CPropertyManagerDriver::kProgId));
  for (const PropertyRow& row : kPropertyRows) {
    EXPECT_EQ(row.call(driver), row.answer) << row.recorded;
    EXPECT_EQ(fakes.Properties().TakeCalls(), std::vector<std::string>{row.recorded});
    EXPECT_TRUE(driver.LastResult()) << driver.LastResult().text;
  }
  EXPECT_EQ(std::size(kPropertyRows), FakePropertyManager::Table().Methods().size());
}

TEST(PropertyManagerDriver, WithoutAComponentEveryCallGivesZeroOrNothing) {
  CPropertyManagerDriver driver;
  for (const PropertyRow& row : kPropertyRows) {
    const std::string answer = row.call(driver);
    EXPECT_TRUE(answer.empty() || answer == "0") << row.recorded;
    EXPECT_EQ(driver.LastResult().status, DispatchStatus::NoObject) << row.recorded;
  }
}

TEST(ToolManagerDriver, EachOperationReachesItsNumberWithItsArguments) {
  const FakeComponents fakes;
  fakes.Tools().tools = {{"", "<T/>"}, {".c", "<T><Cmd Header=\"Check\" /></T>"}};
  fakes.Tools().onRun = [](const ToolRun& run) { return run.messageFile ? 1 : 0; };
  CToolManagerDriver driver;
  EXPECT_EQ(driver.RunTool("cc", "", "", ""), 0);
  EXPECT_EQ(driver.GetToolsForExtension(".c"), "");
  driver.AttachDispatch(&fakes.Tools(), false);
  EXPECT_EQ(driver.InitTools("/app/", "/data", 3), 1);
  EXPECT_EQ(driver.RunTool("cc", "\"/p/a b.c\"", "<Values/>", "/tmp/m.xml"), 1);
  EXPECT_EQ(driver.RunTool("gen", "", "", nullptr), 0);
  EXPECT_EQ(driver.GetToolsForExtension(".c"), "<T><Cmd Header=\"Check\" /></T>");
  EXPECT_EQ(driver.GetToolsForExtension(""), "<T/>");
  EXPECT_EQ(
      fakes.Tools().TakeCalls(),
      (std::vector<std::string>{
          "InitTools /app/ /data 3", "RunTool cc \"/p/a b.c\" <Values/> /tmp/m.xml",
          "RunTool gen \"\" \"\" null", "GetToolsForExtension .c", "GetToolsForExtension \"\""}));
}

// What stands here is the contract with components of others, so the numbers stand here as well.
TEST(Drivers, TheNumbersAreThoseThatComponentsAnswerBy) {
  const std::pair<const char*, DispatchId> numbers[] = {
      {"ReadDefsFromFile", 1},   {"ReadConfigFromFile", 2},
      {"ReadValuesFromText", 4}, {"GetPropertyValue", 5},
      {"SetPropertyValue", 6},   {"HideProperty", 7},
      {"EnableProperty", 8},     {"HideSection", 9},
      {"HideSet", 11},           {"GetConfigText", 14},
      {"ShowOptions", 15},       {"GetPropertyWindow", 17},
      {"ClearValues", 18},       {"GetChangedProperty", 19},
      {"BeginUpdate", 20},       {"EndUpdate", 21},
      {"GetValuesAsText", 22},   {"InitOptions", 23},
      {"BeginChildLevel", 24},   {"GetNewConfigName", 25},
      {"SetCurrentConfig", 26},  {"GetPropertyStringValue", 27},
      {"GetPropState", 28},      {"SetPropState", 29},
      {"ApplyOptions", 30},      {"ProjectClosing", 31},
      {"EndParentLevel", 32},
  };
  const FakeComponents fakes;
  DispatchId id = 0;
  for (const auto& [name, number] : numbers) {
    EXPECT_TRUE(fakes.Properties().GetIDsOfNames(name, id)) << name;
    EXPECT_EQ(id, number) << name;
  }
  EXPECT_EQ(std::size(numbers), fakes.Properties().GetMethods().size());
}

}  // namespace
}  // namespace tarn::test
