#include <tarn/methods.h>

#include <gtest/gtest.h>

#include <set>

#include "components/options/OptionsRig.h"
#include "support/TestEnvironment.h"
#include "xml/XmlNode.h"

namespace tarn::options {
namespace {

std::string Set(const std::string& content) {
  return "<Set Header=\"C\"><Section Header=\"A\">" + content +
         "<Property Header=\"Good\" Default=\"ok\" /></Section></Set>";
}

// Defines a property X with a conditional default.
std::string Conditional(const std::string& attributes, const std::string& when,
                        const std::string& value) {
  return Set("<Property Header=\"X\" " + attributes + "><Default When=\"" + when + "\" Value=\"" +
             value + "\" /></Property>");
}

TEST(DefinitionFilesTest, AFaultIsToldAndCostsThatDefinitionOnly) {
  const std::pair<std::string, const char*> rows[] = {
      {Set(R"(<Property Default="x" />)"), "set C, A: Property without Header"},
      {Set(R"(<Property Header="a.b" />)"),
       "set C, A.a.b: a name must not contain a full stop; the property is skipped"},
      {Set(R"(<Property Header="X" Type="colour" />)"),
       "set C, A.X: Type \"colour\" is not known, treated as text"},
      {Set(R"(<Property Header="X" Defualt="x" />)"),
       "set C, A.X: unknown attribute \"Defualt\" of <Property>"},
      {Set(R"(<Property Header="X" Shown="Level" />)"),
       "set C, A.X: Shown \"Level\" is not a condition (Section.Property=value)"},
      {Conditional("", "A.B!=1", "x"),
       "set C, A.X: Default with When \"A.B!=1\": expected Section.Property=value"},
      {Conditional("", "A.B=1", "x;y"),
       "set C, A.X: Default \"x;y\" under a condition must not contain a semicolon or an "
       "unbalanced parenthesis"},
      {Conditional("Default=\"x;y\"", "A.B=1", "x"),
       "set C, A.X: Default \"x;y\" next to one under a condition must not contain a semicolon or "
       "an unbalanced parenthesis"},
      {Conditional("", "A.B=1,x;y", "x"),
       "set C, A.X: Default with When \"A.B=1,x;y\": its values must not be * or contain a "
       "semicolon, equal sign or parenthesis"},
      {Conditional("", "A.B=*", "x"),
       "set C, A.X: Default with When \"A.B=*\": its values must not be * or contain a semicolon, "
       "equal sign or parenthesis"},
      {Set(R"(<Property Header="X" Type="choice" />)"), "set C, A.X: a choice without any Choice"},
      {Set(R"(<Property Header="X" Type="number" Default="x" />)"),
       "set C, A.X: Default: Invalid value \"x\"; expected a whole number, decimal or with the "
       "prefix 0x."},
      {Set(R"(<Choice Value="1" />)"), "set C, A: <Choice> is not allowed here; expected Property"},
      {Set(R"(<Property Header="X"><Choise /></Property>)"),
       "set C, A.X: <Choise> is not allowed here; expected Choice or Default"},
      {R"(<Set Header="C"><Part /></Set>)" + Set(""),
       "set C: <Part> is not allowed here; expected Section"},
      {"<Sett />" + Set(""), "<Sett> is not allowed here; expected Include or Set"},
      {"<Set />" + Set(""), "set : Set without Header"},
      {"<Include />" + Set(""), "Include without File"},
      {R"(<Include File="projectmanager.config" />)" + Set(""),
       "includes itself via projectmanager.config"},
  };
  for (const auto& [sets, error] : rows) {
    OptionsRig rig(sets);
    EXPECT_EQ(rig.Errors(), "/c/projectmanager.config: " + std::string(error) + "\n");
    EXPECT_EQ(rig.Get("C", "A", "Good"), "ok") << error;
  }
}

TEST(DefinitionFilesTest, ADamagedFileLosesWhatFollowsAndThePropertyInFront) {
  const std::pair<std::string, const char*> rows[] = {
      {R"(<Property Header="Last" Default="x" Type="n)",
       "2: incomplete tag of <Property>; nothing after it is read"},
      {R"(<Property Header="Last" Default="x"></Propert>)",
       "2: </Propert> closes another element; nothing after it is read"},
      {R"(<Property Header="Last" Default="x"/>)", "2: the file ends inside <Section>"},
      {R"(<Property Header="Last" Default="x"/>)" + std::string(1, '\0') + "</Section>",
       "2: a zero byte; nothing after it is read"},
      {R"(<Property Header="Last" Default="x"/>)"
       "\n>>>>>>> a\n</Section></Set></OptionSets>",
       "3: a merge conflict that was not resolved"},
  };
  for (const auto& [end, error] : rows) {
    OptionsRig rig;
    const std::string text = "<OptionSets>" + Set("");
    rig.disk.AddFile("/c/projectmanager.config",
                     text.substr(0, text.find("</Section>")) + "\n" + end);
    rig.driver.InvokeLong(TARN_OPT_READ_DEFS_FROM_FILE, {"", "/c/projectmanager.config"});
    EXPECT_EQ(rig.Errors(), "/c/projectmanager.config:" + std::string(error) + "\n");
    EXPECT_EQ(rig.driver.InvokeText(TARN_OPT_GET_DEFINITION_PROBLEM, {}) + "\n", rig.Errors());
    EXPECT_EQ(rig.Get("C", "A", "Good") + rig.Get("C", "A", "Last"), "ok") << error;
  }
}

TEST(DefinitionFilesTest, APropertyStartsFromWhatWasSaidOfAllSets) {
  const std::string every =
      R"(<Set Header="*"><Section Header="A"><Property Header="P" Type="yesno" Default="No" />)"
      "</Section></Set>";
  const std::string own = Set(R"(<Property Header="P" Default="Yes" />)");
  for (const bool first : {true, false}) {
    OptionsRig rig(first ? every + own : own + every);
    EXPECT_EQ(rig.Get("C", "A", "P") + rig.Get("H", "A", "P"), "YesNo");
    const std::string type = first ? "Type=\"yesno\"" : "Type=\"text\"";
    EXPECT_NE(rig.driver.InvokeText(TARN_OPT_LIST_PROPERTIES, {"C"}).find(type), std::string::npos)
        << first;
  }
}

// A default that is not a valid case of a macro must not be truncated silently.
TEST(DefinitionFilesTest, ADefaultOfSeveralTextsStaysWhole) {
  OptionsRig rig(Conditional(R"(Type="list" Default="x;y")", "A.Good=ok", "z"));
  EXPECT_EQ(rig.Get("C", "A", "X"), "x;y");
}

TEST(DefinitionFilesTest, IncludedFilesExtendWhatStandsThere) {
  OptionsRig rig;
  rig.disk.AddFile(
      "/c/projectmanager.config",
      R"(<X><OptionSets><Include File="options\a.options" /><Include File="none" />)"
      R"(<Set Header="C; Cpp"><Section Header="A"><Property Header="P" Default="late" />)"
      "</Section></Set></OptionSets></X>");
  rig.disk.AddFile("/c/options/a.options",
                   "<?xml version=\"1.0\"?>\r\n<OptionSets><Include File=\"b.options\" />" +
                       Set(R"(<Property Header="P" Type="yesno" Default="No" Label="Pee" />)") +
                       "</OptionSets>");
  rig.disk.AddFile("/c/options/b.options", R"(<OptionSets><Include File="a.options" />)" +
                                               Set(R"(<Property Header="Q" Default="q" />)") +
                                               "</OptionSets>");
  EXPECT_EQ(rig.driver.InvokeLong(TARN_OPT_READ_DEFS_FROM_FILE, {"", "/c/projectmanager.config"}),
            1);
  EXPECT_EQ(rig.Get("C", "A", "P") + rig.Get("Cpp", "A", "P") + rig.Get("C", "A", "Q"),
            "latelateq");
  EXPECT_EQ(rig.Display("C", "A", "P"), "No");
  EXPECT_EQ(rig.Errors(),
            "/c/options/b.options: includes itself via a.options\n/c/none: can't be read: "
            "failed in memory with code 1\n/c/projectmanager.config: set C, A.P: Default: Invalid "
            "value \"late\"; expected Yes or No.\n");
  EXPECT_EQ(rig.driver.InvokeLong(TARN_OPT_READ_DEFS_FROM_FILE, {"", "/c/missing"}), 0);
  EXPECT_EQ(rig.Get("C", "A", "Q"), "q");
}

// The manual's example has to work as described.
TEST(DefinitionFilesTest, TheWorkedExampleOfTheManualHolds) {
  const std::string text = testing::ReadBytes(testing::SourcePath("docs/options-format.md"));
  const std::size_t begin = text.find("<OptionSets>", text.find("### A worked example"));
  const std::size_t end = text.find("```", begin);
  ASSERT_NE(end, std::string::npos);
  OptionsRig rig;
  rig.disk.AddFile("/c/company.options", text.substr(begin, end - begin));
  EXPECT_EQ(rig.driver.InvokeLong(TARN_OPT_READ_DEFS_FROM_FILE, {"", "/c/company.options"}), 1);
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
  for (int i = 0; i < 100; ++i)
    rig.driver.InvokeLong(TARN_OPT_READ_DEFS_FROM_FILE, {"C", "/c/projectmanager.config"});
  rig.driver.InvokeLong(TARN_OPT_READ_DEFS_FROM_FILE, {"C", "/c/missing"});
  rig.driver.InvokeLong(TARN_OPT_READ_DEFS_FROM_FILE, {"C", "/c/missing"});
  EXPECT_EQ(rig.disk.Operations("read"),
            (std::vector<std::string>{"read /c/projectmanager.config", "read /c/missing"}));
}

class ShippedOptionsTest : public ::testing::Test {
 protected:
  ShippedOptionsTest() { EXPECT_EQ(manager.ReadDefsFromFile("", configFile.c_str()), 1); }

