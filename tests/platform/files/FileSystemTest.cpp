#include "platform/files/FileSystem.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <string>
#include <vector>

#include "platform/files/posix/PosixFileSystem.h"
#include "platform/paths/Paths.h"
#include "support/MemoryFileSystem.h"
#include "support/TestEnvironment.h"

namespace tarn {
namespace {

// Runs each test on the real disk and on its in-memory fake, starting in an empty folder.
class FileSystemTest : public ::testing::TestWithParam<const char*> {
 protected:
  FileSystemTest() {
    if (GetParam() == std::string("memory")) {
      root = "/scratch";
      memory.AddFolder(root);
      memory.MapDrive('m', root);
      files = &memory;
    } else {
      root = scratch.Path();
      files = &posix;
    }
    start = files->CurrentFolder();
    EXPECT_TRUE(files->SetCurrentFolder(root));
  }
  ~FileSystemTest() override { EXPECT_TRUE(files->SetCurrentFolder(start)); }

  std::string In(const std::string& name) const { return root + "/" + name; }
  // Bypasses the rules under test, so that names may differ only in case.
  void Put(const std::string& name, std::string_view bytes = "x") {
    files == &memory ? memory.AddFile(In(name), bytes) : scratch.Write(name, bytes);
  }
  ErrorCode ReadCode(const std::string& path) { return files->ReadWholeFile(path).GetError().code; }
  std::vector<std::string> Names(const std::string& folder) {
    std::vector<std::string> names;
    const auto list = files->ListFolder(folder);
    for (const auto& entry : *list) names.push_back(entry.name + (entry.isFolder ? "/" : ""));
    return names;
  }

