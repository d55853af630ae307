// What the component promises to whoever calls it by number, and what its manual says.

#include <gtest/gtest.h>

#include <algorithm>

#include "components/options/OptionsRig.h"

namespace tarn::options {
namespace {

const char kSets[] = R"~(
<Set Header="Application"><Section Header="Target">
  <Property Header="Toolchain" Type="choice" Default="avr"><Choice Value="avr" Label="AVR" />
    <Choice Value="mcs51" Label="8051" /></Property>
</Section></Set>
<Set Header="C"><Section Header="Compiler">
  <Property Header="Include" Type="paths" Default="std" />
  <Property Header="Debug" Type="yesno" />
  <Property Header="Level" Type="number" />
</Section></Set>)~";

// Callers know the numbers alone.
TEST(Contract, EveryOperationAnswersByItsNumberWithItsArguments) {
  const struct {
    DispatchId id;
    const char* name;
    std::size_t arguments;
  } rows[] = {
      {1, "ReadDefsFromFile", 2},
      {2, "ReadConfigFromFile", 5},
      {4, "ReadValuesFromText", 1},
      {5, "GetPropertyValue", 3},
      {6, "SetPropertyValue", 4},
      {7, "HideProperty", 4},
      {8, "EnableProperty", 4},
      {9, "HideSection", 3},
      {11, "HideSet", 2},
      {14, "GetConfigText", 4},
      {15, "ShowOptions", 1},
      {17, "GetPropertyWindow", 0},
      {18, "ClearValues", 0},
      {19, "GetChangedProperty", 0},
      {20, "BeginUpdate", 0},
      {21, "EndUpdate", 0},
      {22, "GetValuesAsText", 3},
      {23, "InitOptions", 4},
      {24, "BeginChildLevel", 0},
      {25, "GetNewConfigName", 0},
      {26, "SetCurrentConfig", 1},
      {27, "GetPropertyStringValue", 3},
      {28, "GetPropState", 0},
      {29, "SetPropState", 1},
      {30, "ApplyOptions", 2},
      {31, "ProjectClosing", 0},
      {32, "EndParentLevel", 0},
      {100, "ListProperties", 1},
      {101, "CheckValue", 4},
      {102, "GetDefinitionErrors", 0},
      {103, "Undo", 0},
      {104, "Redo", 0},
      {105, "SetChangedProperty", 4},
      {106, "SetNewConfigName", 1},
      {107, "GetOrigin", 3},
      {108, "ListConfigurations", 0},
  };
  OptionsRig rig(kSets);
  const std::vector<MethodInfo> methods = rig.manager.GetMethods();
  EXPECT_EQ(methods.size(), std::size(rows));
  for (const auto& row : rows) {
    const auto method = std::find_if(methods.begin(), methods.end(),
                                     [&](const MethodInfo& each) { return each.id == row.id; });
    ASSERT_NE(method, methods.end()) << row.name;
    EXPECT_EQ(method->name, row.name);
    EXPECT_EQ(method->arguments.size(), row.arguments) << row.name;
    // Texts may be null, numbers and whole levels missing.
    Variant result;
    const std::vector<Variant> nothing(row.arguments);
    EXPECT_TRUE(rig.manager.Invoke(row.id, nothing, result)) << row.name;
  }
}

TEST(Contract, AValueThatWasSetIsReadBackUnderAnyName) {
  const char* const names[][3] = {
      {"C", "Build", "Tool"},   {"", "Build", "Tool"},  {"Never heard of", "a.b", "c.d"},
      {"C", "", "Tool"},        {"C", "Build", ""},     {"", "", ""},
      {"\xA7]", "&<\"", "|\\"}, {"*", "Build", "Tool"}, {"C", "General", "$(x)"},
      {"C", "Config", "Name"},
  };
  for (const bool held : {false, true}) {
    for (const auto& [set, section, property] : names) {
      OptionsRig rig(kSets);
      if (held) rig.Publish("C", "x.c", rig.Publish("Application", "demo", "", {}), {});
      rig.Put(set, section, property, "first");
      rig.Put(set, section, property, "value");
      EXPECT_EQ(rig.Get(set, section, property), "value")
          << set << "." << section << "." << property;
    }
  }
}

TEST(Contract, ConfigTextOfAnotherConfigurationKnowsWhatAncestorsStored) {
  OptionsRig rig(kSets);
  const std::string application =
      Stored("Release", "C", "Compiler", "Include", "of the application");
  const std::string group = Stored("Release", "C", "Compiler", "Level", "3");
  const std::string parent = rig.Publish("Application", "demo", "", {application});
  const std::string folder = rig.Publish("Group", "src", parent, {application, group});
  rig.Publish("C", "x.c", folder, {application, group});
  const auto value = [&](const char* config, const char* property) {
    const std::string text = rig.ConfigText(config, "C", "Compiler", property);
    const std::size_t begin = text.find("Value=\"") + 7;
    return text.substr(begin, text.find('"', begin) - begin);
  };
  EXPECT_EQ(value("Release", "Include"), "of the application");
  EXPECT_EQ(value("release", "Level"), "3");
  EXPECT_EQ(value("Debug", "Include"), "std");
  EXPECT_EQ(value("Size", "Include"), "std");
}

TEST(Contract, AQuestionWithoutASetIsAnsweredWholeByTheSetThatHasTheValue) {
  OptionsRig rig(kSets);
  const std::string stored = Stored("Debug", "Application", "Target", "Toolchain", "mcs51");
  const auto ask = [&] {
    return rig.Get("", "Target", "Toolchain") + " " +
           rig.driver.InvokeText(27, {"", "Target", "Toolchain"}) + " " +
           rig.Origin("", "Target", "Toolchain");
  };
  rig.Publish("C", "x.c", rig.Publish("Application", "demo", "", {}), {});
  EXPECT_EQ(ask(), "avr AVR definition");
  rig.Publish("C", "x.c", rig.Publish("Application", "demo", "", {stored}), {stored});
  EXPECT_EQ(ask(), "mcs51 8051 inherited");
  rig.Put("C", "Target", "Toolchain", "own");
  EXPECT_EQ(ask(), "own own own");
  EXPECT_EQ(rig.Origin("", "No", "Such") + rig.Origin("C", "No", "Such"), "nonenone");
}

TEST(Contract, DisplayTextsAreThoseOfTheManual) {
  OptionsRig rig(kSets);
  const struct {
    const char* property;
    const char* value;
    const char* wanted;
  } rows[] = {
      {"Debug", "Yes", "Yes"}, {"Debug", "yes", "Yes"},   {"Debug", "NO", "No"},
      {"Debug", "", "No"},     {"Level", "0x10", "0x10"}, {"Include", "a;b", "a;b"},
  };
  rig.Publish("C", "x.c", "", {});
  for (const auto& row : rows) {
    rig.Put("C", "Compiler", row.property, row.value);
    EXPECT_EQ(rig.driver.InvokeText(27, {"", "Compiler", row.property}), row.wanted) << row.value;
  }
}

TEST(Contract, WhatIsNoWholeNumberIsNone) {
  OptionsRig rig(kSets);
  for (const char* value : {"0x", "0x-0", "-0x1", "1.5", "+1", "1 2", "0xG", "--1"}) {
    EXPECT_NE(rig.driver.InvokeText(101, {"C", "Compiler", "Level", value}), "") << value;
  }
  for (const char* value : {"0", "-1", "007", " 5 ", "0XFF", "9223372036854775807"}) {
    EXPECT_EQ(rig.driver.InvokeText(101, {"C", "Compiler", "Level", value}), "") << value;
  }
}

}  // namespace
}  // namespace tarn::options
