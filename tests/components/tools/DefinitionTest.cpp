#include <gtest/gtest.h>

#include "components/tools/ToolDefinitionReader.h"
#include "components/tools/ToolSet.h"
#include "support/MemoryFileSystem.h"

namespace tarn::tools {
namespace {

std::string ErrorsOf(const std::string& text) {
  const ReadDefinitions read = ReadDefinitionFiles({{"t.tools", text}});
  std::string errors;
  for (const std::string& error : read.errors) errors += error + '\n';
  return errors + std::to_string(read.tools.size()) + " tools";
}

TEST(Definition, AMistakeIsNamedAndLeavesOnlyItsToolOut) {
  const std::pair<const char*, const char*> rows[] = {
      {R"(<Tool Name="t"/>)", "t: a tool has no Step"},
      {R"(<Tool><Step Program="p"/></Tool>)", ": a tool has no Name"},
      {R"(<Tool Name="t"><Step/></Tool>)", "t: a Step has no Program"},
      {R"(<Tool Name="t"><Step Program="p"><Arg Vv="x"/></Step></Tool>)",
       "t: unknown attribute Vv in Arg"},
      {R"(<Tool Name="t"><Step Program="p"><Argh/></Step></Tool>)",
       "t: unknown element Argh in Step"},
      {R"~(<Tool Name="t"><Step Program="p"><Arg V="$(Fil)"/></Step></Tool>)~",
       "t: unknown name $(Fil)"},
      {R"(<Tool Name="t" Output="$(Build.Out"><Step Program="p"/></Tool>)",
       "t: unterminated macro: $(Build.Out"},
      {R"~(<Tool Name="t" Messages="fine"><Step Program="p"/><Line Template="a{SPECMESSAGE})"/></Tool>)~",
       "t: a{SPECMESSAGE}): unmatched ()"},
      {R"(<Tool Name="t"><Step Program="p"/><Line Template="a" Kind="Note"/></Tool>)",
       "t: Kind can't be Note"},
      {R"(<Messages Name="m"><Line Template="a+{SPECMESSAGE}"/></Messages>)",
       "messages m: a+{SPECMESSAGE}: nested *?+"},
      {R"(<Messages Name="m"><Line/></Messages>)", "messages m: a Line has no Template"},
      {R"~(<Messages Name="m"><Line Template="a" With="("/></Messages>)~",
       "messages m: (: unterminated ()"},
      {R"(<Messages Name="m"><Line Template="a" Folder="x"/></Messages>)",
       "messages m: Folder can't be x"},
      {R"(<Messages Name="m"><Lime Template="a"/></Messages>)",
       "messages m: unknown element Lime in Messages"},
      {R"(<Messages><Line Template="a"/></Messages>)", "messages : the list has no Name"},
      {R"(<Tool Name="t"><Step Program="p" Response="cmd"/></Tool>)", "t: Response can't be cmd"},
      {R"(<Tool Name="t"><Step Program="p"><Arg V="x" Path="1"/></Step></Tool>)",
       "t: Path can't be 1"},
      {R"(<Tool Name="t"><Step Program="p" ResponseAbove="30k"/></Tool>)",
       "t: ResponseAbove can't be 30k"},
      {R"(<Tool Name="t"><Step Program="p" ResponseAbove="99999999999999999999"/></Tool>)",
       "t: ResponseAbove can't be 99999999999999999999"},
      {R"(<Tool Name="t" Output="o"><Step Program="p"/><Globals Format="map" File="g"/></Tool>)",
       "t: Format can't be map"},
      {R"(<Tool Name="t" Output="o"><Step Program="p"/><Globals Format="dwarf"/></Tool>)",
       "t: Globals has no File"},
      {R"(<Tool Name="t"><Step Program="p"/><Globals Format="dwarf" File="g"/></Tool>)",
       "t: Globals needs an Output"},
      {"<Tule/>", "unknown element Tule"},
      {R"(<Tool Name="a" Harmless="none"><Step Program="p"/></Tool>)",
       "a: no Harmless is named none"},
      {R"(<Harmless Name="a"><Flags For="Loader"/></Harmless>)", "harmless a: For can't be Loader"},
  };
  const std::string good =
      R"(<Messages Name="fine"/>)"
      R"(<Tool Name="ok"><Step Program="p" Plain="no" Optional="YES"/></Tool>)";
  for (const auto& [tool, error] : rows) {
    EXPECT_EQ(ErrorsOf("<Tools>" + (tool + good) + "</Tools>"),
              "t.tools: " + std::string(error) + "\n1 tools");
  }
}

// Tools that the lost part of the file might have changed must not run.
TEST(Definition, ADamagedFileLeavesAllItsToolsOutAndIsAProblem) {
  const std::pair<std::string, const char*> rows[] = {
      {"", ":1: the file ends before its first element"},
      {"<Tools><Tool Name='a'><Step Program='p'/></Tool>\n", ":2: the file ends inside <Tools>"},
      {"<Tools><Tool Name='a'><Step Program='p'/></Tool>\n=======\n</Tools>",
       ":2: a merge conflict that was not resolved"},
      {"<Tools><Tool Name='a'><Step Program='p'/></Tool></Tools>" + std::string(1, '\0'),
       ":1: a zero byte; nothing after it is read"},
  };
  for (const auto& [text, error] : rows) {
    EXPECT_EQ(ErrorsOf(text), "t.tools" + std::string(error) + "\n0 tools");
    tarn::testing::MemoryFileSystem disk;
    disk.AddFile("/c/b.tools", text);
    disk.AddFile("/c/a.tools", "<Tools><Tool Name='ok'><Step Program='p'/></Tool></Tools>");
    EXPECT_EQ(ToolSet::FromFolder(disk, "/c")->Problem(), "/c/b.tools" + std::string(error));
  }
}

TEST(Definition, MessagesThatAreNowhereAreToldOnceForAllToolsThatNameThem) {
  const std::string tools = R"(<T><Tool Name="a" Messages="gcc"><Step Program="p"/></Tool>)"
                            R"(<Tool Name="b" Messages="fine lint gcc"><Step Program="p"/></Tool>)"
                            R"(<Tool Name="c" Messages="gcc"/><Messages Name="fine"/>)"
                            R"(<Tool Name="d" Messages="fine gcc"><Step Program="p"/></Tool></T>)";
  EXPECT_EQ(
      ErrorsOf(tools),
      "t.tools: c: a tool has no Step\n"
      "no Messages are named gcc (there is no messages.tools), so tools are skipped: a, d\n"
      "no Messages are named lint (there is no messages.tools), so tools are skipped: b\n0 tools");
  const ReadDefinitions read =
      ReadDefinitionFiles({{"t.tools", tools}, {"messages.tools", "<T/>"}});
  EXPECT_EQ(read.errors.at(1), "no Messages are named gcc, so tools are skipped: a, d");
}

TEST(Definition, LaterFilesReplaceToolsAndEveryExtensionIsServed) {
  tarn::testing::MemoryFileSystem disk;
  disk.AddFile("/c/a.tools",
               "<T><Tool Name=\"one\" Title=\"First\" Extensions=\".c;h\"><Step Program=\"p\"/>"
               "<Product File=\"$(A.B)x$(C.D)\"/></Tool><Tool Name=\"two\" Extensions=\".C\"><Step "
               "Program=\"q\"/></Tool></T>");
  disk.AddFile("/c/b.tools",
               "<T><Tool Name=\"TWO\" Extensions=\".s\"><Step Program=\"r\"/>"
               "<Step Program=\"x\" Optional=\"Yes\"/></Tool></T>");
  disk.AddFile("/c/readme.txt", "<T><Tool/></T>");
  const auto set = ToolSet::FromFolder(disk, "/c");
  EXPECT_EQ(set->ToolsForExtension(".C"), "<Tools><Tool Header=\"one\" Title=\"First\"/></Tools>");
  EXPECT_EQ(set->ToolsForExtension(".s"), "<Tools><Tool Header=\"TWO\" Title=\"\"/></Tools>");
  EXPECT_EQ(set->ToolsForExtension(""), "<Tools/>");
  EXPECT_EQ(set->Errors(),
            std::vector<std::string>{"TWO: is defined twice; the later definition applies"});
  EXPECT_EQ(set->ListText(),
            "<Tools><Tool Header=\"one\" Title=\"First\"><Extension Header=\".c\"/><Extension "
            "Header=\".h\"/><Program Header=\"p\" Optional=\"No\"/><Makes Header=\"$(A.B)\"/>"
            "<Makes Header=\"$(C.D)\"/></Tool><Tool Header=\"TWO\" "
            "Title=\"\"><Extension Header=\".s\"/><Program Header=\"r\" Optional=\"No\"/><Program "
            "Header=\"x\" Optional=\"Yes\"/></Tool></Tools>");
  EXPECT_EQ(ToolSet::FromFolder(disk, "/none")->Errors().size(), 1u);
}

// Tools beyond the number of available commands could not be reached.
TEST(Definition, AtMostTwentyToolsAreListedForAnExtension) {
  tarn::testing::MemoryFileSystem disk;
  std::string text = "<T>";
  for (int i = 0; i < 25; ++i) {
    text +=
        "<Tool Name=\"t" + std::to_string(i) + "\" Extensions=\".c\"><Step Program=\"p\"/></Tool>";
  }
  disk.AddFile("/c/a.tools", text + "</T>");
  const std::string list = ToolSet::FromFolder(disk, "/c")->ToolsForExtension(".c");
  EXPECT_NE(list.find("\"t19\""), list.npos);
  EXPECT_EQ(list.find("\"t20\""), list.npos);
}

}  // namespace
}  // namespace tarn::tools
