#include <gtest/gtest.h>

#include "components/options/OptionsRig.h"
#include "xml/XmlNode.h"

namespace tarn::options {
namespace {

const char kSets[] = R"~(
<Set Header="*"><Section Header="Build"><Property Header="Exclude" Type="yesno" Label="Leave out" />
</Section></Set>
<Set Header="C"><Section Header="Compiler" Label="Compiler">
  <Property Header="Optimize" Type="choice" Default="s"><Choice Value="s" Label="for size" />
    <Choice Value="2" Label="for speed" /></Property>
  <Property Header="Debug" Type="yesno" KeepsOutputs="Yes" Enabled="Compiler.Optimize!=2" />
  <Property Header="Level" Type="number" Min="1" Max="0x10" />
  <Property Header="Out" Type="file" Shown="Compiler.Level=1,2" /></Section>
</Set>)~";

class OptionsWindowTest : public ::testing::Test {
 protected:
  OptionsWindowTest() : rig(kSets) { text = rig.Publish("C", "x.c", "", {}); }

  std::string State(const char* property, const char* attribute) {
    CXmlNode root;
    root.Load(rig.driver.InvokeText(100, {"C"}), g_xmlParseInfo);
    const CXmlNode* node = root.FindDescendantByAttr("Header", property);
    return node == nullptr ? "missing" : TextOf(node->GetAttrValue(attribute));
  }
  std::int32_t Change(const char* property, const char* value) {
    return rig.driver.InvokeLong(105, {"", "Compiler", property, value});
  }
  std::string Changed() { return rig.driver.InvokeText(19, {}); }

  OptionsRig rig;
  std::string text;
};

TEST_F(OptionsWindowTest, ListTellsWhatTheWindowNeeds) {
  EXPECT_EQ(State("Exclude", "Label"), "Leave out");
  EXPECT_EQ(State("Debug", "Command"), "33029");
  EXPECT_EQ(State("Level", "Command"), "33030");
  EXPECT_EQ(State("Debug", "Enabled") + State("Out", "Shown"), "YesNo");
  rig.Put("C", "Compiler", "Optimize", "2");
  rig.Put("C", "Compiler", "Level", "2");
  EXPECT_EQ(State("Debug", "Enabled") + State("Out", "Shown"), "NoYes");
  rig.driver.InvokeLong(7, {"c", "compiler", "level", 1});
  rig.driver.InvokeLong(8, {"C", "Compiler", "Optimize", 0});
  EXPECT_EQ(State("Level", "Shown") + State("Optimize", "Enabled"), "NoNo");
  rig.driver.InvokeLong(7, {"C", "Compiler", "Level", 0});
  rig.driver.InvokeLong(8, {"C", "Compiler", "Optimize", 1});
  rig.driver.InvokeLong(9, {"C", "Compiler", 1});
  EXPECT_EQ(State("Level", "Shown") + State("Exclude", "Shown"), "NoYes");
  rig.driver.InvokeLong(11, {"C", 1});
  EXPECT_EQ(State("Exclude", "Shown") + State("Optimize", "Enabled"), "NoYes");
}

TEST_F(OptionsWindowTest, ValuesAreCheckedAgainstTheirType) {
  const struct {
    const char* property;
    const char* value;
    const char* wanted;
  } rows[] = {
      {"Optimize", "S", ""},
      {"Optimize", "9", "\"9\" does not fit; one of these is wanted: s, 2."},
      {"Debug", "yes", ""},
      {"Debug", "1", "\"1\" does not fit; Yes or No is wanted."},
      {"Level", "0x0F", ""},
      {"Level", "", ""},
      {"Level", "$(Compiler.Optimize)",
       "\"s\" does not fit; a whole number from 1 to 0x10 is wanted, decimal or with 0x in front."},
      {"Level", "99999999999999999999",
       "\"99999999999999999999\" does not fit; a whole number "
       "from 1 to 0x10 is wanted, decimal or with 0x in front."},
      {"Out", "a\nb", "A path may not hold a control character."},
      {"Unknown", "x", ""},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(rig.driver.InvokeText(101, {"", "Compiler", row.property, row.value}), row.wanted);
  }
  EXPECT_EQ(rig.driver.InvokeText(27, {"C", "Compiler", "Optimize"}), "for size");
  EXPECT_EQ(rig.driver.InvokeText(27, {"C", "Compiler", "Debug"}), "No");
  EXPECT_EQ(rig.driver.InvokeText(27, {"C", "General", "Header"}), "x.c");
}

TEST_F(OptionsWindowTest, AChangeIsAnsweredUntilTheNextLoadAndNotMadeWhileHeld) {
  EXPECT_EQ(Change("Level", "3"), 1);
  EXPECT_EQ(Changed(), "C.Compiler.Level");
  EXPECT_EQ(Changed(), "C.Compiler.Level");
  rig.Publish("C", "x.c", "", {});
  EXPECT_EQ(Changed(), "");
  rig.driver.InvokeHelper(21, {});
  rig.driver.InvokeHelper(20, {});
  EXPECT_EQ(Change("Level", "4"), 0);
  rig.driver.InvokeHelper(21, {});
  EXPECT_EQ(Change("Level", "4"), 1);
  rig.driver.InvokeHelper(31, {});
  EXPECT_EQ(Changed() + rig.Get("C", "Compiler", "Level"), "");
}

TEST_F(OptionsWindowTest, UndoBelongsToTheNodeThatWasChanged) {
  Change("Level", "3");
  Change("Level", "4");
  rig.Publish("C", "other.c", "", {});
  EXPECT_EQ(rig.driver.InvokeText(103, {}), "");
  rig.Publish("C", "x.c", "", {Stored("Debug", "C", "Compiler", "Level", "4")});
  EXPECT_EQ(rig.driver.InvokeText(103, {}), "C.Compiler.Level");
  EXPECT_EQ(rig.Get("C", "Compiler", "Level") + Changed(), "3C.Compiler.Level");
  rig.driver.InvokeText(103, {});
  EXPECT_EQ(rig.Origin("C", "Compiler", "Level"), "definition");
  EXPECT_EQ(rig.driver.InvokeText(103, {}), "");
  rig.driver.InvokeText(104, {});
  EXPECT_EQ(rig.Get("C", "Compiler", "Level"), "3");
  Change("Level", "5");
  EXPECT_EQ(rig.driver.InvokeText(104, {}), "");
  rig.driver.InvokeHelper(31, {});
  EXPECT_EQ(rig.driver.InvokeText(103, {}), "");
}

TEST_F(OptionsWindowTest, ViewStateAndNewNameAreKeptOverALoad) {
  rig.driver.InvokeHelper(29, {"open;<x> \xA7"});
  rig.driver.InvokeHelper(106, {"Size"});
  rig.Publish("C", "y.c", "", {});
  EXPECT_EQ(rig.driver.InvokeText(28, {}), "open;<x> \xA7");
  EXPECT_EQ(rig.driver.InvokeText(25, {}) + rig.driver.InvokeText(25, {}), "SizeSize");
  EXPECT_EQ(rig.driver.InvokeLong(15, {0}) + rig.driver.InvokeLong(17, {}), 0);
}

}  // namespace
}  // namespace tarn::options
