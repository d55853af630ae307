#include "hosts/core/ProjectTemplate.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "hosts/core/StagingFolder.h"
#include "support/MemoryFileSystem.h"
#include "support/TestEnvironment.h"

namespace tarn::host {
namespace {

using Lines = std::vector<std::string>;

TEST(ProjectTemplate, WritesTheFormThatTheSystemSaves) {
  testing::MemoryFileSystem files;
  const auto written = WriteNewProject(files, {"/w/demo", "demo", "C"});
  ASSERT_TRUE(written);
  EXPECT_EQ(*written, (std::vector<std::string>{"/w/demo/demo.tprj", "/w/demo/demo.tapp",
                                                "/w/demo/src/main.c"}));
  EXPECT_EQ(files.BytesOf("/w/demo/demo.tprj"),
            "\r\n<Project Header=\"Project 'demo'\" Path=\".\\demo.tprj\" Project=\"Yes\" "
            "ActiveApp=\"demo\" >"
            "\r\n\t<Application Header=\"demo\" Extern=\".\\demo.tapp\" Path=\".\\demo.tapp\" />"
            "\r\n</Project>");
  EXPECT_EQ(files.BytesOf("/w/demo/demo.tapp"),
            "\r\n<Application Header=\"demo\" Extern=\".\\demo.tapp\" Path=\".\\demo.tapp\" "
            ">"
            "\r\n\t<Group Header=\"Sources\" >"
            "\r\n\t\t<C Header=\"main.c\" Path=\".\\src\\main.c\" />"
            "\r\n\t</Group>"
            "\r\n</Application>");
}

TEST(ProjectTemplate, NeverOverwrites) {
  testing::MemoryFileSystem files;
  files.AddFile("/w/demo/src/main.c", "mine");
  files.AddFile("/w/demo/demo.tapp", "old");
  const auto refused = WriteNewProject(files, {"/w/demo", "demo", "C"});
  ASSERT_FALSE(refused);
  EXPECT_EQ(refused.GetError().place, "/w/demo/demo.tapp");
  EXPECT_EQ(files.BytesOf("/w/demo/demo.tapp"), "old");
  files.Erase("/w/demo/demo.tapp");
  ASSERT_TRUE(WriteNewProject(files, {"/w/demo", "demo", "C"}));
  EXPECT_EQ(files.BytesOf("/w/demo/src/main.c"), "mine");
}

TEST(ProjectTemplate, AFailureLeavesNoProjectFile) {
  testing::MemoryFileSystem files;
  files.FailOn("write", "/w/demo/demo.tapp", ErrorCode::NoSpace);
  EXPECT_FALSE(WriteNewProject(files, {"/w/demo", "demo", "C"}));
  EXPECT_FALSE(files.BytesOf("/w/demo/demo.tprj"));
}

TEST(ProjectTemplate, AFileThatCanNotBeExaminedIsAnErrorAndNothingIsWritten) {
  for (const char* path : {"/w/demo/demo.tprj", "/w/demo/demo.tapp", "/w/demo/src/main.c"}) {
    testing::MemoryFileSystem files;
    files.FailOn("exists", path, ErrorCode::Io);
    const auto written = WriteNewProject(files, {"/w/demo", "demo", "C"});
    EXPECT_EQ(written.GetError().place, path);
    EXPECT_EQ(written.GetError().code, ErrorCode::Io) << path;
    for (const bool isShared : {false, true}) {
      const auto placed = WriteNewFiles(files, {{"/w/other", "x"}, {path, "x", isShared}});
      EXPECT_EQ(placed.GetError().place, path);
      EXPECT_EQ(placed.GetError().code, ErrorCode::Io) << path;
    }
    EXPECT_TRUE(files.AllFiles().empty()) << path;
    files.ClearFailures();
    EXPECT_TRUE(WriteNewProject(files, {"/w/demo", "demo", "C"})) << path;
  }
}

TEST(NewFiles, AFailureRemovesFilesAndFoldersThatWereMade) {
  const std::string tooLong(300, 'x');
  const struct {
    const char* name;
    std::string last;  // can't be written
    Lines stays;
  } rows[] = {
      {"a file", "a/b/" + tooLong, {"own"}},
      {"a folder", "a/c/" + tooLong + "/x", {"own"}},
      {"in a folder that was there", "own/" + tooLong, {"own"}},
      {"in the place of a file", "a/main.c/x", {"own"}},
  };
  for (const auto& row : rows) {
    const testing::ScratchFolder scratch;
    std::filesystem::create_directory(scratch / "own");
    const auto written = WriteNewFiles(
        FileSystem::Native(),
        {{scratch / "a/main.c", "x"}, {scratch / "own/new/x", "x"}, {scratch / row.last, "x"}});
    EXPECT_FALSE(written) << row.name;
    Lines left;
    for (const auto& each : std::filesystem::recursive_directory_iterator(scratch.Path())) {
      left.push_back(each.path().filename().string());
    }
    EXPECT_EQ(left, row.stays) << row.name;
  }
}

TEST(ProjectTemplate, AStandInLeavesTheUsersOptionsAlone) {
  testing::MemoryFileSystem files;
  files.AddFile("/u/tarn/tarn.tapp", "mine");
  ASSERT_TRUE(WriteStandInProject(files, "/u/tarn", "tarn"));
  EXPECT_EQ(files.BytesOf("/u/tarn/tarn.tapp"), "mine");
  ASSERT_TRUE(WriteStandInProject(files, "/u/tarn", "other"));
  EXPECT_EQ(files.BytesOf("/u/tarn/other.tapp"),
            "\r\n<Application Header=\"other\" Extern=\".\\other.tapp\" Path=\".\\other.tapp\" "
            "/>");
}

TEST(ProjectTemplate, NamesThatAreNoFileNamesAreRefused) {
  for (const char* name : {"", " ", ".", "..", "../b", "a/b", "a\\b", "a\"b", "a\nb", "a|b"}) {
    EXPECT_NE(CheckFileTitle(name, "project"), "") << name;
  }
  for (const char* name : {"demo", "my demo", "d\xc3\xa9mo", "demo.v2"}) {
    EXPECT_EQ(CheckFileTitle(name, "project"), "") << name;
  }
}

TEST(ProjectTemplate, TheLastTypeThatClaimsAnExtensionIsTaken) {
  testing::MemoryFileSystem files;
  files.AddFile("/c/t.config",
                "<x><Types><Text Extension=\"txt;c\" /><C Extension=\"h;C\" /><D/></Types></x>");
  EXPECT_EQ(FindSourceType(files, "/c/t.config", "c", "F"), "C");
  EXPECT_EQ(FindSourceType(files, "/c/t.config", "zig", "F"), "F");
  EXPECT_EQ(FindSourceType(files, "/c/none", "c", "F"), "F");
}

}  // namespace
}  // namespace tarn::host
