// Files that can't be read, or not completely.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "project/EditedFixture.h"
#include "xml/XmlNode.h"

namespace tarn::test {
namespace {

using Lines = std::vector<std::string>;

const Lines kOpened = {"ProjectOpened", "ApplicationKnown",   "ApplicationKnown",
                       "PaneCaption",   "CurrentNodeChanged", "ApplicationActivated"};

struct LoadRow {
  const char* name;
  Damage damage;
  Lines heard;  // messages before those of an open
  const char* tree;
  Lines files;  // after a change everywhere and a save
};

const char* const kWholeTree = "one[one.c] two[two.c]";
const char* const kBareTree = "one[one.c] two";
const Lines kRow23 = {"row 23 /p/two.tapp"};

// A file that differs from what Tarn writes: its content is kept in a backup next to it.
LoadRow Kept(const char* name, const std::string& path, const std::string& bytes,
             const char* tree = kBareTree, const Lines& heard = {}) {
  return {name, Write(path, bytes), heard, tree, {path + ".bak = " + bytes}};
}

const std::string kSecond = "/p/two.tapp";
const std::string kStart = "<Application Header=\"two\" Extern=\".\\two.tapp\" ";

// An application file that is empty or truncated must not remove the reference to itself.
const LoadRow kDamageRows[] = {
    Kept("an empty application file", kSecond, "", kBareTree, kRow23),
    Kept("cut in the name of the application", kSecond, "\r\n<Appl", kBareTree, kRow23),
    Kept("cut in the attributes of the application", kSecond, "<Application Header=\"two\" Exte",
         kBareTree, kRow23),
    Kept("cut behind a child", kSecond, kStart + "><C Header=\"two.c\" />", kWholeTree),
    Kept("a zero byte", kSecond, kStart + "/>" + '\0' + "<x/>"),
    Kept("a remark in front of the application", kSecond, "<!-- ours -->" + kStart + "/>"),
    Kept("text behind the application", kSecond, kStart + "/>\n<Second/>"),
    Kept("values that only a run keeps", kSecond, kStart + "><![CDATA[v]]></Application>"),
    Kept("a second run of text", kSecond, kStart + ">a<C Header=\"two.c\" />b</Application>",
         kWholeTree),
    Kept("a processing instruction", kSecond, kStart + "><?x?><C Header=\"two.c\" /></Application>",
         kWholeTree),
    {"an application that does not name its file",
     Write(kSecond, "<Application Header=\"two\" ><C Header=\"two.c\" /></Application>"),
     {},
     kWholeTree,
     {}},
    Kept("a cut project file", "/p/demo.tprj",
         "<Project Header=\"demo\" ActiveApp=\"one\" ><Application Header=\"one\" "
         "Extern=\".\\one.tapp\" /><Application Header=\"two\" Extern=\".\\two.tapp\" />",
         kWholeTree),
    {"another copy of a damaged file exists",
     Both(Write(kSecond, ""), Write("/p/two.tapp.bak", "older")),
     kRow23,
     kBareTree,
     {"/p/two.tapp.bak = older", "/p/two.tapp.bak2 = "}},
    {"the copy of a damaged file cannot be made",
     Both(Write(kSecond, "half"), Fail("write", "/p/two.tapp.bak", ErrorCode::NoSpace)),
     kRow23,
     kBareTree,
     {"/p/two.tapp = half", "/p/two.tapp.unsaved new"}},
    {"reading an application file breaks off",
     Fail("read", kSecond, ErrorCode::Io),
     {},
     kBareTree,
     {"/p/two.tapp old", "/p/two.tapp.unsaved new"}},
};

TEST(DamagedFiles, WhatWasNotReadIsNeverSavedOver) {
  for (const LoadRow& row : kDamageRows) {
    EditedFixture world;
    row.damage(world);
    ASSERT_EQ(world.OpenDemo(), 1) << row.name;
    Lines heard = row.heard;
    heard.insert(heard.end(), kOpened.begin(), kOpened.end());
    EXPECT_EQ(world.Heard(), heard) << row.name;
    EXPECT_EQ(ProjectFixture::Labels(world.model->GetProjectRoot()), row.tree) << row.name;
    // If the project is opened and closed without a change, nothing is written at all.
    const Lines before = world.Files();
    EXPECT_EQ(world.model->CloseProject(), 1) << row.name;
    EXPECT_EQ(world.Files(), before) << row.name;

    ASSERT_EQ(world.OpenDemo(), 1) << row.name;
    world.Edit();
    const std::int32_t isSaved = world.model->SaveProject();
    EXPECT_EQ(isSaved, world.disk.BytesOf("/p/two.tapp.unsaved") ? 0 : 1) << row.name;
    EXPECT_EQ(world.Files(), row.files) << row.name;
    world.disk.ClearFailures();
    EXPECT_EQ(world.model->SaveProject(), 1) << row.name;
    EXPECT_EQ(world.model->GetProjectRoot().GetChildCount(), 3) << row.name;
  }
}

struct RefusalRow {
  const char* name;
  Damage damage;
  Lines heard;
};

std::string HoldingText(const char* label, const char* file) {
  return "<Application Header=\"" + std::string(label) + "\" ><Application Extern=\".\\" + file +
         "\" /></Application>";
}

const RefusalRow kRefusalRows[] = {
    {"no project file", Erase("/p/demo.tprj"), {"row 6 /p/demo.tprj"}},
    {"a folder in place of the project file",
     MakeFolderOf("/p/demo.tprj"),
     {"row 8 /p/demo.tprj: failed in memory with code 4"}},
    {"the project file cannot be opened",
     Fail("read", "/p/demo.tprj", ErrorCode::CannotOpen),
     {"row 8 /p/demo.tprj: failed in memory with code 11"}},
    {"the second application file is missing", Erase(kSecond), {"row 6 /p/two.tapp"}},
    {"the first application file cannot be opened",
     Fail("read", "/p/one.tapp", ErrorCode::CannotOpen),
     {"row 8 /p/one.tapp: failed in memory with code 11"}},
    {"a folder in place of an application file",
     MakeFolderOf("/p/one.tapp"),
     {"row 8 /p/one.tapp: failed in memory with code 4"}},
    {"an application without a file",
     Write("/p/demo.tprj", "<Project><Application Header=\"one\" /></Project>"),
     {"row 6 one: the project file has no path for it"}},
    {"an application file that holds itself",
     Write(kSecond, HoldingText("two", "two.tapp")),
     {"row 8 /p/two.tapp: it refers to itself"}},
    {"two application files that hold each other",
     Both(Write("/p/one.tapp", HoldingText("one", "two.tapp")),
          Write(kSecond, HoldingText("two", "one.tapp"))),
     {"row 8 /p/one.tapp: it refers to itself", "row 8 /p/two.tapp: it refers to itself"}},
};

// Forty files, each of which references the next one twice: 2^39 reads of the last one.
TEST(DamagedFiles, FilesThatReferToEachOtherManyTimesAreRefusedSoon) {
  ProjectFixture world;
  world.AddDemo("");
  for (int i = 0; i < 40; ++i) {
    const std::string next = "f" + std::to_string(i + 1) + ".tapp";
    const std::string part = "<Application Header=\"x\" Extern=\".\\" + next + "\" />";
    const std::string name = i == 0 ? "demo" : "f" + std::to_string(i);
    world.AddFile("/p/" + name + ".tapp",
                  "<Application>" + (i < 39 ? part + part : "") + "</Application>");
  }
  EXPECT_EQ(world.OpenDemo(), 0);
  const std::string log = world.LogText();
  const std::string message = "the project refers to its files too often";
  EXPECT_NE(log.find(message), std::string::npos) << log.substr(0, 1000);
  EXPECT_EQ(log.find(message), log.rfind(message));
}

// A project with a missing part is not opened, and nothing of it is ever written.
TEST(DamagedFiles, AProjectThatWasReadInPartIsDiscarded) {
  for (const RefusalRow& row : kRefusalRows) {
    EditedFixture world;
    row.damage(world);
    const Lines before = world.Files();
    EXPECT_EQ(world.OpenDemo(), 0) << row.name;
    EXPECT_EQ(world.Heard(), row.heard) << row.name;
    EXPECT_FALSE(world.model->IsOpen()) << row.name;
    EXPECT_FALSE(world.model->Paths().IsOpenAs("/p/demo.tprj")) << row.name;
    EXPECT_EQ(world.model->GetProjectPath(), "/p/demo.tprj") << row.name;
    EXPECT_EQ(ProjectFixture::Show(world.model->GetProjectRoot(), {"Header", "ActiveApp"}),
              "Project")
        << row.name;
    EXPECT_EQ(world.model->Publishing().PublishTick(), 0) << row.name;
    world.Touch();
    world.model->SaveProject();
    world.model->CloseProject();
    EXPECT_EQ(world.Files(), before) << row.name;
  }
}

// Content of the previous project must not appear in one whose file could not be read.
TEST(DamagedFiles, AProjectThatCannotBeReadInheritsNothing) {
  EditedFixture world;
  world.AddFile("/p/next.tprj", "<Project Header=\"next\" />");
  ASSERT_EQ(world.OpenDemo(), 1);
  world.disk.FailOn("read", "/p/next.tprj", ErrorCode::Io);
  ASSERT_EQ(world.model->OpenProject("/p/next.tprj", 0), 1);
  EXPECT_EQ(ProjectFixture::Show(world.model->GetProjectRoot(), {"Header", "ActiveApp", "Path"}),
            "Project(Path=/p/next.tprj)");
}

}  // namespace
}  // namespace tarn::test
