#include <gtest/gtest.h>

#include "components/tools/MessageLog.h"
#include "platform/text/Text.h"
#include "tests/components/tools/FakeLauncher.h"
#include "xml/XmlNode.h"

namespace tarn::tools {
namespace {

using testing::PlayedProgram;
using testing::StartedLines;
using testing::ToolManagerFixture;

constexpr const char* kDefinitions =
    R"(<T><Tool Name="cc" Messages="gcc" Output="o/a.o" Rules="$(OutputBase).d" Hint="Get it.">)"
    R"(<Step Program="avr-gcc"/></Tool>)"
    R"(<Tool Name="link" Messages="gnu-ld gcc" Output="o/a.elf"><Step Program="ld"/>)"
    R"(<Step Program="none-size" Optional="Yes" Capture="Size"/><Depend File="x.ld"/>)"
    R"(<Size Format="sections"><Sum Label="flash" Of=".text"/></Size></Tool>)"
    R"(<Tool Name="plain"><Step Program="p"/></Tool></T>)";

// "kind text" per message of a message file, one line each.
std::string Summary(const std::string& file) {
  CXmlNode root;
  root.Load(file, g_xmlParseInfo);
  std::string lines;
  for (const CXmlNode* message : root.GetChildren()) {
    lines += TextOf(message->GetAttrValue("Icon")) + ' ' +
             TextOf(message->GetAttrValue("Description")) + '\n';
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
  EXPECT_EQ(tools.manager->TakeBuildInformation(),
            "<I><F Header=\"/p/o/a.o\" Infos=\"\" Date=\"1000\"><D Header=\"/p/b.h\"/><D "
            "Header=\"/i/c.h\"/></F></I>");
  EXPECT_EQ(tools.manager->TakeBuildInformation(), "");
}

TEST(ToolManager, AToolThatLeavesNoWholeListOfDependenciesHasFailed) {
  const char* const rows[][2] = {
      {nullptr, "can't be read: "},  // that of an earlier run must not do
      {"", "is empty"},
      {"a.o: /p/a.c b", "ends in the middle of a line"},
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
  tools.launcher.Queue({{}, {}, tools.Makes("/p/o/a.elf")});
  tools.launcher.Queue({{{false, ".text 12 0\n"}, {true, "ld: cannot find size"}}, {3, false}, {}});
  EXPECT_TRUE(tools.Run("link", "\"/p/o/a.o\""));
  EXPECT_EQ(Summary(tools.Messages()),
            "0 ld\n0 none-size\n0 ld: cannot find size\n0 none-size ended with exit code 3\n");
  tools.launcher.Queue({{}, {}, tools.Makes("/p/o/a.elf")});
  tools.launcher.Queue(kMissing);
  EXPECT_TRUE(tools.Run("link", "\"/p/o/a.o\""));
  EXPECT_EQ(Summary(tools.Messages()), "0 ld\n0 none-size\n0 none-size was not found\n");
  EXPECT_EQ(tools.manager->TakeBuildInformation(),
            R"(<I><F Header="/p/o/a.elf" Infos="flash 12 B" Date="1000"><D Header="/p/x.ld"/>)"
            R"(</F><F Header="/p/o/a.elf" Infos="" Date="1000"><D Header="/p/x.ld"/></F></I>)");
}

TEST(ToolManager, EveryFailureIsAnErrorInTheMessagesAndLeavesNoRecord) {
  const char* const bad = "a.c:1:2: error: bad\n";
  const struct {
    const char* tool;
    PlayedProgram program;
    const char* expected;
  } rows[] = {
      {"cc", Ends(1, bad), "0 avr-gcc\n2 a.c:1:2: error: bad\n"},
      {"cc", Ends(2, "hm\n"), "0 avr-gcc\n0 hm\n2 avr-gcc ended with exit code 2\n"},
      {"cc",
       {{{true, bad}}, {128 + 11, true}, {}},
       "0 avr-gcc\n2 a.c:1:2: error: bad\n2 avr-gcc was ended by signal 11\n"},
      {"cc", kMissing, "0 avr-gcc\n2 avr-gcc was not found. Get it.\n"},
      {"cc", Ends(0), "0 avr-gcc\n2 cc ended without an error, but left no file /p/o/a.o\n"},
      {"link", Ends(1), "0 ld\n2 ld ended with exit code 1\n"},
      {"nothing", {}, "2 there is no tool with the name nothing\n"},
      {"/x/none", {}, "2 there is no tool with the name /x/none\n"},
  };
  for (const auto& row : rows) {
    ToolManagerFixture tools(kDefinitions);
    tools.launcher.Queue(row.program);
    EXPECT_FALSE(tools.Run(row.tool, "\"/p/a.c\""));
    EXPECT_EQ(Summary(tools.Messages()), row.expected);
    EXPECT_EQ(tools.manager->TakeBuildInformation(), "") << row.expected;
  }
}

TEST(ToolManager, AFolderThatCannotBeMadeIsToldBeforeAnythingRuns) {
  ToolManagerFixture tools(kDefinitions);
  tools.disk.AddFile("/p/o", "a file in the way");
  EXPECT_FALSE(tools.Run("cc", "\"/p/a.c\""));
  EXPECT_EQ(StartedLines(tools.launcher), "");
  EXPECT_NE(tools.Messages().find("the folder /p/o can't be made"), std::string::npos);
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
  // As long as before, and in the same second.
  tools.disk.AddFile("/app/config/tools/test.tools",
                     R"(<T><Tool Name="a"><Step Program="new"/></Tool></T>)");
  tools.disk.AddFile("/app/config/tools/more.tools",
                     R"(<T><Tool Name="b"><Step Program="b"/></Tool></T>)");
  EXPECT_EQ(tools.manager->RefreshTools(), 1);
  EXPECT_EQ(tools.manager->RefreshTools(), 0);
  EXPECT_TRUE(tools.Run("a", "") && tools.Run("b", ""));
  EXPECT_EQ(StartedLines(tools.launcher), "new\nb\n");
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
  EXPECT_TRUE(Summary(tools.Messages()).ends_with("0 x\n0 10004 more lines\n"));
}

TEST(ToolManager, AnErrorBehindEndlessTalkIsStillTold) {
  ToolManagerFixture tools(kDefinitions);
  PlayedProgram program;
  std::string lines;
  for (std::size_t i = 0; i < MessageLog::kMaxMessages; ++i) lines += "x\n";
  for (std::size_t i = 0; i < MessageLog::kMaxLateErrors; ++i) lines += "a.c:1:2: error: bad\nx\n";
  program.output.emplace_back(false, lines + "a.c:1:2: error: one more\n");
  program.exit.code = 1;
  tools.launcher.Queue(program);
  EXPECT_FALSE(tools.Run("link", ""));
  const std::string summary = Summary(tools.Messages());
  const std::string end = "\n0 x\n2 a.c:1:2: error: bad\n2 a.c:1:2: error: bad\n";
  EXPECT_NE(summary.find(end), std::string::npos);
  EXPECT_TRUE(summary.ends_with("error: bad\n0 1002 more lines\n"));
}

TEST(ToolManager, AToolWhoseConditionsLeaveNoStepReadsNoFolderOfOne) {
  ToolManagerFixture tools(
      "<T><Tool Name=\"none\" Output=\"o/a.o\" Rules=\"o/a.d\"><Step Program=\"p\" "
      "If=\"A.B\"/></Tool></T>");
  tools.disk.AddFile("/p/o/a.o", "x");
  tools.disk.AddFile("/p/o/a.d", "a.o: b.h\n");
  tools.disk.FailOn("remove", "/p/o/a.d", ErrorCode::ReadOnly);
  EXPECT_TRUE(tools.Run("none", ""));
  EXPECT_EQ(tools.manager->TakeBuildInformation(),
            "<I><F Header=\"/p/o/a.o\" Infos=\"\" Date=\"1000\"><D Header=\"/p/b.h\"/></F></I>");
}

class RecordingFrame : public WindowTarget {
 public:
  std::intptr_t OnWindowMessage(std::uint32_t message, std::intptr_t wParam,
                                std::intptr_t lParam) override {
    lines += std::to_string(message) + ' ' + reinterpret_cast<const char*>(wParam) + ' ' +
             std::to_string(lParam) + '\n';
    // A handler may call back; a lock held across the message would hang here.
    if (manager != nullptr) lines += manager->TakeBuildInformation();
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
  EXPECT_EQ(
      frame.lines,
      "36609 <Tool Name=\"plain\" Files=\"&quot;/p/a.c&quot;\" Output=\"\" Command=\"p\"/> 0\n"
      "36610 " +
          tools.Messages() + " 1\n");
  UnregisterWindow(window);
}

}  // namespace
}  // namespace tarn::tools
