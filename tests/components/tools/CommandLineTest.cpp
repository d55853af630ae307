#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <sstream>

#include "tests/components/tools/FakeLauncher.h"

namespace tarn::tools {
namespace {

using testing::PlayedProgram;
using testing::StartedLines;
using testing::ToolManagerFixture;

struct Option {
  const char* section;
  const char* property;
  const char* value;
};

struct Row {
  const char* name;
  const char* step;  // attributes of the Step, then its children
  std::vector<Option> options;
  const char* files;
  const char* expected;
};

std::string StartedFor(const Row& row) {
  const std::string text = row.step;
  const std::size_t end = text.find('|');
  ToolManagerFixture tools(
      "<T><Tool Name=\"t\" Output=\"$(Build.OutputFile)\" "
      "Rules=\"$(OutputBase).d\"><Step Program=\"cc\"" +
      text.substr(0, end) + ">" + text.substr(end + 1) + "</Step></Tool></T>");
  EXPECT_EQ(tools.manager->GetDefinitionErrors(), "") << row.name;
  for (const Option& option : row.options) {
    tools.values.Put("", option.section, option.property, option.value);
  }
  tools.Run("t", row.files);
  return StartedLines(tools.launcher);
}

TEST(CommandLine, ArgumentsFollowTheirRules) {
  const std::vector<Row> rows{
      {"files one by one",
       "|<Arg V=\"-c\"/><Arg V=\"$(Item)\" List=\"Files\"/>",
       {},
       "\"/p/a b.c\",\"sub\\c.c\"",
       "cc -c \"/p/a b.c\" /p/sub/c.c\n"},
      {"own names",
       "|<Arg V=\"$(File)\"/><Arg V=\"$(Output)\"/><Arg V=\"-MF$(Rules)\"/>",
       {{"Build", "OutputFile", "out\\a.o"}},
       "\"/p/a.c\"",
       "cc /p/a.c /p/out/a.o -MF/p/out/a.d\n"},
      {"list and paths",
       "|<Arg V=\"-I$(Item)\" List=\"$(D.Include)\" Path=\"Yes\"/>",
       {{"D", "Include", "inc; ..\\lib ;;/abs/x"}},
       "",
       "cc -I/p/inc -I/lib -I/abs/x\n"},
      {"list without paths",
       "|<Arg V=\"-D$(Item)\" List=\"$(C.Defines)\"/>",
       {{"C", "Defines", "A;S=\"x y\""}},
       "",
       "cc -DA \"-DS=\\\"x y\\\"\"\n"},
      {"empty list", "|<Arg V=\"-D$(Item)\" List=\"$(C.Defines)\"/>", {}, "", "cc\n"},
      {"words",
       "|<Arg V=\"$(C.Extra)\" Words=\"Yes\"/>",
       {{"C", "Extra", "-a  'b c' `id`;"}},
       "",
       "cc -a \"b c\" `id`;\n"},
      {"no shell ever",
       "|<Arg V=\"$(C.Extra)\"/>",
       {{"C", "Extra", "; rm -rf $HOME"}},
       "",
       "cc \"; rm -rf $HOME\"\n"},
      {"conditions",
       "|<Arg V=\"a\" If=\"C.X\"/><Arg V=\"b\" If=\"!C.X\"/><Arg V=\"c\" If=\"C.X=YES\"/>"
       "<Arg V=\"d\" If=\"C.X!=yes\"/><Arg V=\"e\" If=\"C.X; C.Y=2\"/><Arg V=\"f\" If=\"C.Y=3\"/>",
       {{"C", "X", "Yes"}, {"C", "Y", "2"}},
       "",
       "cc a c e\n"},
      {"condition on a name that is empty",
       "|<Arg V=\"a\" If=\"Listing\"/><Arg V=\"b\"/>",
       {},
       "",
       "cc b\n"},
      {"macros inside values",
       "|<Arg V=\"$(C.X)\"/><Arg V=\"$$(C.X)\"/>",
       {{"C", "X", "<$(C.Y)>"}, {"C", "Y", "1"}},
       "",
       "cc <1> $(C.X)\n"},
      {"relative paths",
       " Paths=\"Relative\"|<Arg V=\"$(Item)\" List=\"Files\" Path=\"Yes\"/>"
       "<Arg V=\"$(Output)\"/><Arg V=\"-I$(Item)\" List=\"$(D.I)\" Path=\"Yes\"/>",
       {{"Build", "OutputFile", "out/a.o"}, {"D", "I", ".;/usr/include;../p2"}},
       "\"/p/src/a.c\"",
       "cc src/a.c out/a.o -I. -I/usr/include -I/p2\n"},
      {"launcher with words",
       " Launcher=\"$(B.L)\"|<Arg V=\"-c\"/>",
       {{"B", "L", "ccache 'my wrap'"}},
       "",
       "ccache \"my wrap\" cc -c\n"},
      {"refused characters",
       " Plain=\"Yes\"|<Arg V=\"$(Item)\" List=\"Files\"/>",
       {},
       "\"/p/$(id).c\"",
       ""},
      {"circle", "|<Arg V=\"$(C.X)\"/>", {{"C", "X", "$(C.Y)"}, {"C", "Y", "$(C.X)"}}, "", ""},
  };
  for (const Row& row : rows) EXPECT_EQ(StartedFor(row), row.expected) << row.name;
}

TEST(CommandLine, TheEnvironmentNamesALauncherWhereTheStepTakesOne) {
  ToolManagerFixture tools(
      "<T><Tool Name=\"t\"><Step Program=\"cc\" Launcher=\"\"/>"
      "<Step Program=\"ld\"/></Tool></T>");
  tools.environmentLauncher = "ccache";
  EXPECT_TRUE(tools.Run("t", ""));
  EXPECT_EQ(StartedLines(tools.launcher), "ccache cc\nld\n");
}

TEST(CommandLine, EnvironmentAndFolderReachTheProgram) {
  ToolManagerFixture tools(
      "<T><Tool Name=\"t\"><Env Name=\"LC_ALL\" Value=\"C\"/><Step "
      "Program=\"cc\" Folder=\"sub\"><Env Name=\"X\" Value=\"$(Build.X)\"/>"
      "<Arg V=\"$(Folder)\"/></Step><Step Program=\"ld\"/></Tool></T>");
  tools.values.Put("", "Build", "X", "1");
  EXPECT_TRUE(tools.Run("t", ""));
  ASSERT_EQ(tools.launcher.started.size(), 2u);
  const ProcessRequest& first = tools.launcher.started[0];
  EXPECT_EQ(first.folder, "/p/sub");
  EXPECT_EQ(first.arguments, std::vector<std::string>{"/p/sub"});
  using Variables = std::vector<std::pair<std::string, std::string>>;
  EXPECT_EQ(first.environment, (Variables{{"LC_ALL", "C"}, {"X", "1"}}));
  EXPECT_EQ(tools.launcher.started[1].folder, "/p");
}

TEST(CommandLine, ALongLineGoesThroughAResponseFileThatIsRemoved) {
  ToolManagerFixture tools(
      "<T><Tool Name=\"t\" Output=\"o/x.elf\"><Step Program=\"ld\" Response=\"gnu\" "
      "ResponseAbove=\"30\" Launcher=\"wrap\"><Arg V=\"-o\"/><Arg V=\"$(Output)\"/><Arg "
      "V=\"$(Item)\" List=\"Files\"/></Step></Tool></T>");
  std::string content;
  tools.launcher.Queue({{}, {}, [&](const ProcessRequest&) {
                          content = tools.disk.BytesOf("/p/o/x.elf.rsp").value_or("none");
                          tools.disk.AddFile("/p/o/x.elf", "x");
                        }});
  EXPECT_TRUE(tools.Run("t", "\"/p/a b.o\",\"/p/c.o\""));
  EXPECT_EQ(StartedLines(tools.launcher), "wrap ld @/p/o/x.elf.rsp\n");
  EXPECT_EQ(content, "-o\n/p/o/x.elf\n/p/a\\ b.o\n/p/c.o\n");
  EXPECT_FALSE(tools.disk.BytesOf("/p/o/x.elf.rsp").has_value());
  EXPECT_NE(tools.Messages().find("wrap ld -o /p/o/x.elf"), std::string::npos);
}

TEST(CommandLine, GetCommandLinesShowsWhatWouldRunAndStartsNothing) {
  ToolManagerFixture tools(
      "<T><Tool Name=\"t\" Output=\"o.o\"><Step Program=\"cc\"><Arg "
      "V=\"-DX=&quot;1&quot;\"/><Arg V=\"$(Output)\"/></Step><Step "
      "Program=\"strip\" If=\"Build.Strip\"/></Tool></T>");
  const std::string options = tools.values.ToText();
  EXPECT_EQ(tools.manager->GetCommandLines("t", "", options.c_str()),
            "<Commands><Command Program=\"cc\" Folder=\"/p\"><A V=\"-DX=&quot;1&quot;\"/><A "
            "V=\"/p/o.o\"/></Command></Commands>");
  EXPECT_EQ(tools.manager->GetCommandLines("no such tool", "", options.c_str()), "<Commands/>");
  ToolManagerFixture launched(
      "<T><Tool Name=\"t\"><Step Program=\"cc\" Launcher=\"ccache -x\"><Arg "
      "V=\"-c\"/></Step></Tool></T>");
  EXPECT_EQ(launched.manager->GetCommandLines("t", "", options.c_str()),
            "<Commands><Command Program=\"ccache\" Folder=\"/p\" Launched=\"2\"><A V=\"-x\"/><A "
            "V=\"cc\"/><A V=\"-c\"/></Command></Commands>");
  EXPECT_TRUE(tools.launcher.started.empty());
  EXPECT_EQ(tools.manager->TakeBuildInformation(), "");
}

// The definitions that are shipped, with the options that a project gives them.
class ShippedTools : public ::testing::Test {
 protected:
  static std::string Definitions(const std::string& name) {
    const char* source = std::getenv("TARN_SOURCE_DIR");
    std::ifstream file(std::string(source ? source : ".") + "/share/config/tools/" + name);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
  }

