#include "platform/files/posix/PosixFileSystem.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <filesystem>
#include <functional>
#include <thread>

#include "platform/files/ExactNames.h"
#include "platform/files/Locks.h"
#include "platform/files/RelativeName.h"
#include "platform/text/Text.h"
#include "support/TestEnvironment.h"

namespace tarn {
namespace {

class PosixFileSystemTest : public ::testing::Test {
 protected:
  const testing::ScratchFolder scratch;
  PosixFileSystem files;
};

mode_t ModeOf(const std::string& path) {
  struct stat info {};
  return stat(path.c_str(), &info) == 0 ? info.st_mode & 07777 : 0;
}

// Each search for another spelling reads the whole folder, and there would be two for each tool
// run.
TEST_F(PosixFileSystemTest, AScratchFileIsMeantByItsVeryName) {
  scratch.Write("NOTES", "a user's");
  EXPECT_EQ(files.RemoveScratchFile(scratch / "notes").GetError().code, ErrorCode::NotFound);
  for (const char* bytes : {"a tool's", "another's"}) {
    EXPECT_TRUE(files.WriteScratchFile(scratch / "notes", bytes));
    EXPECT_EQ(testing::ReadBytes(scratch / "notes"), bytes);
  }
  EXPECT_TRUE(files.RemoveScratchFile(scratch / "notes"));
  EXPECT_EQ(files.ListFolder(scratch.Path())->size(), 1U);
  EXPECT_EQ(*files.ReadWholeFile(scratch / "NOTES"), "a user's");
}

TEST_F(PosixFileSystemTest, EveryLastingWriteRemovesWhatKilledWritesLeft) {
  const struct {
    const char* name;
    std::function<Status(const std::string& target)> write;
    bool removes;
  } rows[] = {
      {"one file", [&](const auto& target) { return files.WriteWholeFile(target, "x"); }, true},
      {"several",
       [&](const auto& target) {
         return files.WriteFiles(std::vector<FileBytes>{{target, "x"}});
       },
       true},
      {"a copy", [&](const auto& target) { return files.CopyFileTo(scratch / "from", target); },
       true},
      {"a scratch file", [&](const auto& target) { return files.WriteScratchFile(target, "x"); },
       false},
  };
  scratch.Write("from", "x");
  // A file of another system, names that no write uses, and a write in progress.
  std::vector<std::string> others;
  for (const char* each : {".tarn-0123456789abcdef", ".tarn-0123456789abcdeg", "x.tarn-0123"}) {
    scratch.Write(each, "x");
    others.push_back(scratch / each);
  }
  others.push_back(*files.ReserveName(scratch.Path(), ".tarn-"));
  for (const auto& row : rows) {
    const pid_t child = fork();
    if (child == 0) {
      (void)files.ReserveName(scratch.Path(), ".tarn-");
      _exit(0);
    }
    // The process has ended, but its parent has not waited for it.
    siginfo_t ended{};
    ASSERT_EQ(waitid(P_PID, static_cast<id_t>(child), &ended, WEXITED | WNOWAIT), 0);
    ASSERT_EQ(files.ListFolder(scratch.Path())->size(), others.size() + 2);
    ASSERT_TRUE(row.write(scratch / "to")) << row.name;
    EXPECT_EQ(files.ListFolder(scratch.Path())->size(), others.size() + (row.removes ? 2 : 3))
        << row.name;
    for (const std::string& each : others) EXPECT_TRUE(files.Exists(each)) << each;
    ASSERT_EQ(waitpid(child, nullptr, 0), child);
    ASSERT_TRUE(files.RemoveFile(scratch / "to"));
  }
}

TEST_F(PosixFileSystemTest, ANameIsAbandonedIfItsProcessIsGone) {
  scratch.Write("$opj.xml", "");
  const std::string own = *files.ReserveName(scratch.Path(), "$opj");
  const pid_t child = fork();
  if (child == 0) {
    const auto name = files.ReserveName(scratch.Path(), "$opj");
    if (name) (void)files.WriteScratchFile(*name + ".xml", "left");
    _exit(0);
  }
  ASSERT_EQ(waitpid(child, nullptr, 0), child);
  ASSERT_TRUE(files.WriteScratchFile(own + ".xml", "own"));
  ASSERT_TRUE(files.ReserveName(scratch.Path(), "$opj"));
  EXPECT_TRUE(files.Exists(own + ".xml"));
  EXPECT_EQ(files.ListFolder(scratch.Path())->size(), 5U);
}

TEST_F(PosixFileSystemTest, FilesThatBelongTogetherAreWrittenAllOrNone) {
  scratch.Write("a", "old");
  ASSERT_EQ(chmod((scratch / "a").c_str(), 0640), 0);
  ASSERT_EQ(symlink("a", (scratch / "link").c_str()), 0);
  const auto write = [&](const std::string& last) {
    return files.WriteFiles(std::vector<FileBytes>{
        {scratch / "link", "new"}, {scratch / "b", "new"}, {scratch / last, "new"}});
  };
  std::filesystem::create_directory(scratch / "folder");
  EXPECT_EQ(write("folder").GetError().place, scratch / "folder");
  EXPECT_EQ(write("none/c").GetError().place, scratch / "none/c");
  EXPECT_EQ(*files.ReadWholeFile(scratch / "a"), "old");
  EXPECT_EQ(files.ListFolder(scratch.Path())->size(), 3U);
  EXPECT_TRUE(write("c"));
  EXPECT_EQ(*files.ReadWholeFile(scratch / "a"), "new");
  EXPECT_EQ(*files.ReadWholeFile(scratch / "c"), "new");
  EXPECT_EQ(ModeOf(scratch / "a"), 0640U);
  const auto before = files.Examine(scratch / "a");
  EXPECT_TRUE(write("c"));
  EXPECT_EQ(files.Examine(scratch / "a")->changed, before->changed);
  EXPECT_EQ(files.ListFolder(scratch.Path())->size(), 5U) << "a temporary file was left behind";
}

TEST_F(PosixFileSystemTest, ReplacingKeepsModeAndLinks) {
  scratch.Write("script", "old");
  ASSERT_EQ(chmod((scratch / "script").c_str(), 0751), 0);
  ASSERT_EQ(mkdir((scratch / "links").c_str(), 0777), 0);
  const std::pair<const char*, const char*> links[] = {{"../script", "links/one"},
                                                       {"one", "links/two"},
                                                       {"../new", "links/dangling"},
                                                       {"loop", "links/loop"}};
  for (const auto& [to, link] : links) ASSERT_EQ(symlink(to, (scratch / link).c_str()), 0) << link;

  EXPECT_TRUE(files.WriteWholeFile(scratch / "links/two", "new"));
  EXPECT_EQ(*files.ReadWholeFile(scratch / "script"), "new");
  EXPECT_EQ(ModeOf(scratch / "script"), 0751U);
  EXPECT_TRUE(std::filesystem::is_symlink(scratch / "links/two"));
  EXPECT_EQ(files.ReadWholeFile(scratch / "links/dangling").GetError().text,
            "a link to a missing file");
  EXPECT_TRUE(files.WriteWholeFile(scratch / "links/dangling", "made"));
  EXPECT_EQ(*files.ReadWholeFile(scratch / "new"), "made");
  EXPECT_EQ(files.WriteWholeFile(scratch / "links/loop", "x").GetError().code,
            ErrorCode::InvalidName);

  EXPECT_TRUE(files.WriteScratchFile(scratch / "links/one", "scratch"));
  EXPECT_FALSE(std::filesystem::is_symlink(scratch / "links/one"));
  EXPECT_EQ(*files.ReadWholeFile(scratch / "links/two"), "scratch");
  // Removing a link leaves its target alone.
  EXPECT_TRUE(files.RemoveFile(scratch / "links/two"));
  EXPECT_EQ(*files.ReadWholeFile(scratch / "script"), "new");
  // A copy is writable and as executable as its original.
  ASSERT_EQ(chmod((scratch / "script").c_str(), 0555), 0);
  EXPECT_TRUE(files.CopyFileTo(scratch / "script", scratch / "copy"));
  EXPECT_EQ(ModeOf(scratch / "copy") & 0700U, 0700U);
  EXPECT_EQ(files.CopyFileTo(scratch / "new", scratch / "copy").GetError().code,
            ErrorCode::AlreadyExists);
  EXPECT_EQ(*files.ReadWholeFile(scratch / "copy"), "new");
  EXPECT_EQ(files.ListFolder(scratch.Path())->size(), 4U) << "a temporary file was left behind";
}

TEST_F(PosixFileSystemTest, PipesAndDevicesNeitherHangNorCountAsFiles) {
  ASSERT_EQ(mkfifo((scratch / "pipe").c_str(), 0666), 0);
  for (const std::string& path : {scratch / "pipe", std::string("/dev/null")}) {
    EXPECT_EQ(files.ReadWholeFile(path).GetError().code, ErrorCode::NotAFile);
    EXPECT_EQ(files.WriteWholeFile(path, "x").GetError().code, ErrorCode::NotAFile);
    EXPECT_EQ(files.WriteTail(path, 0, 0, "x").GetError().code, ErrorCode::NotAFile);
    EXPECT_EQ(files.RemoveFile(path).GetError().code, ErrorCode::NotAFile);
    EXPECT_FALSE(files.Examine(path));
  }
  EXPECT_TRUE(files.ReadWholeFile("/proc/self/stat")) << "a file whose size reads as 0";
  EXPECT_NE(*files.ReadWholeFile("/proc/self/stat"), "");
}

// A project from elsewhere may contain any kind of file in place of its lock file.
TEST_F(PosixFileSystemTest, ALockHoldsButWritesNoFileOfOthers) {
  scratch.Write("precious", std::string(100, '\0'));
  scratch.Write("text.tlock", "somebody's");
  std::filesystem::create_hard_link(scratch / "precious", scratch / "hard.tlock");
  for (const char* name : {"hard.tlock", "text.tlock", "own.tlock"}) {
    auto held = files.TryLock(scratch / name, LockPurpose::Edit);
    ASSERT_TRUE(held) << name;
    constexpr std::chrono::milliseconds kShort(20);
    const auto other = WaitForLock(files, scratch / name, LockPurpose::Edit, kShort);
    EXPECT_EQ(other.GetError().code, ErrorCode::Busy) << name;
    EXPECT_TRUE(files.TryLock(scratch / name, LockPurpose::Build)) << name;
    held->reset();
    EXPECT_TRUE(WaitForLock(files, scratch / name, LockPurpose::Edit, kShort)) << name;
  }
  EXPECT_EQ(testing::ReadBytes(scratch / "precious"), std::string(100, '\0'));
  EXPECT_EQ(testing::ReadBytes(scratch / "text.tlock"), "somebody's");
  EXPECT_TRUE(testing::ReadBytes(scratch / "own.tlock").find("process ") != std::string::npos);
  std::filesystem::create_symlink(scratch / "precious", scratch / "link.tlock");
  EXPECT_FALSE(files.TryLock(scratch / "link.tlock", LockPurpose::Edit));
}

// The umask of the first user must not exclude the others, who could then change the same files.
TEST_F(PosixFileSystemTest, ALockHasThePermissionsOfItsFolder) {
  const struct {
    mode_t folder, before, lock;  // `before`: of an existing lock file
  } rows[] = {
      {0755, 0, 0644},  {0775, 0, 0664},    {02775, 0, 0664},   {0777, 0, 0666},
      {01777, 0, 0644}, {0775, 0644, 0664}, {0755, 0600, 0600},
  };
  const mode_t umaskBefore = umask(022);
  for (const auto& row : rows) {
    const std::string folder = scratch / "shared";
    std::filesystem::create_directory(folder);
    ASSERT_EQ(chmod(folder.c_str(), row.folder), 0);
    const std::string lock = folder + "/p.tlock";
    if (row.before != 0) {
      scratch.Write("shared/p.tlock", "");
      ASSERT_EQ(chmod(lock.c_str(), row.before), 0);
    }
    EXPECT_TRUE(files.TryLock(lock, LockPurpose::Edit));
    struct stat made {};
    ASSERT_EQ(stat(lock.c_str(), &made), 0);
    EXPECT_EQ(made.st_mode & 07777, row.lock) << std::oct << row.folder << " " << row.before;
    std::filesystem::remove_all(folder);
  }
  umask(umaskBefore);
}

TEST_F(PosixFileSystemTest, TimesBeforeTheEpochRoundDown) {
  scratch.Write("old", "12345");
  const timespec times[2] = {{-5, 900'000'000}, {-5, 900'000'000}};
  ASSERT_EQ(utimensat(AT_FDCWD, (scratch / "old").c_str(), times, 0), 0);
  const auto status = files.Examine(scratch / "old");
  ASSERT_TRUE(status);
  EXPECT_EQ(status->modifiedSeconds, -5);
  EXPECT_EQ(status->size, 5U);
}

// The folder's entries are cached between misses; a new or removed file must be noticed
// immediately.
TEST_F(PosixFileSystemTest, KeptFolderEntriesNeverHideAChange) {
  for (int round = 0; round < 200; ++round) {
    const std::string name = "File" + std::to_string(round);
    const std::string other = "fILE" + std::to_string(round);
    for (int miss = 0; miss < 2; ++miss) ASSERT_FALSE(files.Exists(scratch / other));
    if (round % 20 == 0) usleep(30'000);  // long enough for the entries to be cached
    ASSERT_FALSE(files.Exists(scratch / other));
    scratch.Write(name, "x");
    ASSERT_TRUE(files.Exists(scratch / other)) << round;
    if (round % 2 == 0) continue;
    ASSERT_EQ(unlink((scratch / name).c_str()), 0);
    ASSERT_FALSE(files.Exists(scratch / other)) << round;
  }
}

TEST_F(PosixFileSystemTest, AChangeWithinOneTickOfTheFoldersClockShows) {
  for (const bool wholeSeconds : {false, true}) {
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    if (wholeSeconds) now.tv_nsec = 0;
    const auto stopClock = [&] {
      const timespec times[2] = {now, now};
      ASSERT_EQ(utimensat(AT_FDCWD, scratch.Path().c_str(), times, 0), 0);
    };
    const std::string name = wholeSeconds ? "Second" : "First";
    stopClock();
    for (int miss = 0; miss < 3; ++miss) EXPECT_FALSE(files.Exists(scratch / FoldCase(name)));
    scratch.Write(name, "x");
    stopClock();
    EXPECT_TRUE(files.Exists(scratch / FoldCase(name)));
  }
}

TEST_F(PosixFileSystemTest, TheSpellingOfANameOnDiskIsReturned) {
  scratch.Write("Src/Main.c", "");
  EXPECT_EQ(files.NameOnDisk(scratch / "sRC\\MAIN.C"), scratch / "Src/Main.c");
  EXPECT_EQ(files.NameOnDisk(scratch / "src\\none.c"), scratch / "src\\none.c");
}

TEST_F(PosixFileSystemTest, NamesOfManyFilesAreThoseOfEach) {
  scratch.Write("Src/Main.c", "");
  std::filesystem::create_symlink(scratch / "Src/Main.c", scratch / "link.c");
  const std::pair<const char*, bool> rows[] = {{"Src/Main.c", true},  {"link.c", true},
                                               {"src/main.C", false}, {"Src", false},
                                               {"none.c", false},     {"Src\\Main.c", false}};
  std::vector<std::string> paths, names;
  std::vector<bool> exact;
  for (const auto& [path, isExact] : rows) {
    paths.push_back(scratch / path);
    names.push_back(files.NameOnDisk(paths.back()));
    exact.push_back(isExact);
  }
  EXPECT_EQ(AreExactFiles(files, paths), exact);
  EXPECT_EQ(NamesOnDisk(files, paths), names);
}

TEST_F(PosixFileSystemTest, LinksOnTheWayToAFileAreResolved) {
  scratch.Write("Src/real/main.c", "");
  std::filesystem::create_directory_symlink(scratch / "Src/real", scratch / "link");
  const std::string real = std::filesystem::canonical(scratch / "Src").string() + "/real";
  EXPECT_EQ(files.ResolveLinks(scratch / "LINK\\main.c"), real + "/main.c");
  EXPECT_EQ(files.ResolveLinks(scratch / "link/none.c"), scratch / "link/none.c");
}

TEST_F(PosixFileSystemTest, AStepUpAfterALinkIsNoMatterOfLetters) {
  scratch.Write("far/sub/x", "");
  scratch.Write("near/y", "");
  const std::filesystem::path root = scratch.Path();
  std::filesystem::create_directory_symlink(root / "far/sub", root / "near/link");
  const std::pair<const char*, const char*> canonical[] = {
      {"near/../near/./y", "near/y"},
      {"near/link/x", "near/link/x"},
      {"near/link/../sub/x", "near/link/../sub/x"},
      {"near/link/../sub/../z/", "near/link/../z/"},
      {"near/LINK/..", "near/LINK/.."},
      {"near/none/../y", "near/y"},
      {"near/link/../../near/y", "near/link/../../near/y"},
  };
  for (const auto& [path, wanted] : canonical) {
    EXPECT_EQ(files.Canonical(scratch / path), scratch / wanted) << path;
  }
  EXPECT_EQ(files.Canonical("/../a/../../b"), "/b");
  EXPECT_EQ(files.Canonical("a/../../b"), "../b");

  // Folder, path, and expected relative path.
  const char* const relative[][3] = {
      {"near", "near/y", ".\\y"},
      {"near/link", "near/link/../z", "..\\z"},
      {"near/link", "far/z", "..\\z"},
      {"near/link", "near/y", "..\\..\\near\\y"},
      {"near", "near/link/../z", ".\\link\\..\\z"},
      {"near/link/../app", "near/link/../app/x", ".\\x"},
      {"near/link/../app", "near/link/../z", "..\\z"},
  };
  for (const auto& [folder, path, wanted] : relative) {
    EXPECT_EQ(RelativeNameOnDisk(files, scratch / folder, scratch / path), wanted)
        << folder << " " << path;
  }
}

TEST_F(PosixFileSystemTest, AnotherSpellingOfANameIsReported) {
  scratch.Write("Src/Main.c", "");
  const std::pair<const char*, bool> rows[] = {
      {"Src/Main.c", false}, {"Src/main.c", true}, {"src/Main.c", true}};
  for (const auto& [path, isOther] : rows) {
    const std::string full = scratch / path;
    const char* const paths[] = {full.c_str()};
    EXPECT_EQ(files.Examine(full)->otherSpelling, isOther) << path;
    EXPECT_EQ(files.ExamineMany(paths, {}).front()->otherSpelling, isOther) << path;
  }
}

TEST_F(PosixFileSystemTest, ASimilarNameIsFoundInAnyFolderThatCouldBeMeant) {
  for (const char* name : {"lib/x.c", "Lib/y.c", "lib/two", "Lib/TWO", "a/z", "B"}) {
    scratch.Write(name, "");
  }
  const std::pair<const char*, std::string> rows[] = {{"LIB/x.c", "lib/x.c"},
                                                      {"LIB/Y.C", "Lib/y.c"},
                                                      {"LIB/two", "LIB/two"},
                                                      {"Lib/x.c", "Lib/x.c"},
                                                      {"A/Z", "a/z"}};
  for (const auto& [path, found] : rows) {
    EXPECT_EQ(files.NameOnDisk(scratch / path), scratch / found) << path;
  }
  EXPECT_EQ(files.SimilarNames(scratch / "LIB/two").size(), 2U);
  EXPECT_TRUE(files.SimilarNames(scratch / "lib/two").empty());
}

TEST_F(PosixFileSystemTest, FoldersOfGivenNamesLeaveSimilarOnesAlone) {
  scratch.Write("Out/keep", "");
  EXPECT_TRUE(files.CreateFolders(scratch / "out/a"));
  EXPECT_TRUE(files.IsFolder(scratch / "Out/a"));
  EXPECT_TRUE(files.CreateNamedFolders(scratch / "out/b"));
  EXPECT_FALSE(files.Exists(scratch / "Out/b"));
  EXPECT_TRUE(files.ExamineFolder(scratch / "out/b"));
}

TEST_F(PosixFileSystemTest, BackslashInANameOfTheMachineIsOutOfReach) {
  scratch.Write("odd\\name", "hidden");
  EXPECT_EQ(files.ReadWholeFile(scratch / "odd\\name").GetError().code, ErrorCode::InvalidName);
  EXPECT_EQ(files.WriteWholeFile(scratch / "odd\\name", "x").GetError().code,
            ErrorCode::InvalidName);
  EXPECT_EQ(files.ReadWholeFile("odd\\name").GetError().code, ErrorCode::NotFound);
  EXPECT_EQ(files.ListFolder(scratch.Path())->size(), 1U);
  EXPECT_TRUE(files.CreateFolders(scratch / "odd"));
  EXPECT_TRUE(files.WriteWholeFile(scratch / "odd\\name", "x"));
  EXPECT_TRUE(files.Exists(scratch / "odd/name"));
}

TEST_F(PosixFileSystemTest, ReadersSeeWholeFilesWhileAWriterReplacesThem) {
  const std::string path = scratch / "File";
  const std::string a(40'000, 'a');
  const std::string b(70'000, 'b');
  ASSERT_TRUE(files.WriteWholeFile(path, a));
  std::atomic<bool> stop = false;
  std::atomic<int> torn = 0;
  const auto read = [&](const std::string& name) {
    while (!stop) {
      const auto bytes = files.ReadWholeFile(name);
      if (!bytes || (*bytes != a && *bytes != b)) ++torn;
      (void)files.Exists(scratch / "none");
    }
  };
  std::thread exact(read, path);
  std::thread otherCase(read, scratch / "fILE");
  for (int i = 0; i < 100; ++i) EXPECT_TRUE(files.WriteWholeFile(path, i % 2 == 0 ? b : a));
  stop = true;
  exact.join();
  otherCase.join();
  EXPECT_EQ(torn, 0);
}

// The process reads its drive table only once, so no other test may access a drive.
TEST_F(PosixFileSystemTest, DrivesComeFromTheSettings) {
  const std::string folder = scratch / "disk";
  scratch.Write("disk/other", "");
  scratch.Write("machine/registry.ini",
                "[drives]\nc:=" + folder + "\nD=relative\nEF=" + folder + "\n=" + folder + "\n");
  const testing::ScopedVariable settings("TARN_SETTINGS", scratch.Path().c_str());
  EXPECT_TRUE(FileSystem::Native().WriteWholeFile("C:\\file", "x"));
  EXPECT_EQ(testing::ReadBytes(folder + "/file"), "x");
  for (const std::string drive : {"D", "E", "F"}) {
    EXPECT_FALSE(FileSystem::Native().Exists(drive + ":\\"));
  }
}

TEST_F(PosixFileSystemTest, LongPathsWorkAndOverlongNamesFail) {
  std::string deep = scratch.Path();
  for (int i = 0; i < 10; ++i) deep += "/" + std::string(100, 'd');
  EXPECT_TRUE(files.CreateFolders(deep));
  EXPECT_TRUE(files.WriteWholeFile(deep + "/" + std::string(255, 'n'), "x"));
  EXPECT_TRUE(files.Exists(deep + "/" + std::string(255, 'N')));
  EXPECT_EQ(files.WriteWholeFile(scratch / std::string(256, 'n'), "x").GetError().code,
            ErrorCode::InvalidName);
  EXPECT_FALSE(files.Exists(scratch / std::string(100'000, '/') + "x"));
}

}  // namespace
}  // namespace tarn
