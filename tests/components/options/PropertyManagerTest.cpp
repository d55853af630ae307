#include <tarn/methods.h>

#include <gtest/gtest.h>

#include "components/options/OptionsRig.h"
#include "components/values/OptionValues.h"
#include "xml/XmlNode.h"

namespace tarn::options {
namespace {

TEST(PropertyManagerTest, AnswersWithNoNodeHeld) {
  OptionsRig rig(kSampleSets);
  EXPECT_EQ(rig.Get("C", "Internal", "Icon"), "/c/any.bmp");
  EXPECT_EQ(rig.Get("NeverHeardOf", "Internal", "Icon"), "/c/any.bmp");
  EXPECT_EQ(rig.Get("Target", "Internal", "C-Ext"), "");
  EXPECT_EQ(rig.Get(nullptr, nullptr, nullptr), "");
  EXPECT_EQ(rig.Get("c", "compiler", "OPTIMIZE"), "s");
}

TEST(PropertyManagerTest, OwnValueWinsOverGroupOverApplicationOverDefinition) {
  OptionsRig rig(kSampleSets);
  const std::string application = Stored("debug", "C", "Compiler", "Include", "app;$(Inherited)");
  const std::string group = Stored("Debug", "C", "Compiler", "Include", "$(Inherited);group");
  const std::string file = Stored("Debug", "C", "Compiler", "Include", "$(inherited);file");
  const std::string other = Stored("Release", "C", "Compiler", "Include", "never");
  const std::string applicationText = rig.Publish("Application", "demo", "", {application});
  const std::string groupText = rig.Publish("Group", "g", applicationText, {application, group});
  const struct {
    std::string parent;
    std::initializer_list<std::string> stored;
    const char* value;
    const char* origin;
  } rows[] = {
      {rig.Publish("Application", "bare", "", {}), {}, "std", "definition"},
      {applicationText, {application}, "app;std", "inherited"},
      {groupText, {application, group}, "app;std;group", "inherited"},
      {groupText, {application, group, file}, "app;std;group;file", "own"},
      {groupText, {application, group, application}, "app;app;std;group", "own"},
      {applicationText, {application, file}, "app;std;file", "own"},
      {applicationText, {application, other}, "app;std", "inherited"},
  };
  for (const auto& row : rows) {
    const std::string text = rig.Publish("C", "x.c", row.parent, row.stored);
    EXPECT_EQ(rig.Get("C", "Compiler", "Include"), row.value);
    EXPECT_EQ(rig.Get("", "Compiler", "Include"), row.value);
    EXPECT_EQ(rig.Origin("C", "Compiler", "Include"), row.origin) << row.value;
    EXPECT_EQ(OptionValues::FromText(text).Get("", "Compiler", "Include"), row.value);
  }
}

TEST(PropertyManagerTest, ParentsPublishedJustBeforeGiveTheSameAsCachedOnes) {
  OptionsRig rig(kSampleSets);
  const std::string application = Stored("Debug", "Application", "Target", "Toolchain", "mcs51");
  const std::string applicationText = rig.Publish("Application", "demo", "", {application});
  const std::string cached = rig.Publish("C", "x.c", applicationText, {application});
  rig.Publish("Application", "demo", "", {application});
  rig.driver.InvokeHelper(TARN_OPT_END_PARENT_LEVEL, {});
  rig.driver.InvokeHelper(TARN_OPT_BEGIN_CHILD_LEVEL, {});
  rig.driver.InvokeLong(TARN_OPT_READ_DEFS_FROM_FILE, {"C", "/c/projectmanager.config"});
  rig.Put("C", "General", "Header", "x.c");
  rig.driver.InvokeLong(TARN_OPT_APPLY_OPTIONS, {"Debug", application});
  EXPECT_EQ(rig.Get("C", "Build", "OutputFile"), "Debug/x.c.ihx");
  EXPECT_EQ(rig.Get("Application", "General", "Header"), "demo");
  EXPECT_EQ(rig.Text(), cached);
}

TEST(PropertyManagerTest, TextRestoresEveryAnswerWithoutDefinitions) {
  OptionsRig rig(kSampleSets);
  const std::string stored = Stored("Debug", "C", "Compiler", "Include", "[a]|\"\\");
  const std::string parent = rig.Publish("Application", "demo", "", {stored});
  rig.Put("Application", "Directories", "AddSrcPaths", "../lib");
  const std::string text = rig.Publish("C", "x.c", rig.Text(), {stored});
  PropertyManager fresh(rig.disk);
  const char* const questions[][3] = {{"C", "General", "Header"},
                                      {"C", "Compiler", "Include"},
                                      {"C", "Compiler", "Optimize"},
                                      {"C", "Build", "OutputFile"},
                                      {"", "Directories", "AddSrcPaths"},
                                      {"Application", "General", "Header"},
                                      {"", "Target", "Ext"},
                                      {"", "Config", "Name"}};
  EXPECT_EQ(fresh.ReadValuesFromText(text.c_str()), 1);
  for (const auto& [set, section, property] : questions) {
    const std::string answer = rig.Get(set, section, property);
    EXPECT_NE(answer, "") << section << "." << property;
    EXPECT_EQ(fresh.GetPropertyValue(set, section, property), answer);
  }
  EXPECT_EQ(fresh.GetValuesAsText("", "", ""), text);
}

TEST(PropertyManagerTest, AnyNameOfASetSurvivesTheText) {
  OptionsRig rig;
  std::string text;
  for (const char* set : {"a;b", "c d]", "e=&#59;", "f"}) text = rig.Publish(set, "x", text, {});
  EXPECT_EQ(OptionValues::FromText(text).GetOuterSets(),
            (std::vector<std::string>{"e=&#59;", "c d]", "a;b"}));
  EXPECT_EQ(OptionValues::FromText("<Values Outer=\";;a;;b;;\">").GetOuterSets(),
            (std::vector<std::string>{"a", "b"}));
}

TEST(PropertyManagerTest, ReadingTextAddsToWhatIsHeld) {
  OptionsRig rig(kSampleSets);
  const std::string text = rig.Publish("C", "x.c", "", {Stored("Debug", "C", "A", "One", "1")});
  rig.Clear();
  rig.Put("C", "A", "Two", "2");
  rig.Put("C", "A", "One", "old");
  rig.Read(text);
  EXPECT_EQ(rig.Get("C", "A", "One") + rig.Get("C", "A", "Two"), "12");
  rig.Clear();
  EXPECT_EQ(rig.Get("C", "A", "One") + rig.Get("C", "General", "Header"), "");
  EXPECT_EQ(rig.Get("C", "Compiler", "Optimize"), "s");
}

TEST(PropertyManagerTest, GeneralIsLiteralAndStoredForStandardAlone) {
  OptionsRig rig(kSampleSets);
  rig.Publish("C", "$(Config.Name)$$", "",
              {Stored("Standard", "C", "General", "Note", "kept"),
               Stored("Debug", "C", "General", "Wrong", "lost"),
               Stored("Standard", "C", "Compiler", "Level", "7")});
  EXPECT_EQ(rig.Get("C", "General", "Header"), "$(Config.Name)$$");
  EXPECT_EQ(rig.Get("C", "General", "Note"), "kept");
  EXPECT_EQ(rig.Get("C", "General", "Wrong"), "");
  EXPECT_EQ(rig.Get("C", "Compiler", "Level"), "");
}

TEST(PropertyManagerTest, AGroupInAGroupHasItsOwnNames) {
  OptionsRig rig(kSampleSets);
  rig.Publish("Group", "outer", "", {});
  rig.Put("Group", "General", "Path", "/outer");
  rig.Put("Group", "Build", "Exclude", "Yes");
  const std::string inner = rig.Publish("Group", "inner", rig.Text(), {});
  EXPECT_EQ(rig.Get("Group", "General", "Path"), "");
  EXPECT_EQ(rig.Get("Group", "Build", "Exclude"), "Yes");
  rig.Publish("C", "x.c", inner, {});
  EXPECT_EQ(rig.Get("Group", "General", "Header"), "inner");
  EXPECT_EQ(rig.Get("", "General", "Path"), "");
}

TEST(PropertyManagerTest, HostileValuesSurviveProjectFileAndCache) {
  OptionsRig rig;
  for (const std::string& value : HostileValues()) {
    rig.Publish("C", "x.c", "", {});
    rig.Put("C", "Compiler", "Extra", value);
    CXmlNode options;
    options.SetName("Options");
    ASSERT_NE(options.AddChild("x")->Load(rig.ConfigText("Debug", "C", "Compiler", "Extra"),
                                          g_xmlParseInfo),
              nullptr);
    const std::string file = options.ToString(g_xmlDisplayOptions);
    CXmlNode again;
    ASSERT_NE(again.Load(file, g_xmlParseInfo), nullptr);
    std::string cached = rig.Publish("C", "x.c", "", {again.ToString(g_xmlDisplayOptions)});
    EXPECT_EQ(rig.Get("C", "Compiler", "Extra"), value);
    EXPECT_EQ(cached.find_first_of("]\r\n\xA7"), std::string::npos);
    rig.Clear();
    rig.Read(cached);
    EXPECT_EQ(rig.Get("C", "Compiler", "Extra"), value);
  }
}

TEST(PropertyManagerTest, ConfigTextIsOneElementForTheValueAsked) {
  OptionsRig rig(kSampleSets);
  const std::string release = Stored("Release", "C", "Compiler", "Include", "rel");
  rig.Publish("C", "x.c", "", {release, Stored("Debug", "C", "Own", "Free", "$(Inherited)1")});
  const auto element = [](const std::string& config, const std::string& section,
                          const std::string& property, const std::string& rest) {
    return "<Config Header=\"" + config + "\"><Set Header=\"C\"><Section Header=\"" + section +
           "\"><Property Header=\"" + property + "\"" + rest + " /></Section></Set></Config>";
  };
  const char* const rows[][4] = {
      {"Debug", "Own", "Free", " Removable=\"Yes\" Value=\"$(Inherited)1\""},
      {"Debug", "Compiler", "Optimize", " Value=\"s\""},
      {"Debug", "Compiler", "Debug", " Removable=\"Yes\" Value=\"\""},
      {"Release", "Compiler", "Include", " Removable=\"Yes\" Value=\"rel\""},
      {"Standard", "General", "Header", " Removable=\"Yes\" Value=\"x.c\""},
  };
  for (const auto& [config, section, property, rest] : rows) {
    EXPECT_EQ(rig.ConfigText(config, "C", section, property),
              element(config, section, property, rest));
  }
  EXPECT_EQ(rig.ConfigText("Debug", "C", "No", "Such"), "");
  // A value set for the configuration that is queried next is never lost to a different one.
  rig.Put("C", "Compiler", "Include", "now");
  EXPECT_NE(rig.ConfigText("Release", "C", "Compiler", "Include").find("\"now\""),
            std::string::npos);
  CXmlNode all;
  ASSERT_NE(all.Load(rig.ConfigText("Debug", "", "", ""), g_xmlParseInfo), nullptr);
  for (const char* property : {"Include", "Optimize", "Free", "OutputFile", "Header"}) {
    EXPECT_NE(all.FindDescendantByAttr("Header", property), nullptr) << property;
  }
}

TEST(PropertyManagerTest, ConfigurationFileAddsWhatIsAskedFor) {
  OptionsRig rig(kSampleSets);
  rig.disk.AddFile("/p/values.xml", Stored("Debug", "C", "A", "One", "1"));
  rig.disk.AddFile("/p/other.xml", "<Something/>");
  rig.Publish("C", "x.c", "", {});
  const auto read = [&](const char* config, const char* property, const char* file) {
    return rig.driver.InvokeLong(TARN_OPT_READ_CONFIG_FROM_FILE, {config, "", "", property, file});
  };
  EXPECT_EQ(read("Release", "", "/p/values.xml") + read("", "Two", "/p/values.xml"), 2);
  EXPECT_EQ(rig.Get("C", "A", "One"), "");
  EXPECT_EQ(read("", "one", "/p/values.xml"), 1);
  EXPECT_EQ(rig.Get("C", "A", "One"), "1");
  EXPECT_EQ(read("", "", nullptr) + read("", "", "/p/none") + read("", "", "/p/other.xml"), 0);
}

TEST(PropertyManagerTest, CirclesAreToldOnce) {
  OptionsRig rig(kSampleSets);
  rig.Publish("C", "x.c", "", {});
  rig.Put("C", "A", "One", "1$(A.Two)");
  rig.Put("C", "A", "Two", "2$(A.One)");
  for (int i = 0; i < 3; ++i) EXPECT_EQ(rig.Get("C", "A", "One"), "");
  EXPECT_EQ(rig.Errors(), "C.A.One: cycle: the value itself -> A.Two -> A.One\n");
  EXPECT_EQ(rig.Check("Include", "x$(Compiler.Include)"),
            "The value can't be resolved: cycle: the value itself -> Compiler.Include.");
}

TEST(PropertyManagerTest, ConfigurationsAreThoseOfTheNodesApplication) {
  OptionsRig rig;
  rig.Clear();
  rig.Read(
      "\r\n<ProjectsConfigs>\r\n\t<Configs>\r\n\t\t<Config Header=\"Debug\" />\r\n"
      "<Config Header=\"Size\" /></Configs></ProjectsConfigs>");
  rig.driver.InvokeHelper(TARN_OPT_SET_CURRENT_CONFIG, {"Size"});
  EXPECT_EQ(rig.driver.InvokeText(TARN_OPT_LIST_CONFIGURATIONS, {}), "Debug\nSize\n");
  EXPECT_EQ(rig.Get("", "Config", "Name"), "Size");
  rig.Clear();
  rig.driver.InvokeHelper(TARN_OPT_SET_CURRENT_CONFIG, {""});
  EXPECT_EQ(rig.driver.InvokeText(TARN_OPT_LIST_CONFIGURATIONS, {}), "");
  EXPECT_EQ(rig.Get("", "Config", "Name"), "Standard");
}

}  // namespace
}  // namespace tarn::options
