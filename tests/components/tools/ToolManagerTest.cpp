#include <gtest/gtest.h>

#include "components/tools/MessageLog.h"
#include "platform/text/Text.h"
#include "tests/components/tools/FakeLauncher.h"
#include "widgets/HostMessageNames.h"
#include "xml/XmlNode.h"

namespace tarn::tools {
namespace {

using testing::PlayedProgram;
using testing::StartedLines;
using testing::ToolManagerFixture;
using testing::WithoutRun;

constexpr const char* kDefinitions =
    R"(<T><Tool Name="cc" Messages="gcc" Output="o/a.o" Rules="$(OutputBase).d" Hint="Get it.">)"
    R"(<Step Program="avr-gcc"/></Tool>)"
    R"(<Tool Name="link" Messages="gnu-ld gcc" Output="o/a.elf"><Step Program="ld"/>)"
    R"(<Step Program="none-size" Optional="Yes" Capture="Size"/><Depend File="x.ld"/>)"
    R"(<Size Format="sections"><Sum Label="flash" Of=".text"/></Size></Tool>)"
    R"(<Tool Name="launched" Hint="Get it."><Step Program="avr-gcc" Launcher="nocache"/></Tool>)"
    R"(<Tool Name="plain"><Step Program="p"/></Tool>)"
    R"(<Tool Name="talk" Messages="gcc"><Step Program="p"/></Tool>)"
    R"(<Tool Name="sizes"><Step Program="size" Capture="Size"/></Tool></T>)";

// Returns "kind text" per message of a message file, one per line, with "*" for a plain line that
// is in the report, and the number of messages that one represents.
std::string Summary(const std::string& file) {
  CXmlNode root;
  root.Load(file, g_xmlParseInfo);
  std::string lines;
  for (const CXmlNode* message : root.GetChildren()) {
    const std::string icon = OrEmpty(message->GetAttrValue("Icon"));
    const bool isReported = message->GetAttr("ShowInReport") != nullptr;
    lines += (icon == "0" && isReported ? "*" : icon) + ' ' +
             OrEmpty(message->GetAttrValue("Description"));
    if (message->GetAttr("Count")) lines += OrEmpty(message->GetAttrValue("Count")).insert(0, " x");
    lines += '\n';
  }
  return lines;
}

PlayedProgram Ends(int code, const char* errors = "") {
  return {{{true, errors}}, {code, false}, {}};
}

const PlayedProgram kMissing{{}, {}, {}, true};

TEST(ToolManager, ASuccessfulRunLeavesMessagesAndARecordThatIsTakenOnce) {
  ToolManagerFixture tools(kDefinitions);
  tools.launcher.Queue({{{true, "a.c:1:2: warning: "}, {false, "out\n"}, {true, "odd\nlast"}},
                        {},
                        [&](const ProcessRequest&) {
                          tools.disk.AddFile("/p/o/a.o", "x");
                          tools.disk.AddFile("/p/o/a.d", "o/a.o: /p/a.c b.h ../i/c.h b.h\n");
                        }});
  EXPECT_TRUE(tools.Run("cc", "\"/p/a.c\""));
  EXPECT_EQ(Summary(tools.Messages()), "0 avr-gcc\n0 out\n1 a.c:1:2: warning: odd\n0 last\n");
  EXPECT_EQ(WithoutRun(tools.manager->TakeBuildInformation()),
            "<I><F Header=\"/p/o/a.o\" Infos=\"\" Date=\"1000\"><D Header=\"/p/b.h\"/><D "
            "Header=\"/i/c.h\"/></F></I>");
  EXPECT_EQ(WithoutRun(tools.manager->TakeBuildInformation()), "");
}

TEST(ToolManager, OnlyWhatARunHasWrittenIsItsByProduct) {
  ToolManagerFixture tools(R"(<T><Tool Name="cc" Output="a.o"><Step Program="cc"/>)"
                           R"(<ByProduct File="kept.i;again.i;new.i;rest*"/></Tool></T>)");
  const auto makes = [&](const ProcessRequest&) {
    for (const char* name : {"a.o", "again.i", "new.i", "rest.new"}) {
      tools.disk.AddFile(std::string("/p/") + name, "new");
    }
  };
  for (const int code : {0, 1}) {
    SCOPED_TRACE(code);
    for (const char* name : {"new.i", "rest.new"}) tools.disk.Erase(std::string("/p/") + name);
    for (const char* name : {"kept.i", "again.i", "rest.old"}) {
      tools.disk.AddFile(std::string("/p/") + name, "earlier");
    }
    tools.launcher.Queue({{}, {code, false}, makes});
    EXPECT_EQ(tools.Run("cc", "\"/p/a.c\""), code == 0);
    const std::string record = tools.manager->TakeBuildInformation();
    const std::size_t start = record.find("ByProducts=");
    EXPECT_EQ(start == record.npos ? "" : record.substr(start, record.find('>', start) - start),
              code != 0 ? ""
                        : "ByProducts=\"&quot;/p/again.i&quot;,&quot;/p/new.i&quot;,"
                          "&quot;/p/rest.new&quot;\"");
    EXPECT_TRUE(tools.disk.BytesOf("/p/kept.i") && tools.disk.BytesOf("/p/rest.old"));
    EXPECT_EQ(tools.disk.BytesOf("/p/new.i").has_value(), code == 0);
  }
}

TEST(ToolManager, AToolThatLeavesNoWholeListOfDependenciesHasFailed) {
  const char* const rows[][2] = {
      {nullptr, "can't be read: "},  // a file left by an earlier run must not be used
      {"", "is empty"},
      {"a.o: /p/a.c b", "ends in the middle of a line"},
      {"a.o: /p/a.c b\\c.h\n", "names a file that can't be followed, rename it: b\\c.h"},
      {"a.o: b.h\n", "doesn't name the source /p/a.c"},
  };
  for (const auto& [rules, problem] : rows) {
    ToolManagerFixture tools(kDefinitions);
    tools.disk.AddFile("/p/o/a.d", "a.o: /p/a.c old.h\n");
    tools.launcher.Queue({{}, {}, [&, text = rules](const ProcessRequest&) {
                            tools.disk.AddFile("/p/o/a.o", "x");
                            if (text != nullptr) tools.disk.AddFile("/p/o/a.d", text);
                          }});
    EXPECT_FALSE(tools.Run("cc", "\"/p/a.c\"")) << problem;
    const std::string said = "2 cc ended without an error, but its dependencies are unknown: ";
    EXPECT_NE(Summary(tools.Messages()).find(said + "/p/o/a.d " + problem), std::string::npos)
        << Summary(tools.Messages());
    EXPECT_EQ(tools.manager->TakeBuildInformation(), "") << problem;
  }
}

TEST(ToolManager, OptionalStepsAddSizesAndNeverFailTheTool) {
  ToolManagerFixture tools(kDefinitions);
  tools.disk.AddFile("/p/x.ld", "");
  tools.launcher.Queue({{}, {}, tools.Makes("/p/o/a.elf")});
  tools.launcher.Queue({{{false, ".text 12 0\n"}, {true, "ld: cannot find size"}}, {3, false}, {}});
  EXPECT_TRUE(tools.Run("link", "\"/p/o/a.o\""));
  EXPECT_EQ(Summary(tools.Messages()),
            "0 ld\n0 none-size\n0 ld: cannot find size\n0 none-size ended with exit code 3\n");
  tools.launcher.Queue({{}, {}, tools.Makes("/p/o/a.elf")});
  tools.launcher.Queue(kMissing);
  EXPECT_TRUE(tools.Run("link", "\"/p/o/a.o\""));
  EXPECT_EQ(Summary(tools.Messages()), "0 ld\n0 none-size\n0 none-size was not found\n");
  EXPECT_EQ(WithoutRun(tools.manager->TakeBuildInformation()),
            R"(<I><F Header="/p/o/a.elf" Infos="flash 12 B" Date="1000"><D Header="/p/x.ld"/>)"
            R"(</F><F Header="/p/o/a.elf" Infos="" Date="1000"><D Header="/p/x.ld"/></F></I>)");
}

// GNU ld ends with exit code 0 if the disk is full when it writes the last part of the program.
TEST(ToolManager, AProgramThatLacksItsEndFailsTheLink) {
  std::string whole =
      "\x7f"
      "ELF\1\1";
  whole.resize(52);
  whole[32] = 52;  // offset of the section headers,
  whole[46] = 40;  // their size,
  whole[48] = 1;   // and their number
  whole.resize(52 + 40);
  const std::string cut = whole.substr(0, 60);
  const struct {
    std::string program;
    bool isDone;
    const char* expected;
  } rows[] = {
      {whole, true, "0 ld\n0 none-size\n0 none-size ended with exit code 3\n"},
      {"#!/bin/sh\n", true, "0 ld\n0 none-size\n0 none-size ended with exit code 3\n"},
      {cut, false,
       "* ld\n* none-size\n* none-size ended with exit code 3\n2 link ended without an error, but "
       "wrote only a part of /p/o/a.elf; is the disk full?\n"},
  };
  for (const auto& row : rows) {
    ToolManagerFixture tools(kDefinitions);
    tools.disk.AddFile("/p/x.ld", "");
    tools.launcher.Queue({{}, {}, tools.Makes("/p/o/a.elf", row.program)});
    tools.launcher.Queue(Ends(3));
    EXPECT_EQ(tools.Run("link", "\"/p/o/a.o\""), row.isDone);
    EXPECT_EQ(Summary(tools.Messages()), row.expected);
    EXPECT_EQ(tools.manager->TakeBuildInformation().empty(), !row.isDone);
  }
}

TEST(ToolManager, EveryFailureIsAnErrorInTheMessagesAndLeavesNoRecord) {
  const char* const bad = "a.c:1:2: error: bad\n";
  const struct {
    const char* tool;
    PlayedProgram program;
    const char* expected;
  } rows[] = {
      {"cc", Ends(1, bad), "0 avr-gcc\n2 a.c:1:2: error: bad\n"},
      {"cc", Ends(0, bad), "0 avr-gcc\n2 a.c:1:2: error: bad\n"},
      {"cc", Ends(2, "hm\n"), "0 avr-gcc\n* hm\n2 avr-gcc ended with exit code 2\n"},
      {"cc", Ends(0, "hm"),
       "* avr-gcc\n* hm\n2 cc ended without an error, but left no file /p/o/a.o\n"},
      {"cc",
       {{{false, "one\na.c:1:2: warning: odd\n"}, {true, "two"}, {false, "three"}},
        {128 + 9, true},
        {}},
       "0 avr-gcc\n* one\n1 a.c:1:2: warning: odd\n* three\n* two\n"
       "2 avr-gcc was ended by signal 9\n"},
      {"sizes",
       {{{false, ".text\nlast"}, {true, "why\n"}}, {3, false}, {}},
       "0 size\n* why\n* .text\n* last\n2 size ended with exit code 3\n"},
      {"cc",
       {{{true, bad}}, {128 + 11, true}, {}},
       "0 avr-gcc\n2 a.c:1:2: error: bad\n2 avr-gcc was ended by signal 11\n"},
      {"cc", kMissing, "0 avr-gcc\n2 avr-gcc was not found. Get it.\n"},
      {"cc", Ends(0), "* avr-gcc\n2 cc ended without an error, but left no file /p/o/a.o\n"},
      {"launched", kMissing,
       "0 nocache avr-gcc\n2 nocache was not found. It is meant to launch avr-gcc; the option "
       "Build.Launcher or the variable TARN_LAUNCHER specifies it\n"},
      {"link", Ends(1), "0 ld\n2 ld ended with exit code 1\n"},
      {"nothing", {}, "2 unknown tool nothing in /app/config/tools\n"},
      {"/x/none", {}, "2 unknown tool /x/none in /app/config/tools\n"},
  };
  for (const auto& row : rows) {
    ToolManagerFixture tools(kDefinitions);
    tools.launcher.Queue(row.program);
    EXPECT_FALSE(tools.Run(row.tool, "\"/p/a.c\""));
    EXPECT_EQ(Summary(tools.Messages()), row.expected);
    EXPECT_EQ(WithoutRun(tools.manager->TakeBuildInformation()), "") << row.expected;
  }
}

// A program that ends with exit code 0 has failed if it printed an error in the usual place.
TEST(ToolManager, AStatedErrorFailsAToolInSpiteOfExitCode0) {
  constexpr const char* kTalkers =
      R"(<T><Tool Name="cc" Messages="gcc"><Step Program="p"/></Tool>)"
      R"(<Tool Name="link" Messages="gnu-ld gcc"><Step Program="p"/></Tool>)"
      R"(<Tool Name="sdcc" Messages="sdcc"><Step Program="p"/></Tool>)"
      R"(<Tool Name="acme"><Line Template="^acme: {SPECMESSAGE}" Kind="Error"/>)"
      R"(<Line Template="^note: {SPECMESSAGE}" Kind="Error" Fails="No"/><Step Program="p"/></Tool>)"
      R"(<Tool Name="optional" Messages="gcc"><Step Program="p" Optional="Yes"/></Tool></T>)";
  const struct {
    const char* tool;
    bool isErrorStream;
    const char* line;
    bool isDone;
  } rows[] = {
      {"cc", true, "a.c:1:2: error: bad", false},
      {"cc", true, "Fatal error: no room", false},
      {"cc", true, "a.c:1:2: warning: error: odd", true},
      {"cc", false, "error: what the assembler's .print says", true},
      {"cc", false, "a.S:3: Error: the same, dressed up", true},
      {"link", true, "ld: error: no such thing", false},
      {"link", true, "c.o: in function f: x.c:3: undefined reference to `error'", true},
      {"link", true, "/usr/bin/ld: x.c:(.text+0x1): undefined reference to `error: f'", true},
      {"link", true, "ld: Removing unused section '.text.error_handler' in file 'x.o'", true},
      {"sdcc", true, "at 1: error 119: don't know what to do with file 'own'", false},
      {"sdcc", true, "?ASlink-Error-<cannot open> : \"none.rel\"", false},
      {"acme", false, "acme: does not fit", false},
      {"acme", true, "note: does not fit", true},
      {"optional", true, "a.c:1:2: error: bad", true},
  };
  for (const auto& row : rows) {
    ToolManagerFixture tools(kTalkers);
    tools.launcher.Queue({{{row.isErrorStream, row.line}}, {0, false}, {}});
    EXPECT_EQ(tools.Run(row.tool, "\"/p/a.c\""), row.isDone) << row.tool << ": " << row.line;
  }
}

TEST(ToolManager, AFolderThatCannotBeMadeIsToldBeforeAnythingRuns) {
  ToolManagerFixture tools(kDefinitions);
  tools.disk.AddFile("/p/o", "a file in the way");
  EXPECT_FALSE(tools.Run("cc", "\"/p/a.c\""));
  EXPECT_EQ(StartedLines(tools.launcher), "");
  EXPECT_NE(tools.Messages().find("the folder /p/o can't be created"), std::string::npos);
}

TEST(ToolManager, AProgramPathRunsAsAToolAndANullMessageFileIsLegal) {
  ToolManagerFixture tools(kDefinitions);
  const std::string options = tools.values.ToText();
  EXPECT_EQ(tools.manager->RunTool("\\t\\gen", "\"a.c\"", options.c_str(), nullptr), 1);
  EXPECT_EQ(tools.manager->RunTool("plain", nullptr, nullptr, nullptr), 1);
  EXPECT_EQ(StartedLines(tools.launcher), "/t/gen /p/a.c\np\n");
}

TEST(ToolManager, EditedDefinitionsTakeEffectWhenTheyAreRefreshed) {
  ToolManagerFixture tools(R"(<T><Tool Name="a"><Step Program="old"/></Tool></T>)");
  EXPECT_EQ(tools.manager->RefreshTools(), 0);
  static_cast<void>(tools.manager->GetAccess("a", "", tools.values.ToText().c_str()));
  // The same size, and written in the same second.
  tools.disk.AddFile("/app/config/tools/test.tools",
                     R"(<T><Tool Name="a"><Step Program="new"/></Tool></T>)");
  tools.disk.AddFile("/app/config/tools/more.tools",
                     R"(<T><Tool Name="b"><Step Program="b"/></Tool></T>)");
  EXPECT_EQ(tools.manager->RefreshTools(), 1);
  EXPECT_EQ(tools.manager->RefreshTools(), 0);
  EXPECT_TRUE(tools.Run("a", "") && tools.Run("b", ""));
  EXPECT_EQ(StartedLines(tools.launcher), "new\nb\n");
}

TEST(ToolManager, TheRunWhoseAccessWasCheckedIsTheOneThatRuns) {
  ToolManagerFixture tools(R"~(<T><Tool Name="a"><Step Program="p" Launcher="">)~"
                           R"~(<Arg V="$(X.Y)"/></Step></Tool></T>)~");
  const auto check = [&] {
    static_cast<void>(tools.manager->GetAccess("a", "", tools.values.ToText().c_str()));
  };
  const auto run = [&] {
    tools.launcher.started.clear();
    EXPECT_TRUE(tools.Run("a", ""));
    return StartedLines(tools.launcher);
  };
  tools.values.Put("", "X", "Y", "one");
  check();
  tools.environmentLauncher = "late";
  EXPECT_EQ(run(), "p one\n");
  EXPECT_EQ(run(), "late p one\n");
  // Others are not affected, neither those with other arguments nor those of the next build.
  check();
  tools.environmentLauncher = "";
  tools.values.Put("", "X", "Y", "two");
  EXPECT_EQ(run(), "p two\n");
  tools.values.Put("", "X", "Y", "one");
  tools.manager->RefreshTools();
  EXPECT_EQ(run(), "p one\n");
}

TEST(ToolManager, MissingProgramNamesTheFirstThatIsNeeded) {
  ToolManagerFixture tools(
      R"(<T><Tool Name="a"><Step Program="none-1" Optional="Yes"/><Step Program="cc"/>)"
      R"(<Step Program="none-2"/></Tool><Tool Name="b"><Step Program="cc"/></Tool></T>)");
  EXPECT_EQ(tools.manager->MissingProgram("a"), "none-2");
  EXPECT_EQ(tools.manager->MissingProgram("b"), "");
  EXPECT_EQ(tools.manager->MissingProgram("c"), "");
}

TEST(ToolManager, HostileOutputGivesABoundedReadableFile) {
  ToolManagerFixture tools(kDefinitions);
  PlayedProgram program;
  program.output.assign(160, {true, std::string(65536, ':')});
  program.output.emplace_back(false, std::string("\0\x01\xff\x1b[\x1b]8;;\n</message>\\\n<", 24));
  program.output.insert(program.output.end(), 30000, {false, "x\n"});
  tools.launcher.Queue(program);
  EXPECT_TRUE(tools.Run("plain", ""));
  EXPECT_LT(tools.Messages().size(), 4u << 20);
  EXPECT_NE(Summary(tools.Messages()).find("0 x\n0 10004 more lines, omitted here\n0 x\n"),
            std::string::npos);
}

std::string Repeated(const std::string& text, std::size_t count) {
  std::string all;
  for (std::size_t i = 0; i < count; ++i) all += text;
  return all;
}

// Only plain lines are dropped to make room, and what is dropped is counted.
TEST(ToolManager, WhatComesAfterEndlessTalkIsStillReportedAndCounted) {
  constexpr std::size_t kLines = MessageLog::kHeadLines + MessageLog::kTailLines;
  const std::string talk = Repeated("x\n", 2 * kLines);
  const std::string error = "a.c:1:2: error: bad\n";
  const std::string warning = "a.c:1:2: warning: odd\n";
  const std::string gap = "0 x\n0 " + std::to_string(kLines + 1) + " more lines, omitted here\n";
  const struct {
    const char* name;
    std::string output;
    int code;
    std::string between;  // appears somewhere in the messages
    std::string end;      // and at their end
  } rows[] = {
      {"a warning", talk + warning, 0, gap, "0 x\n1 " + warning},
      {"a warning in the middle", talk + warning + talk, 0, "\n1 " + warning + "0 ", "0 x\n"},
      {"errors", talk + Repeated(error, 1200), 1, gap, "0 x\n" + Repeated("2 " + error, 1200)},
      {"more than are retained",
       Repeated(error + warning, MessageLog::kMaxProblems) + error + error, 1,
       "0 p\n2 " + error + "1 " + warning, "2 2 more errors, omitted here x2\n"},
      {"more warnings", Repeated(warning, MessageLog::kMaxProblems + 1), 0, "",
       "1 1 more warning, omitted here\n"},
      {"a failure without a reason", talk + Repeated("y\n", 30) + "last", 7, gap.substr(0, 4),
       "0 y\n" + Repeated("* y\n", 19) + "* last\n2 p ended with exit code 7\n"},
  };
  for (const auto& row : rows) {
    ToolManagerFixture tools(kDefinitions);
    tools.launcher.Queue({{{false, row.output}}, {row.code, false}, {}});
    EXPECT_EQ(tools.Run("talk", ""), row.code == 0) << row.name;
    const std::string summary = Summary(tools.Messages());
    EXPECT_NE(summary.find(row.between), std::string::npos) << row.name;
    EXPECT_TRUE(summary.ends_with(row.end)) << row.name << summary.substr(summary.size() - 300);
  }
}

TEST(ToolManager, ManyRunsTogetherRetainNoMoreThanABuildMay) {
  struct {
    std::string text;
    std::size_t runs;  // that fill the log of a build
  } const rows[] = {
      {"odd", MessageLog::kMaxOfBuild / MessageLog::kMaxProblems},
      {std::string(180, 'x'), 1},
  };
  for (const auto& row : rows) {
    ToolManagerFixture tools(kDefinitions);
    const std::string line = "a.c:1:2: warning: " + row.text;
    const std::string warnings = Repeated(line + "\n", MessageLog::kMaxProblems);
    const auto ending = [&] {
      tools.launcher.Queue({{{false, warnings}}, {0, false}, {}});
      EXPECT_TRUE(tools.Run("talk", ""));
      const std::string summary = Summary(tools.Messages());
      return summary.substr(summary.rfind('\n', summary.size() - 2) + 1);
    };
    const std::string whole = "1 " + line + "\n";
    EXPECT_EQ(ending(), whole) << row.text;
    for (std::size_t i = 1; i < row.runs; ++i) ending();
    const std::string left = std::to_string(MessageLog::kMaxProblems - MessageLog::kLeast);
    EXPECT_EQ(ending(), "1 " + left + " more warnings, omitted here x" + left + "\n") << row.text;
    tools.manager->RefreshTools();
    EXPECT_EQ(ending(), whole) << "another build";
  }
}

TEST(ToolManager, AToolWhoseConditionsLeaveNoStepReadsNoFolderOfOne) {
  ToolManagerFixture tools(
      "<T><Tool Name=\"none\" Output=\"o/a.o\" Rules=\"o/a.d\"><Step Program=\"p\" "
      "If=\"A.B\"/></Tool></T>");
  tools.disk.AddFile("/p/o/a.o", "x");
  tools.disk.AddFile("/p/o/a.d", "a.o: b.h\n");
  tools.disk.FailOn("remove", "/p/o/a.d", ErrorCode::ReadOnly);
  EXPECT_TRUE(tools.Run("none", ""));
  EXPECT_EQ(WithoutRun(tools.manager->TakeBuildInformation()),
            "<I><F Header=\"/p/o/a.o\" Infos=\"\" Date=\"1000\"><D Header=\"/p/b.h\"/></F></I>");
}

class RecordingFrame : public WindowTarget {
 public:
  std::intptr_t OnWindowMessage(std::uint32_t message, std::intptr_t wParam,
                                std::intptr_t lParam) override {
    lines += std::string(NameOfHostMessage(message)) + ' ' + reinterpret_cast<const char*>(wParam) +
             ' ' + std::to_string(lParam) + '\n';
    // A handler may call back; a lock held while the message is sent would cause a deadlock here.
    if (manager != nullptr) lines += WithoutRun(manager->TakeBuildInformation());
    return 1;
  }
  std::string lines;
  ToolManager* manager = nullptr;
};

TEST(ToolManager, TheFrameHearsOfStartAndEndAndMayCallBack) {
  ToolManagerFixture tools(kDefinitions);
  RecordingFrame frame;
  frame.manager = tools.manager;
  const WindowHandle window = RegisterWindow(frame);
  tools.manager->InitTools("/app", "/data", window);
  EXPECT_TRUE(tools.Run("plain", "\"/p/a.c\""));
  EXPECT_EQ(frame.lines,
            "ToolStarted <Tool Name=\"plain\" Files=\"&quot;/p/a.c&quot;\" Output=\"\" "
            "Command=\"p\"/> 0\n"
            "ToolEnded " +
                tools.Messages() + " 1\n");
  UnregisterWindow(window);
}

}  // namespace
}  // namespace tarn::tools
