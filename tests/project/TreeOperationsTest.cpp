#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "project/AnsweringWizard.h"
#include "project/ProjectFixture.h"
#include "support/AnsweringUser.h"
#include "support/RecordingToolkit.h"
#include "xml/XmlNode.h"

namespace tarn::test {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;

constexpr const char* kContent =
    "\n\t<Group Header=\"Sources\" sate=\"32\" >\n\t\t<C Header=\"main.c\" "
    "Path=\".\\main.c\" />\n\t\t<C Header=\"led.c\" Path=\".\\led.c\" />\n\t</Group>\n"
    "\t<Group Header=\"Other\" />\n";

class TreeOperations : public ::testing::Test {
 protected:
  TreeOperations() {
    world.AddDemo(kContent);
    for (const char* file : {"/p/main.c", "/p/led.c"}) world.AddFile(file, "x");
    world.model->Services().views.wizard = &wizard;
  }
  void Open() {
    ASSERT_EQ(world.OpenDemo(), 1);
    world.model->PublishAll();
    world.host.TakeLines();
  }
  void Select(const char* header) { world.model->SetCurrentNode(world.Node(header)); }
  std::string Shape() { return ProjectFixture::Labels(world.model->GetProjectRoot()); }

  ProjectFixture world;
  AnsweringUser user{world.host.Handle()};
  AnsweringWizard wizard;
};

TEST_F(TreeOperations, AnItemGoesWhereItsTypeMayStand) {
  const struct {
    const char* name;
    const char* selected;
    const char* path;
    const char* type;
    const char* label;  // of the node, followed by its element and its position
    const char* element;
    const char* shape;
  } rows[] = {
      {"below the selected group", "Other", "/p/new.c", nullptr, "new.c", "C",
       "demo[Sources[main.c led.c] Other[new.c]]"},
      {"beside a selected leaf", "main.c", "/p/new.h", nullptr, "new.h", "Header",
       "demo[Sources[main.c led.c new.h] Other]"},
      {"the same path once", "Sources", "/p/LED.c", nullptr, "led.c", "C",
       "demo[Sources[main.c led.c] Other]"},
      {"a relative path is the application's", "Sources", "led.c", nullptr, "led.c", "C",
       "demo[Sources[main.c led.c] Other]"},
      {"one that nobody knows is of the first type", "Other", "/p/read.me", nullptr, "read",
       "Project", "demo[Sources[main.c led.c] Other[read]]"},
      {"a given type wins", "Other", "/p/read.me", "c", "read.me", "C",
       "demo[Sources[main.c led.c] Other[read.me]]"},
  };
  for (const auto& row : rows) {
    Open();
    Select(row.selected);
    EXPECT_EQ(world.model->Items().AddExistingItem(row.path, row.type), 1) << row.name;
    EXPECT_EQ(Shape(), row.shape) << row.name;
    EXPECT_EQ(world.Node(row.label)->GetName(), row.element) << row.name;
    world.model->CloseProject();
    world.AddDemo(kContent);
  }
}

TEST_F(TreeOperations, AMissingFileIsMadeEmptyAndAnExistingOneKept) {
  Open();
  Select("Other");
  EXPECT_EQ(world.model->Items().AddExistingItem("/p/sub.c", nullptr), 1);
  EXPECT_EQ(world.FileText("/p/sub.c"), "");
  Select("Other");
  world.AddFile("/p/full.c", "full");
  EXPECT_EQ(world.model->Items().AddExistingItem("/p/full.c", nullptr), 1);
  EXPECT_EQ(world.FileText("/p/full.c"), "full");
  Select("Other");
  EXPECT_EQ(world.model->Items().AddExistingItem("/nowhere/x.c", nullptr), 1);
  EXPECT_EQ(world.LogText(), "row 7 /nowhere/x.c\n");
  EXPECT_STREQ(world.Node("Other")->GetAttrValue("sate"), "32");
  EXPECT_EQ(world.model->Items().AddExistingItem("/p/a\nb.c", nullptr), 0);
}

TEST_F(TreeOperations, AnApplicationIsAddedToTheProjectOnceWhateverIsSelected) {
  world.AddFile("/p/boot.tapp",
                "\n<Application Header=\"old name\" ><C Header=\"b.c\" "
                "Path=\".\\b.c\" /></Application>");
  Open();
  Select("main.c");
  EXPECT_EQ(world.model->Items().AddExistingItem("/p/boot", "Application"), 1);
  EXPECT_EQ(ProjectFixture::Show(*world.Application(1), {"Header", "Path", "Extern"}),
            "Application(Header=boot Path=/p/boot.tapp Extern=/p/boot.tapp)[C(Header=b.c "
            "Path=.\\b.c)]");
  EXPECT_STREQ(world.model->GetProjectRoot().GetAttrValue("ActiveApp"), "boot");
  EXPECT_EQ(world.model->GetActiveApplication(), world.Application(1));
  world.model->SetCurrentNode(&world.model->GetProjectRoot());
  EXPECT_EQ(world.model->Items().AddExistingItem("/p/../p/BOOT.tapp", "Application"), 1);
  EXPECT_EQ(world.Application(2), nullptr);
  EXPECT_EQ(world.model->Publishing().SetActiveApplication(world.Node("main.c")), 0)
      << "no application";
  ASSERT_EQ(world.model->SaveProject(), 1);
  EXPECT_STREQ(world.model->GetProjectRoot().GetAttrValue("ActiveApp"), "boot");
  EXPECT_NE(world.Application(1), nullptr);
  EXPECT_EQ(world.Application(2), nullptr);
}

TEST_F(TreeOperations, OneOfSeveralExtensionsIsEnoughAndTheFirstIsAppended) {
  CXmlNode type;
  type.Load(
      "<Kit Application='Yes' Extern='Yes' Path='Yes' Build='Yes' Extension='kapp;tapp' "
      "Header='Kit' />",
      g_xmlParseInfo);
  world.model->Services().types.Add(type);
  for (const char* file : {"/p/a.TAPP", "/p/b.kapp", "/p/c.kapp"}) world.AddFile(file, "\n<Kit />");
  Open();
  for (const char* path : {"/p/a.TAPP", "/p/b.kapp", "/p/c"}) {
    world.model->SetCurrentNode(&world.model->GetProjectRoot());
    EXPECT_EQ(world.model->Items().AddExistingItem(path, "Kit"), 1) << path;
  }
  EXPECT_EQ(ProjectFixture::Show(world.model->GetProjectRoot(), {"Extern"}),
            "Project[Application(Extern=/p/demo.tapp)[Group[C C] Group] Kit(Extern=/p/a.TAPP) "
            "Kit(Extern=/p/b.kapp) Kit(Extern=/p/c.kapp)]");
  EXPECT_EQ(world.model->Items().AddExistingItem("/p/sub/d.x", "Kit"), 0);
  // A new application whose extension differs from the type's is accepted without a question.
  wizard.fill = [](NewApplication& form) {
    form.createNewProject = true;
    form.location = "/new";
    form.applicationName = "boot";
    return true;
  };
  EXPECT_EQ(world.model->Items().AddNewItem(nullptr, "Kit"), 1);
  EXPECT_EQ(ProjectFixture::Show(*world.Application(), {"Extern"}), "Kit(Extern=/new/boot.tapp)");
  EXPECT_THAT(wizard.lines,
              ElementsAre("/p/sub/ d.x 'Kit' this project", "/p/ Application0 'Kit' this project"));
}

TEST_F(TreeOperations, AnApplicationFileThatCannotBeReadIsNotOverwritten) {
  world.AddFile("/p/boot.tapp", "\n<Application><C Header=\"b.c\" /></Application>");
  Open();
  world.disk.FailOn("read", "/p/boot.tapp", ErrorCode::CannotOpen);
  EXPECT_EQ(world.model->Items().AddExistingItem("/p/boot.tapp", "Application"), 1);
  world.disk.ClearFailures();
  world.model->SaveProject();
  EXPECT_EQ(world.FileText("/p/boot.tapp"), "\n<Application><C Header=\"b.c\" /></Application>");
}

TEST_F(TreeOperations, TheDialogOffersWhatMayStandThere) {
  Open();
  Select("Other");
  user.files = {{"/p/x.c", "/p/y.h"}, {"/p/x.c"}};
  EXPECT_EQ(world.model->Items().BrowseAndAddFiles(), 1);
  EXPECT_EQ(world.model->State().lastBrowseFolder, "/p");
  EXPECT_EQ(world.model->Items().AddExistingItem(nullptr, nullptr), 1);
  EXPECT_EQ(world.model->State().lastBrowseFolder, "/p/x.c");
  EXPECT_EQ(world.model->Items().BrowseAndAddFiles(), 0);
  world.model->SetCurrentNode(&world.model->GetProjectRoot());
  EXPECT_EQ(world.model->Items().BrowseAndAddFiles(), 0);
  const std::string files = "files: row 4 %s %s %s (*.c;*.h;*.hpp)|*.c;*.h;*.hpp|";
  EXPECT_THAT(user.lines, ElementsAre(files + " in /p/", files + " in /p", files + " in /p/x.c",
                                      "files: row 5 %s %s %s (*.tapp)|*.tapp| in /p/x.c"));
}

TEST_F(TreeOperations, ASourceListReplacesTheContentOfADebuggedApplication) {
  constexpr const char* kTarget = "<DebugApp Application='Yes' Path='Yes' Debug='Yes' />";
  CXmlNode type;
  type.Load(kTarget, g_xmlParseInfo);
  world.model->Services().types.Add(type);
  Open();
  EXPECT_EQ(world.model->Items().AddExistingItem("a.c", "DebugSrcFiles"), 0)
      << "an application that builds";
  world.Application()->SetName("DebugApp");
  EXPECT_EQ(world.model->Items().AddExistingItem("", "DebugSrcFiles"), 0);
  EXPECT_EQ(world.model->Items().AddExistingItem("a.c\r\nb \"x\".c\nc\\\n", "debugsrcfiles"), 1);
  EXPECT_EQ(
      ProjectFixture::Show(*world.Application(), {"Path", "Header", "Marker", "sate"}),
      "DebugApp(Path=/p/demo.tapp Header=demo)[NodeText(Path=c\\ Header=c\\ Marker=-1 sate=2) "
      "NodeText(Path=b \"x\".c Header=b \"x\".c Marker=-1 sate=2) "
      "NodeText(Path=a.c Header=a.c Marker=-1 sate=2)]");
  EXPECT_FALSE(world.model->IsModified());
}

TEST_F(TreeOperations, TheDefaultProjectHoldsOneFile) {
  ASSERT_EQ(world.model->OpenProject("/p/demo.tprj", 1), 1);
  EXPECT_EQ(world.model->Items().AddExistingItem("/p/a.c", nullptr), 1);
  EXPECT_EQ(world.model->Items().AddExistingItem("/p/b.c", nullptr), 1);
  EXPECT_EQ(Shape(), "demo[b.c]");
}

TEST_F(TreeOperations, RemovingPrefersThePathAndTheLastMatch) {
  Open();
  world.Node("led.c")->AddChild("Dependencies")->AddChild("D")->AddAttr("Path", "/p/main.c");
  world.Node("Other")->SetAttrValue("Header", "/p/main.c");
  Select("main.c");
  EXPECT_EQ(world.model->Editor().RemoveItem("/p/MAIN.C"), 1);
  EXPECT_EQ(Shape(), "demo[Sources[led.c] /p/main.c]");
  EXPECT_EQ(world.model->GetOwnCurrentNode(), world.Node("Sources"));
  Select("led.c");
  EXPECT_EQ(world.model->Editor().RemoveItem("Sources"), 1) << "with the current node below it";
  EXPECT_EQ(world.model->GetOwnCurrentNode(), world.Application());
  EXPECT_EQ(world.model->Editor().RemoveItem("nothing"), 0);
  EXPECT_EQ(world.model->Editor().RemoveItem(""), 0);
  EXPECT_TRUE(world.model->IsModified());
  world.model->SetCurrentNode(&world.model->GetProjectRoot());
  EXPECT_EQ(world.model->Editor().RemoveItem(nullptr), 1) << "the root stays";
  EXPECT_EQ(Shape(), "demo[/p/main.c]");
}

TEST_F(TreeOperations, TypesSayWhatMayStandWhere) {
  constexpr const char* kTypes =
      "<Types><P Project='Yes'/><A Application='Yes'/><L IsLeaf='Yes'/><B Build='Yes'/>"
      "<BD Build='Yes' Debug='Yes'/><D Debug='Yes'/><N/><NB InBuild='Yes'/><ND InDebug='Yes'/>"
      "<NBD InBuild='Yes' Debug='Yes'/></Types>";
  CXmlNode types;
  types.Load(kTypes, g_xmlParseInfo);
  for (int i = 0; i < types.GetChildCount(); ++i)
    world.model->Services().types.Add(*types.GetChild(i));
  const struct {
    const char* parent;
    const char* children;  // those it may contain, out of A B BD D N NB ND NBD
  } rows[] = {{"P", "A "},          {"L", ""},          {"B", "NB NBD "},
              {"BD", "NB ND NBD "}, {"D", "BD D NBD "}, {"N", "A B BD D N NB ND NBD "}};
  for (const auto& row : rows) {
    std::string allowed;
    const auto parent = CXmlNode::CreateNode(row.parent);
    for (const char* name : {"A", "B", "BD", "D", "N", "NB", "ND", "NBD"}) {
      const auto child = CXmlNode::CreateNode(name);
      if (world.model->Types().CanContain(parent.get(), child.get()))
        allowed += std::string(name) + " ";
    }
    EXPECT_EQ(allowed, row.children) << row.parent;
    EXPECT_FALSE(world.model->Types().CanContain(parent.get(), nullptr));
  }
}

TEST_F(TreeOperations, ACopyIsANodeOfItsNewPlace) {
  world.AddFile("/q/boot.tapp", "\n<Application Header=\"boot\" />");
  Open();
  world.model->SetCurrentNode(&world.model->GetProjectRoot());
  ASSERT_EQ(world.model->Items().AddExistingItem("/q/boot.tapp", "Application"), 1);
  CXmlNode* led = world.Node("led.c");
  led->SetAttrValue("Path", ".\\led.c");  // like a node that was never published
  led->SetAttrValue("LastBuilt", "5");
  led->AddChild("PropState", "x");
  led->AddChild("Dependencies");
  ASSERT_EQ(world.model->Editor().CopyNode(world.Node("Sources")), 1);
  ASSERT_EQ(world.model->Editor().PasteNode(world.Application(1)), 1);
  const CXmlNode* copy = world.Node("led.c");
  ASSERT_NE(copy, led);
  EXPECT_STREQ(copy->GetAttrValue("Path"), "/p/led.c");
  EXPECT_EQ(copy->GetAttr("LastBuilt"), nullptr);
  for (const char* part : {"PropState", "Dependencies", "#CDATA"}) {
    EXPECT_EQ(copy->FindChild(part), nullptr) << part;
  }
  ASSERT_EQ(world.model->Editor().CopyNode(world.Node("main.c")), 1);
  ASSERT_EQ(world.model->Editor().PasteNode(led), 1) << "in front of a leaf";
  EXPECT_EQ(ProjectFixture::Labels(*world.Application(0)), "Sources[main.c main.c led.c] Other");
}

TEST_F(TreeOperations, AMoveLosesNothing) {
  Open();
  Select("led.c");
  world.model->Editor().MoveNode(world.Node("led.c"), world.Node("Other"));
  EXPECT_EQ(Shape(), "demo[Sources[main.c] Other[led.c]]");
  EXPECT_EQ(world.model->GetOwnCurrentNode(), world.Node("led.c"));
  const std::string before = Shape();
  world.model->Editor().MoveNode(world.Node("Other"), world.Node("led.c"));
  world.model->Editor().MoveNode(world.Node("Other"), world.Node("Other"));
  world.model->Editor().MoveNode(world.Application(), world.Node("Other"));
  EXPECT_EQ(Shape(), before) << "into itself";
  ASSERT_EQ(world.model->SaveProject(), 1);
  world.model->Editor().MoveNode(world.Node("led.c"), &world.model->GetProjectRoot());
  EXPECT_EQ(Shape(), before) << "where the types refuse it";
  EXPECT_TRUE(world.model->IsModified());
}

TEST_F(TreeOperations, AFolderIsKeptByASaveThoughItChangesNothing) {
  Open();
  Select("main.c");
  EXPECT_EQ(world.model->Items().AddNewItem(nullptr, "group"), 1);
  EXPECT_FALSE(world.model->IsModified());
  EXPECT_EQ(world.model->GetOwnCurrentNode(), world.Node("New Folder"));
  ASSERT_EQ(world.model->SaveProject(), 1);
  EXPECT_NE(world.Node("New Folder"), nullptr);
  ASSERT_EQ(world.model->CloseProject(), 1);
  EXPECT_EQ(world.model->Items().AddNewItem(nullptr, "Group"), 0) << "in no project";
}

TEST_F(TreeOperations, ANewApplicationIsRefusedWithoutATrace) {
  Open();
  const struct {
    const char* name;
    const char* applicationName;
    const char* selected;
  } rows[] = {{"no name", "", "demo"},
              {"a path for a name", "a/b", "demo"},
              {"a name that is taken below", "led.c", "Sources"},
              {"where it cannot stand", "boot", "Sources"}};
  for (const auto& row : rows) {
    Select(row.selected);
    const std::string before = Shape();
    wizard.fill = [&row](NewApplication& form) {
      form.applicationName = row.applicationName;
      return true;
    };
    EXPECT_EQ(world.model->Items().AddNewItem(nullptr, "Application"), 0) << row.name;
    EXPECT_EQ(Shape(), before) << row.name;
  }
  EXPECT_THAT(wizard.lines, Contains("/p/ Application0 'Application' this project"));
  EXPECT_FALSE(world.model->IsModified());
}

TEST_F(TreeOperations, ANewApplicationJoinsTheProject) {
  Open();
  world.model->SetCurrentNode(&world.model->GetProjectRoot());
  world.Node("Other")->SetAttrValue("Header", "Application0");
  wizard.fill = [](NewApplication& form) {
    form.targetText = "script";
    form.configName = "Debug";
    return form.applicationName == "Application1";
  };
  EXPECT_EQ(world.model->Items().AddNewItem(nullptr, "Application"), 1);
  EXPECT_EQ(world.FileText("/p/Application1.tapp"), "(none)");
  EXPECT_EQ(world.model->Publishing().GetCurrentConfigName(), "Debug");
  const std::vector<std::string> lines = world.host.TakeLines();
  EXPECT_THAT(lines, Contains("RunScript script 0"));
  EXPECT_EQ(lines.back(), "CreationEnded Tarn Project 0");
  ASSERT_EQ(world.model->SaveProject(), 1);
  EXPECT_NE(world.FileText("/p/Application1.tapp"), "(none)");
  EXPECT_NE(world.Node("Application1"), nullptr);
}

TEST_F(TreeOperations, ANewProjectIsWrittenOpenedAndWrittenAgainWhenClosed) {
  Open();
  wizard.fill = [](NewApplication& form) {
    form.createNewProject = true;
    form.location = "/new";
    form.applicationName = "boot";
    return true;
  };
  world.AddFile("/new/boot.tapp", "precious");
  EXPECT_EQ(world.model->Items().AddNewItem(nullptr, "Application"), 0) << "not to be overwritten";
  EXPECT_EQ(world.FileText("/new/boot.tapp"), "precious");
  EXPECT_EQ(world.model->GetProjectPath(), "/p/demo.tprj");
  user.okCancel = {true, true};
  world.disk.FailOn("write", "/new/boot.tapp", ErrorCode::NoSpace);
  EXPECT_EQ(world.model->Items().AddNewItem(nullptr, "Application"), 0)
      << "nor lost to a full disk";
  EXPECT_EQ(world.FileText("/new/boot.tapp"), "precious");
  world.disk.ClearFailures();
  world.host.TakeLines();
  EXPECT_EQ(world.model->Items().AddNewItem(nullptr, "Application"), 1);
  EXPECT_EQ(world.FileText("/new/boot.tapp"),
            "\n<Application Header=\"boot\" Extern=\"/new/boot.tapp\" Path=\"/new/boot.tapp\" />");
  EXPECT_EQ(world.FileText("/new/boot.tapp.orig"), "precious");
  EXPECT_EQ(world.FileText("/new/boot.tprj"),
            "\n<Project Header=\"Tarn Project 'boot'\" Path=\"/new/boot.tprj\" Project=\"Yes\" />");
  EXPECT_EQ(ProjectFixture::Show(world.model->GetProjectRoot(), {"ActiveApp", "sate", "Header"}),
            "Project(ActiveApp=boot sate=32 Header=Tarn Project 'boot')[Application(Header=boot)]");
  EXPECT_TRUE(world.model->IsModified());
  EXPECT_FALSE(world.model->IsDefaultProject());
  std::vector<std::string> order;
  for (const std::string& line : world.host.TakeLines())
    order.push_back(line.substr(0, line.find(' ')));
  EXPECT_THAT(order, ElementsAre("ProjectCreated", "ProjectClosing", "ProjectOpened", "PaneCaption",
                                 "PaneCaption", "ApplicationActivated", "CurrentNodeChanged",
                                 "PaneCaption", "CreationEnded"));
  ASSERT_EQ(world.model->CloseProject(), 1);
  EXPECT_NE(world.FileText("/new/boot.tprj").find("Extern=\".\\boot.tapp\""), std::string::npos);
}

TEST_F(TreeOperations, OnlyWhatTheCreationItselfAddsIsNotDebugged) {
  world.AddFile("/p/demo.tapp", std::string("\n<AutoApp Header=\"demo\" Path=\".\\demo.tapp\" >") +
                                    kContent + "</AutoApp>");
  Open();
  wizard.fill = [](NewApplication& form) {
    form.createNewProject = true;
    form.location = "/p";
    form.applicationName = "demo";
    return true;
  };
  // An action of the host while the old project is being closed.
  world.host.actions[kMsgProjectClosing] = [this] {
    EXPECT_EQ(world.model->Editor().RemoveItem("led.c"), 1);
  };
  EXPECT_EQ(world.model->Items().AddNewItem(nullptr, "Application"), 0)
      << "demo.tapp is there already";
  MessageLoop::ForCurrentThread()->PumpUntil([] { return false; }, std::chrono::milliseconds(5));
  EXPECT_THAT(world.host.LinesOf(kMsgCommand), ElementsAre("Command 33475 0"));
}

TEST_F(TreeOperations, AWizardThatIsCancelledLeavesTheDefaultMarkAsItWas) {
  Open();
  ASSERT_EQ(world.model->CloseProject(), 1);
  EXPECT_EQ(world.model->Items().NewProject(nullptr), 0);
  EXPECT_FALSE(world.model->IsDefaultProject());
  EXPECT_THAT(wizard.lines, ElementsAre("/app/examples/ Application0 '' new project"));
}

TEST_F(TreeOperations, ANewItemRunsItsToolOnlyWhereThatWasChosen) {
  Open();
  world.model->SetCurrentNode(&world.model->GetProjectRoot());
  bool runsTool = false;
  std::string tool = "cobbler.xml";
  wizard.fill = [&](NewApplication& form) {
    form.useCobbler = runsTool;
    form.wizardPath = tool;
    return true;
  };
  EXPECT_EQ(world.model->Items().AddNewItem(nullptr, "Application"), 1);
  EXPECT_THAT(world.components.Tools().CallsOf("RunTool"), ElementsAre());
  runsTool = true;
  RecordingToolkit toolkit;
  world.model->SetCurrentNode(&world.model->GetProjectRoot());
  EXPECT_EQ(world.model->Items().AddNewItem(nullptr, "Application"), 1);
  ASSERT_EQ(world.components.Tools().CallsOf("RunTool").size(), 1u);
  EXPECT_THAT(world.components.Tools().CallsOf("RunTool").front(),
              ::testing::StartsWith("RunTool /app/config/cobbler.xml \"\" <Values>"));
  EXPECT_THAT(toolkit.lines, ElementsAre("cursor wait", "cursor arrow"));
}

}  // namespace
}  // namespace tarn::test
