#include <gtest/gtest.h>

#include <functional>

#include "builder/BuildFixture.h"
#include "builder/BuildRecordStore.h"
#include "builder/StateText.h"

namespace tarn::test {
namespace {

constexpr const char* kState = "/p/demo.tstate";
constexpr const char* kProject = "demo.tprj";

void OpenState(BuildFixture& world) {
  world.builder->Information().OpenBuildState(kState);
  while (!world.builder->Information().RestoreFor(std::chrono::seconds(1))) {
  }
}

// A change that another process makes to the journal while the project is open here.
struct Row {
  const char* name;
  std::function<std::string(const std::string& journal)> change;
  std::vector<std::string> runs;
};

std::string WithoutRecordOfA(const std::string& journal) {
  BuildRecordStore store;
  store.Load(journal, kProject);
  store.Drop(store.Find("/p/demo.tapp", "/p/a.o"));
  return journal + store.TakeNews();
}

TEST(RecordLoss, WhatTheJournalHasNoRecordOfAnyMoreIsBuiltAgain) {
  const std::vector<std::string> all = {"cc a.c", "cc b.c", "cc c.c", "ld a.o b.o c.o"};
  const Row rows[] = {
      {"a failed build has dropped a record", WithoutRecordOfA, {"cc a.c", "ld a.o b.o c.o"}},
      {"cut", [](const std::string& journal) { return journal.substr(0, journal.size() / 2); }, {}},
      {"replaced by an older one", [](const std::string&) { return StateHead(kProject); }, all},
      {"deleted", {}, all},
      {"untouched", [](const std::string& journal) { return journal; }, {}},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    BuildFixture world;
    world.Open();
    OpenState(world);
    world.Build(kWorkerBuildAll);
    EXPECT_EQ(world.TakeRuns(), all);
    const std::string journal = world.disk.BytesOf(kState).value_or("");
    world.disk.Erase(kState);
    if (row.change) world.disk.AddFile(kState, row.change(journal));
    OpenState(world);
    world.Build(kWorkerBuildAll);
    const std::vector<std::string> runs = world.TakeRuns();
    if (row.name == std::string("cut")) {
      EXPECT_GE(runs.size(), 2u);  // the records after the damage
    } else {
      EXPECT_EQ(runs, row.runs);
    }
    world.Build(kWorkerBuildAll);
    EXPECT_TRUE(world.TakeRuns().empty());
  }
}

}  // namespace
}  // namespace tarn::test
