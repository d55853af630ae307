#include "components/values/OptionValues.h"

#include <gtest/gtest.h>

#include "components/options/OptionsRig.h"
#include "components/values/ValuesXml.h"

namespace tarn {
namespace {

TEST(OptionValuesTest, EveryByteOfAValueSurvivesItsText) {
  OptionValues values("C");
  for (const std::string& value : options::HostileValues()) {
    values.Put("", "S " + value, "P " + value, value);
  }
  const std::string text = values.ToText();
  EXPECT_EQ(text.find_first_of("]\r\n\t\xA7"), std::string::npos);
  const OptionValues restored = OptionValues::FromText("\r\n" + text);
  for (const std::string& value : options::HostileValues()) {
    const std::string* found = restored.Find("c", "S " + value, "P " + value);
    ASSERT_NE(found, nullptr) << value;
    EXPECT_EQ(*found, value);
  }
  EXPECT_EQ(restored.ToText(), text);
}

const char kText[] =
    R"~(<Values Set="C" Outer="Group;Application" Config="Debug" Applied="1f">)~"
    R"~(<v s="C" k="General" NodePath="/p/src/$(x)/main.c" Header="main.c"/>)~"
    R"~(<v s="C" k="Compiler" Include="$(Inherited);own" Loop="$(Compiler.Pool)" Pool="$(Loop.x)" />)~"
    R"~(<i s="Application" k="General" ApplicationDir="/p/" ApplicationName="demo"/>)~"
    R"~(<i s="Application" k="Target" Toolchain="SDCC"/><i s="C" k="Compiler" Include="app;$(Inherited)"/>)~"
    R"~(<i s="Group" k="Extra" Flag=""/><i s="Application" k="Extra" Flag="outer"/>)~"
    R"~(<d s="C" k="Compiler" Include="std" Optimize="s"/></Values>)~";

TEST(OptionValuesTest, MacrosGiveWhatTheReadingNodeSees) {
  const OptionValues values = OptionValues::FromText(kText);
  const std::pair<const char*, const char*> rows[] = {
      {"$(General.Header)", "main.c"},
      {"$(general.applicationname).elf", "demo.elf"},
      {"$(Application.General.ApplicationDir)x", "/p/x"},
      {"$(Config.Name)", "Debug"},
      {"a$$b $(C.Compiler.Optimize) $", "a$b s $"},
      {"[$(No.Such)$(Nothing)$()]", "[]"},
      {"$(Compiler.Include)", "app;std;own"},
      {"$(General.NodePath)", "/p/src/$(x)/main.c"},
      {"$(Unique:General.NodePath).o", "src/$(x)/main.c.o"},
      {"$(Target.Toolchain?avr=.elf;sdcc=.$(General.Header)x;*=no)", ".main.cx"},
      {"$(Target.Toolchain?avr=.elf;*=$(Target.Toolchain?sdcc=deep))", "deep"},
      {"$(Target.Toolchain?avr=.elf)", ""},
      {"$(Extra.Flag)", ""},
      {"$(unclosed", "$(unclosed"},
      {"$(Inherited)", ""},
  };
  for (const auto& [text, wanted] : rows) EXPECT_EQ(values.Resolve(text), wanted) << text;
}

TEST(OptionValuesTest, AValueThatHasToBeSetIsNamedUntilItIs) {
  const auto missing = [](const char* compiler, const char* own, const char* text) {
    OptionValues values = OptionValues::FromText(
        "<Values Set=\"C\" Outer=\"Application\" Config=\"X\"><d s=\"Application\" k=\"T\" "
        "Device=\"$(T.Compiler?avr=$(Required);*=any)\"/></Values>");
    values.Put("Application", "T", "Compiler", compiler);
    if (own != nullptr) values.Put("Application", "T", "Device", own);
    std::string name;
    const std::string value = values.Resolve(text, nullptr, &name);
    return value + "|" + name;
  };
  const char* const rows[][4] = {
      {"avr", nullptr, "$(T.Device)", "|T.Device"},
      {"avr", nullptr, "-m$(Application.T.Device)", "-m|Application.T.Device"},
      {"avr", "", "$(T.Device)", "|T.Device"},
      {"avr", " ", "$(T.Device)", " |T.Device"},
      {"avr", "$(Inherited)", "$(T.Device)", "|T.Device"},
      {"avr", "m8", "$(T.Device)", "m8|"},
      {"host", nullptr, "$(T.Device)", "any|"},
      {"host", "", "$(T.Device)", "|"},
  };
  for (const auto& [compiler, own, text, expected] : rows) {
    EXPECT_EQ(missing(compiler, own, text), expected) << compiler << (own ? own : " none") << text;
  }
}

TEST(OptionValuesTest, ACircleGivesNothingAndIsNamed) {
  OptionValues values("C");
  values.Put("", "A", "One", "x$(A.Two)");
  values.Put("", "A", "Two", "y$(C.A.Three)");
  values.Put("", "A", "Three", "z$(A.One)");
  values.Put("", "A", "Self", "s$(A.Self)");
  values.Put("", "A", "Beside", "p$(A.One)q$(A.Self?=r)");
  values.Put("", "A", "Bomb", "$(A.B1)$(A.B1)");
  for (int i = 1; i < 40; ++i) {
    const std::string next = "$(A.B" + std::to_string(i + 1) + ")";
    values.Put("", "A", "B" + std::to_string(i), next + next);
  }
  values.Put("", "A", "B40", "boom");
  std::string error;
  EXPECT_EQ(values.Resolve("$(A.One)", &error), "");
  EXPECT_EQ(error, "cycle: A.One -> A.Two -> C.A.Three -> A.One");
  EXPECT_EQ(values.Get("", "A", "Two"), "");
  EXPECT_EQ(values.Get("C", "A", "Self"), "");
  EXPECT_EQ(values.Get("", "A", "Beside"), "pqr");
  error.clear();
  EXPECT_LT(values.Resolve("$(A.Bomb)", &error).size(), 200000u);
  EXPECT_NE(error.find(") expands too far"), std::string::npos) << error;
  std::string nested;
  for (int i = 0; i < 5000; ++i) nested += "$(A.B40?*=";
  EXPECT_EQ(values.Resolve(nested + "x" + std::string(5000, ')')), "");
}

TEST(OptionValuesTest, ANodeDoesNotTakeTheNamesOfAnOuterNodeOfItsKind) {
  const OptionValues values = OptionValues::FromText(
      R"(<Values Set="Group" Outer="Group;Application" Config="Standard" Applied="">)"
      R"(<v s="Group" k="General" Header="inner"/>)"
      R"(<i s="Group" k="General" Header="outer" Path="/outer"/>)"
      R"(<i s="Group" k="Build" Exclude="Yes"/></Values>)");
  EXPECT_EQ(values.Get("", "General", "Header"), "inner");
  EXPECT_EQ(values.Find("Group", "General", "Path"), nullptr);
  EXPECT_EQ(values.Get("Group", "Build", "Exclude"), "Yes");
}

TEST(OptionValuesTest, TextsOfOthersAreReadAsFarAsTheyGo) {
  const std::string text = kText;
  EXPECT_EQ(OptionValues::FromText(text.substr(0, text.find("Loop"))).Get("C", "General", "Header"),
            "main.c");
  EXPECT_EQ(OptionValues::FromText("<ValuesX Set=\"C\">").GetOwnSet(), "");
  EXPECT_EQ(*OptionValues::FromText("<Values Set=\"C\"><v s=\"C\" k=\"A\" B=\"a[1\xA7\"/>")
                 .Find("C", "A", "B"),
            "a[1]");
}

TEST(UniquePathTest, TwoPathsNeverMeet) {
  const char* const rows[][3] = {
      {"/p/app/src/main.c", "/p/app/", "src/main.c"},
      {"/p/app/main.c", "/p/app", "main.c"},
      {"/p/common/main.c", "/p/app/", "__/common/main.c"},
      {"/p/app/__/common/main.c", "/p/app/", "___/common/main.c"},
      {"/other/main.c", "/p/app/", "__/__/other/main.c"},
      {"/p/app/../x/./main.c", "/p/app/", "__/x/main.c"},
      {"C:\\p\\app\\src\\main.c", "C:\\p\\app\\", "src/main.c"},
      {"D:\\src\\main.c", "/p/app/", "__root/D/src/main.c"},
      {"/p/app/a:b.c", "/p/app/", "a:b.c"},
      {"src/main.c", "/p/app/", "src/main.c"},
      {"/p/app", "/p/app/", "__/app"},
      {"", "/p/app/", ""},
  };
  for (const auto& [path, folder, wanted] : rows) {
    EXPECT_EQ(UniquePath(path, folder), wanted) << path;
  }
}

}  // namespace
}  // namespace tarn
