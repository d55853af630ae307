#include <gtest/gtest.h>

#include "hosts/frame/BuildInformationStore.h"

namespace tarn::host {
namespace {

constexpr const char* kProject = "blinky.tprj";

BuildRecord MainRecord() {
  return {"/p/main.o",
          "12 bytes, 100%\nfine",
          "1764000000",
          0x0123456789abcdef,
          {"/p/a.h", "/p/b.h"},
          {{"gcc", "/p", {"-c", "/p/main.c", "-o", "/p/main.o"}}, {"size", "/p", {}}}};
}

BuildRecord UartRecord() {
  return {"/p/uart.o", "", "1764000001", 5, {"/p/b.h"}, {{"gcc", "/p", {"-c", "/p/uart.c"}}}};
}

std::string SavedText() {
  BuildInformationStore store;
  store.Put("blinky", MainRecord());
  store.Put("blinky", UartRecord());
  return store.Save(kProject);
}

TEST(StateFile, TextsThatRecordsShareStandOnceAndLineEndsAreEscaped) {
  const std::string body =
      "T blinky\n"
      "T /p/main.o\nT 12 bytes, 100%25%0Afine\nT 1764000000\n"
      "T /p/a.h\nT /p/b.h\n"
      "T gcc\nT /p\nT -c\nT /p/main.c\nT -o\n"
      "T size\n"
      "A 0\nR 1 2 3 0123456789abcdef\nD 4 5\nC 6 7 8 9 10 1\nC 11 7\n"
      "T /p/uart.o\nT \nT 1764000001\nT /p/uart.c\n"
      "R 12 13 14 0000000000000005\nD 5\nC 6 7 8 15\n";
  EXPECT_EQ(SavedText(), "tarn-state 1 " + std::to_string(body.size()) + " " +
                             ToHex(StateChecksum(body)) + " blinky.tprj\n" + body);
}

TEST(StateFile, WhatWasSavedComesBackWhole) {
  const std::string saved = SavedText();
  BuildInformationStore store;
  ASSERT_EQ(store.Load(saved, kProject), StateVerdict::Good);
  const std::size_t record = store.Find("blinky", "/p/main.o");
  ASSERT_NE(record, BuildInformationStore::kNone);
  EXPECT_EQ(store.GetSignature(record), MainRecord().signature);
  EXPECT_EQ(store.GetInfos(record), MainRecord().infos);
  EXPECT_EQ(store.GetCommands(record), MainRecord().commands);
  EXPECT_EQ(store.Save(kProject), saved);
  EXPECT_FALSE(store.IsChanged());
}

TEST(StateFile, NoChangedByteGoesUnnoticed) {
  const std::string good = SavedText();
  for (std::size_t i = 0; i < good.size(); ++i) {
    for (const int change : {1, 0x20, 0x80}) {
      std::string bytes = good;
      bytes[i] = static_cast<char>(bytes[i] ^ change);
      BuildInformationStore store;
      EXPECT_NE(store.Load(bytes, kProject), StateVerdict::Good) << "byte " << i;
      EXPECT_EQ(store.GetCount(), 0u) << "byte " << i;
    }
  }
}

TEST(StateFile, NoCutOrGrownFileIsTaken) {
  const std::string good = SavedText();
  for (std::size_t length = 0; length < good.size(); ++length) {
    BuildInformationStore store;
    EXPECT_EQ(store.Load(good.substr(0, length), kProject), StateVerdict::Damaged) << length;
  }
  BuildInformationStore store;
  EXPECT_EQ(store.Load(good + "\n", kProject), StateVerdict::Damaged);
}

TEST(StateFile, OtherVersionsAndProjectsAreToldApart) {
  std::string other = SavedText();
  other.replace(other.find("state 1"), 7, "state 2");
  BuildInformationStore store;
  EXPECT_EQ(store.Load(other, kProject), StateVerdict::OtherVersion);
  EXPECT_EQ(store.Load(SavedText(), "else.tprj"), StateVerdict::Foreign);
  EXPECT_EQ(store.GetCount(), 0u);
}

TEST(StateFile, WellWrappedNonsenseIsDamaged) {
  const char* const bodies[] = {
      "T a",                                    // last line not ended
      "A 0\n",                                  // number in front of its text
      "T a\nR 0 0 0 0000000000000001\n",        // record without application
      "T a\nA 0\nR 0 0 0000000000000001\n",     // too few numbers
      "T a\nA 0\nR 0 0 1 0000000000000001\n",   // beyond the table
      "T a\nA 0\nR 0 0 0 1\n",                  // short signature
      "T a\nA 0\nR 0 0 0 0000000000000001 \n",  // blank at the end
      "T a\nA 0\nD 0\n",                        // dependencies of nothing
      "T a\nA 0\nR 0 0 0 0000000000000001\nD 0\nD 0\n",
      "T a\nA 0\nR 0 0 0 0000000000000001\nD 9\n",
      "T a\nA 0\nR 0 0 0 0000000000000001\nD -1\n",
      "T a\nA 0\nR 0 0 0 0000000000000001\nD 4294967296\n",
      "T a\nA 0\nR 0 0 0 0000000000000001\nC 0\n",                // command without folder
      "T a\nA 0\nR 0 0 0 0000000000000001\nC 0 0\nD 0\nC 0 0\n",  // between commands
      "T a%2\n",                                                  // broken escape
      "X 0\n",
      "\n",
  };
  for (const char* body : bodies) {
    BuildInformationStore store;
    EXPECT_EQ(store.Load(WrapState(kProject, body), kProject), StateVerdict::Damaged) << body;
    EXPECT_EQ(store.GetCount(), 0u) << body;
  }
}

TEST(StateFile, PutReplacesTheRecordOfAnOutputAndKeepDropsOthers) {
  BuildInformationStore store;
  ASSERT_EQ(store.Load(SavedText(), kProject), StateVerdict::Good);
  BuildRecord again = MainRecord();
  again.dependencies = {"/p/b.h"};
  again.infos = "\"13|\"";
  store.Put("blinky", again);
  store.Put("other", MainRecord());
  EXPECT_EQ(store.GetCount(), 3u);
  std::string xml;
  store.AppendXml(store.Find("blinky", "/p/main.o"), xml);
  EXPECT_EQ(xml,
            "<F Header=\"/p/main.o\" Infos=\"&quot;13&slash;&quot;\" Date=\"1764000000\" >"
            "<D Header=\"/p/b.h\" /></F>");
  store.Keep([](std::string_view application, std::string_view output) {
    return application == "blinky" && output == "/p/uart.o";
  });
  EXPECT_EQ(store.GetCount(), 1u);
  EXPECT_EQ(store.Find("blinky", "/p/main.o"), BuildInformationStore::kNone);
  EXPECT_NE(store.Find("blinky", "/p/uart.o"), BuildInformationStore::kNone);
}

TEST(StateFile, ABackslashAtTheEndDoesNotTakeTheNextAttributeAlong) {
  BuildInformationStore store;
  store.Put("a", {"/p/o\\", "", "1", 0, {}, {}});
  std::string xml;
  store.AppendXml(0, xml);
  EXPECT_EQ(xml, "<F Header=\"/p/o\\\\\" Infos=\"\" Date=\"1\" />");
}

}  // namespace
}  // namespace tarn::host
