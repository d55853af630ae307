// Guarantees to callers that use the component's methods by number, and statements of its manual.

#include <gtest/gtest.h>

#include "components/options/OptionsRig.h"

namespace tarn::options {
namespace {

// Callers only know the numbers.
TEST(Contract, EveryOperationAnswersByItsNumberWithItsArguments) {
  OptionsRig rig(kSampleSets);
  std::string operations;
  for (const MethodInfo& method : rig.manager.GetMethods()) {
    operations += std::to_string(method.id) + " " + std::string(method.name) + "/" +
                  std::to_string(method.arguments.size()) + " ";
    // Strings may be null, numbers and entire levels missing.
    Variant result;
    const std::vector<Variant> nothing(method.arguments.size());
    EXPECT_TRUE(rig.manager.Invoke(method.id, nothing, result)) << method.name;
  }
  EXPECT_EQ(operations,
            "1 ReadDefsFromFile/2 2 ReadConfigFromFile/5 4 ReadValuesFromText/1 "
            "5 GetPropertyValue/3 6 SetPropertyValue/4 7 HideProperty/4 8 EnableProperty/4 "
            "9 HideSection/3 11 HideSet/2 14 GetConfigText/4 15 ShowOptions/1 "
            "17 GetPropertyWindow/0 18 ClearValues/0 19 GetChangedProperty/0 20 BeginUpdate/0 "
            "21 EndUpdate/0 22 GetValuesAsText/3 23 InitOptions/4 24 BeginChildLevel/0 "
            "25 GetNewConfigName/0 26 SetCurrentConfig/1 27 GetPropertyStringValue/3 "
            "28 GetPropState/0 29 SetPropState/1 30 ApplyOptions/2 31 ProjectClosing/0 "
            "32 EndParentLevel/0 100 ListProperties/1 101 CheckValue/4 102 GetDefinitionErrors/0 "
            "103 Undo/0 104 Redo/0 105 SetChangedProperty/4 106 SetNewConfigName/1 "
            "107 GetOrigin/3 108 ListConfigurations/0 109 ResetChangedProperty/3 "
            "110 GetUndoProperty/0 111 GetRedoProperty/0 112 GetSwitchCount/0 "
            "113 RefreshDefinitions/0 "
            "125 SetDefinitionFolders/1 120 GetDefinitionProblem/0 ");
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
      OptionsRig rig(kSampleSets);
      if (held) rig.Publish("C", "x.c", rig.Publish("Application", "demo", "", {}), {});
      rig.Put(set, section, property, "first");
      rig.Put(set, section, property, "value");
      EXPECT_EQ(rig.Get(set, section, property), "value")
          << set << "." << section << "." << property;
    }
  }
}

TEST(Contract, ConfigTextOfAnotherConfigurationKnowsWhatAncestorsStored) {
  OptionsRig rig(kSampleSets);
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
  OptionsRig rig(kSampleSets);
  const std::string stored = Stored("Debug", "Application", "Target", "Toolchain", "mcs51");
  const auto ask = [&] {
    return rig.Get("", "Target", "Toolchain") + " " + rig.Display("", "Target", "Toolchain") + " " +
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

}  // namespace
}  // namespace tarn::options
