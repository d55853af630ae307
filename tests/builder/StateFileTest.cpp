#include <gtest/gtest.h>

#include <functional>

#include "builder/BuildRecordStore.h"

namespace tarn {
namespace {

constexpr const char* kProject = "blinky.tprj";

// Adds a record with a source, a header and a compiler; header and compiler are shared by all
// records.
void PutRecord(BuildRecordStore& store, const std::string& output, std::int64_t time) {
  BuildRecord record;
  record.application = store.Intern("/p/blinky.tapp");
  record.output = store.AddVersion(output, {time, 4, 5, 6, 7, 8}, 0);
  record.infos = store.Intern("12 bytes, 100%\nfine");
  record.date = store.Intern(std::to_string(time));
  record.search = store.Intern("");
  record.signature = UINT64_MAX;
  record.command = 9;
  record.milliseconds = static_cast<std::uint32_t>(time % 10);  // unknown for some
  record.sources = 1;
  record.programs = 1;
  record.inputs = {store.AddVersion(output + ".c", {1, 2, 3, 4, 5, 6}, 77),
                   store.AddVersion("/p/a.h", {2, 2, 3, 4, 5, 6}, 78),
                   store.AddVersion("/bin/cc", {3, 2, 3, 4, 5, 6}, 0)};
  record.folders = store.AddFolders({record.inputs[1]});
  record.passedOver = {store.Intern("/p/a.h")};
  store.Put(std::move(record));
}

// Journal of two builds, the second of which replaces one record.
std::string TwoBlocks() {
  BuildRecordStore store;
  PutRecord(store, "/p/main.o", 10);
  PutRecord(store, "/p/uart.o", 11);
  std::string bytes = store.RestartJournal(kProject);
  PutRecord(store, "/p/main.o", 20);
  return bytes + store.TakeNews();
}

std::string DateOf(const BuildRecordStore& store, const std::string& output) {
  const std::size_t record = store.Find("/p/blinky.tapp", output);
  if (record == BuildRecordStore::kNone) return "none";
  return std::string(store.Text(store.Get(record).date));
}

TEST(StateFile, StringsAndVersionsThatRecordsShareAreStoredOnce) {
  BuildRecordStore store;
  PutRecord(store, "/p/a%.o", 10);
  PutRecord(store, "/p/b.o", 11);
  const std::string body =
      "T /p/blinky.tapp\nT /p/a%25.o\nT 12 bytes, 100%25%0Afine\nT 10\nT \nT /p/a%25.o.c\n"
      "T /p/a.h\nT /bin/cc\nT /p/b.o\nT 11\nT /p/b.o.c\n"
      "F 1 10 5 4 7 8 6 0\nF 5 1 3 2 5 6 4 77\nF 6 2 3 2 5 6 4 78\nF 7 3 3 2 5 6 4 0\n"
      "F 8 11 5 4 7 8 6 0\nF 10 1 3 2 5 6 4 77\n"
      "G 2\nA 0\nR 0 2 3 4 1 1 1 -1 9\nI 1 2 3\nP 6\nR 4 2 9 4 1 1 1 -1 9\nD 1\nI 5 2 3\nP 6\n";
  std::uint64_t chain = StateChecksum(StateHead(kProject));
  EXPECT_EQ(store.RestartJournal(kProject), StateHead(kProject) + StateBlock(body, chain));
}

TEST(StateFile, WhatWasWrittenIsReadAndAppendedTo) {
  BuildRecordStore store;
  ASSERT_EQ(store.Load(TwoBlocks(), kProject), StateVerdict::Good);
  EXPECT_EQ(store.GetJournalLength(), TwoBlocks().size());
  EXPECT_FALSE(store.HasNews());
  EXPECT_EQ(store.GetCount(), 2u);
  EXPECT_EQ(DateOf(store, "/p/main.o"), "20");
  const BuildRecord& record = store.Get(store.Find("/p/blinky.tapp", "/p/uart.o"));
  EXPECT_EQ(record.signature, UINT64_MAX);
  ASSERT_EQ(record.Dependencies().size(), 1u);
  EXPECT_EQ(store.PathOf(record.Dependencies()[0]), "/p/a.h");
  EXPECT_EQ(store.Version(record.Dependencies()[0]).status.inode, 6u);
  // Reads the same after being appended to and after being compacted.
  store.Drop(store.Find("/p/blinky.tapp", "/p/main.o"));
  store.RenewChanged(record.inputs[0], 99);
  PutRecord(store, "/p/new.o", 30);
  BuildRecordStore appended;
  ASSERT_EQ(appended.Load(TwoBlocks() + store.TakeNews(), kProject), StateVerdict::Good);
  BuildRecordStore compacted;
  ASSERT_EQ(compacted.Load(store.Save(kProject), kProject), StateVerdict::Good);
  for (const BuildRecordStore* each : {&appended, &compacted}) {
    EXPECT_EQ(DateOf(*each, "/p/main.o"), "none");
    EXPECT_EQ(DateOf(*each, "/p/new.o"), "30");
    const std::size_t uart = each->Find("/p/blinky.tapp", "/p/uart.o");
    EXPECT_EQ(each->Version(each->Get(uart).inputs[0]).status.changed, 99);
    EXPECT_EQ(each->Save(kProject), compacted.Save(kProject));
  }
}

// A record read from a damaged file must be one that was written.
TEST(StateFile, AChangedOrCutFileIsGoodUpToTheDamage) {
  const std::string good = TwoBlocks();
  const std::size_t head = StateHead(kProject).size();
  BuildRecordStore whole;
  whole.Load(good, kProject);
  const auto check = [&](const std::string& bytes, std::size_t place) {
    BuildRecordStore store;
    const StateVerdict verdict = store.Load(bytes, kProject);
    if (place < head) {
      EXPECT_NE(verdict, StateVerdict::Good) << place;
    }
    const std::string main = DateOf(store, "/p/main.o");
    EXPECT_TRUE(main == "none" || main == "10") << place;
    EXPECT_LE(store.GetJournalLength(), place) << place;
  };
  for (std::size_t i = 0; i < good.size(); ++i) {
    for (const int change : {1, 0x20, 0x80}) {
      std::string bytes = good;
      bytes[i] = static_cast<char>(bytes[i] ^ change);
      check(bytes, i);
    }
    check(good.substr(0, i), i);
  }
  BuildRecordStore grown;
  EXPECT_EQ(grown.Load(good + "B 3 ", kProject), StateVerdict::Good);
  EXPECT_EQ(grown.GetJournalLength(), good.size());
}

// Each record of a program lists all its objects, so a few hundred runs of the linker may fill more
// than all other records.
TEST(StateFile, IsWastefulWithManyReplacedListsOfFiles) {
  BuildRecordStore store;
  const auto link = [&store] {
    BuildRecord record;
    record.application = store.Intern("/p/blinky.tapp");
    record.output = store.AddVersion("/p/big.elf", {1, 2, 3, 4, 5, 6}, 7);
    record.infos = record.date = record.search = store.Intern("");
    record.sources = 20'000;
    for (std::uint32_t i = 0; i < record.sources; ++i) {
      record.inputs.push_back(store.AddVersion("/p/" + std::to_string(i), {1, 2, 3, 4, 5, 6}, 7));
    }
    store.Put(std::move(record));
    return store.TakeNews();
  };
  std::string journal = store.RestartJournal(kProject);
  for (int i = 0; i < 2; ++i) journal += link();
  EXPECT_FALSE(store.IsWasteful());
  for (int i = 0; i < 2; ++i) journal += link();
  EXPECT_TRUE(store.IsWasteful());
  BuildRecordStore read;
  read.Load(journal, kProject);
  EXPECT_TRUE(read.IsWasteful());
  const std::string compacted = read.Save(kProject);
  read.Load(compacted, kProject);
  EXPECT_EQ(read.GetJournalLength(), compacted.size());
  EXPECT_FALSE(read.IsWasteful());
}

// The status of files may change with each build, for example if their owner is set again.
TEST(StateFile, IsWastefulWithManyRenewedVersions) {
  BuildRecordStore store;
  PutRecord(store, "/p/main.o", 10);
  std::string journal = store.RestartJournal(kProject);
  const std::uint32_t source = store.Get(store.Find("/p/blinky.tapp", "/p/main.o")).inputs[0];
  for (int i = 0; i < 20'000; ++i) {
    store.RenewChanged(source, i);
    if (i % 1000 == 999) journal += store.TakeNews();
    if (i == 999) {
      EXPECT_FALSE(store.IsWasteful());
    }
  }
  EXPECT_TRUE(store.IsWasteful());
  BuildRecordStore read;
  read.Load(journal, kProject);
  EXPECT_TRUE(read.IsWasteful());
  read.Load(read.Save(kProject), kProject);
  EXPECT_FALSE(read.IsWasteful());
}

TEST(StateFile, OtherVersionsAndProjectsAreToldApart) {
  std::string other = TwoBlocks();
  other.replace(other.find("state 2"), 7, "state 1");
  BuildRecordStore store;
  EXPECT_EQ(store.Load(other, kProject), StateVerdict::OtherVersion);
  EXPECT_EQ(store.Load(TwoBlocks(), "else.tprj"), StateVerdict::Foreign);
  EXPECT_EQ(store.Load("", kProject), StateVerdict::Damaged);
  EXPECT_EQ(store.GetCount(), 0u);
}

TEST(StateFile, WellWrappedNonsenseIsDamaged) {
  const std::string start = "T a\nF 0 1 1 1 1 1 1 1\nA 0\n";
  const std::string record = start + "R 0 0 0 0 0 0 0 1 1\n";
  const std::string bodies[] = {
      "T a",                         // last line without line feed
      "A 0\n",                       // number before its string
      "T a\nR 0 0 0 0 0 0 0 1 1\n",  // record without application
      "T a\nF 0 1 1 1 1 1 1\n",      // too few numbers
      "T a\nF 0 1 1 1 1 1 1 1 1\n",  // too many numbers
      "T a\nF 1 1 1 1 1 1 1 1\n",    // out of range
      start + "R 0 0 1 0 0 0 0 1 1\n",
      start + "R 1 0 0 0 0 0 0 1 1\n",       // unknown version
      start + "R 0 0 0 0 1 0 0 1 1\n",       // unknown set of folders
      start + "R 0 0 0 0 0 1 0 1 1\n",       // more sources than inputs
      start + "R 0 0 0 0 0 1 1 1 1\nI 0\n",  // sources and programs overlap
      start + "R 0 0 0 0 0 0 4294967295 1 1\nI 0\n",
      start + "R 0 0 0 0 0 0 0 1 1 \n",  // trailing space
      start + "R 0 0 0 0 0 0 0 1\n",     // too few numbers
      start + "I 0\n",                   // inputs without a record
      start + "G 1\n",
      record + "I 0\nI 0\n",
      record + "I 9\n",
      record + "D x\n",
      record + "I -1\n",
      record + "I 4294967296\n",
      record + "P 1\n",
      record + "X 1\n",
      record + "C 1 1\n",
      "T a%2\n",  // invalid escape
      "Z 0\n",
      "\n",
  };
  std::uint64_t first = StateChecksum(StateHead(kProject));
  BuildRecordStore well;
  ASSERT_EQ(well.Load(StateHead(kProject) + StateBlock(record, first), kProject),
            StateVerdict::Good);
  for (const std::string& body : bodies) {
    const std::string head = StateHead(kProject);
    std::uint64_t chain = StateChecksum(head);
    BuildRecordStore store;
    EXPECT_EQ(store.Load(head + StateBlock(body, chain), kProject), StateVerdict::Damaged) << body;
    EXPECT_EQ(store.GetCount(), 0u) << body;
  }
}

}  // namespace
}  // namespace tarn
