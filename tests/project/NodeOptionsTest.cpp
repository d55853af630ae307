// Stored options, configurations, and the searches they depend on.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/text/Text.h"
#include "project/MergeOptions.h"
#include "project/ProjectFixture.h"
#include "project/RecordingWindows.h"
#include "project/TreeSearch.h"

namespace tarn::test {
namespace {

using ::testing::ElementsAre;
using Lines = std::vector<std::string>;

// Returns the XML without line endings and indentation.
std::string Flat(const CXmlNode* node) {
  CXmlDisplayOptions options = g_xmlDisplayOptions;
  options.newline = false;
  return node == nullptr ? "(none)" : node->ToString(options);
}

std::unique_ptr<CXmlNode> Parse(const std::string& text) {
  auto node = std::make_unique<CXmlNode>();
  node->Load(text, g_xmlParseInfo);
  return node;
}

struct StoreRow {
  const char* key;
  const char* config;  // active configuration
  const char* asked;   // query to the property manager
};

constexpr StoreRow kStoreRows[] = {
    {"C.Build.Tool", "Standard", "Standard C Build Tool"},
    {"C.Build.Tool", "Debug", "Debug C Build Tool"},
    {"Build.Tool", "Debug", "Debug C Build Tool"},
    {".Build.Tool", "Debug", "Debug C Build Tool"},
    {"Other.Build.Tool", "Debug", "Debug Other Build Tool"},
    {"C.General.Path", "Debug", "Standard C General Path"},
    {"General.Path", "Debug", "Standard C General Path"},
    {"Other.General.Type", "Debug", "Standard Other General Type"},
    {"Tool", "Debug", "Debug C \"\" Tool"},
    {"a.b.c.d", "Debug", "Debug C \"\" a"},
    {"", "Debug", "Debug C Load DBIFile"},  // the last change in the window
};

TEST(NodeOptions, AChangedValueIsStoredUnderTheRightConfigurationAndSet) {
  for (const StoreRow& row : kStoreRows) {
    ProjectFixture world;
    world.AddDemo("<C Header=\"m\" />");
    ASSERT_EQ(world.OpenDemo(), 1);
    world.Application()->SetAttrValue("Config", row.config);
    world.model->SetCurrentNode(world.Node("m"));
    FakePropertyManager& properties = world.components.Properties();
    properties.changedProperty = "C.Load.DBIFile";
    properties.TakeCalls();
    EXPECT_EQ(world.model->Options().StoreChangedProperty(row.key), 1) << row.key;
    EXPECT_THAT(properties.CallsOf("GetConfigText"),
                ElementsAre("GetConfigText " + std::string(row.asked)))
        << row.key;
    EXPECT_TRUE(world.model->IsModified()) << row.key;
    EXPECT_NE(world.Node("m")->FindChild("Options"), nullptr) << row.key;
  }
}

// If a damaged file has two, the first one is read.
TEST(NodeOptions, OptionsKeepTheirOrder) {
  ProjectFixture world;
  world.AddDemo("<Options/><C Header=\"m\" /><Options><Opt Header=\"x\" /></Options>");
  ASSERT_EQ(world.OpenDemo(), 1);
  CXmlNode& application = *world.Application();
  world.model->SetCurrentNode(&application);
  ASSERT_EQ(world.model->Options().StoreChangedProperty("Build.Tool"), 1);
  EXPECT_THAT(Flat(application.FindChild("Options")), ::testing::HasSubstr("Standard"));
  EXPECT_EQ(application.GetChild(2)->GetChildCount(), 1);
}

TEST(NodeOptions, NothingChangedStoresNothing) {
  ProjectFixture world;
  world.AddDemo("");
  ASSERT_EQ(world.OpenDemo(), 1);
  EXPECT_EQ(world.model->Options().StoreChangedProperty(""), 0);
  EXPECT_FALSE(world.model->IsModified());
}

TEST(NodeOptions, AValueStoredTwiceStandsOnceAndIsUsedAtOnce) {
  ProjectFixture world;
  world.AddDemo("<C Header=\"m\" />");
  ASSERT_EQ(world.OpenDemo(), 1);
  FakePropertyManager& properties = world.components.Properties();
  world.model->SetCurrentNode(world.Node("m"));
  for (const char* value : {"cc", "gcc"}) {
    properties.SetPropertyValue("C", "Build", "TranslateTool", value);
    EXPECT_EQ(world.model->Options().StoreChangedProperty("Build.TranslateTool"), 1);
  }
  EXPECT_EQ(Flat(world.Node("m")->FindChild("Options")),
            "<Options><Opt Header=\"Standard\" ><Set Header=\"C\" ><Sec Header=\"Build\" ><Prop "
            "Header=\"TranslateTool\" Removable=\"Yes\" Value=\"gcc\" /></Sec></Set></Opt>"
            "</Options>");
  const auto publish = [&] {
    world.model->Derived().ResetNodeCache(*world.Node("m"), true);
    world.model->PublishAll();
    return ProjectFixture::Show(*world.Node("m"), {"TranslateTool", "Marker"});
  };
  EXPECT_EQ(publish(), "C(TranslateTool=gcc Marker=0)");

  // A different configuration has none of the values; the first one still has them.
  EXPECT_EQ(world.model->Options().SelectConfiguration("Debug"), 1);
  EXPECT_EQ(publish(), "C(TranslateTool= Marker=-1)");
  EXPECT_EQ(world.model->Options().SelectConfiguration("STANDARD"), 1);
  EXPECT_EQ(publish(), "C(TranslateTool=gcc Marker=0)");

  EXPECT_EQ(world.model->Options().ResetNodeOptions(world.Node("m")), 1);
  EXPECT_EQ(publish(), "C(TranslateTool= Marker=-1)");
}

// Values of an application apply to its nodes, unless a node has its own; those of the project
// don't.
TEST(NodeOptions, AValueIsInheritedFromTheApplicationDownwards) {
  const auto options = [](const std::string& value) {
    return "<Options><Opt Header=\"Standard\" ><Set Header=\"C\" ><Sec Header=\"Build\" ><Prop "
           "Header=\"TranslateTool\" Value=\"" +
           value + "\" /></Sec></Set></Opt></Options>";
  };
  ProjectFixture world;
  world.AddDemo(options("app") + "<C Header=\"plain\" /><Group Header=\"g\" >" + options("group") +
                "<C Header=\"below\" /><C Header=\"own\" >" + options("own") + "</C></Group>");
  world.AddFile("/p/demo.tprj", "<Project>" + options("project") +
                                    "<Application Extern=\"demo.tapp\" /></Project>");
  ASSERT_EQ(world.OpenDemo(), 1);
  world.model->PublishAll();
  Lines tools;
  for (const char* node : {"plain", "below", "own"}) {
    tools.emplace_back(world.Node(node)->GetAttrValue("TranslateTool"));
  }
  EXPECT_THAT(tools, ElementsAre("app", "group", "own"));

  // Resets to the inherited value.
  world.model->SetCurrentNode(world.Node("own"));
  world.Node("own")->FindDescendant("Prop")->SetAttrValue("Removable", "");
  EXPECT_EQ(world.model->Options().ResetStoredProperty("C.Build.TranslateTool"), 1);
  EXPECT_EQ(Flat(world.Node("own")->FindChild("Options")), "<Options/>");
  world.model->Derived().ResetNodeCache(*world.Application(), true);
  world.model->PublishAll();
  EXPECT_STREQ(world.Node("own")->GetAttrValue("TranslateTool"), "group");
}

struct ResetRow {
  const char* name;
  const char* key;
  const char* config;
  bool modified;
  const char* left;  // the remaining properties
};

constexpr ResetRow kResetRows[] = {
    {"one property", "C.Build.Tool", "Debug", true, "Fixed X Path"},
    {"names in another case", "c.BUILD.tool", "DEBUG", true, "Fixed X Path"},
    {"one that cannot be reset", "C.Build.Fixed", "Debug", false, "Tool Fixed X Path"},
    {"a section", "C.Build", "Debug", true, "Fixed X Path"},
    {"a section that is then empty", "C.Load", "Debug", true, "Tool Fixed Path"},
    {"a value of no configuration", "C.General.Path", "Debug", true, "Tool Fixed X"},
    {"another configuration", "C.Build.Tool", "Standard", false, "Tool Fixed X Path"},
    {"a name alone is set and section", "Build", "Debug", false, "Tool Fixed X Path"},
    {"no such property", "C.Build.None", "Debug", false, "Tool Fixed X Path"},
};

// Returns the properties below an element of options, and empty elements as name/.
std::string PropertiesOf(const CXmlNode& node) {
  std::string list;
  for (const CXmlNode* child : node.GetChildren()) {
    const std::string name = OrEmpty(child->GetAttrValue("Header"));
    const std::string below = child->NameView() == "Prop" ? name : PropertiesOf(*child);
    list += (list.empty() ? "" : " ") + (below.empty() ? name + "/" : below);
  }
  return list;
}

TEST(NodeOptions, AResetTakesOnlyWhatItNamesAndWhatBecomesEmpty) {
  for (const ResetRow& row : kResetRows) {
    ProjectFixture world;
    world.AddDemo(
        "<C Header='m' ><Options><Opt Header='Debug' ><Set Header='C' ><Sec "
        "Header='Build' ><Prop Header='Tool' Removable='No' /><Prop Header='Fixed' /></Sec>"
        "<Sec Header='Load' ><Prop Header='X' Removable='Yes' /></Sec></Set></Opt><Opt "
        "Header='Standard' ><Set Header='C' ><Sec Header='General' ><Prop Header='Path' "
        "Removable='Yes' /></Sec></Set></Opt></Options></C>");
    ASSERT_EQ(world.OpenDemo(), 1);
    world.Application()->SetAttrValue("Config", row.config);
    world.model->SetCurrentNode(world.Node("m"));
    EXPECT_EQ(world.model->Options().ResetStoredProperty(row.key), 1) << row.name;
    EXPECT_EQ(PropertiesOf(*world.Node("m")->FindChild("Options")), row.left) << row.name;
    EXPECT_EQ(world.model->IsModified(), row.modified) << row.name;
  }
}

struct MergeRow {
  const char* name;
  const char* old;
  const char* changed;
  const char* merged;
};

constexpr MergeRow kMergeRows[] = {
    {"old order first, then what is new", "<O><A Header=\"1\" /><A Header=\"2\" /></O>",
     "<O><A Header=\"3\" /><A Header=\"2\" v=\"n\" /></O>",
     "<O><A Header=\"1\" /><A Header=\"2\" v=\"n\" /><A Header=\"3\" /></O>"},
    {"headers in another case, names exactly",
     "<O><A Header=\"x\" old=\"1\" /><a Header=\"x\" /></O>", "<O><A Header=\"X\" new=\"1\" /></O>",
     "<O><A Header=\"X\" new=\"1\" /><a Header=\"x\" /></O>"},
    {"the first of several new ones counts", "<O><A Header=\"x\" /></O>",
     "<O><A Header=\"x\" v=\"1\" /><A Header=\"x\" v=\"2\" /></O>",
     "<O><A Header=\"x\" v=\"1\" /></O>"},
    {"each of several old ones is changed", "<O><A Header=\"x\" /><A Header=\"x\" /></O>",
     "<O><A Header=\"x\" v=\"1\" /></O>",
     "<O><A Header=\"x\" v=\"1\" /><A Header=\"x\" v=\"1\" /></O>"},
    {"without a header nothing matches", "<O><A v=\"1\" /></O>", "<O><A v=\"2\" /></O>",
     "<O><A v=\"1\" /><A v=\"2\" /></O>"},
    {"deep, with the value and attributes of the new side",
     "<O a=\"1\" ><A Header=\"x\" ><B Header=\"y\" >old</B><B Header=\"z\" /></A></O>",
     "<O b=\"2\" ><A Header=\"x\" ><B Header=\"y\" >new</B></A></O>",
     "<O b=\"2\" ><A Header=\"x\" ><B Header=\"y\" >new</B><B Header=\"z\" /></A></O>"},
};

TEST(NodeOptions, MergingKeepsWhatTheNewSideDoesNotMention) {
  for (const MergeRow& row : kMergeRows) {
    EXPECT_EQ(Flat(MergeOptions(*Parse(row.old), *Parse(row.changed)).get()), row.merged)
        << row.name;
  }
}

struct IdentityRow {
  const char* name;
  const char* node;  // its label
  const char* property;
  const char* value;
  const char* tree;  // nullptr if refused
};

constexpr IdentityRow kIdentityRows[] = {
    {"another type", "m", "Type", "Header",
     "Project(ActiveApp=demo)[Application(Header=demo)[Header(Header=m)]]"},
    {"a type that nobody knows", "m", "Type", "Asm",
     "Project(ActiveApp=demo)[Application(Header=demo)[Asm(Header=m)]]"},
    {"no type", "m", "Type", "", nullptr},
    {"no name of an element", "m", "Type", "a b", nullptr},
    {"a name that no node may have", "m", "Type", "Options", nullptr},
    {"a file that would become an application", "m", "Type", "Application", nullptr},
    {"an application of another kind", "demo", "Type", "AutoApp",
     "Project(ActiveApp=demo)[AutoApp(Header=demo)[C(Header=m)]]"},
    {"an application that would become a group", "demo", "Type", "Group", nullptr},
    {"another label", "m", "Header", "new|\"x\"",
     "Project(ActiveApp=demo)[Application(Header=demo)[C(Header=new|\"x\")]]"},
    {"a label of the active application", "demo", "Header", "other",
     "Project(ActiveApp=other)[Application(Header=other)[C(Header=m)]]"},
};

TEST(NodeOptions, ANodeOfAnotherTypeOrLabelIsPublishedAgain) {
  for (const IdentityRow& row : kIdentityRows) {
    ProjectFixture world;
    world.AddDemo("<C Header=\"m\" />");
    RecordingProjectWindow window;
    world.model->Services().views.project = &window;
    ASSERT_EQ(world.OpenDemo(), 1);
    world.model->PublishAll();
    CXmlNode* node = world.Node(row.node);
    world.model->SetCurrentNode(node);
    world.components.Properties().SetPropertyValue(node->GetName().c_str(), "General", row.property,
                                                   row.value);
    window.TakeCalls();
    const bool isTaken = row.tree != nullptr;
    EXPECT_EQ(world.model->Options().StoreChangedProperty("General." + std::string(row.property)),
              isTaken)
        << row.name;
    const std::string same = "Project(ActiveApp=demo)[Application(Header=demo)[C(Header=m)]]";
    EXPECT_EQ(ProjectFixture::Show(world.model->GetProjectRoot(), {"Header", "ActiveApp"}),
              "Project(Header=Tarn Project 'demo' " + (isTaken ? row.tree : same).substr(8))
        << row.name;
    EXPECT_EQ(FindStoredValues(*node) == nullptr, isTaken) << row.name;
    if (isTaken) {
      EXPECT_THAT(window.TakeCalls(), ElementsAre("BeginTreeUpdate", "EndTreeUpdate")) << row.name;
    }
    EXPECT_STREQ(world.Application()->GetAttrValue("Path"), "/p/demo.tapp") << row.name;
    // After saving and loading, the node is where it was.
    const std::string tree = ProjectFixture::Show(world.model->GetProjectRoot(), {"Header"});
    ASSERT_EQ(world.model->SaveProject(), 1) << row.name;
    EXPECT_EQ(ProjectFixture::Show(world.model->GetProjectRoot(), {"Header"}), tree) << row.name;
  }
}

// A malformed text must not corrupt what follows it in the file.
TEST(NodeOptions, AnEmptyAnswerOfThePropertyManagerLosesNothing) {
  ProjectFixture world;
  world.AddDemo("<C Header=\"m\" /><C Header=\"n\" />");
  ASSERT_EQ(world.OpenDemo(), 1);
  world.model->SetCurrentNode(world.Node("m"));
  world.components.Properties().defaults[".Build.Tool"] = "v";
  ASSERT_EQ(world.model->Options().StoreChangedProperty("Build.Tool"), 1);
  world.Node("m")->FindChild("Options")->AppendChild(std::make_unique<CXmlNode>());
  ASSERT_EQ(world.model->SaveProject(), 1);
  EXPECT_EQ(PropertiesOf(*world.Node("m")->FindChild("Options")), "Tool");
  EXPECT_NE(world.Node("n"), nullptr);
}

TEST(NodeOptions, ConfigurationsAreAddedAndChosen) {
  ProjectFixture world;
  world.AddDemo("<C Header=\"m\" LastBuilt=\"5\" />");
  ASSERT_EQ(world.OpenDemo(), 1);
  world.model->PublishAll();
  FakePropertyManager& properties = world.components.Properties();
  EXPECT_EQ(world.model->Options().AddConfiguration(), 0) << "no name";
  EXPECT_EQ(world.model->Options().SelectConfiguration(""), 0) << "no name";
  EXPECT_FALSE(world.model->IsModified());
  for (const char* name : {"Debug", "Release"}) {
    properties.newConfigName = name;
    properties.TakeCalls();
    EXPECT_EQ(world.model->Options().AddConfiguration(), 1);
    EXPECT_EQ(properties.CallsOf("GetNewConfigName").size(), 2u);
  }
  EXPECT_EQ(Flat(world.Application()->FindChild("Configs")),
            "<Configs><Config Header=\"Debug\" Desc=\"Debug\" /><Config Header=\"Release\" "
            "Desc=\"Release\" /></Configs>");
  EXPECT_EQ(world.model->Publishing().GetCurrentConfigName(), "Standard");

  world.model->SetCurrentNode(world.Node("m"));
  world.host.TakeLines();
  EXPECT_EQ(world.model->Options().SelectConfiguration("Debug"), 1);
  EXPECT_EQ(world.model->Publishing().GetCurrentConfigName(), "Debug");
  EXPECT_EQ(properties.currentConfig, "Debug");
  EXPECT_EQ(properties.holds, 0);
  EXPECT_EQ(world.host.TakeLines().back(), "ApplicationActivated /p/demo.tapp Debug");
  EXPECT_EQ(world.Node("m")->GetAttr("LastBuilt"), nullptr);
  EXPECT_FALSE(world.model->Publishing().HasUnpublished());
  EXPECT_EQ(world.model->GetCurrentNode(), world.Node("m"));
  EXPECT_EQ(world.model->Paths().GlobalsFileOf(*world.Application()), "/p/demo-Globals.Debug.xml");

  ASSERT_EQ(world.model->SaveProject(), 1);
  EXPECT_EQ(world.model->Publishing().GetCurrentConfigName(), "Debug");
  EXPECT_EQ(Flat(world.Application()->FindChild("Configs")->GetChild(1)),
            "<Config Header=\"Release\" />");
}

TEST(NodeOptions, TheHostHearsOfAChangeOfAnApplicationThatAsksForIt) {
  for (const bool isDefault : {false, true}) {
    ProjectFixture world;
    world.AddFile("/p/demo.tprj", "<Project><AutoApp Extern=\"demo.tapp\" /></Project>");
    world.AddFile("/p/demo.tapp", "<AutoApp Header=\"auto\" ><C Header=\"m\" /></AutoApp>");
    ASSERT_EQ(world.model->OpenProject("/p/demo.tprj", isDefault ? 1 : 0), 1);
    world.model->SetCurrentNode(world.Node("m"));
    const auto posted = [&] {
      MessageLoop::ForCurrentThread()->PumpUntil([] { return false; },
                                                 std::chrono::milliseconds(0));
      const auto count = world.host.LinesOf(kMsgCommand).size();
      world.host.TakeLines();
      return count;
    };
    posted();
    EXPECT_EQ(world.model->Options().StoreChangedProperty("Build.Tool"), 1);
    EXPECT_EQ(posted(), 1u) << isDefault;
    EXPECT_EQ(world.Node("m") == nullptr, isDefault);
  }
}

TEST(TreeSearch, TheLastChildAndTheLastNodeOfTheTreeAreFound) {
  const auto root = Parse(
      "<r H=\"x\" n=\"root\" ><a H=\"k\" n=\"1\" ><b H=\"K\" n=\"2\" /></a><a H=\"K\" n=\"3\" />"
      "<A H=\"m\" n=\"4\" ><c H=\"k\" n=\"5\" ><d H=\"k\" n=\"6\" /></c></A></r>");
  const auto numberOf = [](const CXmlNode* node) {
    return node == nullptr ? std::string("none") : OrEmpty(node->GetAttrValue("n"));
  };
  const auto child = [&](const char* value, const char* attribute) {
    CXmlNode* found = nullptr;
    FindChildNode(value, attribute, root.get(), found);
    return numberOf(found);
  };
  const auto tree = [&](const char* value, const char* attribute) {
    CXmlNode* found = nullptr;
    FindTreeNode(value, attribute, root.get(), found);
    return numberOf(found);
  };
  EXPECT_EQ(child("k", "H"), "3");
  EXPECT_EQ(child("a", nullptr), "4");
  EXPECT_EQ(child("b", nullptr), "none");
  EXPECT_EQ(child(nullptr, "H"), "none");
  EXPECT_EQ(tree("k", "H"), "5");
  EXPECT_EQ(tree("x", "H"), "root");
  EXPECT_EQ(tree("B", nullptr), "2");
  CXmlNode* kept = root.get();
  FindChildNode("none", "H", root.get(), kept);
  EXPECT_EQ(kept, root.get());
}

TEST(NodeTypesOfAConfiguration, TheLastRecordOfANameCounts) {
  NodeTypes types;
  for (const char* record : {"<C Build=\"Yes\" Odd=\"yes\" />", "<D Build=\"Yes\" />",
                             "<c Path=\"YES\" Build=\"1\" />"}) {
    types.Add(*Parse(record));
  }
  const auto node = Parse("<C Build=\"Yes\" />");
  EXPECT_EQ(Flat(types.GetNodeType(*node)), "<c Path=\"YES\" Build=\"1\" />");
  EXPECT_EQ(types.FlagsOf(*node), kTypePath);
  EXPECT_FALSE(types.HasTypeFlag(*node, "Odd"));
  EXPECT_EQ(types.GetNodeType(*Parse("<X/>")), nullptr);
  EXPECT_EQ(types.FlagsOf(*Parse("<X Build=\"Yes\" />")), 0u);
}

}  // namespace
}  // namespace tarn::test
