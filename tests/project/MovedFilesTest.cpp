// Saving a project whose files another program has moved, removed or shared.

#include <gtest/gtest.h>

#include <functional>

#include "platform/text/Text.h"
#include "project/AnsweringWizard.h"
#include "project/ProjectFixture.h"
#include "xml/XmlNode.h"

namespace tarn::test {
namespace {

using Lines = std::vector<std::string>;

// An application in its own folder, with one source next to it and one in the parent folder.
class MovedFiles : public ::testing::Test {
 public:
  void SetUp() override { Reset(); }

  void Reset() {
    world = std::make_unique<ProjectFixture>();
    world->AddFile("/p/demo.tprj", Project("app"));
    world->AddFile("/p/app/one.tapp", Application("app", "", "..\\a.c"));
    for (const char* source : {"/p/a.c", "/p/app/b.c", "/p/app/new.c"}) world->AddFile(source, "");
    ASSERT_EQ(world->OpenDemo(), 1);
  }

  static std::string Project(const std::string& folder) {
    const std::string start =
        "\n<Project Header=\"demo\" Path=\".\\demo.tprj\" ActiveApp=\"one\" >";
    const std::string file = ".\\" + folder + "\\one.tapp";
    return start +
           (folder.empty() ? ""
                           : "\n\t<Application Header=\"one\" Extern=\"" + file + "\" Path=\"" +
                                 file + "\" />") +
           "\n</Project>";
  }
  static std::string Application(const std::string& folder, const std::string& beside,
                                 const std::string& above) {
    const std::string file = ".\\" + folder + "\\one.tapp";
    return "\n<Application Header=\"one\" Extern=\"" + file + "\" Path=\"" + file +
           "\" >\n\t<C Header=\"a.c\" Path=\"" + above + "\" />\n\t<C Header=\"b.c\" Path=\"" +
           (beside.empty() ? ".\\b.c" : beside) + "\" />\n</Application>";
  }

  // Another program moves the application file and updates the paths to and from it.
  void Move() {
    world->disk.Erase("/p/app/one.tapp");
    world->AddFile("/p/fw/avr/one.tapp", Application("fw\\avr", "..\\..\\app\\b.c", "..\\..\\a.c"));
    world->AddFile("/p/demo.tprj", Project("fw\\avr"));
  }
  // Another program moves the application's folder.
  void MoveFolder() {
    for (const char* source : {"/p/fw/b.c", "/p/fw/new.c"}) world->AddFile(source, "");
    world->disk.Erase("/p/app");
    world->AddFile("/p/fw/one.tapp", Application("fw", "", "..\\a.c"));
    world->AddFile("/p/demo.tprj", Project("fw"));
  }
  // Another program removes the application from the project.
  void Remove() {
    world->disk.Erase("/p/app/one.tapp");
    world->AddFile("/p/demo.tprj", Project(""));
  }
  void Add() { ASSERT_EQ(world->model->Items().AddExistingItem("/p/app/new.c", nullptr), 1); }

  std::string Paths() {
    return ProjectFixture::Show(world->model->GetProjectRoot(), {"Header", "Path"});
  }
  Lines Reported() {
    Lines lines;
    for (const SavedFile& each : world->model->Saver().GetSavedFiles()) {
      for (std::string& line : each.ToLines()) lines.push_back(std::move(line));
    }
    return lines;
  }
  // Returns all files except for the log and the sources.
  Lines Files() {
    Lines found;
    for (const std::string& path : world->disk.AllFiles()) {
      if (!path.ends_with(".c") && path != "/tmp/log.xml") found.push_back(path);
    }
    return found;
  }

