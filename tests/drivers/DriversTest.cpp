#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "drivers/PropertyManagerDriver.h"
#include "drivers/ToolManagerDriver.h"
#include "support/FakeComponents.h"

namespace tarn::test {
namespace {

using ::testing::ElementsAre;

std::string Text(std::int32_t number) {
  return std::to_string(number);
}

// Calls each function once and returns the results.
std::vector<std::string> CallAll(CPropertyManagerDriver& d) {
  d.EndParentLevel();
  d.BeginChildLevel();
  d.BeginUpdate();
  d.EndUpdate();
  d.SetCurrentConfig("Debug");
  d.SetPropState("open");
  std::vector<std::string> answers = {
      Text(d.InitOptions("/app/", "/data", 7, 1)),
      Text(d.ReadDefsFromFile("", "/a b")),
      Text(d.ReadConfigFromFile("Debug", "C", "S", "P", nullptr)),
      Text(d.ReadValuesFromText(std::string("<Values/>"))),
      Text(d.SetPropertyValue("C", "General", "Header", "main.c")),
      d.GetPropertyValue(std::string_view("C"), "General", "Header"),
      d.GetPropertyStringValue("C", "General", "Header"),
      Text(d.HideProperty("C", "S", "P", 1)),
      Text(d.EnableProperty("C", "S", "P", -1)),
      Text(d.HideSection("C", "S", 0)),
      Text(d.HideSet("C", 1)),
      d.GetConfigText("Debug", "", "", ""),
      Text(d.ShowOptions(7)),
      Text(d.GetPropertyWindow()),
      d.GetChangedProperty(),
      d.GetValuesAsText("", "", ""),
      d.GetNewConfigName(),
      d.GetPropState(),
      Text(d.ApplyOptions("Debug", "")),
  };
  d.ClearValues();
  d.ProjectClosing();
  return answers;
}

TEST(PropertyManagerDriver, EachOperationReachesItsNumberWithItsArguments) {
  ClassRegistry classes("/nowhere");
  const FakeComponents fakes;
  fakes.RegisterWith(classes);
  fakes.Properties().propertyWindow = 44;
  fakes.Properties().changedProperty = "C.Build.Tool";
  fakes.Properties().newConfigName = "new";
  CPropertyManagerDriver driver;
  ASSERT_TRUE(driver.CreateDispatch(classes, CPropertyManagerDriver::kProgId));
  EXPECT_THAT(CallAll(driver),
              ElementsAre("1", "1", "1", "1", "1", "main.c", "main.c", "1", "1", "1", "1",
                          "<Opt Header=\"Debug\" />", "1", "44", "C.Build.Tool",
                          "<Values><V K=\"C.General.Header\" V=\"main.c\" /></Values>", "new",
                          "open", "1"));
  EXPECT_THAT(
      fakes.Properties().TakeCalls(),
      ElementsAre("EndParentLevel", "BeginChildLevel", "BeginUpdate", "EndUpdate",
                  "SetCurrentConfig Debug", "SetPropState open", "InitOptions /app/ /data 7 1",
                  "ReadDefsFromFile \"\" /a b", "ReadConfigFromFile Debug C S P null",
                  "ReadValuesFromText <Values/>", "SetPropertyValue C General Header main.c",
                  "GetPropertyValue C General Header", "GetPropertyStringValue C General Header",
                  "HideProperty C S P 1", "EnableProperty C S P -1", "HideSection C S 0",
                  "HideSet C 1", "GetConfigText Debug \"\" \"\" \"\"", "ShowOptions 7",
                  "GetPropertyWindow", "GetChangedProperty", "GetValuesAsText \"\" \"\" \"\"",
                  "GetNewConfigName", "GetPropState", "ApplyOptions Debug \"\"", "ClearValues",
                  "ProjectClosing"));
}

TEST(PropertyManagerDriver, WithoutAComponentEveryCallGivesZeroOrNothing) {
  CPropertyManagerDriver driver;
  EXPECT_THAT(CallAll(driver), ::testing::Each(::testing::AnyOf("", "0")));
  EXPECT_EQ(driver.LastResult().status, DispatchStatus::NoObject);
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
  EXPECT_THAT(fakes.Tools().TakeCalls(),
              ElementsAre("InitTools /app/ /data 3", "RunTool cc \"/p/a b.c\" <Values/> /tmp/m.xml",
                          "RunTool gen \"\" \"\" null", "GetToolsForExtension .c",
                          "GetToolsForExtension \"\""));
}

}  // namespace
}  // namespace tarn::test
