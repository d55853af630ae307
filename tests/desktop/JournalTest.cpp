// Journals left by killed processes, with write errors and damaged files.
#include "hosts/desktop/Journal.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>

#include "support/MemoryFileSystem.h"
#include "support/TestEnvironment.h"

namespace tarn::host {
namespace {

using testing::MemoryFileSystem;

std::shared_ptr<const std::string> Text(const char* text) {
  return std::make_shared<const std::string>(text);
}

JournalContent Content(const char* typed) {
  JournalContent content;
  content.seconds = 77;
  content.project = "/p/a b.tprj";
  content.projectTexts = Text("4 /p/a.tapp\nours");
  content.projectBases = Text("4 /p/a.tapp\nbase");
  content.texts = {{"/p/main.c", Text(typed), 18446744073709551615u, true, true},
                   {"/p/empty\n.c", Text(""), 0, false, false}};
  content.tabs = {"*3:4:/p/main.c", "0:0:/p/other.c"};
  return content;
}

// Returns the whole content as one line.
std::string Show(const JournalReading& reading) {
  std::string all = std::to_string(static_cast<int>(reading.state));
  const JournalContent& content = reading.content;
  const auto add = [&all](const std::string& text) { all += "|" + text; };
  add(std::to_string(content.seconds) + content.project);
  add(content.projectTexts ? *content.projectTexts : "-");
  add(content.projectBases ? *content.projectBases : "-");
  for (const UnsavedText& each : content.texts) {
    add(each.path + "=" + *each.text + std::to_string(each.base) + (each.isUtf8 ? "u" : "") +
        (each.hasMark ? "m" : ""));
  }
  for (const std::string& each : content.tabs) add(each);
  for (const std::string& each : reading.lost) add("lost " + each);
  return all;
}

std::string Shown(const char* typed) {
  JournalReading reading;
  reading.content = Content(typed);
  return Show(reading);
}

std::unique_ptr<Journal> Take(FileSystem& files, const std::string& folder) {
  auto taken = Journal::Take(files, folder);
  EXPECT_TRUE(taken) << taken.GetError().text;
  return taken ? std::move(*taken) : nullptr;
}

TEST(JournalTest, IsReadAsItWasWrittenAndKeepsOnlyWhatItNeeds) {
  MemoryFileSystem disk;
  const auto journal = Take(disk, "/j/1");
  ASSERT_NE(journal, nullptr);
  EXPECT_TRUE(journal->IsEmpty());
  JournalContent content = Content("typed");
  ASSERT_TRUE(journal->Write(content));
  EXPECT_EQ(Show(journal->Read()), Shown("typed"));
  const std::size_t count = disk.AllFiles().size();
  disk.TakeOperations();
  content.texts[0].text = Text("typed more");
  ASSERT_TRUE(journal->Write(content));
  EXPECT_EQ(disk.Operations("write").size(), 2u) << "the text and the index";
  EXPECT_EQ(Show(Take(disk, "/j/1")->Read()), Shown("typed more"));
  EXPECT_EQ(disk.AllFiles().size(), count);
  ASSERT_TRUE(journal->Clear());
  EXPECT_TRUE(journal->IsEmpty());
  EXPECT_EQ(Show(journal->Read()), "0|0|-|-");
}

TEST(JournalTest, AWriteThatEndsAnywhereLeavesTheOneBeforeOrItself) {
  int failures = 0;
  for (const char* const verb : {"reserve", "write", "remove"}) {
    for (std::size_t spared = 0; spared < 8; ++spared) {
      MemoryFileSystem disk;
      const auto journal = Take(disk, "/j/1");
      ASSERT_TRUE(journal->Write(Content("before")));
      disk.FailOn(verb, "", ErrorCode::NoSpace, spared);
      const bool isWritten = static_cast<bool>(journal->Write(Content("after")));
      failures += isWritten ? 0 : 1;
      disk.ClearFailures();
      EXPECT_EQ(Show(Take(disk, "/j/1")->Read()), Shown(isWritten ? "after" : "before"))
          << verb << spared;
      // The same object still works and removes incomplete files.
      ASSERT_TRUE(journal->Write(Content("then")));
      EXPECT_EQ(Show(journal->Read()), Shown("then"));
      EXPECT_EQ(disk.AllFiles().size(), 5u) << verb << spared;
    }
  }
  EXPECT_GT(failures, 6);
}

TEST(JournalTest, DamageIsNoticedAndLeavesTheRest) {
  MemoryFileSystem disk;
  const auto journal = Take(disk, "/j/1");
  ASSERT_TRUE(journal->Write(Content("typed")));
  const std::string index = *disk.BytesOf("/j/1/index");
  for (std::size_t length = 0; length < index.size(); ++length) {
    disk.AddFile("/j/1/index", index.substr(0, length));
    EXPECT_EQ(Show(journal->Read()), "1|0|-|-") << length;
    std::string flipped = index;
    flipped[length] = static_cast<char>(flipped[length] ^ 1);
    disk.AddFile("/j/1/index", flipped);
    EXPECT_NE(Show(journal->Read()).front(), '0') << length;
  }
  disk.AddFile("/j/1/index", "tarn-journal 2 0\nx");
  EXPECT_EQ(Show(journal->Read()), "2|0|-|-");
  // Damage one text after the other.
  disk.AddFile("/j/1/index", index);
  int lost = 0;
  for (const std::string& path : disk.AllFiles()) {
    if (path.find("/text-") == std::string::npos) continue;
    const std::string bytes = *disk.BytesOf(path);
    disk.AddFile(path, bytes + "x");
    const JournalReading reading = journal->Read();
    EXPECT_EQ(reading.state, JournalReading::State::Good);
    lost += static_cast<int>(reading.lost.size());
    EXPECT_EQ(reading.content.texts.size() + (reading.content.projectTexts ? 1 : 0),
              3 - reading.lost.size());
    disk.AddFile(path, bytes);
  }
  EXPECT_EQ(lost, 3) << "the bases alone are no loss";
}

TEST(JournalTest, OnlyItsUserCanReadIt) {
  using std::filesystem::perms;
  testing::ScratchFolder folder;
  const auto journal = Take(FileSystem::Native(), folder / "journal/1");
  ASSERT_TRUE(journal->Write(Content("typed")));
  EXPECT_EQ(std::filesystem::status(folder / "journal/1").permissions(), perms::owner_all);
  for (const auto& each : std::filesystem::directory_iterator(folder / "journal/1")) {
    EXPECT_EQ(each.status().permissions(), perms::owner_read | perms::owner_write) << each.path();
  }
}

TEST(JournalTest, OneProcessTakesAJournalThatItsOwnerHasLeftAndNoOther) {
  testing::ScratchFolder folder;
  FileSystem& disk = FileSystem::Native();
  const std::string root = folder / "data/journal";
  {
    TakenJournals first = TakeJournals(disk, root);
    ASSERT_NE(first.own, nullptr);
    EXPECT_TRUE(first.left.empty());
    ASSERT_TRUE(first.own->Write(Content("typed")));
    TakenJournals second = TakeJournals(disk, root);
    ASSERT_NE(second.own, nullptr);
    EXPECT_NE(second.own->GetFolder(), first.own->GetFolder());
    EXPECT_TRUE(second.left.empty()) << "its owner lives";
  }
  {
    const TakenJournals third = TakeJournals(disk, root);
    ASSERT_EQ(third.left.size(), 1u);
    EXPECT_EQ(Show(third.left[0]->Read()), Shown("typed"));
    const TakenJournals fourth = TakeJournals(disk, root);
    EXPECT_TRUE(fourth.left.empty()) << "the third offers it";
    ASSERT_TRUE(third.left[0]->Clear());
  }
  EXPECT_TRUE(TakeJournals(disk, root).left.empty());
  folder.Write("file", "");
  const TakenJournals none = TakeJournals(disk, folder / "file");
  EXPECT_EQ(none.own, nullptr);
  EXPECT_FALSE(none.problem.text.empty());
  EXPECT_TRUE(none.problem.place.starts_with(folder / "file")) << none.problem.place;
}

}  // namespace
}  // namespace tarn::host
