#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/text/Text.h"
#include "project/ProjectFixture.h"
#include "xml/XmlNode.h"

namespace tarn::test {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;

struct Content {
  const char* name;
  const char* text;  // content of the application
};

// Everything that a file may contain and that Tarn would keep.
constexpr Content kContents[] = {
    {"nothing", ""},
    {"groups in groups", R"(
	<Group Header="a" sate="0" >
		<Group Header="b" LoadExclude="Yes" >
			<C Header="x.c" Path=".\x.c" />
		</Group>
	</Group>)"},
    {"options and configurations", R"(
	<Options>
		<Opt Header="Standard" >
			<Set Header="C" >
				<Sec Header="Build" >
					<Prop Header="Tool" Removable="Yes" Value="cc" />
				</Sec>
			</Set>
		</Opt>
	</Options>
	<Configs>
		<Config Header="Debug" />
	</Configs>)"},
    {"an application inside a group, which stays in its file", R"(
	<Group Header="boot" >
		<Application Header="inner" Extern=".\inner.tapp" Path=".\inner.tapp" >
			<C Header="y.c" Path=".\y.c" />
		</Application>
	</Group>)"},
    {"names and attributes that nobody knows, and a remark", R"(
	<!-- by hand -->
	<Vendor Header="v" Color="red" >
		<Deep a="1" A="2" />
		<Text>words</Text>
	</Vendor>)"},
    {"all bytes of a value",
     "\n\t<C Header=\"a &quot;b&quot; &slash; c\" Define=\"<&>'&amp;\xE9\xA7\xC3\xA7\" "
     "Path=\"D:\\lib\\x.c\" Dir=\"c:\\x\\\\\" />"},
};

TEST(ProjectFiles, ASaveOfWhatWasNotChangedLosesAndAddsNothing) {
  for (const Content& row : kContents) {
    ProjectFixture world;
    world.AddDemo(std::string(row.text) + "\n");
    const std::string before = world.FileText("/p/demo.tapp");
    ASSERT_EQ(world.OpenDemo(), 1) << row.name;
    world.Touch();
    ASSERT_EQ(world.model->SaveProject(), 1) << row.name;
    EXPECT_EQ(world.FileText("/p/demo.tapp"), before) << row.name;
    EXPECT_THAT(world.disk.AllFiles(), ElementsAre("/p/demo.tapp", "/p/demo.tprj", "/tmp/log.xml"))
        << row.name;

    // Neither publishing nor another save changes the content.
    world.model->PublishAll();
    world.Touch();
    world.disk.TakeOperations();
    ASSERT_EQ(world.model->SaveProject(), 1) << row.name;
    EXPECT_EQ(world.FileText("/p/demo.tapp"), before) << row.name;
    EXPECT_THAT(world.disk.Operations("write"), Each("write /tmp/log.xml")) << row.name;
  }
}

// Byte for byte, including line endings, tabs and the space after each attribute.
TEST(ProjectFiles, ASavedProjectHasTheBytesThatEveryReaderExpects) {
  ProjectFixture world;
  world.disk.AddFile("/p/demo.tprj",
                     "<Project Header='demo' Project='Yes'><Application Header='demo' "
                     "Extern='app/demo.tapp' Path='app/demo.tapp' sate='32'/></Project>");
  world.disk.AddFile("/p/app/demo.tapp",
                     "<Application Header='demo' Extern='app/demo.tapp' Path='app/demo.tapp'>"
                     "<Group Header='Sources'><C Header='m.c' Path='../src/m.c'/></Group>"
                     "</Application>");
  world.AddFile("/p/src/m.c", "");
  auto& defaults = world.components.Properties().defaults;
  defaults["C.Build.OutputFile"] = "out/m.o";
  defaults["C.Build.Exclude"] = "No";
  defaults["C.Load.LoadExclude"] = "Yes";
  ASSERT_EQ(world.OpenDemo(), 1);
  world.model->PublishAll();
  world.components.Properties().newConfigName = "Debug|x";
  ASSERT_EQ(world.model->Options().AddConfiguration(), 1);
  ASSERT_EQ(world.model->SaveProject(), 1);
  EXPECT_EQ(world.disk.BytesOf("/p/demo.tprj"),
            "\r\n<Project Header=\"demo\" Project=\"Yes\" Path=\".\\demo.tprj\" "
            "ActiveApp=\"demo\" >"
            "\r\n\t<Application Header=\"demo\" Extern=\".\\app\\demo.tapp\" "
            "Path=\".\\app\\demo.tapp\" sate=\"32\" />"
            "\r\n</Project>");
  EXPECT_EQ(world.disk.BytesOf("/p/app/demo.tapp"),
            "\r\n<Application Header=\"demo\" Extern=\".\\app\\demo.tapp\" "
            "Path=\".\\app\\demo.tapp\" >"
            "\r\n\t<Group Header=\"Sources\" >"
            "\r\n\t\t<C Header=\"m.c\" Path=\"..\\src\\m.c\" />"
            "\r\n\t</Group>"
            "\r\n\t<Configs>"
            "\r\n\t\t<Config Header=\"Debug&slash;x\" />"
            "\r\n\t</Configs>"
            "\r\n</Application>");
  // A file that was just saved is read again but not rewritten.
  world.disk.TakeOperations();
  ASSERT_EQ(world.model->SaveProject(), 1);
  EXPECT_THAT(world.disk.Operations("read"),
              ElementsAre("read /p/demo.tprj", "read /p/app/demo.tapp"));
  EXPECT_THAT(world.disk.Operations("write"), Each("write /tmp/log.xml"));
}

// Names with different case, backslashes and drives, as written on a case-insensitive file system.
TEST(ProjectFiles, AProjectFromElsewhereOpensAndKeepsItsNames) {
  ProjectFixture world;
  const std::string project =
      "\n<Project Header=\"demo\" Path=\".\\demo.tprj\" Project=\"Yes\" ActiveApp=\"Demo\" "
      "OutputFile=\"\" >\n\t<Application Header=\"Demo\" Extern=\".\\App\\DEMO.tapp\" "
      "Path=\".\\App\\DEMO.tapp\" OutputFile=\"\" />\n</Project>";
  const std::string application =
      "\n<Application Header=\"Demo\" Extern=\".\\App\\DEMO.tapp\" Path=\".\\App\\DEMO.tapp\" "
      "OutputFile=\"\" >\n\t<C Header=\"Main.C\" Path=\".\\Src\\MAIN.C\" Marker=\"-1\" "
      "OutputFile=\"\" />\n\t<C Header=\"x.c\" Path=\"C:\\Lib\\x.c\" Marker=\"-1\" "
      "OutputFile=\"D:\\out\\x.o\" />\n\t<C Header=\"y.c\" Path=\"..\\Common\\y.c\" "
      "Marker=\"-1\" OutputFile=\"\" />\n</Application>";
  world.AddFile("/p/Demo.TPRJ", project);
  world.AddFile("/p/app/demo.tapp", application);
  world.AddFile("/p/app/src/main.c", "");
  const auto files = world.disk.AllFiles();
  ASSERT_EQ(world.OpenDemo(), 1);
  world.model->PublishAll();
  EXPECT_STREQ(world.Node("Main.C")->GetAttrValue("Path"), "/p/App/Src/MAIN.C");
  EXPECT_TRUE(world.disk.Exists(world.Node("Main.C")->GetAttrValue("Path")));
  EXPECT_STREQ(world.Node("x.c")->GetAttrValue("Path"), "C:\\Lib\\x.c");
  EXPECT_STREQ(world.Node("y.c")->GetAttrValue("Path"), "/p/Common/y.c");
  world.Node("x.c")->SetAttrValue("OutputFile", "D:\\out\\x.o");
  world.Touch();
  ASSERT_EQ(world.model->SaveProject(), 1);
  EXPECT_EQ(world.FileText("/p/Demo.TPRJ"), project);
  EXPECT_EQ(world.FileText("/p/app/demo.tapp"), application);
  world.disk.Erase("/tmp/log.xml");
  EXPECT_EQ(world.disk.AllFiles(), files);
  EXPECT_TRUE(world.model->Paths().IsOpenAs("/P/DEMO.tprj"));
}

}  // namespace
}  // namespace tarn::test