  static std::string Commands(const std::string& file, const char* tool, const char* files,
                              const std::vector<Option>& options) {
    ToolManagerFixture tools(Definitions(file));
    EXPECT_EQ(tools.manager->GetDefinitionErrors(), "");
    for (const Option& option : options) {
      tools.values.Put("", option.section, option.property, option.value);
    }
    // Every program succeeds, and the last leaves the output.
    for (int i = 0; i < 3; ++i) tools.launcher.Queue({{}, {}, tools.Makes("/p/out/x.o")});
    EXPECT_TRUE(tools.Run(tool, files)) << tools.Messages();
    return StartedLines(tools.launcher);
  }
};

TEST_F(ShippedTools, CompileAndLinkLinesAreComplete) {
  const std::vector<Option> options{
      {"Target", "Device", "atmega328p"}, {"Target", "Clock", "16000000"},
      {"Compiler", "Optimize", "s"},      {"Compiler", "Standard", "c11"},
      {"Compiler", "Warnings", "all"},    {"Compiler", "Debug", "Yes"},
      {"Compiler", "Defines", "A;B=2"},   {"Directories", "Include", "src;/inc"},
      {"Compiler", "Extra", "-flto"},     {"Build", "OutputFile", "out/x.o"},
      {"Linker", "MapFile", "out/x.map"}, {"Linker", "Libraries", "m"},
      {"Linker", "LibraryPaths", "lib"}};
  EXPECT_EQ(Commands("avr-gcc.tools", "avr-gcc.c", "\"/p/src/a.c\"", options),
            "avr-gcc -c -mmcu=atmega328p -DF_CPU=16000000UL -Os -std=c11 -Wall -gdwarf-2 "
            "-fdiagnostics-color=never -ffunction-sections -fdata-sections -DA -DB=2 -I/p/src "
            "-I/inc -MMD -MF /p/out/x.d -flto /p/src/a.c -o /p/out/x.o\n");
  EXPECT_EQ(Commands("avr-gcc.tools", "avr-gcc.link", "\"/p/out/a.o\",\"/p/out/b.o\"", options),
            "avr-gcc -mmcu=atmega328p -fdiagnostics-color=never -Wl,--gc-sections "
            "-Wl,-Map=/p/out/x.map -o /p/out/x.o /p/out/a.o /p/out/b.o -L/p/lib -lm\n"
            "avr-objcopy -O ihex -R .eeprom /p/out/x.o /p/out/x.hex\n"
            "avr-size -A /p/out/x.o\n");
  EXPECT_EQ(Commands("host-gcc.tools", "host-gcc.cpp", "\"/p/src/a.cpp\"",
                     {{"Compiler", "Warnings", "extra"}, {"Build", "OutputFile", "out/x.o"}}),
            "g++ -c -Wall -Wextra -fdiagnostics-color=never -ffunction-sections -fdata-sections "
            "-MMD -MF /p/out/x.d /p/src/a.cpp -o /p/out/x.o\n");
  EXPECT_EQ(Commands("sdcc-mcs51.tools", "sdcc-mcs51.c", "\"/p/src/a.c\"",
                     {{"Compiler", "Optimize", "s"}, {"Build", "OutputFile", "out/x.o"}}),
            "sdcc -mmcs51 -c --opt-code-size -MMD src/a.c -o out/x.o\n");
}

}  // namespace
}  // namespace tarn::tools
