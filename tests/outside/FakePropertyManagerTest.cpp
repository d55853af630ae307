#include <gtest/gtest.h>

#include "support/FakeComponents.h"

namespace tarn::test {
namespace {

class FakePropertyManagerTest : public ::testing::Test {
 protected:
  FakeComponents fakes;
  FakePropertyManager& manager = fakes.Properties();
};

TEST_F(FakePropertyManagerTest, InnerLevelsWinAndAnEmptySetSearchesFromTheInsideOut) {
  manager.defaults = {{".Build.Tool", "any"}, {"C.Build.Tool", "cc"}};
  EXPECT_EQ(manager.GetPropertyValue("C", "Build", "Tool"), "cc");
  EXPECT_EQ(manager.GetPropertyValue("H", "Build", "Tool"), "any");
  manager.SetPropertyValue("Application", "Build", "Tool", "outer");
  EXPECT_EQ(manager.GetPropertyValue("", "Build", "Tool"), "outer");
  manager.EndParentLevel();
  manager.BeginChildLevel();
  manager.SetPropertyValue("C", "Build", "Tool", "inner");
  EXPECT_EQ(manager.GetPropertyValue("", "Build", "Tool"), "inner");
  EXPECT_EQ(manager.GetPropertyValue("Application", "Build", "Tool"), "outer");
  const std::string text = manager.GetValuesAsText("", "", "");
  manager.ClearValues();
  EXPECT_EQ(manager.GetPropertyValue("", "Build", "Tool"), "any");
  manager.ReadValuesFromText(text.c_str());
  EXPECT_EQ(manager.GetPropertyValue("", "Build", "Tool"), "inner");
  EXPECT_EQ(manager.GetPropertyValue("Application", "Build", "Tool"), "outer");
}

TEST_F(FakePropertyManagerTest, TextsRestoreEveryByteAndShowNoBracket) {
  std::string value;
  for (int byte = 1; byte < 256; ++byte) value += static_cast<char>(byte);
  manager.SetPropertyValue("C", "Build", "Tool", value.c_str());
  const std::string text = manager.GetValuesAsText("", "", "");
  EXPECT_EQ(text.find(']'), std::string::npos);
  EXPECT_EQ(text.find('\n'), std::string::npos);
  const std::string options =
      "<Options>" + manager.GetConfigText("Debug", "C", "Build", "Tool") + "</Options>";
  manager.ClearValues();
  manager.ReadValuesFromText(text.c_str());
  EXPECT_EQ(manager.GetPropertyValue("C", "Build", "Tool"), value);
  manager.ClearValues();
  manager.ApplyOptions("debug", options.c_str());
  EXPECT_EQ(manager.GetPropertyValue("C", "Build", "Tool"), value);
  manager.ClearValues();
  manager.ApplyOptions("Release", options.c_str());
  EXPECT_EQ(manager.GetPropertyValue("C", "Build", "Tool"), "");
}

TEST_F(FakePropertyManagerTest, StandardGeneralHoldsInEachConfiguration) {
  manager.ApplyOptions("Debug",
                       "\r\n<Options>\r\n\t<Opt Header=\"Standard\">\r\n\t\t<Set Header=\"C\">"
                       "<Sec Header=\"General\"><Prop Header=\"A\" Value=\"1\" /></Sec>"
                       "<Sec Header=\"Build\"><Prop Header=\"B\" Value=\"2\" /></Sec></Set></Opt>"
                       "</Options>");
  EXPECT_EQ(manager.GetValuesAsText("", "", ""),
            "<Values><V S=\"C\" N=\"General\" P=\"A\" V=\"1\" /></Values>");
}

}  // namespace
}  // namespace tarn::test
