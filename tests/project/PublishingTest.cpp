// Calls of the property manager by publishing, and the resulting attributes in the tree.

#include <tarn/commands.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/text/Text.h"
#include "project/ProjectFixture.h"
#include "project/RecordingWindows.h"
#include "project/TreeSearch.h"

namespace tarn::test {
namespace {

using ::testing::ElementsAre;
using Lines = std::vector<std::string>;

std::string Options(const std::string& config, const std::string& set, const std::string& section,
                    const std::string& property, const std::string& value) {
  return "<Options><Opt Header=\"" + config + "\" ><Set Header=\"" + set + "\" ><Sec Header=\"" +
         section + "\" ><Prop Header=\"" + property + "\" Removable=\"Yes\" Value=\"" + value +
         "\" /></Sec></Set></Opt></Options>";
}

// Returns the calls, with the texts of values and options cut after their first word.
Lines ShortCalls(CallRecorder& recorder) {
  Lines calls;
  for (const std::string& call : recorder.TakeCalls()) {
    const std::size_t text = call.find('<');
    std::string line(Trim(call.substr(0, text)));
    if (text != call.npos) line += " " + call.substr(text, call.find_first_of(" >", text) - text);
    calls.push_back(line);
  }
  return calls;
}

TEST(Publishing, ANodeIsLoadedInTheOrderThatThePropertyManagerReliesOn) {
  ProjectFixture world;
  world.AddDemo(Options("Standard", "C", "Build", "Tool", "app") +
                "<Configs><Config Header=\"Debug\" /></Configs><Group Header=\"g\" >" +
                Options("Standard", "C", "Build", "Tool", "group") +
                "<C Header=\"m.c\" Path=\".\\m.c\" /></Group>");
  world.AddFile("/p/m.c", "");
  ASSERT_EQ(world.OpenDemo(), 1);
  FakePropertyManager& properties = world.components.Properties();
  world.components.Tools().tools[".c"] = "<Tools><T Header=\"lint\" /><T Header=\"fmt\" /></Tools>";
  properties.propState = "open";
  properties.TakeCalls();
  world.host.TakeLines();
  world.model->SetCurrentNode(world.Node("m.c"));
  EXPECT_THAT(
      ShortCalls(properties),
      ElementsAre(
          "GetPropState", "BeginUpdate", "ClearValues", "ReadValuesFromText <ProjectsConfigs",
          "SetCurrentConfig Standard",
          // The application was published when the project was opened.
          "ReadValuesFromText <Values", "EndParentLevel", "BeginChildLevel",
          "ReadDefsFromFile Group /app/config/projectmanager.config",
          "SetPropertyValue Group General Header g", "GetPropertyValue Group General Path",
          "ApplyOptions Standard <Options", "ApplyOptions Standard <Options",
          "GetValuesAsText \"\" \"\" \"\"", "GetPropertyValue Group Build TranslateTool",
          "GetPropertyValue Group Build Exclude", "GetPropertyValue Group Build LinkExclude",
          "GetPropertyValue Group Build OutputFile", "GetPropertyValue Group Build ListingFile",
          "GetPropertyValue Group Load DBIFile", "GetPropertyValue Group Load LoadExclude",
          "EndParentLevel", "BeginChildLevel",
          "ReadDefsFromFile C /app/config/projectmanager.config",
          "SetPropertyValue C General Header m.c", "SetPropertyValue C General Path .\\m.c",
          "GetPropertyValue C General Path", "SetPropertyValue C General Path /p/m.c",
          "SetPropertyValue C General NodePath /p/m.c", "SetPropertyValue C General NodeDir /p/",
          "SetPropertyValue C General NodeFilename m.c", "SetPropertyValue C General NodeName m",
          "SetPropertyValue C General NodeExt .c", "ApplyOptions Standard <Options",
          "ApplyOptions Standard <Options", "GetValuesAsText \"\" \"\" \"\"",
          "GetPropertyValue C Build TranslateTool", "GetPropertyValue C Build Exclude",
          "GetPropertyValue C Build LinkExclude", "GetPropertyValue C Build OutputFile",
          "GetPropertyValue C Build ListingFile", "GetPropertyValue C Load DBIFile",
          "GetPropertyValue C Load LoadExclude", "EndUpdate"));
  EXPECT_EQ(properties.GetPropertyValue("C", "Build", "Tool"), "group");
  EXPECT_THAT(world.host.TakeLines(),
              ElementsAre("PaneCaption m.c Local Settings 4005", "CurrentNodeChanged /p/m.c 0"));
  EXPECT_EQ(world.model->Publishing().GetDynamicCommands(TARN_CMD_LIST_TOOLS),
            "\r\n<Tools>\r\n\t<T Header=\"lint\" Id=\"33059\" />\r\n\t<T Header=\"fmt\" "
            "Id=\"33060\" />\r\n</Tools>");

  // Loading the current node costs nothing; a published one costs one read of its text.
  properties.TakeCalls();
  world.model->Publishing().LoadNodeOptions(world.Node("m.c"), false);
  EXPECT_THAT(ShortCalls(properties), ElementsAre());
  world.model->SetCurrentNode(world.Node("g"));
  EXPECT_THAT(ShortCalls(properties),
              ElementsAre("GetPropState", "BeginUpdate", "ClearValues",
                          "ReadValuesFromText <ProjectsConfigs", "SetCurrentConfig Standard",
                          "ReadValuesFromText <Values", "EndUpdate"));
  world.model->SetCurrentNode(world.Node("m.c"));
  EXPECT_THAT(properties.CallsOf("SetPropState"), ElementsAre("SetPropState open"));
}

// Only the byte that replaces a bracket in a cached text is replaced back.
TEST(Publishing, ABracketComesBackFromAKeptText) {
  ProjectFixture world;
  world.AddDemo("");
  ASSERT_EQ(world.OpenDemo(), 1);
  FindStoredValues(*world.Application())->SetValue("a[1\xA7\xC3");
  world.components.Properties().TakeCalls();
  world.model->Publishing().PublishNode(world.Application(), false);
  EXPECT_THAT(world.components.Properties().TakeCalls(),
              ElementsAre("ReadValuesFromText a[1]\xC3"));
  EXPECT_STREQ(FindStoredValues(*world.Application())->ValueText(), "a[1\xA7\xC3");
}

struct PathRow {
  const char* name;
  const char* path;  // of a node in the application /p/app/demo.tapp
  const char* folders;
  const char* existing;
  const char* published;
  const char* saved;
};

constexpr PathRow kPathRows[] = {
    {"beside the application", ".\\m.c", "", "/p/app/m.c", "/p/app/m.c", ".\\m.c"},
    {"another notation", "sub/../m.c", "", "/p/app/m.c", "/p/app/m.c", ".\\m.c"},
    {"absolute", "/p/m.c", "", "/p/m.c", "/p/m.c", "..\\m.c"},
    {"on a drive", "D:\\x\\m.c", "", "", "D:\\x\\m.c", "D:\\x\\m.c"},
    {"nowhere, and no folders", "src\\m.c", "", "", "/p/app/src/m.c", ".\\src\\m.c"},
    {"in the second folder", "src\\m.c", "one;..\\two;three", "/two/m.c", "/two/m.c",
     "..\\..\\two\\m.c"},
    {"the first folder wins", "m.c", "one;two", "/p/two/m.c /p/one/m.c", "/p/one/m.c",
     "..\\one\\m.c"},
    {"the file's own place wins", "m.c", "one", "/p/app/m.c /p/one/m.c", "/p/app/m.c", ".\\m.c"},
    {"in none of the folders", "src\\m.c", "one;two", "", "/p/two/m.c", "..\\two\\m.c"},
};

TEST(Publishing, AMissingFileIsLookedForInTheFoldersOfTheOptions) {
  for (const PathRow& row : kPathRows) {
    ProjectFixture world;
    world.AddFile("/p/demo.tprj",
                  "<Project><Application Header=\"demo\" "
                  "Extern=\".\\app\\demo.tapp\" /></Project>");
    world.AddFile("/p/app/demo.tapp",
                  "<Application Header=\"demo\" Extern=\".\\app\\demo.tapp\" "
                  "Path=\".\\app\\demo.tapp\" ><C Header=\"m\" Path=\"" +
                      std::string(row.path) + "\" /></Application>");
    for (const std::string_view file : Split(row.existing, ' ')) {
      if (!file.empty()) world.AddFile(std::string(file), "");
    }
    world.components.Properties().defaults[".Directories.AddSrcPaths"] = row.folders;
    ASSERT_EQ(world.OpenDemo(), 1) << row.name;
    world.model->PublishAll();
    EXPECT_STREQ(world.Node("m")->GetAttrValue("Path"), row.published) << row.name;
    world.Touch();
    world.model->CloseProject();
    const std::string saved = world.FileText("/p/app/demo.tapp");
    EXPECT_NE(saved.find("Path=\"" + std::string(row.saved) + "\" "), saved.npos)
        << row.name << saved;
  }
}

TEST(Publishing, AttributesAreWrittenAlsoWhenEmptyButForTwo) {
  ProjectFixture world;
  world.AddDemo(
      "<C Header=\"m\" TranslateTool=\"old\" Exclude=\"old\" DBIFile=\"old\" "
      "LoadExclude=\"old\" ListingFile=\"old\" />");
  ASSERT_EQ(world.OpenDemo(), 1);
  const auto show = [&] {
    return ProjectFixture::Show(
        *world.Node("m"), {"TranslateTool", "Exclude", "LinkExclude", "OutputFile", "ListingFile",
                           "DBIFile", "LoadExclude", "Marker"});
  };
  world.model->PublishAll();
  EXPECT_EQ(show(),
            "C(TranslateTool= Exclude= LinkExclude= OutputFile= ListingFile= DBIFile=old "
            "LoadExclude=old Marker=-1)");
  world.components.Properties().defaults = {
      {"C.Build.TranslateTool", "cc"},   {"C.Build.Exclude", "Yes"},
      {"C.Build.LinkExclude", "No"},     {"C.Build.OutputFile", "m.o"},
      {"C.Build.ListingFile", "/m.lst"}, {"C.Load.DBIFile", "m.dbi"},
      {"C.Load.LoadExclude", "Yes"}};
  world.model->Derived().ResetNodeCache(*world.Node("m"), true);
  world.model->PublishAll();
  EXPECT_EQ(show(),
            "C(TranslateTool=cc Exclude=Yes LinkExclude=No OutputFile=/p/m.o ListingFile=/m.lst "
            "DBIFile=m.dbi LoadExclude=Yes Marker=-1)");
}

// Tools report paths with the separators of their root; a record under another spelling is lost.
TEST(Publishing, OutputPathsHaveTheSeparatorsOfTheirDrive) {
  ProjectFixture world;
  world.AddDemo("<C Header=\"m\" />");
  world.disk.MapDrive('c', "/p");
  world.components.Properties().defaults = {{"C.Build.OutputFile", "C:\\p\\demo/out/./m.o"},
                                            {"C.Build.ListingFile", "/p//out\\m.lst"}};
  ASSERT_EQ(world.OpenDemo(), 1);
  world.model->PublishAll();
  EXPECT_EQ(ProjectFixture::Show(*world.Node("m"), {"OutputFile", "ListingFile"}),
            "C(OutputFile=C:\\p\\demo\\out\\m.o ListingFile=/p/out/m.lst)");
}

// 23 nodes below the application, 25 in total; the application is published by the open.
TEST(Publishing, TicksPublishTenNodesAndGiveTheCurrentNodeBack) {
  ProjectFixture world;
  std::string nodes;
  for (int i = 0; i < 23; ++i) nodes += "<C Header=\"n" + ToDecimal(i) + "\" />";
  world.AddDemo(nodes);
  RecordingProjectWindow window;
  world.model->Services().views.project = &window;
  ASSERT_EQ(world.OpenDemo(), 1);
  EXPECT_THAT(window.TakeCalls(),
              ElementsAre("SetProjectRoot", "RepaintWindow", "StartStepTimer", "RepaintTree",
                          "SelectTreeNode demo", "BeginTreeUpdate", "EndTreeUpdate"));
  world.model->SetCurrentNode(world.Node("n22"));
  window.TakeCalls();
  FakePropertyManager& properties = world.components.Properties();
  Lines ticks;
  for (int i = 0; i < 4; ++i) {
    properties.TakeCalls();
    world.host.TakeLines();
    const std::int32_t remains = world.model->Publishing().PublishTick();
    Lines defined;
    for (const std::string& call : properties.CallsOf("SetPropertyValue")) {
      const std::size_t label = call.find("General Header ");
      if (label != call.npos) defined.push_back(call.substr(label + 15));
    }
    MessageLoop::ForCurrentThread()->PumpUntil([] { return false; }, std::chrono::milliseconds(0));
    std::string heard;
    for (const std::string& line : world.host.TakeLines()) heard += ", " + line;
    ticks.push_back(ToDecimal(remains) + " " + ToDecimal(static_cast<int>(defined.size())) + " " +
                    (defined.empty() ? "" : defined.front() + ".." + defined.back()) + heard);
    EXPECT_EQ(properties.holds, 0);
    EXPECT_EQ(world.model->GetCurrentNode(), world.Node("n22"));
    EXPECT_EQ(properties.GetPropertyValue("C", "General", "Header"), "n22");
  }
  const std::string shown = ", PaneCaption n22 Local Settings 4005, CurrentNodeChanged \"\" 0";
  EXPECT_THAT(ticks, ElementsAre("1 10 Tarn Project 'demo'..n13" + shown, "1 10 n12..n3" + shown,
                                 "0 3 n2..n0" + shown +
                                     ", ApplicationKnown /p/demo.tapp Standard, Command 33054 0",
                                 "0 0 , ApplicationKnown /p/demo.tapp Standard, Command 33054 0"));
  EXPECT_THAT(window.TakeCalls(), ::testing::Contains("StopStepTimer"));
}

// The root of a foreign file is not a project and has no parent to inherit from.
TEST(Publishing, ARootWithoutATypeIsPublishedOnce) {
  ProjectFixture world;
  world.AddFile("/p/demo.tprj", "<Foo Header=\"x\" ><Bar Header=\"y\" /></Foo>");
  ASSERT_EQ(world.OpenDemo(), 1);
  world.model->PublishAll();
  EXPECT_EQ(ProjectFixture::Show(world.model->GetProjectRoot(), {"Header", "Marker"}),
            "Foo(Header=x Marker=-1)[Bar(Header=y Marker=-1)]");
}

TEST(Publishing, TheDefaultProjectIsReadyWhenItsOpenEnds) {
  ProjectFixture world;
  world.AddDemo("<C Header=\"left\" /><Options />");
  RecordingProjectWindow window;
  world.model->Services().views.project = &window;
  ASSERT_EQ(world.model->OpenProject("/p/demo.tprj", 1), 1);
  EXPECT_EQ(world.host.TakeLines()[0], "PaneCaption Local Settings 4005");
  EXPECT_FALSE(world.model->Publishing().HasUnpublished());
  EXPECT_THAT(window.TakeCalls(), ::testing::Not(::testing::Contains("SetProjectRoot")));
  EXPECT_EQ(world.model->State().lastBrowseFolder, "/app/examples/");
  // The project keeps its options and no files.
  world.Touch();
  ASSERT_EQ(world.model->CloseProject(), 1);
  const std::string saved = world.FileText("/p/demo.tapp");
  EXPECT_EQ(saved.find("left"), saved.npos);
  EXPECT_NE(saved.find("<Options/>"), saved.npos);
}

}  // namespace
}  // namespace tarn::test
