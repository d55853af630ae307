// Files that cannot be read, or not as a whole.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>

#include "project/EditedWorld.h"

namespace tarn::test {
namespace {

using Lines = std::vector<std::string>;

const Lines kOpened = {"0x8015", "0x8023", "0x8023", "0x8019", "0x8011", "0x8010"};

struct DamageRow {
  const char* name;
  std::function<void(EditedWorld&)> damage;
  Lines heard;  // in front of what an open tells
  const char* tree;
  // After a change everywhere and a save.
  Lines files;
};

std::function<void(EditedWorld&)> Write(const char* path, std::string bytes) {
  return [=](EditedWorld& world) { world.disk.AddFile(path, bytes); };
}

const char* const kWholeTree =
    "Project(Header=demo)[Application(Header=one)[C(Header=one.c)] "
    "Application(Header=two)[C(Header=two.c)]]";
const char* const kBareTree =
    "Project(Header=demo)[Application(Header=one)[C(Header=one.c)] Application(Header=two)]";

// The file of an application that is empty or cut must not take the reference to itself away.
const DamageRow kDamageRows[] = {
    {"an empty application file",
     Write("/p/two.tapp", ""),
     {"row 23"},
     kBareTree,
     {"/p/demo.tprj new", "/p/one.tapp new", "/p/two.tapp new", "/p/two.tapp.bak = "}},
    {"cut in the name of the application",
     Write("/p/two.tapp", "\r\n<Appl"),
     {"row 23"},
     kBareTree,
     {"/p/demo.tprj new", "/p/one.tapp new", "/p/two.tapp new", "/p/two.tapp.bak = \r\n<Appl"}},
    {"cut in the attributes of the application",
     Write("/p/two.tapp", "<Application Header=\"two\" Exte"),
     {"row 23"},
     kBareTree,
     {"/p/demo.tprj new", "/p/one.tapp new", "/p/two.tapp new",
      "/p/two.tapp.bak = <Application Header=\"two\" Exte"}},
    {"cut behind a child",
     Write("/p/two.tapp",
           "<Application Header=\"two\" Extern=\".\\two.tapp\" ><C Header=\"two.c\" />"),
     {},
     kWholeTree,
     {"/p/demo.tprj new", "/p/one.tapp new", "/p/two.tapp new",
      "/p/two.tapp.bak = <Application Header=\"two\" Extern=\".\\two.tapp\" ><C Header=\"two.c\" "
      "/>"}},
    {"a zero byte",
     Write("/p/two.tapp",
           std::string("<Application Header=\"two\" Extern=\".\\two.tapp\" />\0<x/>", 53)),
     {},
     kBareTree,
     {"/p/demo.tprj new", "/p/one.tapp new", "/p/two.tapp new",
      "/p/two.tapp.bak = " +
          std::string("<Application Header=\"two\" Extern=\".\\two.tapp\" />\0<x/>", 53)}},
    {"a remark in front of the application",
     Write("/p/two.tapp", "<!-- ours --><Application Header=\"two\" Extern=\".\\two.tapp\" />"),
     {},
     kBareTree,
     {"/p/demo.tprj new", "/p/one.tapp new", "/p/two.tapp new",
      "/p/two.tapp.bak = <!-- ours --><Application Header=\"two\" Extern=\".\\two.tapp\" />"}},
    {"text behind the application",
     Write("/p/two.tapp", "<Application Header=\"two\" Extern=\".\\two.tapp\" />\n<Second/>"),
     {},
     kBareTree,
     {"/p/demo.tprj new", "/p/one.tapp new", "/p/two.tapp new",
      "/p/two.tapp.bak = <Application Header=\"two\" Extern=\".\\two.tapp\" />\n<Second/>"}},
    {"values that only a run keeps",
     Write("/p/two.tapp",
           "<Application Header=\"two\" Extern=\".\\two.tapp\" ><![CDATA[v]]></Application>"),
     {},
     kBareTree,
     {"/p/demo.tprj new", "/p/one.tapp new", "/p/two.tapp new",
      "/p/two.tapp.bak = <Application Header=\"two\" Extern=\".\\two.tapp\" "
      "><![CDATA[v]]></Application>"}},
    {"an application that does not name its file",
     Write("/p/two.tapp", "<Application Header=\"two\" ><C Header=\"two.c\" /></Application>"),
     {},
     kWholeTree,
     {"/p/demo.tprj new", "/p/one.tapp new", "/p/two.tapp new"}},
    {"a cut project file",
     Write("/p/demo.tprj",
           "<Project Header=\"demo\" ActiveApp=\"one\" ><Application Header=\"one\" "
           "Extern=\".\\one.tapp\" /><Application Header=\"two\" Extern=\".\\two.tapp\" />"),
     {},
     kWholeTree,
     {"/p/demo.tprj new",
      "/p/demo.tprj.bak = <Project Header=\"demo\" ActiveApp=\"one\" ><Application Header=\"one\" "
      "Extern=\".\\one.tapp\" /><Application Header=\"two\" Extern=\".\\two.tapp\" />",
      "/p/one.tapp new", "/p/two.tapp new"}},
    {"another copy of a damaged file exists",
     [](EditedWorld& world) {
       world.disk.AddFile("/p/two.tapp", "");
       world.disk.AddFile("/p/two.tapp.bak", "older");
     },
     {"row 23"},
     kBareTree,
     {"/p/demo.tprj new", "/p/one.tapp new", "/p/two.tapp new", "/p/two.tapp.bak = older",
      "/p/two.tapp.bak2 = "}},
    {"the copy of a damaged file cannot be made",
     [](EditedWorld& world) {
       world.disk.AddFile("/p/two.tapp", "half");
       world.disk.FailOn("write", "/p/two.tapp.bak", ErrorCode::NoSpace);
     },
     {"row 23"},
     kBareTree,
     {"/p/demo.tprj new", "/p/one.tapp new", "/p/two.tapp = half", "/p/two.tapp.unsaved new"}},
    {"reading an application file breaks off",
     [](EditedWorld& world) { world.disk.FailOn("read", "/p/two.tapp", ErrorCode::Io); },
     {},
     kBareTree,
     {"/p/demo.tprj new", "/p/one.tapp new", "/p/two.tapp old", "/p/two.tapp.unsaved new"}},
};

TEST(DamagedFiles, WhatWasNotReadIsNeverSavedOver) {
  for (const DamageRow& row : kDamageRows) {
    EditedWorld world;
    row.damage(world);
    ASSERT_EQ(world.OpenDemo(), 1) << row.name;
    Lines heard = row.heard;
    heard.insert(heard.end(), kOpened.begin(), kOpened.end());
    EXPECT_EQ(world.Heard(), heard) << row.name;
    EXPECT_EQ(ProjectWorld::Show(world.model->GetProjectRoot(), {"Header"}), row.tree) << row.name;
    // Opened and closed without a change, nothing is written at all.
    const Lines before = world.Files();
    EXPECT_EQ(world.model->CloseProject(), 1) << row.name;
    EXPECT_EQ(world.Files(), before) << row.name;

    ASSERT_EQ(world.OpenDemo(), 1) << row.name;
    world.Edit();
    EXPECT_EQ(world.model->SaveProject(), 1) << row.name;
    EXPECT_EQ(world.Files(), row.files) << row.name;
    world.disk.ClearFailures();
    EXPECT_EQ(world.model->SaveProject(), 1) << row.name;
    EXPECT_EQ(world.model->GetProjectRoot().GetChildCount(), 3) << row.name;
  }
}

struct RefusalRow {
  const char* name;
  std::function<void(EditedWorld&)> damage;
  Lines heard;
};

const RefusalRow kRefusalRows[] = {
    {"no project file",
     [](EditedWorld& world) { world.disk.Erase("/p/demo.tprj"); },
     {"row 6 /p/demo.tprj"}},
    {"a folder in place of the project file",
     [](EditedWorld& world) {
       world.disk.Erase("/p/demo.tprj");
       world.disk.AddFolder("/p/demo.tprj");
     },
     {"row 8 /p/demo.tprj"}},
    {"the project file cannot be opened",
     [](EditedWorld& world) { world.disk.FailOn("read", "/p/demo.tprj", ErrorCode::CannotOpen); },
     {"row 8 /p/demo.tprj"}},
    {"the second application file is missing",
     [](EditedWorld& world) { world.disk.Erase("/p/two.tapp"); },
     {"row 6 /p/two.tapp"}},
    {"the first application file cannot be opened",
     [](EditedWorld& world) { world.disk.FailOn("read", "/p/one.tapp", ErrorCode::CannotOpen); },
     {"row 8 /p/one.tapp"}},
    {"a folder in place of an application file",
     [](EditedWorld& world) {
       world.disk.Erase("/p/one.tapp");
       world.disk.AddFolder("/p/one.tapp");
     },
     {"row 8 /p/one.tapp"}},
    {"an application without a file",
     Write("/p/demo.tprj", "<Project><Application Header=\"one\" /></Project>"),
     {"row 6 one"}},
    {"an application file that holds itself",
     Write("/p/two.tapp",
           "<Application Header=\"two\" Extern=\".\\two.tapp\" ><Application "
           "Header=\"in\" Extern=\".\\two.tapp\" /></Application>"),
     {"row 23"}},
    {"two application files that hold each other",
     [](EditedWorld& world) {
       for (const std::string name : {"one", "two"}) {
         const std::string other = name == "one" ? "two" : "one";
         world.disk.AddFile("/p/" + name + ".tapp", "<Application Header=\"" + name +
                                                        "\" ><Application Extern=\".\\" + other +
                                                        ".tapp\" /></Application>");
       }
     },
     {"row 23", "row 23"}},
};

// A project of which a part is missing is not open, and nothing of it is ever written.
TEST(DamagedFiles, AProjectThatWasReadInPartIsDiscarded) {
  for (const RefusalRow& row : kRefusalRows) {
    EditedWorld world;
    row.damage(world);
    const Lines before = world.Files();
    EXPECT_EQ(world.OpenDemo(), 0) << row.name;
    EXPECT_EQ(world.Heard(), row.heard) << row.name;
    EXPECT_FALSE(world.model->IsOpen()) << row.name;
    EXPECT_FALSE(world.model->IsOpenAs("/p/demo.tprj")) << row.name;
    EXPECT_EQ(world.model->GetProjectPath(), "/p/demo.tprj") << row.name;
    EXPECT_EQ(ProjectWorld::Show(world.model->GetProjectRoot(), {"Header", "ActiveApp"}), "Project")
        << row.name;
    EXPECT_EQ(world.model->PublishTick(), 0) << row.name;
    world.Touch();
    world.model->SaveProject();
    world.model->CloseProject();
    EXPECT_EQ(world.Files(), before) << row.name;
  }
}

// What the project before had is no part of one whose file could not be read.
TEST(DamagedFiles, AProjectThatCannotBeReadInheritsNothing) {
  EditedWorld world;
  world.AddFile("/p/next.tprj", "<Project Header=\"next\" />");
  ASSERT_EQ(world.OpenDemo(), 1);
  world.disk.FailOn("read", "/p/next.tprj", ErrorCode::Io);
  ASSERT_EQ(world.model->OpenProject("/p/next.tprj", 0), 1);
  EXPECT_EQ(ProjectWorld::Show(world.model->GetProjectRoot(), {"Header", "ActiveApp", "Path"}),
            "Project(Path=/p/next.tprj)");
}

}  // namespace
}  // namespace tarn::test
