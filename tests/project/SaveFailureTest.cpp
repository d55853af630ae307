// Files on disk and reports to the user after a failed load or save.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "project/EditedFixture.h"
#include "xml/XmlNode.h"

namespace tarn::test {
namespace {

using Lines = std::vector<std::string>;

// Messages after a save, when the project is read again.
const Lines kReopened = {"ProjectOpened", "ApplicationKnown",   "ApplicationKnown",
                         "PaneCaption",   "CurrentNodeChanged", "ApplicationActivated"};

const std::string kCopyKept =
    "/p/two.tapp was changed by another program; a copy of its version is /p/two.tapp.orig";

const std::string kTwoDamaged =
    "/p/two.tapp: conflict with another program in the file itself: damaged there";

std::string NotSaved(const std::string& path, const std::string& reason, const std::string& copy) {
  return path + " can't be saved: " + reason + "; the unsaved content is in " + copy;
}

struct SaveRow {
  const char* name;
  Damage damage;  // after the change, before the close
  Lines heard;    // during a close, after the question
  Lines files;
  Lines loaded = {};  // during the load after a save, before the other messages

  bool Fails() const {
    return std::any_of(heard.begin(), heard.end(), [](const std::string& line) {
      return line.find("can't be saved") != line.npos;
    });
  }
};

// Removes everything that prevented the files from being written.
void Repair(EditedFixture& world) {
  world.disk.ClearFailures();
  world.disk.AddFolder("/p");
  if (world.disk.IsFolder("/p/two.tapp")) world.disk.Erase("/p/two.tapp");
  world.disk.SetReadOnly("/p", false);
  for (const std::string& path : world.disk.AllFiles()) world.disk.SetReadOnly(path, false);
}

const std::string kTwo = "/p/two.tapp";

const SaveRow kSaveRows[] = {
    {"nothing is wrong", [](EditedFixture&) {}, {}, {}},
    {"a read-only application file",
     SetReadOnly("/p/one.tapp"),
     {"row 17 /p/one.tapp", "row 9 /p/one.tapp: failed in memory with code 3",
      NotSaved("/p/one.tapp", "failed in memory with code 3", "/p/one.tapp.unsaved")},
     {"/p/one.tapp old", "/p/one.tapp.unsaved new"}},
    {"a read-only project file",
     SetReadOnly("/p/demo.tprj"),
     {"row 17 /p/demo.tprj", "row 9 /p/demo.tprj: failed in memory with code 3",
      NotSaved("/p/demo.tprj", "failed in memory with code 3", "/p/demo.tprj.unsaved")},
     {"/p/demo.tprj old", "/p/demo.tprj.unsaved new"}},
    {"a read-only folder",
     SetReadOnly("/p"),
     {"row 17 /p/two.tapp", "row 17 /p/one.tapp", "row 17 /p/demo.tprj",
      NotSaved("/p/two.tapp", "/p: read-only", "/data/two.tapp.unsaved"),
      NotSaved("/p/one.tapp", "/p: read-only", "/data/one.tapp.unsaved"),
      NotSaved("/p/demo.tprj", "/p: read-only", "/data/demo.tprj.unsaved")},
     {"/data/demo.tprj.unsaved new", "/data/one.tapp.unsaved new", "/data/two.tapp.unsaved new",
      "/p/demo.tprj old", "/p/one.tapp old", "/p/two.tapp old"}},
    {"a full disk, but for small files",
     Fail("write", kTwo, ErrorCode::NoSpace),
     {"row 9 /p/two.tapp: failed in memory with code 6",
      NotSaved("/p/two.tapp", "failed in memory with code 6", "/p/two.tapp.unsaved")},
     {"/p/two.tapp old", "/p/two.tapp.unsaved new"}},
    {"a full disk and room in the data folder",
     Both(Fail("write", kTwo, ErrorCode::NoSpace),
          Fail("write", "/p/two.tapp.unsaved", ErrorCode::NoSpace)),
     {"row 9 /p/two.tapp: failed in memory with code 6",
      NotSaved("/p/two.tapp", "failed in memory with code 6", "/data/two.tapp.unsaved")},
     {"/data/two.tapp.unsaved new", "/p/two.tapp old"}},
    {"what was rescued before stays",
     Both(Write("/p/two.tapp.unsaved", "precious"), Fail("write", kTwo, ErrorCode::Io)),
     {"row 9 /p/two.tapp: failed in memory with code 7",
      NotSaved("/p/two.tapp", "failed in memory with code 7", "/p/two.tapp.unsaved2")},
     {"/p/two.tapp old", "/p/two.tapp.unsaved = precious", "/p/two.tapp.unsaved2 new"}},
    {"somebody else wrote the file",
     Write(kTwo, "theirs"),
     {kTwoDamaged, kCopyKept},
     {"/p/two.tapp.orig = theirs"}},
    {"somebody else emptied the file",
     Write(kTwo, ""),
     {kTwoDamaged, kCopyKept},
     {"/p/two.tapp.orig = "}},
    {"somebody else wrote the file, whose changes can be kept",
     Write(kTwo,
           "<Application Header=\"two\" ><C Header=\"two.c\" /><C Header=\"x.c\" /></Application>"),
     {"/p/two.tapp was changed by another program; its changes are kept"},
     {}},
    {"somebody else wrote the file, once more",
     Both(Write(kTwo, "theirs"), Write("/p/two.tapp.orig", "theirs before")),
     {kTwoDamaged, kCopyKept + "2"},
     {"/p/two.tapp.orig = theirs before", "/p/two.tapp.orig2 = theirs"}},
    {"somebody else wrote the file and it cannot be kept",
     Both(Write(kTwo, "theirs"), Fail("write", "/p/two.tapp.orig", ErrorCode::NoSpace)),
     {"row 9 /p/two.tapp: its copy /p/two.tapp.orig: failed in memory with code 6",
      NotSaved("/p/two.tapp", "its copy /p/two.tapp.orig: failed in memory with code 6",
               "/p/two.tapp.unsaved")},
     {"/p/two.tapp = theirs", "/p/two.tapp.unsaved new"}},
    {"the file cannot be looked into",
     Fail("read", kTwo, ErrorCode::Io),
     {"row 9 /p/two.tapp: failed in memory with code 7",
      NotSaved("/p/two.tapp", "failed in memory with code 7", "/p/two.tapp.unsaved")},
     {"/p/two.tapp old", "/p/two.tapp.unsaved new"}},
    {"the file is gone", Erase(kTwo), {"/p/two.tapp was missing; it has been written again"}, {}},
    {"the folder is gone",
     Erase("/p"),
     {"row 9 /p/two.tapp: the folder /p does not exist",
      "row 9 /p/one.tapp: the folder /p does not exist",
      "row 9 /p/demo.tprj: the folder /p does not exist",
      NotSaved("/p/two.tapp", "the folder /p does not exist", "/data/two.tapp.unsaved"),
      NotSaved("/p/one.tapp", "the folder /p does not exist", "/data/one.tapp.unsaved"),
      NotSaved("/p/demo.tprj", "the folder /p does not exist", "/data/demo.tprj.unsaved")},
     {"/data/demo.tprj.unsaved new", "/data/one.tapp.unsaved new", "/data/two.tapp.unsaved new",
      "/p/demo.tprj gone", "/p/one.tapp gone", "/p/two.tapp gone"}},
    {"a folder stands where the file was",
     MakeFolderOf(kTwo),
     {"row 9 /p/two.tapp: failed in memory with code 4",
      NotSaved("/p/two.tapp", "failed in memory with code 4", "/p/two.tapp.unsaved")},
     {"/p/two.tapp.unsaved new", "/p/two.tapp gone"}},
};

TEST(SaveFailure, NothingIsLostAndTheUserHearsOfIt) {
  for (const SaveRow& row : kSaveRows) {
    for (const bool isSave : {false, true}) {
      const std::string name = std::string(row.name) + (isSave ? ", save" : ", close");
      EditedFixture world;
      ASSERT_EQ(world.OpenDemo(), 1) << name;
      world.Edit();
      row.damage(world);
      const std::int32_t isDone = isSave ? world.model->SaveProject() : world.model->CloseProject();
      EXPECT_EQ(isDone, isSave && row.Fails() ? 0 : 1) << name;
      Lines heard = {"ProjectClosing"};
      heard.insert(heard.end(), row.heard.begin(), row.heard.end());
      if (isSave) {
        heard.insert(heard.end(), row.loaded.begin(), row.loaded.end());
        heard.insert(heard.end(), kReopened.begin(), kReopened.end());
      }
      EXPECT_EQ(world.Heard(), heard) << name;
      EXPECT_EQ(world.Files(), row.files) << name;
      EXPECT_EQ(world.model->IsOpen(), isSave) << name;
      EXPECT_EQ(world.model->GetProjectRoot().GetChildCount() > 0, isSave) << name;
    }
  }
}

TEST(SaveFailure, WhatWasNotSavedIsInMemoryAndTriedAgain) {
  for (const SaveRow& row : kSaveRows) {
    if (!row.Fails()) continue;
    SCOPED_TRACE(row.name);
    EditedFixture world;
    ASSERT_EQ(world.OpenDemo(), 1);
    world.Edit();
    row.damage(world);
    for (int round = 0; round < 2; ++round) {
      EXPECT_EQ(world.model->SaveProject(), 0);
      EXPECT_TRUE(world.model->IsModified());
      EXPECT_EQ(ProjectFixture::Labels(world.model->GetProjectRoot()), "one[one.c] two[two.c]");
      EXPECT_FALSE(world.model->Saver().GetSavedFiles().empty());
    }
    Repair(world);
    EXPECT_EQ(world.model->SaveProject(), 1);
    EXPECT_FALSE(world.model->IsModified());
    for (const auto& [path, bytes] : world.originals) {
      EXPECT_NE(world.FileText(path).find("edited"), std::string::npos) << path;
    }
  }
}

// The project is read again at the end of a save.
TEST(SaveFailure, AnUnchangedProjectThatCanNoLongerBeReadStaysOpen) {
  for (const std::string file : {"/p/demo.tprj", "/p/two.tapp"}) {
    EditedFixture world;
    ASSERT_EQ(world.OpenDemo(), 1);
    MakeFolderOf(file)(world);
    EXPECT_EQ(world.model->SaveProject(), 0) << file;
    EXPECT_EQ(ProjectFixture::Labels(world.model->GetProjectRoot()), "one[one.c] two[two.c]");
    ASSERT_EQ(world.model->Saver().GetSavedFiles().size(), 1U);
    EXPECT_EQ(world.model->Saver().GetSavedFiles()[0].path, file);
    EXPECT_EQ(world.model->Saver().GetSavedFiles()[0].problem, "failed in memory with code 4");
    world.disk.Erase(file);
    EXPECT_EQ(world.model->SaveProject(), 1);
    EXPECT_TRUE(world.model->IsOpen());
    EXPECT_TRUE(world.disk.BytesOf(file).has_value());
  }
}

// No location is writable, so the tree is the only place with the user's work.
TEST(SaveFailure, ASaveOrCloseThatFindsNoPlaceAtAllKeepsTheTree) {
  for (const bool isSave : {false, true}) {
    EditedFixture world;
    ASSERT_EQ(world.OpenDemo(), 1);
    world.Edit();
    for (const char* file : {"one.tapp", "demo.tprj"}) {
      for (const std::string folder : {"/p/", "/data/"}) {
        for (const char* suffix : {"", ".unsaved"}) {
          world.disk.FailOn("write", folder + file + suffix, ErrorCode::NoSpace);
        }
      }
    }
    EXPECT_EQ(isSave ? world.model->SaveProject() : world.model->CloseProject(), 0);
    const Lines reopened = world.Heard();
    EXPECT_EQ(Lines(reopened.begin(), reopened.begin() + 3),
              (Lines{"ProjectClosing", "row 9 /p/one.tapp: failed in memory with code 6",
                     "row 9 /p/demo.tprj: failed in memory with code 6"}));
    EXPECT_EQ(Lines(reopened.end() - 6, reopened.end()), kReopened);
    EXPECT_EQ(world.Files(), (Lines{"/p/demo.tprj old", "/p/one.tapp old"}));
    EXPECT_EQ(ProjectFixture::Labels(world.model->GetProjectRoot()), "one[one.c] two[two.c]");
    EXPECT_TRUE(world.model->IsModified());

    // There is space again: everything is saved, and the log does not mention the earlier failure.
    world.disk.ClearFailures();
    world.host.TakeLines();
    EXPECT_EQ(world.model->SaveProject(), 1);
    Lines heard = {"ProjectClosing"};
    heard.insert(heard.end(), kReopened.begin(), kReopened.end());
    EXPECT_EQ(world.Heard(), heard);
    EXPECT_EQ(world.Files(), Lines());
  }
}

TEST(SaveFailure, ACopyThatALaterSaveSupersedesIsRemoved) {
  const struct {
    const char* name;
    std::function<void(EditedFixture&)> between;
    Lines left;
  } rows[] = {
      {"saved", [](EditedFixture&) {}, {}},
      {"copy changed", Write("/p/two.tapp.unsaved", "mine"), {"/p/two.tapp.unsaved = mine"}},
      {"read again",
       [](EditedFixture& world) {
         world.model->State().DropChanges();
         world.model->CloseProject();
         ASSERT_EQ(world.OpenDemo(), 1);
         world.Edit();
       },
       {"/p/two.tapp.unsaved new"}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    EditedFixture world;
    ASSERT_EQ(world.OpenDemo(), 1);
    world.Edit();
    world.disk.FailOn("write", "/p/two.tapp", ErrorCode::NoSpace);
    world.model->SaveProject();
    EXPECT_THAT(world.Files(), ::testing::Contains("/p/two.tapp.unsaved new"));
    world.disk.ClearFailures();
    row.between(world);
    EXPECT_EQ(world.model->SaveProject(), 1);
    EXPECT_EQ(world.Files(), row.left);
  }
}

TEST(SaveFailure, AHostThatRefusesTheCloseKeepsTheTreeAndTheFiles) {
  EditedFixture world;
  ASSERT_EQ(world.OpenDemo(), 1);
  world.Edit();
  world.host.answers[kMsgProjectClosing] = 0;
  EXPECT_EQ(world.model->CloseProject(), 0);
  EXPECT_EQ(world.model->SaveProject(), 0);
  EXPECT_EQ(world.model->OpenProject("/p/demo.tprj", 0), 0);
  EXPECT_EQ(world.Heard(), (Lines{"ProjectClosing", "ProjectClosing", "ProjectClosing"}));
  EXPECT_EQ(world.Files(), (Lines{"/p/demo.tprj old", "/p/one.tapp old", "/p/two.tapp old"}));
  world.host.answers.clear();
  EXPECT_EQ(world.model->CloseProject(), 1);
  EXPECT_EQ(world.Files(), Lines());
}

// Two elements may name the same file, which can only have the content of one of them.
TEST(SaveFailure, OneOfTwoApplicationsInOneFileIsNotLost) {
  EditedFixture world;
  world.AddFile("/p/demo.tprj",
                "\n<Project Header=\"demo\" ><Application Header=\"one\" Extern=\".\\one.tapp\" "
                "/><Application Header=\"one\" Extern=\".\\one.tapp\" /></Project>");
  ASSERT_EQ(world.OpenDemo(), 1);
  world.components.Properties().defaults[".Build.Tool"] = "edited";
  world.model->SetCurrentNode(world.Application(0));
  world.model->Options().StoreChangedProperty("Build.Tool");
  EXPECT_EQ(world.model->CloseProject(), 1);
  const Lines files = world.Files();
  EXPECT_THAT(files, ::testing::Contains("/p/one.tapp.unsaved new"));
}

TEST(SaveFailure, AnApplicationIsSavedWhereItWasReadWhateverItsFileSays) {
  for (const std::string path : {"demo.tprj", "DEMO.TPRJ", "two.tapp", "notes", "new.tapp"}) {
    SCOPED_TRACE(path);
    EditedFixture world;
    const std::string project =
        "\n<Project Header=\"demo\" Path=\".\\demo.tprj\" Project=\"Yes\" ><Application "
        "Header=\"one\" Extern=\".\\one.tapp\" Path=\".\\one.tapp\" /></Project>";
    world.AddFile("/p/demo.tprj", project);
    world.AddFile("/p/notes", "mine");
    world.AddFile("/p/one.tapp", "\n<Application Header=\"one\" Path=\".\\" + path + "\" />");
    const std::string two = world.FileText("/p/two.tapp");
    ASSERT_EQ(world.OpenDemo(), 1);
    world.components.Properties().defaults[".Build.Tool"] = "edited";
    world.model->PublishAll();
    world.model->SetCurrentNode(world.Application(0));
    world.model->Options().StoreChangedProperty("Build.Tool");
    EXPECT_EQ(world.model->SaveProject(), 1);
    EXPECT_THAT(world.FileText("/p/one.tapp"), ::testing::HasSubstr("edited"));
    EXPECT_THAT(world.FileText("/p/demo.tprj"), ::testing::HasSubstr("Extern=\".\\one.tapp\""));
    EXPECT_EQ(world.FileText("/p/two.tapp"), two);
    EXPECT_EQ(world.FileText("/p/notes"), "mine");
    EXPECT_FALSE(world.disk.BytesOf("/p/new.tapp") || world.disk.BytesOf("/p/DEMO.TPRJ"));
  }
}

}  // namespace
}  // namespace tarn::test
