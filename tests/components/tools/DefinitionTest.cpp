#include <gtest/gtest.h>

#include "components/tools/ToolDefinitionReader.h"
#include "components/tools/ToolInheritance.h"
#include "components/tools/ToolSet.h"
#include "support/MemoryFileSystem.h"
#include "xml/XmlNode.h"

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
      {R"(<Tool Name="a" Base="OK b"/>)", "a: no other tool is named b, which is a Base of a"},
      {R"(<Tool Name="a" Base="a"/>)", "a: no other tool is named a, which is a Base of a"},
      {R"(<Tool Name="a" Base="b"/><Tool Name="b" Abstract="Yes" Base="A"/>)",
       "a: Base refers to itself: a -> b -> a"},
      {R"(<Tool Name="a" Base="ok"><Step Program="q" After="x"/></Tool>)",
       "a: Step: no element has the Id x"},
      {R"(<Tool Name="a" Base="ok"><Env Name="X" Remove="Yes"/></Tool>)",
       "a: Env: nothing to remove"},
      {R"(<Tool Name="a" Base="ok"><Step Id="1" Remove="1"/></Tool>)",
       "a: Step: Remove can't be 1"},
      {R"(<Tool Name="a" Abstract="Maybe"><Step Program="p"/></Tool>)",
       "a: Abstract can't be Maybe"},
      {R"(<Tool Name="a" Base="ok"><Step Program="q"><Place/></Step></Tool>)",
       "a: Place: needs an Id"},
  };
  const std::string good =
      R"(<Messages Name="fine"/>)"
      R"(<Tool Name="ok"><Step Program="p" Plain="no" Optional="YES"/></Tool>)";
  for (const auto& [tool, error] : rows) {
    EXPECT_EQ(ErrorsOf("<Tools>" + (tool + good) + "</Tools>"),
              "t.tools: " + std::string(error) + "\n1 tools");
  }
}

TEST(Definition, ADerivedToolChangesSinglePartsOfItsBases) {
  const std::string bases = R"~(
    <Tool Name="base" Abstract="Yes" Title="B" Runs="-a;-b" Output="o">
      <Env Name="E" Value="1"/>
      <Step Id="main" Program="$(Prefix)cc">
        <Arg V="-c"/><Place Id="cpu"/><Arg Id="debug" V="-g" If="Output"/>
        <Arg Id="dep" V="-X"/><Arg Id="dep" V="--dep"/><Arg V="$(Output)"/>
      </Step>
      <Size Format="sections"><Sum Label="a" Of=".text"/></Size><Line Template="x"/>
    </Tool>
    <Tool Name="cpu" Abstract="Yes" Prefix="arm-">
      <Step Id="main"><Arg V="-mcpu" Before="cpu"/><Arg V="-mthumb"/></Step>
    </Tool>)~";
  const std::pair<const char*, const char*> rows[] = {
      {R"~( Base="base cpu" Runs="$(Base);-c" Output="">)~",
       R"~(<Tool Name="t" Title="B" Runs="-a;-b;-c" Output="" ><Env Name="E" Value="1" />)~"
       R"~(<Step Program="arm-cc" ><Arg V="-c" /><Arg V="-mcpu" /><Arg V="-mthumb" />)~"
       R"~(<Arg V="-g" If="Output" /><Arg V="-X" /><Arg V="--dep" /><Arg V="$(Output)" /></Step>)~"
       R"~(<Size Format="sections" ><Sum Label="a" Of=".text" /></Size><Line Template="x" /></Tool>)~"},
      {R"~( Base="BASE"><Env Name="E" Value="2"/><Env Name="F" Value="3"/><Line Template="y"/>
            <Size><Sum Label="a" Of="$(Base) .init"/><Sum Label="b" Of=".bss"/></Size>
            <Step Program="size" After="main"/><Step Id="main" Program="gcc"><Arg Id="dep" Remove="Yes"/>
            <Arg V="-last"/><Arg Id="debug" V="-ggdb" Before="cpu"/><Arg V="-x"/></Step>)~",
       R"~(<Tool Name="t" Title="B" Runs="-a;-b" Output="o" ><Env Name="E" Value="2" />)~"
       R"~(<Step Program="gcc" ><Arg V="-c" /><Arg V="-ggdb" If="Output" /><Arg V="-x" />)~"
       R"~(<Arg V="-last" /><Arg V="$(Output)" /></Step><Step Program="size" />)~"
       R"~(<Size Format="sections" ><Sum Label="a" Of=".text .init" /><Sum Label="b" Of=".bss" /></Size>)~"
       R"~(<Line Template="y" /><Line Template="x" /><Env Name="F" Value="3" /></Tool>)~"},
  };
  for (const auto& [tool, expected] : rows) {
    CXmlNode root;
    root.Load("<T>" + bases + "<Tool Name='t'" + tool + "</Tool></T>", g_xmlParseInfo);
    ToolInheritance inheritance;
    for (const CXmlNode* each : root.GetChildren()) inheritance.Add(*each);
    std::string error;
    const auto resolved = inheritance.Resolve(*root.GetChildren().back(), error);
    EXPECT_EQ(error, "");
    EXPECT_EQ(resolved ? resolved->ToString({.newline = false}) : "", expected);
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
  disk.AddFile("/d/a.tools",
               "<T><Tool Name=\"x.c\" Extensions=\".c\" Output=\"$(Build.OutputFile)\"><Step "
               "Program=\"p\"/></Tool>"
               "<Tool Name=\"x.lint\" Extensions=\".c\"><Step Program=\"p\"/></Tool></T>");
  EXPECT_EQ(ToolSet::FromFolder(disk, "/d")->ToolsForExtension(".c"),
            "<Tools><Tool Header=\"x.c\" Title=\"\" Toolchain=\"x\"/>"
            "<Tool Header=\"x.lint\" Title=\"\"/></Tools>");
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

// Otherwise the installed tool would silently run instead of the one that the user has changed.
TEST(Definition, AFaultyToolReplacesTheOneThatItWasMeantToChange) {
  constexpr const char* kFault = "/user/u.tools: ONE: unknown attribute Oops in Tool";
  const struct {
    const char *user, *project, *found, *fault;
  } rows[] = {
      {"<Tool Name='ONE' Base='one' Oops='1'/>", "", "", kFault},
      {"<Tool Name='ONE' Base='one' Oops='1'/>", "<Tool Name='one'><Step Program='q'/></Tool>",
       "one", ""},
      {"<Tool Name='one' Base='one' Messages='none'/>", "", "",
       "/user/u.tools: one: no Messages are named none"},
  };
  for (const auto& row : rows) {
    tarn::testing::MemoryFileSystem disk;
    disk.AddFile("/c/a.tools",
                 "<T><Action Name='run'/><Tool Name='one' Action='run'>"
                 "<Step Program='p'/></Tool></T>");
    disk.AddFile("/user/u.tools", "<T>" + std::string(row.user) + "</T>");
    disk.AddFile("/project/p.tools", "<T>" + std::string(row.project) + "</T>");
    const auto set = ToolSet::FromFolder(disk, "/c", {"/user", "/project"});
    const ToolDefinition* const found = set->Find("one");
    EXPECT_EQ(found == nullptr ? "" : found->name, row.found);
    EXPECT_EQ(set->FindFault("one"), row.fault);
    EXPECT_EQ(set->FindFault("run"), row.fault);
  }
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
