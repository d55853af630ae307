// Parts of a project on their own, without the model that connects them.

#include <gtest/gtest.h>

#include "project/ProjectFixture.h"
#include "xml/XmlNode.h"

namespace tarn::test {
namespace {

// A disk, the services, and a tree of one application with a group of two files.
struct Parts {
  Parts() {
    for (const char* name : {"Project", "Application", "Group", "C"}) {
      CXmlNode type;
      type.SetName(name);
      if (type.NameView() == "Project") type.AddAttr("Project", "Yes");
      if (type.NameView() == "Application") type.AddAttr("Application", "Yes");
      services.types.Add(type);
    }
    state.projectPath = "/p/demo.tprj";
    state.projectFolder = "/p";
    state.projectRoot->Load(
        "<Project Path='/p/demo.tprj'><Application Header='app' Path='/p/sub/app.tapp'>"
        "<Group Header='g'><C Header='a.c' Path='a.c'/><C Header='b.c' Path='b.c'/></Group>"
        "</Application></Project>",
        g_xmlParseInfo);
  }
  CXmlNode& Node(const char* header) {
    return *state.projectRoot->FindDescendantByAttr("Header", header);
  }

  tarn::testing::MemoryFileSystem disk;
  CBuildOutput output{disk};
  ProjectServices services{disk};
  ProjectState state{services};
  ProjectPaths paths{services, state};
};

TEST(Parts, TheStateDropsPointersIntoAFreedSubtree) {
  Parts parts;
  ProjectState& state = parts.state;
  CXmlNode& application = parts.Node("app");
  state.activeApplication = &application;
  state.currentNode = &parts.Node("a.c");
  const std::uint64_t epoch = state.treeGeneration;
  state.FreeSubtree(parts.Node("g"), &parts.Node("b.c"));
  EXPECT_EQ(state.currentNode, &parts.Node("a.c"));
  state.FreeSubtree(application, &parts.Node("g"));
  EXPECT_EQ(state.GetCurrentNode(), &application);
  EXPECT_NE(state.treeGeneration, epoch);
  state.RemoveAllChildren(*state.projectRoot);
  EXPECT_EQ(state.GetCurrentNode(), state.projectRoot.get());
}

TEST(Parts, PathsAreRelativeToTheFolderOfTheirApplication) {
  Parts parts;
  EXPECT_EQ(parts.paths.PathBaseOf(parts.Node("a.c")), "/p/sub");
  EXPECT_EQ(parts.paths.PathBaseBelow(parts.Node("app")), "/p/sub");
  EXPECT_EQ(parts.paths.PathBaseBelow(*parts.state.projectRoot), "/p");
  DerivedData derived(parts.state, parts.paths, parts.services.types);
  parts.Node("a.c").SetAttrValue("Path", "/p/sub/src/a.c");
  derived.StripForSave(*parts.state.projectRoot, true);
  EXPECT_STREQ(parts.Node("a.c").GetAttrValue("Path"), ".\\src\\a.c");
}

TEST(Parts, ThePlaceholderProjectKeepsTheDamageOfTheOneThatFailed) {
  Parts parts;
  parts.services.output = &parts.output;
  FileProtection protection(parts.services, parts.state, parts.paths);
  parts.state.isDefaultProject = 0;
  protection.BeginOpen(true);
  protection.SetDamageOf("/p/demo.tprj", {{"/p/demo.tprj", 1, "lost"}});
  protection.KeepFailedDamage();
  parts.state.isDefaultProject = 1;
  protection.BeginOpen(true);
  protection.SetDamageOf("/d/default.tprj", {{"/d/default.tprj", 1, "lost"}});
  EXPECT_TRUE(protection.GetDamage().empty());
  EXPECT_EQ(protection.GetFailedDamage().size(), 1u);
  parts.state.isDefaultProject = 0;
  protection.BeginOpen(true);
  EXPECT_TRUE(protection.GetFailedDamage().empty());
}

TEST(Parts, ReportsOfToolsReachTheirNodesWithoutABuilder) {
  Parts parts;
  TypesByExtension extensions(parts.services);
  BuildInformation information(parts.services, parts.state, parts.paths, extensions);
  constexpr const char* kReport = "<I><F Header='/p/a.o' Infos='made' Date='7'/></I>";
  EXPECT_EQ(information.SetBuildInfo("", kReport), 0);  // no application is active
  parts.state.activeApplication = &parts.Node("app");
  parts.Node("a.c").SetAttrValue("OutputFile", "/p/a.o");
  EXPECT_EQ(information.SetBuildInfo("", kReport), 1);
  EXPECT_STREQ(parts.Node("a.c").GetAttrValue("LastBuilt"), "7");
  EXPECT_EQ(parts.Node("b.c").GetAttrValue("LastBuilt"), nullptr);
}

TEST(Parts, AProjectWithoutABuilderIsEditedAndSaved) {
  ProjectFixture world;
  world.builder.reset();
  world.AddDemo("<C Header=\"a.c\" Path=\".\\a.c\" /><C Header=\"b.c\" Path=\".\\b.c\" />");
  ASSERT_EQ(world.OpenDemo(), 1);
  world.model->PublishAll();
  EXPECT_EQ(world.model->Editor().RemoveItem("a.c"), 1);
  EXPECT_EQ(world.model->SaveProject(), 1);
  EXPECT_EQ(world.FileText("/p/demo.tapp").find("a.c"), std::string::npos);
  EXPECT_EQ(world.model->CloseProject(), 1);
}

}  // namespace
}  // namespace tarn::test