  testing::ScratchFolder scratch;
  testing::MemoryFileSystem memory;
  PosixFileSystem posix{[this] { return posix::NameLookup::DriveTable{{'m', scratch.Path()}}; }};
  FileSystem* files = nullptr;
  std::string root;
  std::string start;
};

INSTANTIATE_TEST_SUITE_P(Disks, FileSystemTest, ::testing::Values("posix", "memory"),
                         [](const auto& disk) { return std::string(disk.param); });

TEST_P(FileSystemTest, NamesOfOtherCaseAreFoundOnlyWhenOneIsMeant) {
  Put("Src/Main.c", "main");
  Put("Src/twice.c", "a");
  Put("Src/TWICE.c", "b");
  Put("lib/x.c", "lower");
  Put("LIB/y.c", "upper");
  const struct {
    const char* name;
    std::string path;
    const char* bytes;  // null: not found
  } rows[] = {
      {"exact", In("Src/Main.c"), "main"},
      {"other case of the file", In("Src/MAIN.C"), "main"},
      {"other case of the folder too", In("sRC/main.c"), "main"},
      {"relative, with backslashes", ".\\src\\main.c", "main"},
      {"mapped drive", "M:\\src\\MAIN.c", "main"},
      {"drive without separator", "m:Src/Main.c", "main"},
      {"no way out of a mapped drive", "m:\\..\\..\\Src\\Main.c", "main"},
      {"unmapped drive", "Q:\\src\\main.c", nullptr},
      {"exact one of two", In("Src/twice.c"), "a"},
      {"neither of two", In("Src/Twice.c"), nullptr},
      {"exact folder wins, its file is not there", In("lib/y.c"), nullptr},
      {"the only file of two folders", In("Lib/x.c"), "lower"},
      {"a file of neither folder", In("Lib/z.c"), nullptr},
      {"through a file", In("Src/Main.c/x"), nullptr},
  };
  // The entries of a folder that has not changed for long are cached from the second miss on.
  if (files != &memory) {
    for (const auto& folder : {root, In("Src"), In("lib"), In("LIB")}) {
      const auto now = std::filesystem::file_time_type::clock::now();
      std::filesystem::last_write_time(folder, now - std::chrono::hours(1));
    }
  }
  for (int round = 0; round < 3; ++round) {
    for (const auto& row : rows) {
      SCOPED_TRACE(row.name);
      const Result<std::string> bytes = files->ReadWholeFile(row.path);
      EXPECT_EQ(bytes ? *bytes : "(none)", row.bytes == nullptr ? "(none)" : row.bytes);
      EXPECT_EQ(bytes.GetError().code,
                row.bytes == nullptr ? ErrorCode::NotFound : ErrorCode::None);
      EXPECT_EQ(files->Exists(row.path), row.bytes != nullptr);
      EXPECT_EQ(files->Examine(row.path).has_value(), row.bytes != nullptr);
      // Many files in one folder, which is opened after some of them.
      const std::vector<const char*> same(10, row.path.c_str());
      const auto found = files->ExamineMany(same, std::chrono::steady_clock::time_point::max());
      ASSERT_EQ(found.size(), same.size());
      for (const auto& each : found) EXPECT_EQ(each.has_value(), row.bytes != nullptr);
      EXPECT_EQ(files->ExamineMany(same, {}).size(), 1U);
    }
  }
}

TEST_P(FileSystemTest, WritingInOtherCaseMakesNoSecondFile) {
  Put("Src/Main.c", "old");
  EXPECT_TRUE(files->WriteWholeFile(In("SRC\\main.C"), "new"));
  EXPECT_TRUE(files->WriteWholeFile(In("src/other.c"), "other"));
  EXPECT_TRUE(files->CreateFolders(In("src/Deep/er")));
  EXPECT_EQ(files->CopyFileTo(In("src/other.c"), In("src/MAIN.C")).GetError().code,
            ErrorCode::AlreadyExists);
  EXPECT_TRUE(files->CopyFileTo(In("src/other.c"), In("src/Copy.c")));
  EXPECT_TRUE(files->WriteTail(In("src/copy.C"), 5, 1, "ld"));
  EXPECT_TRUE(files->RemoveFile(In("src/OTHER.c")));
  EXPECT_EQ(Names(root), std::vector<std::string>{"Src/"});
  EXPECT_EQ(Names(In("Src")), (std::vector<std::string>{"Copy.c", "Deep/", "Main.c"}));
  EXPECT_EQ(*files->ReadWholeFile(In("Src/Main.c")), "new");
  EXPECT_EQ(*files->ReadWholeFile(In("Src/Copy.c")), "old");
}

TEST_P(FileSystemTest, ReadOnlyFilesAndFoldersInTheWayAreRefused) {
  Put("folder/inside");
  Put("file", "bytes");
  const auto code = [](const auto& outcome) { return outcome.GetError().code; };
  EXPECT_EQ(ReadCode(In("folder")), ErrorCode::NotAFile);
  EXPECT_EQ(code(files->WriteWholeFile(In("folder"), "x")), ErrorCode::NotAFile);
  EXPECT_EQ(code(files->RemoveFile(In("folder"))), ErrorCode::NotAFile);
  EXPECT_EQ(code(files->CreateFolders(In("file"))), ErrorCode::NotAFile);
  EXPECT_EQ(code(files->WriteWholeFile(In("none/x"), "x")), ErrorCode::NotFound);
  EXPECT_EQ(code(files->RemoveFile(In("none"))), ErrorCode::NotFound);
  EXPECT_EQ(code(files->ListFolder(In("none"))), ErrorCode::NotFound);
  EXPECT_FALSE(files->Examine(In("folder")));
  EXPECT_TRUE(files->IsFolder(In("folder")));
  EXPECT_FALSE(files->IsFolder(In("file")));
  EXPECT_FALSE(files->SetCurrentFolder(In("file")));
  EXPECT_TRUE(files->IsReadOnly(In("none")));
  EXPECT_FALSE(files->IsReadOnly(In("file")));

  if (files == &memory) {
    memory.SetReadOnly(In("file"));
  } else {
    std::filesystem::permissions(In("file"), std::filesystem::perms{0444});
  }
  EXPECT_TRUE(files->IsReadOnly(In("file")));
  EXPECT_EQ(code(files->WriteWholeFile(In("file"), "x")), ErrorCode::ReadOnly);
  EXPECT_EQ(code(files->WriteTail(In("file"), 5, 0, "x")), ErrorCode::ReadOnly);
  EXPECT_EQ(code(files->RemoveFile(In("file"))), ErrorCode::ReadOnly);
  EXPECT_EQ(*files->ReadWholeFile(In("file")), "bytes");
  EXPECT_TRUE(files->CopyFileTo(In("file"), In("copy")));
  EXPECT_FALSE(files->IsReadOnly(In("copy")));
}

TEST_P(FileSystemTest, TailIsWrittenOnlyIntoTheFileThatWasLeft) {
  Put("log", "<a>one</a>");
  const struct {
    std::uint64_t expectedSize, offset;
    const char* bytes;
    ErrorCode code;
    const char* left;
  } rows[] = {
      {9, 6, "x", ErrorCode::Changed, "<a>one</a>"},
      {10, 11, "x", ErrorCode::Changed, "<a>one</a>"},
      {10, 6, "two</a>", ErrorCode::None, "<a>onetwo</a>"},
      {13, 3, "</a>", ErrorCode::None, "<a></a>"},
      {7, 0, "", ErrorCode::None, ""},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(files->WriteTail(In("log"), row.expectedSize, row.offset, row.bytes).GetError().code,
              row.code);
    EXPECT_EQ(*files->ReadWholeFile(In("log")), row.left);
  }
}

TEST_P(FileSystemTest, ContinuingAsksForTheTimeTooAndTellsWhatIsLeft) {
  Put("log", "<a>one</a>");
  const FileStatus left = *files->Examine(In("log"));
  EXPECT_EQ(files->ContinueFile(In("log"), {left.modifiedSeconds - 1, left.size}, 6, "two</a>")
                .GetError()
                .code,
            ErrorCode::Changed);
  EXPECT_FALSE(files->ContinueFile(In("none"), left, 6, "two</a>"));
  EXPECT_EQ(*files->ReadWholeFile(In("log")), "<a>one</a>");
  EXPECT_EQ(*files->ReadFrom(In("log"), 3), "one</a>");
  EXPECT_EQ(*files->ReadFrom(In("log"), 10), "") << "at its end";
  EXPECT_EQ(*files->ReadFrom(In("log"), 11), "") << "after its end";
  EXPECT_FALSE(files->ReadFrom(In("none"), 3));
  const auto after = files->ContinueFile(In("log"), left, 6, "two</a>");
  ASSERT_TRUE(after);
  EXPECT_EQ(after->size, 13U);
  EXPECT_EQ(after->modifiedSeconds, files->Examine(In("log"))->modifiedSeconds);
}

TEST_P(FileSystemTest, NamesThatTheMachineCannotHoldAreInvalid) {
  const std::string_view zero("a\0b", 3);
  for (const std::string& name :
       {std::string(), In("a\nb"), In("\x7F"), In(std::string(zero)), std::string("M:\\a\tb")}) {
    EXPECT_EQ(ReadCode(name), ErrorCode::InvalidName);
    EXPECT_EQ(files->WriteWholeFile(name, "x").GetError().code, ErrorCode::InvalidName);
    EXPECT_EQ(files->CreateFolders(name).GetError().code, ErrorCode::InvalidName);
    EXPECT_EQ(files->CopyFileTo(name, In("to")).GetError().code, ErrorCode::InvalidName);
    EXPECT_FALSE(files->Exists(name));
  }
  EXPECT_TRUE(Names(root).empty());
}

TEST_P(FileSystemTest, ReservedNamesNeverMeetAndAreListedInOrder) {
  const auto first = files->ReserveName(root, "tmp");
  const auto second = files->ReserveName(root, "tmp");
  ASSERT_TRUE(first && second);
  EXPECT_NE(*first, *second);
  EXPECT_TRUE(FileNameOf(*first).starts_with("tmp"));
  EXPECT_EQ(files->Examine(*first)->size, 0U);
  EXPECT_FALSE(files->ReserveName(In("none"), "tmp"));
  Put("a");
  Put("Z");
  EXPECT_EQ(Names(root).size(), 4U);
  EXPECT_EQ(Names(root).front(), "Z");
  EXPECT_TRUE(files->IsFolder(files->TemporaryFolder()));
}

}  // namespace
}  // namespace tarn
