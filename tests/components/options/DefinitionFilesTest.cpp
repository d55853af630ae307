#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <iterator>

#include "components/options/OptionsRig.h"

namespace tarn::options {
namespace {

std::string Set(const std::string& content) {
  return "<Set Header=\"C\"><Section Header=\"A\">" + content +
         "<Property Header=\"Good\" Default=\"ok\" /></Section></Set>";
}

TEST(DefinitionFilesTest, AFaultIsToldAndCostsThatDefinitionOnly) {
  const struct {
    const char* name;
    std::string sets;
    const char* error;
  } rows[] = {
      {"nameless property", Set("<Property Default=\"x\" />"), "set C, A: Property without Header"},
      {"full stop", Set("<Property Header=\"a.b\" />"),
       "set C, A.a.b: a name may not hold a full stop; the property is left out"},
      {"type", Set("<Property Header=\"X\" Type=\"colour\" />"),
       "set C, A.X: Type \"colour\" is not known, taken as text"},
      {"attribute", Set("<Property Header=\"X\" Defualt=\"x\" />"),
       "set C, A.X: attribute \"Defualt\" of <Property> is not known"},
      {"condition", Set("<Property Header=\"X\" Shown=\"Level\" />"),
       "set C, A.X: Shown \"Level\" is no condition (Section.Property=value)"},
      {"negated default",
       Set("<Property Header=\"X\"><Default When=\"A.B!=1\" Value=\"x\" /></Property>"),
       "set C, A.X: Default with When \"A.B!=1\": Section.Property=value is wanted"},
      {"default with semicolon",
       Set("<Property Header=\"X\"><Default When=\"A.B=1\" Value=\"x;y\" /></Property>"),
       "set C, A.X: Default \"x;y\" under a condition may hold no semicolon and no lone "
       "parenthesis"},
      {"default with semicolon beside one with a condition",
       Set("<Property Header=\"X\" Default=\"x;y\"><Default When=\"A.B=1\" Value=\"x\" "
           "/></Property>"),
       "set C, A.X: Default \"x;y\" beside one under a condition may hold no semicolon and no lone "
       "parenthesis"},
      {"condition that cannot choose",
       Set("<Property Header=\"X\"><Default When=\"A.B=1,x;y\" Value=\"x\" /></Property>"),
       "set C, A.X: Default with When \"A.B=1,x;y\": a value of it may not be * and hold no "
       "semicolon, equal sign or parenthesis"},
      {"condition on any value",
       Set("<Property Header=\"X\"><Default When=\"A.B=*\" Value=\"x\" /></Property>"),
       "set C, A.X: Default with When \"A.B=*\": a value of it may not be * and hold no "
       "semicolon, equal sign or parenthesis"},
      {"choice without choices", Set("<Property Header=\"X\" Type=\"choice\" />"),
       "set C, A.X: a choice without any Choice"},
      {"default that is no choice",
       Set("<Property Header=\"X\" Type=\"choice\" Default=\"2\"><Choice Value=\"1\" "
           "/></Property>"),
       "set C, A.X: the default does not fit: \"2\" does not fit; one of these is wanted: 1."},
      {"default that is no number", Set("<Property Header=\"X\" Type=\"number\" Default=\"x\" />"),
       "set C, A.X: the default does not fit: \"x\" does not fit; a whole number is wanted, "
       "decimal "
       "or with 0x in front."},
      {"element", Set("<Choice Value=\"1\" />"),
       "set C, A: <Choice> is not known here; Property is"},
      {"nameless set", "<Set />" + Set(""), "set : Set without Header"},
      {"include without file", "<Include />" + Set(""), "Include without File"},
      {"include of itself", "<Include File=\"projectmanager.config\" />" + Set(""),
       "includes itself by way of projectmanager.config"},
  };
  for (const auto& row : rows) {
    OptionsRig rig(row.sets);
    EXPECT_EQ(rig.Errors(), "/c/projectmanager.config: " + std::string(row.error) + "\n")
        << row.name;
    EXPECT_EQ(rig.Get("C", "A", "Good"), "ok") << row.name;
  }
}

TEST(DefinitionFilesTest, APropertyStartsFromWhatWasSaidOfAllSets) {
  const std::string every =
      "<Set Header=\"*\"><Section Header=\"A\"><Property Header=\"P\" Type=\"yesno\" "
      "Default=\"No\" /></Section></Set>";
  const std::string own =
      "<Set Header=\"C\"><Section Header=\"A\"><Property Header=\"P\" Default=\"Yes\" "
      "/></Section></Set>";
  for (const bool first : {true, false}) {
    OptionsRig rig(first ? every + own : own + every);
    EXPECT_EQ(rig.Get("C", "A", "P") + rig.Get("H", "A", "P"), "YesNo");
    const std::string type = first ? "Type=\"yesno\"" : "Type=\"text\"";
    EXPECT_NE(rig.driver.InvokeText(100, {"C"}).find(type), std::string::npos) << first;
  }
}

// A default that cannot be one choice of several must not be cut off in silence.
TEST(DefinitionFilesTest, ADefaultOfSeveralTextsStaysWhole) {
  OptionsRig rig(
      Set("<Property Header=\"X\" Type=\"list\" Default=\"x;y\">"
          "<Default When=\"A.Good=ok\" Value=\"z\" /></Property>"));
  EXPECT_EQ(rig.Get("C", "A", "X"), "x;y");
}

TEST(DefinitionFilesTest, IncludedFilesExtendWhatStandsThere) {
  OptionsRig rig;
  rig.disk.AddFile("/c/projectmanager.config",
                   "<X><OptionSets><Include File=\"options\\a.options\" /><Include File=\"none\" />"
                   "<Set Header=\"C; Cpp\"><Section Header=\"A\"><Property Header=\"P\" "
                   "Default=\"late\" /></Section></Set></OptionSets></X>");
  rig.disk.AddFile("/c/options/a.options",
                   "<?xml version=\"1.0\"?>\r\n<OptionSets><Include File=\"b.options\" />"
                   "<Set Header=\"C\"><Section Header=\"A\"><Property Header=\"P\" Type=\"yesno\" "
                   "Default=\"No\" Label=\"Pee\" /></Section></Set></OptionSets>");
  rig.disk.AddFile(
      "/c/options/b.options",
      "<OptionSets><Include File=\"a.options\" /><Set Header=\"C\"><Section "
      "Header=\"A\"><Property Header=\"Q\" Default=\"q\" /></Section></Set></OptionSets>");
  EXPECT_EQ(rig.driver.InvokeLong(1, {"", "/c/projectmanager.config"}), 1);
  EXPECT_EQ(rig.Get("C", "A", "P") + rig.Get("Cpp", "A", "P") + rig.Get("C", "A", "Q"),
            "latelateq");
  EXPECT_EQ(rig.driver.InvokeText(27, {"C", "A", "P"}), "No");
  const std::string errors = rig.Errors();
  EXPECT_NE(errors.find("/c/none: can't be read"), std::string::npos) << errors;
  EXPECT_NE(errors.find("/c/options/b.options: includes itself"), std::string::npos) << errors;
  EXPECT_EQ(rig.driver.InvokeLong(1, {"", "/c/missing"}), 0);
  EXPECT_EQ(rig.Get("C", "A", "Q"), "q");
}

// The page for authors, whose example must do what it says.
TEST(DefinitionFilesTest, TheWorkedExampleOfTheManualHolds) {
  std::ifstream page(std::string(std::getenv("TARN_SOURCE_DIR")) + "/docs/options-format.md");
  const std::string text{std::istreambuf_iterator<char>(page), {}};
  const std::size_t begin = text.find("<OptionSets>", text.find("### A worked example"));
  const std::size_t end = text.find("```", begin);
  ASSERT_NE(end, std::string::npos);
  OptionsRig rig;
  rig.disk.AddFile("/c/company.options", text.substr(begin, end - begin));
  EXPECT_EQ(rig.driver.InvokeLong(1, {"", "/c/company.options"}), 1);
  EXPECT_EQ(rig.Errors(), "");
  rig.Publish("Application", "demo", "", {});
  rig.Put("Application", "Target", "Device", "atmega1284p");
  EXPECT_EQ(rig.Get("", "Linker", "Extra"), "-Wl,--defsym=boot=0x1F800");
  rig.Put("Application", "Boot", "Use", "No");
  EXPECT_EQ(rig.Get("", "Linker", "Extra"), "");
  rig.Put("C", "Check", "Rules", "$(Inherited);strict");
  EXPECT_EQ(rig.Get("C", "Check", "Rules"), "rules;strict");
}

TEST(DefinitionFilesTest, AFileIsReadOnceHoweverManyNodesAskForIt) {
  OptionsRig rig;
  rig.disk.TakeOperations();
  for (int i = 0; i < 100; ++i) rig.driver.InvokeLong(1, {"C", "/c/projectmanager.config"});
  rig.driver.InvokeLong(1, {"C", "/c/missing"});
  rig.driver.InvokeLong(1, {"C", "/c/missing"});
  EXPECT_EQ(rig.disk.Operations("read"),
            (std::vector<std::string>{"read /c/projectmanager.config", "read /c/missing"}));
}

TEST(DefinitionFilesTest, AnyDamageOfAFileLeavesAWorkingComponent) {
  const std::string whole = "<OptionSets>" +
                            Set("<Property Header=\"X\" Type=\"choice\" Default=\"a\" "
                                "Shown=\"A.Good=1\"><Choice Value=\"a\" Label=\"b\" /><Default "
                                "When=\"A.Good=1\" Value=\"$(A.X)\" />"
                                "</Property>") +
                            "</OptionSets>";
  OptionsRig rig;
  for (std::size_t i = 0; i < whole.size(); ++i) {
    std::string damaged = whole;
    damaged[i] = static_cast<char>("<>\"\\/=)$"[i % 8]);
    for (const std::string& text : {whole.substr(0, i), damaged}) {
      rig.disk.AddFile("/c/projectmanager.config", text);
      rig.driver.InvokeLong(1, {"", "/c/projectmanager.config"});
      rig.Publish("C", "x.c", "", {});
      rig.Get("C", "A", "X");
      EXPECT_EQ(rig.Get("C", "General", "Header"), "x.c");
    }
  }
}

class ShippedOptionsTest : public ::testing::Test {
 protected:
  ShippedOptionsTest() {
    const char* root = std::getenv("TARN_SOURCE_DIR");
    configFile = std::string(root == nullptr ? "." : root) + "/share/config/projectmanager.config";
    EXPECT_EQ(manager.ReadDefsFromFile("", configFile.c_str()), 1);
  }

