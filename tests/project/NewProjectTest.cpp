// New projects, the questions to the user, and the checks of files.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "output/MessageTable.h"
#include "project/EditedFixture.h"
#include "project/FileAccess.h"
#include "support/AnsweringUser.h"
#include "xml/XmlNode.h"

namespace tarn::test {
namespace {

using Lines = std::vector<std::string>;

struct CreateRow {
  const char* name;
  Damage prepare;
  bool ok;  // the reply to the question, if there is one
  std::int32_t result;
  Lines asked;
  Lines heard;
  Lines files;  // in addition to the existing ones
};

const Lines kNew = {
    "/p/new.tprj = \r\n<Project Header=\"Tarn Project 'new'\" Path=\"/p/new.tprj\" Project=\"Yes\" "
    "/>"};
const Lines kReplaced = {kNew.front(), "/p/new.tprj.orig = old"};
const Lines kOld = {"/p/new.dbi = old", "/p/new.tdb = old", "/p/new.tprj = old"};
const Lines kQuestion = {"ask: row 25 /p/new.tprj   [Tarn Project]"};

void AddOld(EditedFixture& world) {
  for (const char* file : {"new.tprj", "new.tdb", "new.dbi"}) {
    world.disk.AddFile("/p/" + std::string(file), "old");
  }
}

const CreateRow kCreateRows[] = {
    {"a new file", [](EditedFixture&) {}, false, 1, {}, {"ProjectCreated"}, kNew},
    {"a file that may be replaced", AddOld, true, 1, kQuestion, {"ProjectCreated"}, kReplaced},
    {"a file that may not be replaced", AddOld, false, 0, kQuestion, {}, kOld},
    {"a read-only file",
     Both(AddOld, SetReadOnly("/p/new.tprj")),
     true,
     0,
     kQuestion,
     {"row 9 /p/new.tprj: read-only"},
     kOld},
    {"a folder of that name",
     MakeFolderOf("/p/new.tprj"),
     true,
     0,
     kQuestion,
     {"row 9 /p/new.tprj: it is a folder"},
     {}},
    {"a read-only folder", SetReadOnly("/p"), true, 0, {}, {"row 17 /p/new.tprj"}, {}},
    {"a full disk costs nobody the old file",
     Both(AddOld, Fail("write", "/p/new.tprj", ErrorCode::NoSpace)),
     true,
     0,
     kQuestion,
     {"row 9 /p/new.tprj: failed in memory with code 6"},
     {kOld[0], kOld[1], kOld[2], "/p/new.tprj.orig = old"}},
};

TEST(NewProject, AFileIsReplacedOnlyWhenTheUserWantsIt) {
  for (const CreateRow& row : kCreateRows) {
    EditedFixture world;
    AnsweringUser answers(world.host.Handle());
    answers.okCancel = {row.ok};
    row.prepare(world);
    EXPECT_EQ(world.model->Items().NewProject("/p/new.tprj"), row.result) << row.name;
    EXPECT_EQ(answers.lines, row.asked) << row.name;
    EXPECT_EQ(world.Heard(), row.heard) << row.name;
    Lines files = {"/p/demo.tprj old"};
    files.insert(files.end(), row.files.begin(), row.files.end());
    files.insert(files.end(), {"/p/one.tapp old", "/p/two.tapp old"});
    EXPECT_EQ(world.Files(), files) << row.name;
    EXPECT_FALSE(world.model->IsOpen()) << row.name;
  }
}

TEST(OpenDialog, TheQuestionStartsWhereTheUsersProjectIs) {
  EditedFixture world;
  AnsweringUser answers(world.host.Handle());
  SetMessageText(kRowFilterPrj, "Older");
  SetMessageText(kRowFilterStw, "Oldest");
  const std::string filter =
      "files: Tarn Project (*.tprj)|*.tprj|Older (*.prj)|*.prj|Oldest (*.stw)|*.stw|| in ";
  EXPECT_EQ(world.model->OpenProject(nullptr, 0), 0);
  answers.files = {{"/p/demo.tprj"}, {"/p/demo.tprj"}};
  EXPECT_EQ(world.model->OpenProject(nullptr, 0), 1);
  EXPECT_FALSE(world.model->IsDefaultProject());
  EXPECT_EQ(world.model->OpenProject(nullptr, 0), 1);
  EXPECT_EQ(answers.lines, (Lines{filter, filter, filter + "/p"}));
  EXPECT_EQ(world.model->OpenProject(nullptr, 0), 0);
  EXPECT_FALSE(world.model->IsOpen());
}

struct OpenRow {
  const char* name;
  const char* path;
  const char* project;
  std::int32_t result;
  const char* active;  // label of the application; "none" if there is none
};

constexpr OpenRow kOpenRows[] = {
    {"the last of two with one label", "/p/x.tprj",
     "<Project ActiveApp='A' ><Application Header='a' Extern='1.tapp' /><Application "
     "Header='a' Extern='2.tapp' /></Project>",
     1, "2"},
    {"an active application that is none", "/p/x.tprj",
     "<Project ActiveApp='gone' ><Application Extern='1.tapp' /><Application "
     "Extern='2.tapp' /></Project>",
     1, "1"},
    {"an active element that is no application", "/p/x.tprj",
     "<Project ActiveApp='g' ><Group Header='g' /><Application Extern='2.tapp' /></Project>", 1,
     "2"},
    {"no application", "/p/x.tprj", "<Project Header='p' />", 1, "none"},
    {"capitals", "/P/X.TPRJ", "<Project><Application Extern='1.tapp' /></Project>", 1, "1"},
    {"no path", "", "<Project />", 0, "none"},
};

TEST(OpenProject, TheActiveApplicationIsTheOneThatTheFileMeans) {
  for (const OpenRow& row : kOpenRows) {
    ProjectFixture world;
    world.AddFile("/p/x.tprj", row.project);
    world.AddFile("/p/x.prj", row.project);
    for (const std::string number : {"1", "2"}) {
      world.AddFile("/p/" + number + ".tapp", "<Application Header=\"a\" Extern=\"" + number +
                                                  ".tapp\" n=\"" + number + "\" />");
    }
    EXPECT_EQ(world.model->OpenProject(row.path, 0), row.result) << row.name;
    const CXmlNode* active = world.model->GetActiveApplication();
    EXPECT_STREQ(active == nullptr ? "none" : active->GetAttrValue("n"), row.active) << row.name;
    EXPECT_EQ(world.model->Publishing().GetCurrentConfigName(), "Standard") << row.name;
  }
}

// It has options although it contains no application.
TEST(OpenProject, AChangedProjectWithoutApplicationsIsSavedBeforeAnotherIsOpened) {
  ProjectFixture world;
  world.AddFile("/p/empty.tprj", "<Project Header=\"old\" />");
  world.AddDemo("");
  ASSERT_EQ(world.model->OpenProject("/p/empty.tprj", 0), 1);
  world.components.Properties().SetPropertyValue("Project", "General", "Header", "new");
  ASSERT_EQ(world.model->Options().StoreChangedProperty("General.Header"), 1);
  ASSERT_EQ(world.OpenDemo(), 1);
  EXPECT_EQ(world.FileText("/p/empty.tprj"), "\n<Project Header=\"new\" Path=\".\\empty.tprj\" />");
}

struct AccessRow {
  const char* path;
  std::uint32_t flags;
  int status;
  const char* heard;
  const char* reason = "";
};

constexpr AccessRow kAccessRows[] = {
    {"/d/file", 0, 1, ""},
    {"/d/none", 0, 1, ""},
    {"/d/file", 1, 1, ""},
    {"/d", 1, 1, ""},
    {"/d/none", 1, 2, "row 6"},
    {"/d/none", 3, 2, "row 6"},
    {"/d/locked", 3, 1, ""},
    {"/d/file", 2, 1, ""},
    {"/d/none", 2, 5, "row 17"},
    {"/d/locked", 2, 5, "row 17"},
    {"/none/file", 2, 3, "row 7"},
    {"/ro/file", 2, 5, "row 17"},
    {"/d/none", 18, 1, ""},
    {"/d/locked", 18, 1, ""},
    {"/d/folder", 18, 1, ""},
    {"/made/by/it", 18, 1, ""},
    {"/ro/file", 18, 5, "row 17"},
    {"/ro/sub/x", 18, 6, "row 18", ": failed in memory with code 3"},
    {"file", 2, 1, ""},
    {"none", 18, 1, ""},
};

TEST(FileAccess, APathAllowsWhatItsFolderAndFileDo) {
  for (const AccessRow& row : kAccessRows) {
    ProjectFixture world;
    for (const char* file : {"/d/file", "/d/locked", "/ro/file"}) world.AddFile(file, "");
    world.disk.AddFolder("/d/folder");
    world.disk.SetReadOnly("/d/locked");
    world.disk.SetReadOnly("/ro");
    world.disk.SetCurrentFolder("/d");
    const std::string name = std::string(row.path) + " " + std::to_string(row.flags);
    world.disk.TakeOperations();
    EXPECT_EQ(CheckFileAccess(world.disk, row.path, row.flags, world.output), row.status == 1)
        << name;
    EXPECT_EQ(static_cast<int>(GetFileAccess(world.disk, row.path, row.flags).status), row.status)
        << name;
    const std::string text =
        *row.heard == '\0' ? "" : std::string(row.heard) + " " + row.path + row.reason + "\n";
    EXPECT_EQ(world.LogText(), text) << name;
    EXPECT_FALSE(world.disk.Operations("write").empty()) << name << ": the log is made current";
  }
}

}  // namespace
}  // namespace tarn::test
