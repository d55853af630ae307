#include "hosts/frame/BuildRestore.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "xml/XmlNode.h"

namespace tarn::host {
namespace {

const std::vector<ToolCommand> kCommand = {{"gcc", "/p", {"-c", "/p/a.c"}}};
const std::vector<ToolCommand> kOtherCommand = {{"gcc", "/p", {"-O2", "-c", "/p/a.c"}}};

struct RestoreCase {
  const char* name;
  const char* inputs;                // of application "app"
  std::vector<ToolCommand> command;  // that would be run now
  int questions;
  bool restored;
  bool dropped;
  std::uint64_t signatureAfter;
};

std::vector<DroppedRecord> RestoreAll(BuildInformationStore& store, const std::string& inputs,
                                      const CommandQuestion& askCommands,
                                      const RecordSink& restore) {
  RecordRestorer restorer(store, inputs, askCommands, restore);
  while (restorer.Step()) {
  }
  return restorer.GetDropped();
}

TEST(BuildRestore, ARecordHoldsWhileNothingThatTheToolIsGivenChanged) {
  const RestoreCase cases[] = {
      {"same", "A app\nN 0000000000000001 /p/a.o\n", kCommand, 0, true, false, 1},
      {"same command", "A app\nN 0000000000000002 /p/a.o\n", kCommand, 1, true, false, 2},
      {"other command", "A app\nN 0000000000000002 /p/a.o\n", kOtherCommand, 1, false, true, 1},
      {"nobody knows", "A app\nN 0000000000000002 /p/a.o\n", {}, 1, false, true, 1},
      {"no such node", "A app\nN 0000000000000001 /p/b.o\n", kCommand, 0, false, false, 1},
      {"other application", "A else\nN 0000000000000001 /p/a.o\n", kCommand, 0, false, false, 1},
      {"unreadable", "N 0000000000000001 /p/a.o\nA app\nN 1 /p/a.o\n", kCommand, 0, false, false,
       1},
  };
  for (const RestoreCase& each : cases) {
    SCOPED_TRACE(each.name);
    BuildInformationStore store;
    store.Put("app", {"/p/a.o", "i", "7", 1, {"/p/a.h"}, kCommand});
    store.MarkSaved();
    int questions = 0;
    std::string restored;
    const auto dropped = RestoreAll(
        store, each.inputs,
        [&](auto application, auto output) {
          ++questions;
          EXPECT_EQ(application, "app");
          EXPECT_EQ(output, "/p/a.o");
          return each.command;
        },
        [&](const auto& application, const auto& xml) { restored += application + xml; });
    EXPECT_EQ(questions, each.questions);
    EXPECT_EQ(restored, each.restored ? "app<I><F Header=\"/p/a.o\" Infos=\"i\" Date=\"7\" >"
                                        "<D Header=\"/p/a.h\" /></F></I>"
                                      : "");
    ASSERT_EQ(dropped.size(), each.dropped ? 1u : 0u);
    if (each.dropped) {
      EXPECT_EQ(dropped[0].output, "/p/a.o");
    }
    EXPECT_EQ(store.GetSignature(0), each.signatureAfter);
    EXPECT_EQ(store.IsChanged(), each.signatureAfter != 1);
    // Also a record that doesn't hold now may hold again, e.g. in another configuration.
    EXPECT_EQ(store.GetCount(), 1u);
  }
}

TEST(BuildRestore, ARecordWithoutACommandNeverHoldsOnAnUnknownOne) {
  BuildInformationStore store;
  store.Put("app", {"/p/a.o", "", "7", 1, {}, {}});
  int restored = 0;
  const auto dropped = RestoreAll(
      store, "A app\nN 0000000000000002 /p/a.o\n",
      [](auto, auto) { return std::vector<ToolCommand>(); },
      [&](const auto&, const auto&) { ++restored; });
  EXPECT_EQ(restored, 0);
  EXPECT_EQ(dropped.size(), 1u);
}

TEST(BuildRestore, NoRecordIsLostOrDoubledWhereTheTextIsCut) {
  BuildInformationStore store;
  std::string inputs;
  std::string expected;
  for (const char* application : {"one", "two"}) {
    inputs += std::string("A ") + application + "\n";
    for (int i = 0; i < 1000; ++i) {
      const std::string output = "/" + std::string(150, 'p') + std::to_string(i) + ".o";
      store.Put(application, {output, "", "7", 1, {}, {}});
      inputs += "N 0000000000000001 " + output + "\n";
      expected += application + output + "\n";
    }
  }
  std::string restored;
  std::size_t longest = 0;
  RestoreAll(
      store, inputs, [](auto, auto) { return std::vector<ToolCommand>(); },
      [&](const auto& application, const auto& xml) {
        longest = std::max(longest, xml.size());
        CXmlNode records;
        ASSERT_NE(records.Load(xml, g_xmlParseInfo), nullptr);
        for (const CXmlNode* each : records.GetChildren()) {
          restored += application + each->GetAttrValue("Header") + "\n";
        }
      });
  EXPECT_EQ(restored, expected);
  EXPECT_LT(longest, 100'000u);
}

}  // namespace
}  // namespace tarn::host