  void Enter(const char* type, const char* name, const char* value) {
    manager.ReadDefsFromFile(type, configFile.c_str());
    manager.SetPropertyValue(type, "General", name, value);
  }
  void Source(const char* type, const char* path) {
    manager.ClearValues();
    manager.SetCurrentConfig("Debug");
    Enter("Application", "ApplicationDir", "/p/app/");
    Enter("Application", "ApplicationName", "demo");
    if (!toolchain.empty()) {
      manager.SetPropertyValue("Application", "Target", "Toolchain", toolchain.c_str());
    }
    manager.EndParentLevel();
    manager.BeginChildLevel();
    Enter(type, "NodePath", path);
    manager.SetPropertyValue(type, "General", "Path", path);
  }
  std::string Get(const char* set, const char* section, const char* property) {
    return manager.GetPropertyValue(set, section, property);
  }

  std::string configFile;
  std::string toolchain;
  PropertyManager manager;
};

TEST_F(ShippedOptionsTest, HaveNoFault) {
  EXPECT_EQ(manager.GetDefinitionErrors(), "");
}

TEST_F(ShippedOptionsTest, GiveToolsAndOutputsForEveryToolchain) {
  const struct {
    const char* toolchain;
    const char* type;
    const char* path;
    const char* tool;
    const char* output;
  } rows[] = {
      {"", "C", "/p/app/src/a.c", "avr-gcc.c", "/p/app/build/Debug/demo.obj/src/a.c.o"},
      {"", "C", "/p/lib/a.c", "avr-gcc.c", "/p/app/build/Debug/demo.obj/__/lib/a.c.o"},
      {"sdcc-mcs51", "Assembler", "/p/app/a.a51", "sdcc-mcs51.asm",
       "/p/app/build/Debug/demo.obj/a.a51.rel"},
      {"host-gcc", "Cpp", "/p/app/a.cpp", "host-gcc.cpp", "/p/app/build/Debug/demo.obj/a.cpp.o"},
      {"", "Library", "/p/app/libm.a", "", "/p/app/libm.a"},
      {"", "Header", "/p/app/a.h", "", ""},
      {"", "Group", "", "", ""},
  };
  for (const auto& row : rows) {
    toolchain = row.toolchain;
    Source(row.type, row.path);
    EXPECT_EQ(Get(row.type, "Build", "TranslateTool"), row.tool) << row.path;
    EXPECT_EQ(Get(row.type, "Build", "OutputFile"), row.output) << row.path;
  }
  const char* const links[][4] = {
      {"avr-gcc", "avr-gcc.link", "/p/app/build/Debug/demo.elf", "/p/app/build/Debug/demo.map"},
      {"sdcc-mcs51", "sdcc-mcs51.link", "/p/app/build/Debug/demo.ihx", ""},
      {"host-gcc", "host-gcc.link", "/p/app/build/Debug/demo", "/p/app/build/Debug/demo.map"}};
  for (const auto& [name, tool, output, map] : links) {
    toolchain = name;
    Source("C", "/p/app/a.c");
    EXPECT_EQ(Get("Application", "Build", "TranslateTool"), tool);
    EXPECT_EQ(Get("Application", "Build", "OutputFile"), output);
    EXPECT_EQ(Get("Application", "Linker", "MapFile"), map);
  }
}

TEST_F(ShippedOptionsTest, LeaveASourceOutsideAnApplicationUntouched) {
  manager.ClearValues();
  Enter("C", "NodePath", "/p/a.c");
  EXPECT_EQ(Get("C", "Build", "TranslateTool") + Get("C", "Build", "OutputFile"), "");
}

TEST_F(ShippedOptionsTest, TakeWhatTheApplicationSaysForAllLanguages) {
  Source("Cpp", "/p/app/a.cpp");
  EXPECT_EQ(Get("Cpp", "Compiler", "Optimize") + Get("Cpp", "Compiler", "Warnings") +
                Get("", "Target", "Device") + Get("", "Target", "Clock"),
            "sallatmega328p16000000");
  manager.SetPropertyValue("Application", "Directories", "Include", "inc");
  manager.SetPropertyValue("Cpp", "Directories", "Include", "$(Inherited);more");
  EXPECT_EQ(Get("", "Directories", "Include"), "inc;more");
  manager.SetPropertyValue("Application", "Target", "Toolchain", "host-gcc");
  EXPECT_EQ(Get("Cpp", "Compiler", "Optimize"), "2");
}

}  // namespace
}  // namespace tarn::options
