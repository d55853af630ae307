#include "hosts/frame/BuildRestore.h"

#include <gtest/gtest.h>

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
    const RestoredRecords result =
        RestoreRecords(store, ParseBuildInputs(each.inputs), [&](auto application, auto output) {
          ++questions;
          EXPECT_EQ(application, "app");
          EXPECT_EQ(output, "/p/a.o");
          return each.command;
        });
    EXPECT_EQ(questions, each.questions);
    ASSERT_EQ(result.applications.size(), each.restored ? 1u : 0u);
    if (each.restored) {
      EXPECT_EQ(result.applications[0].application, "app");
      EXPECT_EQ(result.applications[0].xml,
                "<I><F Header=\"/p/a.o\" Infos=\"i\" Date=\"7\" ><D Header=\"/p/a.h\" /></F></I>");
    }
    ASSERT_EQ(result.dropped.size(), each.dropped ? 1u : 0u);
    if (each.dropped) {
      EXPECT_EQ(result.dropped[0].output, "/p/a.o");
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
  const RestoredRecords result =
      RestoreRecords(store, ParseBuildInputs("A app\nN 0000000000000002 /p/a.o\n"),
                     [](auto, auto) { return std::vector<ToolCommand>(); });
  EXPECT_TRUE(result.applications.empty());
  EXPECT_EQ(result.dropped.size(), 1u);
}

}  // namespace
}  // namespace tarn::host