  void Enter(const char* type, const char* name, const char* value) {
    manager.ReadDefsFromFile(type, configFile.c_str());
    manager.SetPropertyValue(type, "General", name, value);
  }
  void Source(const char* type, const char* path, const char* toolchain = nullptr) {
    manager.ClearValues();
    manager.SetCurrentConfig("Debug");
    Enter("Application", "ApplicationDir", "/p/app/");
    Enter("Application", "ApplicationName", "demo");
    if (toolchain) manager.SetPropertyValue("Application", "Target", "Toolchain", toolchain);
    manager.EndParentLevel();
    manager.BeginChildLevel();
    Enter(type, "NodePath", path);
    manager.SetPropertyValue(type, "General", "Path", path);
  }
  std::string Get(const char* set, const char* section, const char* property) {
    return manager.GetPropertyValue(set, section, property);
  }

  const std::string configFile = testing::SourcePath("share/config/projectmanager.config");
  PropertyManager manager;
};

TEST_F(ShippedOptionsTest, HaveNoFault) {
  EXPECT_EQ(manager.GetDefinitionErrors(), "");
}

// A type without a loadable icon is not shown, and neither are its children.
TEST_F(ShippedOptionsTest, GiveEveryNodeTypeAnIconOfItsOwn) {
  CXmlParseInfo parseInfo;
  CXmlNode root;
  const std::string text = testing::ReadBytes(configFile);
  ASSERT_NE(root.Load(text, parseInfo), nullptr);
  std::set<std::string> icons;
  for (const CXmlNode* type : root.FindChild("Types")->GetChildren()) {
    const std::string icon = Get(type->NameText(), "Internal", "Icon");
    EXPECT_TRUE(icon.starts_with(testing::SourcePath("share/config/resources/"))) << icon;
    EXPECT_TRUE(icons.insert(icon).second) << type->GetName() << " has the icon of another type";
    const std::string bytes = testing::ReadBytes(icon);
    ASSERT_GT(bytes.size(), 26U) << icon;
    EXPECT_EQ(bytes.substr(0, 2) + std::to_string(bytes[18]) + "x" + std::to_string(bytes[22]),
              "BM18x18")
        << icon;
  }
}

TEST_F(ShippedOptionsTest, GiveToolsAndOutputsForEveryToolchain) {
  const char* const rows[][5] = {
      {nullptr, "C", "/p/app/src/a.c", "avr-gcc.c", "/p/app/build/Debug/demo.obj/src/a.c.o"},
      {nullptr, "C", "/p/lib/a.c", "avr-gcc.c", "/p/app/build/Debug/demo.obj/__/lib/a.c.o"},
      {"sdcc-mcs51", "Assembler", "/p/app/a.a51", "sdcc-mcs51.asm",
       "/p/app/build/Debug/demo.obj/a.a51.rel"},
      {"host-gcc", "Cpp", "/p/app/a.cpp", "host-gcc.cpp", "/p/app/build/Debug/demo.obj/a.cpp.o"},
      {nullptr, "Library", "/p/app/libm.a", "", "/p/app/libm.a"},
      {nullptr, "Header", "/p/app/a.h", "", ""},
      {nullptr, "Group", "", "", ""},
  };
  for (const auto& [toolchain, type, path, tool, output] : rows) {
    Source(type, path, toolchain);
    EXPECT_EQ(Get(type, "Build", "TranslateTool"), tool) << path;
    EXPECT_EQ(Get(type, "Build", "OutputFile"), output) << path;
  }
  const char* const links[][3] = {{"avr-gcc", "demo.elf", "/p/app/build/Debug/demo.map"},
                                  {"sdcc-mcs51", "demo.ihx", ""},
                                  {"sdcc-stm8", "demo.ihx", ""},
                                  {"host-gcc", "demo", "/p/app/build/Debug/demo.map"}};
  for (const auto& [name, output, map] : links) {
    Source("C", "/p/app/a.c", name);
    EXPECT_EQ(Get("Application", "Build", "TranslateTool"), name + std::string(".link"));
    EXPECT_EQ(Get("Application", "Build", "OutputFile"),
              std::string("/p/app/build/Debug/") + output);
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
            "sall16000000");
  manager.SetPropertyValue("Application", "Directories", "Include", "inc");
  manager.SetPropertyValue("Cpp", "Directories", "Include", "$(Inherited);more");
  EXPECT_EQ(Get("", "Directories", "Include"), "inc;more");
  manager.SetPropertyValue("Application", "Target", "Toolchain", "host-gcc");
  EXPECT_EQ(Get("Cpp", "Compiler", "Optimize"), "2");
}

}  // namespace
}  // namespace tarn::options
