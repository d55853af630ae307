#include "platform/files/RecordingFileSystem.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <functional>
#include <thread>

#include "platform/files/posix/PosixFileSystem.h"
#include "support/TestEnvironment.h"

namespace tarn {
namespace {

using Change = std::function<void(const testing::ScratchFolder& scratch)>;

class RecordingFileSystemTest : public ::testing::Test {
 protected:
  RecordingFileSystemTest() {
    for (const char* name : {"folder", "own"}) std::filesystem::create_directory(scratch / name);
    for (const char* name : {"a", "b", "folder/c", "prog"}) scratch.Write(name, "text");
    std::filesystem::create_symlink("a", scratch / "link");
    WaitForClock();
  }

  // Waits until what was written is older than the clock, which may lag behind the time of day.
  void WaitForClock() {
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    while (std::chrono::nanoseconds(disk.Clock()) <= now) {
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
  }

  // Returns the answers to one question of each kind.
  std::optional<std::string> Record() {
    RecordingFileSystem recorder(disk);
    std::string paths[] = {scratch / "a", scratch / "missing"};
    const char* const many[] = {paths[0].c_str(), paths[1].c_str()};
    recorder.ExamineMany(many, std::chrono::steady_clock::time_point::max());
    EXPECT_EQ(*recorder.ReadWholeFile(scratch / "b"), "text");
    EXPECT_EQ(recorder.ListFolder(scratch / "folder")->size(), 1U);
    EXPECT_EQ(recorder.ResolveLinks(scratch / "link"), scratch / "a");
    EXPECT_FALSE(recorder.IsProgram(scratch / "prog"));
    EXPECT_TRUE(recorder.CheckWritable(scratch / "prog"));
    EXPECT_FALSE(recorder.ReadWholeFile(scratch / "absent"));
    EXPECT_FALSE(recorder.RemoveFile(scratch / "gone"));
    EXPECT_TRUE(recorder.TryLock(scratch / "demo.tlock", LockPurpose::Build));
    const Result<std::string> own = recorder.ReserveName(scratch / "own", "x");
    EXPECT_TRUE(recorder.WriteScratchFile(*own + ".xml", "scratch"));
    EXPECT_TRUE(recorder.Examine(*own + ".xml"));
    EXPECT_TRUE(recorder.RemoveScratchFile(*own + ".xml"));
    EXPECT_TRUE(recorder.RemoveFile(*own));
    return recorder.GetAnswers();
  }

  const testing::ScratchFolder scratch;
  PosixFileSystem disk;
};

TEST_F(RecordingFileSystemTest, AnAnswerThatDiffersIsNoticed) {
  const struct {
    const char* what;
    Change change;
  } rows[] = {
      {"content", [](const auto& at) { at.Write("a", "next"); }},
      {"content that is read", [](const auto& at) { at.Write("b", "next"); }},
      {"mode", [](const auto& at) { chmod((at / "a").c_str(), 0600); }},
      {"removed", [](const auto& at) { std::filesystem::remove(at / "a"); }},
      {"replaced by its copy",
       [](const auto& at) {
         std::filesystem::copy_file(at / "a", at / "copy");
         std::filesystem::rename(at / "copy", at / "a");
       }},
      {"created", [](const auto& at) { at.Write("missing", ""); }},
      {"created in another spelling", [](const auto& at) { at.Write("MISSING", ""); }},
      {"created where reading failed", [](const auto& at) { at.Write("absent", ""); }},
      {"created where removal failed", [](const auto& at) { at.Write("gone", ""); }},
      {"entry of a folder", [](const auto& at) { at.Write("folder/d", ""); }},
      {"program", [](const auto& at) { chmod((at / "prog").c_str(), 0755); }},
      {"link",
       [](const auto& at) {
         std::filesystem::remove(at / "link");
         std::filesystem::create_symlink("b", at / "link");
       }},
      {"no lock file", [](const auto& at) { std::filesystem::remove(at / "demo.tlock"); }},
  };
  for (const auto& row : rows) {
    for (const char* name : {"a", "b", "prog"}) scratch.Write(name, "text");
    for (const char* name : {"missing", "MISSING", "absent", "gone", "folder/d", "link"}) {
      std::filesystem::remove(scratch / name);
    }
    std::filesystem::create_symlink("a", scratch / "link");
    chmod((scratch / "prog").c_str(), 0644);
    WaitForClock();
    const std::optional<std::string> answers = Record();
    ASSERT_TRUE(answers) << row.what;
    ASSERT_TRUE(AreSameAnswers(disk, *answers)) << row.what;
    row.change(scratch);
    EXPECT_FALSE(AreSameAnswers(disk, *answers)) << row.what;
  }
}

TEST_F(RecordingFileSystemTest, ABuildElsewhereIsNoticed) {
  const std::optional<std::string> answers = Record();
  ASSERT_TRUE(answers);
  const auto lock = disk.TryLock(scratch / "demo.tlock", LockPurpose::Build);
  ASSERT_TRUE(lock);
  EXPECT_FALSE(AreSameAnswers(disk, *answers));
}

TEST_F(RecordingFileSystemTest, NothingIsConcludedFromTooLittle) {
  const struct {
    const char* what;
    std::function<void(RecordingFileSystem& recorder)> ask;
  } rows[] = {
      {"written", [&](auto& to) { EXPECT_TRUE(to.WriteWholeFile(scratch / "new", "x")); }},
      {"written with others",
       [&](auto& to) {
         EXPECT_TRUE(to.WriteFiles(std::vector<FileBytes>{{scratch / "new", "y"}}));
       }},
      {"removed", [&](auto& to) { EXPECT_TRUE(to.RemoveFile(scratch / "b")); }},
      {"copied", [&](auto& to) { EXPECT_TRUE(to.CopyFileTo(scratch / "a", scratch / "a2")); }},
      {"folder created", [&](auto& to) { EXPECT_TRUE(to.CreateFolders(scratch / "more")); }},
      {"time set", [&](auto& to) { EXPECT_TRUE(to.SetModifiedTime(scratch / "a", 1, 0)); }},
      {"read failed", [&](auto& to) { EXPECT_FALSE(to.ReadWholeFile(scratch / "folder")); }},
      {"two answers",
       [&](auto& to) {
         EXPECT_FALSE(to.Exists(scratch / "late"));
         scratch.Write("late", "x");
         EXPECT_TRUE(to.Exists(scratch / "late"));
       }},
      {"too new",
       [&](auto& to) {
         scratch.Write("a", "x");
         EXPECT_TRUE(to.Examine(scratch / "a"));
       }},
      {"lock taken",
       [&](auto& to) {
         const auto other = disk.TryLock(scratch / "demo.tlock", LockPurpose::Build);
         EXPECT_FALSE(to.TryLock(scratch / "demo.tlock", LockPurpose::Build));
       }},
  };
  for (const auto& row : rows) {
    WaitForClock();
    RecordingFileSystem recorder(disk);
    recorder.IsFolder(scratch / "folder");
    EXPECT_TRUE(recorder.GetAnswers()) << row.what;
    row.ask(recorder);
    EXPECT_FALSE(recorder.GetAnswers()) << row.what;
  }
}

TEST_F(RecordingFileSystemTest, APathFromTheWorkingFolderMeansTheSameInEveryOther) {
  const std::string before = disk.CurrentFolder();
  ASSERT_TRUE(disk.SetCurrentFolder(scratch.Path()));
  RecordingFileSystem recorder(disk);
  EXPECT_TRUE(recorder.Examine("a"));
  ASSERT_TRUE(disk.SetCurrentFolder(scratch / "folder"));
  const std::optional<std::string> answers = recorder.GetAnswers();
  EXPECT_TRUE(AreSameAnswers(disk, *answers));
  scratch.Write("a", "next");
  EXPECT_FALSE(AreSameAnswers(disk, *answers));
  disk.SetCurrentFolder(before);
}

TEST_F(RecordingFileSystemTest, ADamagedRecordIsNoAnswer) {
  RecordingFileSystem recorder(disk);
  recorder.Examine(scratch / "a");
  recorder.IsFolder(scratch / "folder");
  const std::string answers = *recorder.GetAnswers();
  ASSERT_TRUE(AreSameAnswers(disk, answers));
  EXPECT_FALSE(AreSameAnswers(disk, ""));
  for (std::size_t at = 0; at < answers.size(); ++at) {
    EXPECT_FALSE(AreSameAnswers(disk, answers.substr(0, at))) << at;
    std::string changed = answers;
    changed[at] ^= 1;
    EXPECT_FALSE(AreSameAnswers(disk, changed)) << at;
  }
}

}  // namespace
}  // namespace tarn
