#include <gtest/gtest.h>

#include "platform/files/FileTexts.h"
#include "platform/files/TrustRequest.h"
#include "platform/text/Text.h"
#include "support/TestEnvironment.h"
#include "tests/components/tools/FakeLauncher.h"

namespace tarn::tools {
namespace {

using testing::StartedLines;
using testing::ToolManagerFixture;
using testing::WithoutRun;

std::string OneTool(const std::string& content) {
  return "<T><Tool Name=\"t\" " + content + "</Tool></T>";
}

// Returns what is run, one "program arg arg" per line, if every program produces the output.
// Options are lines of Section.Property=value.
std::string StartedFor(const std::string& definitions, const char* tool, const char* files,
                       std::string_view options) {
  ToolManagerFixture tools(definitions);
  EXPECT_EQ(tools.manager->GetDefinitionErrors(), "");
  for (const std::string_view option : Split(options, '\n')) {
    const std::size_t dot = option.find('.');
    const std::size_t equal = option.find('=');
    tools.values.Put("", option.substr(0, dot), option.substr(dot + 1, equal - dot - 1),
                     option.substr(equal + 1));
  }
  for (int i = 0; i < 3; ++i) tools.launcher.Queue({{}, {}, tools.Makes("/p/out/x.o")});
  tools.Run(tool, files);
  return StartedLines(tools.launcher);
}

TEST(CommandLine, ArgumentsFollowTheirRules) {
  // Purpose, attributes of the Step, its children, options, files, and what is run.
  const char* const rows[][6] = {
      {"files one by one", "", R"~(<Arg V="-c"/><Arg V="$(Item)" List="Files"/>)~", "",
       R"~("/p/a b.c","sub\c.c")~", "cc -c \"/p/a b.c\" /p/sub/c.c\n"},
      {"own names", "", R"~(<Arg V="$(File)"/><Arg V="$(Output)"/><Arg V="-MF$(Rules)"/>)~",
       "Build.OutputFile=out\\a.o", R"~("/p/a.c")~", "cc /p/a.c /p/out/a.o -MF/p/out/a.d\n"},
      {"list and paths", "", R"~(<Arg V="-I$(Item)" List="$(D.Include)" Path="Yes"/>)~",
       "D.Include=inc; ..\\lib ;;/abs/x", "", "cc -I/p/inc -I/lib -I/abs/x\n"},
      {"list without paths, and an empty one", "",
       R"~(<Arg V="-D$(Item)" List="$(C.Defines)"/><Arg V="-U$(Item)" List="$(C.X)"/>)~",
       R"~(C.Defines=A;S="x y")~", "", "cc -DA \"-DS=\\\"x y\\\"\"\n"},
      {"names are never split", "",
       R"~(<Arg V="-I$(Item)" List="$(D.I)" Path="Yes"/><Arg V="$(C.Extra)" Words="Yes"/>)~",
       "General.Dir=/a;b 'c\nD.I=$(General.Dir)/i;$(General.Dir)\nC.Extra=-x $(General.Dir)/s", "",
       "cc \"-I/a;b 'c/i\" \"-I/a;b 'c\" -x \"/a;b 'c/s\"\n"},
      {"words", "", R"~(<Arg V="$(C.Extra)" Words="Yes"/>)~", "C.Extra=-a  'b c' `id`;", "",
       "cc -a \"b c\" `id`;\n"},
      {"no shell ever", "", R"~(<Arg V="$(C.Extra)"/>)~", "C.Extra=; rm -rf $HOME", "",
       "cc \"; rm -rf $HOME\"\n"},
      {"conditions", "",
       R"~(<Arg V="a" If="C.X"/><Arg V="b" If="!C.X"/><Arg V="c" If="C.X=YES"/>)~"
       R"~(<Arg V="d" If="C.X!=yes"/><Arg V="e" If="C.X; C.Y=2"/><Arg V="f" If="C.Y=3"/>)~"
       R"~(<Arg V="g" If="Listing"/>)~",
       "C.X=Yes\nC.Y=2", "", "cc a c e\n"},
      {"macros inside values", "", R"~(<Arg V="$(C.X)"/><Arg V="$$(C.X)"/>)~",
       "C.X=<$(C.Y)>\nC.Y=1", "", "cc <1> $(C.X)\n"},
      {"relative paths", R"~(Paths="Relative")~",
       R"~(<Arg V="$(Item)" List="Files" Path="Yes"/><Arg V="$(Output)"/>)~"
       R"~(<Arg V="-I$(Item)" List="$(D.I)" Path="Yes"/>)~",
       "Build.OutputFile=out/a.o\nD.I=.;/usr/include;../p2", R"~("/p/src/a.c")~",
       "cc src/a.c out/a.o -I. -I/usr/include -I/p2\n"},
      {"names that would be taken for something else", R"~(Paths="Relative")~",
       R"~(<Arg V="$(Item)" List="Files" Path="Yes"/><Arg V="$(File)"/>)~", "",
       R"~("/p/-x.c","/p/@y/c","/p/..z")~", "cc ./-x.c ./@y/c ..z ./-x.c\n"},
      {"one relative path", "", R"~(<Arg V="-M$(C.M)" Path="Relative"/><Arg V="$(Output)"/>)~",
       "Build.OutputFile=o\nC.M=m/%.map", "", "cc -Mm/%.map /p/o\n"},
      {"a file that is listed twice, and an archive", "", R"~(<Arg V="$(Item)" List="Files"/>)~",
       "", R"~("/p/a.o","/p/l.a","/p/x/../a.o","/p/l.a")~", "cc /p/a.o /p/l.a /p/l.a\n"},
      {"launcher with words", R"~(Launcher="$(B.L)")~", R"~(<Arg V="-c"/>)~",
       "B.L=ccache 'my wrap'", "", "ccache \"my wrap\" cc -c\n"},
      {"refused characters", R"~(Plain="Yes")~", R"~(<Arg V="$(Item)" List="Files"/>)~", "",
       R"~("/p/$(id).c")~", ""},
      {"circle", "", R"~(<Arg V="$(C.X)"/>)~", "C.X=$(C.Y)\nC.Y=$(C.X)", "", ""},
  };
  for (const auto& [name, attributes, children, options, files, expected] : rows) {
    const std::string tool =
        OneTool(R"~(Output="$(Build.OutputFile)" Rules="$(OutputBase).d"><Step Program="cc" )~" +
                std::string(attributes) + ">" + children + "</Step>");
    EXPECT_EQ(StartedFor(tool, "t", files, options), expected) << name;
  }
}

TEST(CommandLine, NamesThatMoveWithTheProjectAreRelativeAlsoOutsideItsFolder) {
  ToolManagerFixture tools(
      OneTool(R"~(><Step Program="cc" Paths="Relative"><Arg V="$(Item)" List="Files" Path="Yes"/>)~"
              R"~(<Arg V="-I$(Item)" List="$(D.I)" Path="Yes"/></Step>)~"));
  tools.values.Put("Application", "General", "ApplicationDir", "/w/co/app");
  tools.values.Put("", "D", "I", "../inc;/w/co/abs;/w/co/app/../own;../../../top;/usr");
  EXPECT_TRUE(tools.Run("t", "\"/w/co/a.c\""));
  EXPECT_EQ(StartedLines(tools.launcher),
            "cc ../a.c -I../inc -I/w/co/abs -I../own -I/top -I/usr\n");
}

TEST(CommandLine, TheEnvironmentNamesALauncherWhereTheStepTakesOne) {
  ToolManagerFixture tools(OneTool(R"~(><Step Program="cc" Launcher=""/><Step Program="ld"/>)~"));
  tools.environmentLauncher = "ccache";
  EXPECT_TRUE(tools.Run("t", ""));
  EXPECT_EQ(StartedLines(tools.launcher), "ccache cc\nld\n");
}

TEST(CommandLine, EnvironmentAndFolderReachTheProgram) {
  ToolManagerFixture tools(
      OneTool(R"~(><Env Name="LC_ALL" Value="C"/><Step Program="cc" Folder="sub"><Env Name="X" )~"
              R"~(Value="$(Build.X)"/><Arg V="$(Folder)"/></Step><Step Program="ld"/>)~"));
  tools.values.Put("", "Build", "X", "1");
  EXPECT_TRUE(tools.Run("t", ""));
  ASSERT_EQ(tools.launcher.started.size(), 2u);
  EXPECT_EQ(StartedLines(tools.launcher), "cc /p/sub\nld\n");
  EXPECT_EQ(tools.launcher.started[0].folder, "/p/sub");
  EXPECT_EQ(tools.launcher.started[1].folder, "/p");
  using Variables = std::vector<std::pair<std::string, std::string>>;
  EXPECT_EQ(tools.launcher.started[0].environment, (Variables{{"LC_ALL", "C"}, {"X", "1"}}));
}

TEST(CommandLine, ALongLineGoesThroughAResponseFileThatIsRemoved) {
  ToolManagerFixture tools(OneTool(
      R"~(Output="o/x.elf"><Step Program="ld" Response="gnu" ResponseAbove="30" Launcher="wrap">)~"
      R"~(<Arg V="-o"/><Arg V="$(Output)"/><Arg V="$(Item)" List="Files"/></Step>)~"));
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

TEST(CommandLine, FilesThatARunReadsAreKnownBeforeIt) {
  ToolManagerFixture tools(OneTool(
      R"~(Output="out.elf" Follow="Scripts" Writes="-o;-Map"><Step Program="ld"><Arg V="-o"/><Arg V="$(Output)"/>)~"
      R"~(<Arg V="$(X.Args)" Words="Yes"/></Step><Depend File="x.ld"/>)~"
      R"~(<Libraries Name="-l;--library" Folder="-L;--library-path" )~"
      R"~(File="lib$(Item).so;lib$(Item).a"/>)~"));
  tools.disk.AddFile("/p/r.rsp", "@more.rsp 'one.a'");
  tools.disk.AddFile("/p/more.rsp", "two.a\n@r.rsp");
  tools.disk.AddFile("/p/s.ld", "INPUT(one.a -lm)");
  const std::string candidates =
      R"("/p/a.o","/p/x.ld","/p/l/libm.so","/p/l/libm.a","/q/libm.a","/p/l/n.a","/p/libm.a")"
      R"(,"/p/one.a","/p/two.a","/p/sub/../Three.a","/p/out.elf")";
  const char* const rows[][2] = {
      {"", R"("/p/a.o","/p/x.ld")"},
      {"-Ll -L /q -lm -l :n.a", R"("/p/a.o","/p/x.ld","/p/l/libm.so","/p/l/libm.a","/q/libm.a",)"
                                R"("/p/l/n.a")"},
      {"one.a -Wl,-x,two.a,--in=three.a", R"("/p/a.o","/p/x.ld","/p/one.a","/p/two.a",)"
                                          R"("/p/sub/../Three.a")"},
      {"@r.rsp", R"("/p/a.o","/p/x.ld","/p/one.a","/p/two.a")"},
      {"-Wl,-L,/q -Xlinker --library=m -Map one.a -Map=two.a", R"("/p/a.o","/p/x.ld","/q/libm.a")"},
      {"-Ts.ld --library-path=l", R"("/p/a.o","/p/x.ld","/p/l/libm.so","/p/l/libm.a","/p/one.a")"},
  };
  for (const auto& [arguments, expected] : rows) {
    tools.values.Put("", "X", "Args", arguments);
    const std::string options = tools.values.ToText();
    EXPECT_EQ(tools.manager->GetUsedFiles("t", "\"a.o\"", options.c_str(), candidates.c_str()),
              expected);
  }
  // The library that exists is a dependency.
  tools.values.Put("", "X", "Args", "-Ll -L/q -lm -Wl,-T,s.ld @r.rsp -Map one.map");
  for (const char* path : {"/p/x.ld", "/p/two.a", "/p/one.map"}) tools.disk.AddFile(path, "");
  testing::PlayedProgram linker;
  linker.effect = [&](const ProcessRequest&) { tools.disk.AddFile("/p/out.elf", ""); };
  tools.launcher.Queue(linker);
  tools.disk.AddFile("/q/libm.a", "");
  EXPECT_TRUE(tools.Run("t", "\"a.o\""));
  const std::string information = tools.manager->TakeBuildInformation();
  const std::string read =
      R"(<D Header="/p/r.rsp"/><D Header="/p/more.rsp"/><D Header="/q/libm.a"/>)"
      R"(<D Header="/p/s.ld"/><D Header="/p/two.a"/><D Header="/p/x.ld"/></F>)";
  EXPECT_NE(information.find(read), std::string::npos) << information;
  // Files that would be read instead of others, and files that do not exist yet.
  for (const char* path : {"?/p/l/libm.so", "?/p/l/libm.a", "?/q/libm.so", "?/p/one.a"}) {
    EXPECT_NE(information.find(path), std::string::npos) << path << '\n' << information;
  }
}

TEST(CommandLine, TheMapOfThePreviousLinkNamesNoInputs) {
  ToolManagerFixture tools(
      OneTool(R"~(Output="out.elf" Writes="-o;-Map" Carries=".gnu.lto_ .opts"><Step Program="ld">)~"
              R"~(<Arg V="$(X.Args)" Words="Yes"/></Step>)~"));
  tools.disk.AddFile("/p/x.map", "INPUT(one.a)");
  tools.disk.AddFile("/p/one.a", "!<arch>\n.gnu.lto_");
  for (const auto& [arguments, isInput] :
       {std::pair{"-Map=x.map", false}, std::pair{"-Wl,-Map=x.map", false},
        std::pair{"-Map=x.map x.map", true}, std::pair{"--script=x.map", true}}) {
    tools.values.Put("", "X", "Args", arguments);
    const std::string options = tools.values.ToText();
    const std::string access = tools.manager->GetAccess("t", "\"a.o\"", options.c_str());
    EXPECT_EQ(access.find("/p/one.a") != std::string::npos, isInput) << arguments << access;
  }
}

TEST(CommandLine, ScriptsMayNameInputsInTheFolderOfAnyOther) {
  ToolManagerFixture tools(
      OneTool(R"~(Output="out.elf" Writes="-o" Carries=".gnu.lto_ .opts"><Step Program="ld">)~"
              R"~(<Arg V="$(X.Args)" Words="Yes"/></Step>)~"));
  std::string arguments;
  constexpr int kScripts = 40;
  for (int i = 0; i < kScripts; ++i) {
    const std::string script = "s" + std::to_string(i) + "/x.ld";
    tools.disk.AddFile("/p/" + script, "INPUT(one.a)");
    arguments += script + ' ';
  }
  const std::string input = "/p/s" + std::to_string(kScripts - 1) + "/one.a";
  tools.disk.AddFile(input, "!<arch>\n.gnu.lto_");
  tools.values.Put("", "X", "Args", arguments);
  const std::string options = tools.values.ToText();
  const std::string access = tools.manager->GetAccess("t", "", options.c_str());
  EXPECT_NE(access.find(input), std::string::npos) << access;
}

TEST(CommandLine, TheFilesOfARunAreItsAccessesWithoutCode) {
  const struct {
    const char* arguments;
    const char* launcher;
    bool writesNothingElse;
  } rows[] = {{"a.o -o x.elf", "", true},    {"-Map=x.map", "ccache", true},
              {"-Map=x.map", "./my", false}, {"-fplugin=./x.so", "", false},
              {"-wrapper x", "", false},     {"-save-temps", "", false}};
  ToolManagerFixture tools(OneTool(
      R"~(Output="out.elf" Early="Yes" Writes="-o;-Map" Loads="-fplugin=" Strays="-save-temps" Runs="-wrapper" )~"
      R"~(Carries=".gnu.lto_ .opts"><Step Program="ld" Launcher=""><Arg V="$(X.Args)" Words="Yes"/></Step>)~"));
  EXPECT_EQ(tools.manager->GetDefinitionErrors(), "");
  tools.disk.AddFile("/p/a.o", "!<arch>\n.gnu.lto_");
  for (const auto& [arguments, launcher, writesNothingElse] : rows) {
    SCOPED_TRACE(arguments);
    tools.environmentLauncher = launcher;
    tools.values.Put("", "X", "Args", arguments);
    const std::string options = tools.values.ToText();
    auto all = SplitFileTexts(tools.manager->GetAccess("t", "\"a.o\"", options.c_str())).value();
    tools.disk.TakeOperations();
    const auto files =
        SplitFileTexts(tools.manager->GetRunFiles("t", "\"a.o\"", options.c_str())).value();
    EXPECT_TRUE(tools.disk.Operations("read").empty());
    const auto hasEntry = [](const auto& list, const std::string& kind) {
      return std::any_of(list.begin(), list.end(),
                         [&](const FileText& each) { return each.path == kind; });
    };
    EXPECT_TRUE(hasEntry(all, "program"));
    EXPECT_EQ(hasEntry(files, "nothing-else"), writesNothingElse);
    std::erase_if(all, [](const FileText& each) {
      const bool isRequest = each.path != "write" && FindTrustRequestKind(each.path).has_value();
      return isRequest || each.path == "program";
    });
    EXPECT_EQ(JoinFileTexts(all), JoinFileTexts(files));
  }
}

TEST(CommandLine, WhatAnEarlierRunLeftDoesNotPassForAnOutput) {
  ToolManagerFixture tools(OneTool(R"~(Output="x.a"><Step Program="ar"/>)~"));
  tools.disk.AddFile("/p/x.a", "old");
  EXPECT_FALSE(tools.Run("t", ""));
  EXPECT_FALSE(tools.disk.BytesOf("/p/x.a").has_value());
  tools.disk.AddFile("/p/x.a", "old");
  tools.disk.FailOn("remove", "/p/x.a", ErrorCode::ReadOnly);
  EXPECT_FALSE(tools.Run("t", ""));
  EXPECT_NE(tools.Messages().find("/p/x.a can't be removed"), std::string::npos);
  EXPECT_EQ(StartedLines(tools.launcher), "ar\n");
}

TEST(CommandLine, GetCommandLinesShowsWhatWouldRunAndStartsNothing) {
  ToolManagerFixture tools(OneTool(
      R"~(Output="o.o"><Step Program="cc"><Arg V="-DX=&quot;1&quot;"/><Arg V="$(Output)"/>)~"
      R"~(</Step><Step Program="strip" If="Build.Strip"/>)~"));
  const std::string options = tools.values.ToText();
  EXPECT_EQ(tools.manager->GetCommandLines("t", "", options.c_str()),
            "<Commands><Command Program=\"cc\" Folder=\"/p\"><A V=\"-DX=&quot;1&quot;\"/><A "
            "V=\"/p/o.o\"/></Command></Commands>");
  EXPECT_EQ(tools.manager->GetCommandLines("no such tool", "", options.c_str()), "<Commands/>");
  ToolManagerFixture launched(
      OneTool(R"~(><Step Program="cc" Launcher="ccache -x"><Arg V="-c"/></Step>)~"));
  EXPECT_EQ(launched.manager->GetCommandLines("t", "", options.c_str()),
            "<Commands><Command Program=\"ccache\" Folder=\"/p\" Launched=\"2\"><A V=\"-x\"/><A "
            "V=\"cc\"/><A V=\"-c\"/></Command></Commands>");
  EXPECT_TRUE(tools.launcher.started.empty());
  EXPECT_EQ(WithoutRun(tools.manager->TakeBuildInformation()), "");
}

// The shipped definitions with options as set by a project.
TEST(ShippedTools, CompileAndLinkLinesAreComplete) {
  const auto commands = [](const char* definitions, const char* tool, const char* files,
                           const std::string& options) {
    std::string all = "<Tools>";
    for (const char* name : {"gcc.tools", "sdcc.tools", definitions}) {
      const std::string path = tarn::testing::SourcePath(std::string("share/config/tools/") + name);
      const std::string text = tarn::testing::ReadBytes(path);
      const std::size_t begin = text.find("<Tools>") + 7;
      all += text.substr(begin, text.rfind("</Tools>") - begin);
    }
    return StartedFor(all + "</Tools>", tool, files, "Build.OutputFile=out/x.o\n" + options);
  };
  const char* const options =
      "Target.Device=atmega328p\nTarget.Clock=16000000\nCompiler.Optimize=s\n"
      "Compiler.Standard=c11\nCompiler.Warnings=all\nCompiler.Debug=Yes\nCompiler.Defines=A;B=2\n"
      "Directories.Include=src;/inc\nCompiler.Extra=-flto\nLinker.MapFile=out/x.map\n"
      "Linker.Libraries=m\nLinker.LibraryPaths=lib";
  EXPECT_EQ(commands("avr-gcc.tools", "avr-gcc.c", "\"/p/src/a.c\"", options),
            "avr-gcc -c -mmcu=atmega328p -DF_CPU=16000000UL -Os -std=c11 -Wall -gdwarf-2 "
            "-fdiagnostics-color=never -fdebug-prefix-map=/p/= -gno-record-gcc-switches "
            "-frandom-seed=out/x.o -ffunction-sections -fdata-sections -DA -DB=2 -Isrc "
            "-I/inc -x c -flto -MD -MF out/x.d src/a.c -o out/x.o\n");
  EXPECT_EQ(commands("avr-gcc.tools", "avr-gcc.link", "\"/p/out/a.o\",\"/p/out/b.o\"", options),
            "avr-gcc -mmcu=atmega328p -fdiagnostics-color=never -fdebug-prefix-map=/p/= "
            "-gno-record-gcc-switches -Wl,--gc-sections "
            "-Xlinker -Map=out/x.map -o out/x.o out/a.o out/b.o -Llib -lm\n"
            "avr-objcopy -O ihex -R .eeprom -R .fuse -R .lock -R .signature "
            "-R .user_signatures /p/out/x.o /p/out/x.hex\n"
            "avr-size -A /p/out/x.o\n");
  EXPECT_EQ(
      commands("host-gcc.tools", "host-gcc.cpp", "\"/p/src/a.cpp\"", "Compiler.Warnings=extra"),
      "g++ -c -Wall -Wextra -fdiagnostics-color=never -ffile-prefix-map=/p/= "
      "-frandom-seed=out/x.o -ffunction-sections -fdata-sections "
      "-Xassembler --MD -Xassembler out/x.as.d -x c++ -MD -MF out/x.d src/a.cpp -o out/x.o\n");
  EXPECT_EQ(commands("sdcc-mcs51.tools", "sdcc-mcs51.c", "\"/p/src/a.c\"", "Compiler.Optimize=s"),
            "sdcc -mmcs51 -c --opt-code-size -MMD src/a.c -o out/x.o\n");
}

}  // namespace
}  // namespace tarn::tools