  std::unique_ptr<ProjectFixture> world;
};

TEST_F(MovedFiles, AnApplicationFollowsToWhereTheProjectNamesIt) {
  const std::string project = "Project(Header=demo Path=/p/demo.tprj)[Application(Header=one ";
  const struct {
    const char* name;
    void (MovedFiles::*edit)();
    void (MovedFiles::*move)();
    const char* tree;
    const char* files;  // one per line
    const char* reported = "";
  } rows[] = {
      {"moved, no edit", nullptr, &MovedFiles::Move,
       "Path=/p/fw/avr/one.tapp)[C(Header=a.c Path=/p/a.c) C(Header=b.c Path=/p/app/b.c)]]",
       "/p/demo.tprj\n"
       "/p/fw/avr/one.tapp"},
      {"moved, a source more", &MovedFiles::Add, &MovedFiles::Move,
       "Path=/p/fw/avr/one.tapp)[C(Header=a.c Path=/p/a.c) C(Header=b.c Path=/p/app/b.c) "
       "C(Header=new.c Path=/p/app/new.c)]]",
       "/p/demo.tprj\n"
       "/p/fw/avr/one.tapp",
       "/p/fw/avr/one.tapp was changed by another program; its changes are kept"},
      {"moved with its folder, a source more", &MovedFiles::Add, &MovedFiles::MoveFolder,
       "Path=/p/fw/one.tapp)[C(Header=a.c Path=/p/a.c) C(Header=b.c Path=/p/fw/b.c) "
       "C(Header=new.c Path=/p/fw/new.c)]]",
       "/p/demo.tprj\n"
       "/p/fw/one.tapp",
       "/p/fw/one.tapp was changed by another program; its changes are kept"},
      {"removed, no edit", nullptr, &MovedFiles::Remove, nullptr, "/p/demo.tprj"},
      {"removed, a source more", &MovedFiles::Add, &MovedFiles::Remove,
       "Path=/p/app/one.tapp)[C(Header=a.c Path=/p/a.c) C(Header=b.c Path=/p/app/b.c) "
       "C(Header=new.c Path=/p/app/new.c)]]",
       "/p/app/one.tapp\n"
       "/p/demo.tprj\n"
       "/p/demo.tprj.orig",
       "/p/app/one.tapp was missing; it has been written again\n"
       "/p/demo.tprj: conflict with another program in one: changed here, removed there\n"
       "/p/demo.tprj was changed by another program; a copy of its version is /p/demo.tprj.orig"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    Reset();
    if (row.edit != nullptr) (this->*row.edit)();
    (this->*row.move)();
    EXPECT_EQ(world->model->SaveProject(), 1);
    EXPECT_EQ(Reported(), SplitLines(row.reported));
    EXPECT_EQ(Files(), SplitLines(row.files));
    world->model->PublishAll();
    EXPECT_EQ(Paths(),
              row.tree == nullptr ? "Project(Header=demo Path=/p/demo.tprj)" : project + row.tree);
  }
}

// It is recognized by the files it lists; a new application is not mistaken for one that is gone.
TEST_F(MovedFiles, AnApplicationThatWasAlsoRenamedIsFollowed) {
  const auto named = [](std::string text, const std::string& label) {
    for (const std::string word : {"Header=\"one\"", "ActiveApp=\"one\""}) {
      const std::size_t at = text.find(word);
      if (at != text.npos)
        text.replace(at, word.size(), word.substr(0, word.find('"') + 1) + label + "\"");
    }
    return text;
  };
  const struct {
    const char* name;
    bool isLeft;  // the old file still exists
    Lines sources;
    const char* tree;
  } rows[] = {
      {"renamed", false, {"..\\..\\app\\b.c", "..\\..\\a.c"}, "new[a.c b.c new.c]"},
      {"another one", false, {"..\\..\\x.c", "..\\..\\y.c"}, "one[a.c b.c new.c] new[a.c b.c]"},
      {"a copy", true, {"..\\..\\app\\b.c", "..\\..\\a.c"}, "one[a.c b.c new.c] new[a.c b.c]"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    Reset();
    Add();
    if (!row.isLeft) world->disk.Erase("/p/app/one.tapp");
    world->AddFile("/p/fw/avr/one.tapp",
                   named(Application("fw\\avr", row.sources[0], row.sources[1]), "new"));
    world->AddFile("/p/demo.tprj", named(Project("fw\\avr"), "new"));
    EXPECT_EQ(world->model->SaveProject(), 1);
    EXPECT_EQ(ProjectFixture::Labels(world->model->GetProjectRoot()), row.tree);
    EXPECT_EQ(world->disk.Exists("/p/app/one.tapp"), std::string_view(row.name) != "renamed");
  }
}

// The copy is in a folder where the user can write rather than next to the file.
TEST_F(MovedFiles, AFileOutsideThatIsRefusedLeavesACopyInTheProject) {
  world->AddFile("/q/two.tapp", "\n<Application Header=\"two\" />");
  world->model->SetCurrentNode(&world->model->GetProjectRoot());
  ASSERT_EQ(world->model->Items().AddExistingItem("/q/two.tapp", nullptr), 1);
  world->model->Protection().AllowOutside(true);
  ASSERT_EQ(world->model->SaveProject(), 1);
  world->model->Protection().AllowOutside(false);
  const std::string before = world->FileText("/q/two.tapp");
  world->components.Properties().defaults[".Build.Tool"] = "edited";
  for (const char* label : {"one", "two"}) {
    world->model->SetCurrentNode(world->Node(label));
    world->model->Options().StoreChangedProperty("Build.Tool");
  }
  for (int round = 0; round < 2; ++round) {
    EXPECT_EQ(world->model->SaveProject(), 0);
    EXPECT_EQ(Reported(), Lines{"/q/two.tapp can't be saved: it is outside the folder of the "
                                "project; the unsaved content is in /p/two.tapp.unsaved"});
  }
  EXPECT_EQ(world->FileText("/q/two.tapp"), before);
  EXPECT_NE(world->FileText("/p/two.tapp.unsaved").find("edited"), before.npos);
  EXPECT_NE(world->FileText("/p/app/one.tapp").find("edited"), before.npos);
  EXPECT_TRUE(world->model->IsModified());
}

TEST_F(MovedFiles, AnApplicationWithoutAPlaceStaysInMemory) {
  Add();
  world->disk.Erase("/p/app/one.tapp");
  world->AddFile("/p/demo.tprj", Project("gone"));
  for (int round = 0; round < 2; ++round) {
    EXPECT_EQ(world->model->SaveProject(), 0);
    EXPECT_EQ(Reported(), Lines{"/p/gone/one.tapp can't be saved: the folder /p/gone does not "
                                "exist; the unsaved content is in /data/one.tapp.unsaved"});
    EXPECT_TRUE(world->model->IsModified());
    EXPECT_EQ(ProjectFixture::Labels(world->model->GetProjectRoot()), "one[a.c b.c new.c]");
  }
  world->AddFile("/p/gone/one.tapp", Application("gone", "..\\app\\b.c", "..\\a.c"));
  EXPECT_EQ(world->model->SaveProject(), 1);
  EXPECT_EQ(ProjectFixture::Labels(world->model->GetProjectRoot()), "one[a.c b.c new.c]");
  EXPECT_EQ(Files(), (Lines{"/p/demo.tprj", "/p/gone/one.tapp"}));
}

// A file that never existed must not re-create the folder either.
TEST_F(MovedFiles, AProjectWhoseFolderIsGoneIsNotMadeAgain) {
  AnsweringWizard wizard;
  wizard.fill = [](NewApplication& application) {
    application.applicationName = "fresh";
    return true;
  };
  world->model->Services().views.wizard = &wizard;
  world->model->SetCurrentNode(&world->model->GetProjectRoot());
  ASSERT_EQ(world->model->Items().AddNewItem(nullptr, "Application"), 1);
  world->disk.Erase("/p");
  EXPECT_EQ(world->model->SaveProject(), 0);
  EXPECT_FALSE(world->disk.Exists("/p"));
  EXPECT_EQ(Reported().size(), 3u);
  EXPECT_EQ(ProjectFixture::Labels(world->model->GetProjectRoot()), "one[a.c b.c] fresh");
  EXPECT_TRUE(world->model->IsModified());
}

// The other version is backed up even if the file keeps it.
TEST_F(MovedFiles, WhatWasRemovedHereAndChangedThereLeavesACopy) {
  ASSERT_EQ(world->model->Editor().RemoveItem("b.c"), 1);
  world->AddFile("/p/app/one.tapp", Application("app", ".\\c.c", "..\\a.c"));
  EXPECT_EQ(world->model->SaveProject(), 1);
  EXPECT_EQ(world->FileText("/p/app/one.tapp.orig"), Application("app", ".\\c.c", "..\\a.c"));
  ASSERT_EQ(world->model->Saver().GetSavedFiles().size(), 1u);
  EXPECT_EQ(world->model->Saver().GetSavedFiles()[0].copy, "/p/app/one.tapp.orig");
  EXPECT_EQ(world->model->Saver().GetSavedFiles()[0].conflicts.size(), 1u);
}

TEST_F(MovedFiles, ASharedApplicationDoesNotShowWhoSavedIt) {
  world->AddFile("/q/q.tprj",
                 "\n<Project Header=\"q\" ActiveApp=\"one\" >\n\t<Application Header=\"one\" "
                 "Extern=\"..\\p\\app\\one.tapp\" Path=\"..\\p\\app\\one.tapp\" />\n</Project>");
  world->model->Protection().AllowOutside(true);
  const auto save = [this](const char* project, const char* tool) {
    ASSERT_EQ(world->model->OpenProject(project, 0), 1);
    world->Touch();
    if (tool != nullptr) {
      world->components.Properties().defaults[".Build.Tool"] = tool;
      world->model->SetCurrentNode(world->Node("one"));
      world->model->Options().StoreChangedProperty("Build.Tool");
    }
    ASSERT_EQ(world->model->SaveProject(), 1);
  };
  save("/p/demo.tprj", "x");
  const std::string first = world->FileText("/p/app/one.tapp");
  save("/q/q.tprj", nullptr);
  EXPECT_EQ(world->FileText("/p/app/one.tapp"), first);
  save("/q/q.tprj", "y");
  save("/q/q.tprj", "x");
  EXPECT_EQ(world->FileText("/p/app/one.tapp"), first);
  EXPECT_NE(first.find("Extern=\".\\app\\one.tapp\" Path=\".\\app\\one.tapp\""), first.npos);
}

TEST_F(MovedFiles, TheFileNamesAnActiveApplicationThatIsThere) {
  world->AddFile("/p/two.tapp", "\n<Application Header=\"two\" />");
  world->model->SetCurrentNode(&world->model->GetProjectRoot());
  ASSERT_EQ(world->model->Items().AddExistingItem("/p/two.tapp", nullptr), 1);
  const auto active = [this] {
    CXmlNode root;
    root.Load(world->FileText("/p/demo.tprj").c_str(), g_xmlParseInfo);
    const char* const name = root.GetAttrValue("ActiveApp");
    return name == nullptr ? "(none)" : std::string(name);
  };
  ASSERT_EQ(world->model->SaveProject(), 1);
  EXPECT_EQ(active(), "two");
  for (const auto& [removed, remains] : {std::pair{"two", "one"}, std::pair{"one", "(none)"}}) {
    ASSERT_EQ(world->model->Editor().RemoveItem(removed), 1);
    ASSERT_EQ(world->model->SaveProject(), 1);
    EXPECT_EQ(active(), remains);
  }
}

}  // namespace
}  // namespace tarn::test
