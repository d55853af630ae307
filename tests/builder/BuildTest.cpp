#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <thread>

#include "builder/BuildFixture.h"
#include "platform/files/FileTexts.h"
#include "platform/text/Text.h"
#include "support/MemoryFileSystem.h"
#include "xml/XmlNode.h"

namespace tarn::test {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(Build, OnlyWhatDependsOnAChangedFileIsRebuiltAndChildrenComeFirst) {
  struct Row {
    const char* change;
    std::vector<std::string> runs;
    bool isGone = false;
  };
  const std::vector<Row> rows = {
      {"/p/b.c", {"cc b.c", "ld a.o b.o c.o"}},
      {"/p/a.h", {"cc a.c", "cc b.c", "cc c.c", "ld a.o b.o c.o"}},
      {"/p/c.o", {"cc c.c", "ld a.o b.o c.o"}},  // rebuilt manually, although newer than its source
      {"/p/c.o", {"cc c.c", "ld a.o b.o c.o"}, true},
      {"/p/demo.elf", {"ld a.o b.o c.o"}},
  };
  for (const Row& row : rows) {
    BuildFixture world;
    world.dependencies = "<D Header=\"/p/a.h\" /><D />";
    world.Open();
    EXPECT_THAT(world.Build(kWorkerBuildAll), Contains("WorkerEnded 1 /tmp/log.xml"));
    EXPECT_THAT(world.TakeRuns(), ElementsAre("cc a.c", "cc b.c", "cc c.c", "ld a.o b.o c.o"));
    if (row.isGone) world.disk.Erase(row.change);
    if (!row.isGone) world.Touch(row.change);
    world.Build(kWorkerBuildAll);
    EXPECT_EQ(world.TakeRuns(), row.runs) << row.change;
    EXPECT_THAT(world.Build(kWorkerBuildAll), Contains("WorkerEnded 1 /tmp/log.xml"));
    EXPECT_THAT(world.TakeRuns(), IsEmpty()) << row.change;
  }
}

TEST(Build, ANameThatAToolReportedCountsExactly) {
  const std::pair<const char*, std::vector<std::string>> rows[] = {
      {"/p/A.h", {"cc a.c", "cc b.c", "cc c.c", "ld a.o b.o c.o"}},
      {"/p/C.c", {"cc c.c", "ld a.o b.o c.o"}},
  };
  for (const auto& [name, runs] : rows) {
    BuildFixture world;
    world.dependencies = "<D Header=\"/p/a.h\" />";
    world.Open();
    world.Build(kWorkerBuildAll);
    world.TakeRuns();
    world.disk.Erase(FoldCase(name));
    world.disk.AddFile(name, "");
    world.Build(kWorkerBuildAll);
    EXPECT_EQ(world.TakeRuns(), runs) << name;
  }
}

TEST(Build, AFailureEndsTheBuildUnlessMoreArePermitted) {
  const struct {
    int limit;
    const char* header;  // read by every source
    std::vector<std::string> runs;
  } rows[] = {
      {1, "/p/a.h", {"cc a.c"}},
      {2, "/p/a.h", {"cc a.c", "cc b.c", "cc c.c"}},
      {0, "/p/a.h", {"cc a.c", "cc b.c", "cc c.c"}},
      {0, "/p/a.o", {"cc a.c"}},  // missing because of the failure
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.header + std::to_string(row.limit));
    BuildFixture world;
    world.dependencies = std::string("<D Header=\"") + row.header + "\" />";
    world.Open();
    world.Build(kWorkerBuildAll);
    world.TakeRuns();
    world.failing = "a.c";
    world.builder->SetFailureLimit(row.limit);
    const std::vector<std::string> lines = world.Build(kWorkerRebuildAll);
    EXPECT_THAT(lines, Contains("OutputInvalid \"\" -1"));
    EXPECT_THAT(lines, Contains("WorkerEnded 0 /tmp/log.xml"));
    EXPECT_EQ(world.TakeRuns(), row.runs);
    EXPECT_EQ(world.builder->GetBuildState(), StateFailed);
  }
}

TEST(Build, AnUpToDateTreeIsExaminedOnceAFile) {
  BuildFixture world;
  world.dependencies = "<D Header=\"/p/a.h\" />";
  world.Open();
  world.Build(kWorkerBuildAll);
  world.disk.TakeOperations();
  world.Build(kWorkerBuildAll);
  std::vector<std::string> examined = world.disk.Operations("examine");
  std::sort(examined.begin(), examined.end());
  // The log file is checked by its writer.
  std::erase_if(examined, [](const std::string& line) { return line.find("/tmp") != line.npos; });
  EXPECT_THAT(examined, ElementsAre("examine /p/a.c", "examine /p/a.h", "examine /p/a.o",
                                    "examine /p/b.c", "examine /p/b.o", "examine /p/c.c",
                                    "examine /p/c.o", "examine /p/demo.elf"));
}

TEST(Build, OnlyTheOutputsOfAToolThatWritesNothingElseAreExaminedAgain) {
  const std::pair<std::vector<FileText>, bool> rows[] = {
      {{{"end", ""}}, false},
      {{{"nothing-else", "yes"}, {"search", "/usr/include"}}, true},
      {{{"nothing-else", "yes"}, {"search", "/p"}}, false},  // headers, too
  };
  for (const auto& [access, isOnce] : rows) {
    BuildFixture world;
    world.components.Tools().runFiles = JoinFileTexts(access);
    world.Open();
    world.Build(kWorkerBuildAll);
    world.Touch("/p/a.c");
    world.TakeRuns();
    world.disk.TakeOperations();
    world.Build(kWorkerBuildAll);
    EXPECT_THAT(world.TakeRuns(), ElementsAre("cc a.c", "ld a.o b.o c.o"));
    const std::vector<std::string> examined = world.disk.Operations("examine");
    EXPECT_EQ(std::count(examined.begin(), examined.end(), "examine /p/c.c") == 1, isOnce);
    world.Touch("/p/c.c");
    world.Build(kWorkerBuildAll);
    EXPECT_THAT(world.TakeRuns(), ElementsAre("cc c.c", "ld a.o b.o c.o"));
  }
}

TEST(MtimeCache, AFileIsForgottenUnderAllItsNames) {
  tarn::testing::MemoryFileSystem disk;
  const std::vector<std::string> paths = {"/p/a.o", "/link/A.o", "/p/b.o"};
  for (const std::string& path : paths) disk.AddFile(path, "");
  MtimeCache times(disk);
  for (const std::string& path : paths) times.Get(path);
  const std::uint64_t epoch = times.GetEpoch();
  for (int round = 0; round < 2; ++round) {
    const std::uint64_t changes = times.GetChangeCount();
    times.Forget("/p/a.o");
    EXPECT_EQ(times.Find("/p/a.o"), nullptr);
    EXPECT_EQ(times.Find("/link/A.o"), nullptr);
    EXPECT_NE(times.Find("/p/b.o"), nullptr);
    EXPECT_NE(times.GetChangeCount(), changes);
    for (const std::string& path : paths) times.Get(path);
  }
  EXPECT_EQ(times.GetEpoch(), epoch);
}

// Otherwise adding a file to a large application would check all its other files.
TEST(Build, AnUnbuiltFileMakesWhatItBelongsToStaleWithoutAnyQuery) {
  BuildFixture world;
  world.Open();
  world.Build(kWorkerBuildAll);
  CXmlNode* const unbuilt = world.Node("c.c");
  const auto isStale = [&](CXmlNode* node) { return !world.builder->IsNodeUpToDate(node); };
  EXPECT_FALSE(isStale(unbuilt));
  EXPECT_FALSE(isStale(world.Node("lib")));
  unbuilt->RemoveAttr(unbuilt->GetAttr("LastBuilt"));
  world.disk.TakeOperations();
  for (CXmlNode* const each : {unbuilt, world.Node("lib"), world.Application()}) {
    EXPECT_TRUE(isStale(each));
  }
  EXPECT_THAT(world.disk.Operations("examine"), IsEmpty());
  EXPECT_FALSE(isStale(world.Node("a.c")));
  unbuilt->SetAttrValue("Exclude", "Yes");
  EXPECT_FALSE(isStale(world.Node("lib"))) << "excluded files don't count";
}

TEST(Build, APartThatIsLaterThanTheWholeCountsOnlyWhenItIsLinked) {
  for (const bool isLinked : {true, false}) {
    BuildFixture world;
    world.Open();
    world.Node("a.c")->SetAttrValue("LinkExclude", isLinked ? "" : "Yes");
    world.Build(kWorkerBuildAll);
    world.TakeRuns();
    // Built by another program, and reported as it is now.
    world.Touch("/p/a.o");
    world.builder->Information().SetBuildInfo(
        "", ("<I><F Header=\"/p/a.o\" Infos=\"\" Date=\"" +
             std::to_string(world.disk.ModifiedOf("/p/a.o").value_or(0)) + "\" /></I>")
                .c_str());
    world.Build(kWorkerBuildAll);
    if (isLinked) {
      EXPECT_THAT(world.TakeRuns(), ElementsAre("ld a.o b.o c.o"));
    } else {
      EXPECT_THAT(world.TakeRuns(), IsEmpty());
    }
  }
}

TEST(Build, CleanDeletesProductsAndTheDebugDatabase) {
  BuildFixture world;
  world.Open();
  world.Build(kWorkerBuildAll);
  world.AddFile("/p/demo.tdb", "");
  world.TakeRuns();
  world.Build(kWorkerCleanAll);
  EXPECT_THAT(world.TakeRuns(), IsEmpty());
  for (const char* path : {"/p/a.o", "/p/c.o", "/p/demo.elf", "/p/demo.tdb"}) {
    EXPECT_EQ(world.FileText(path), "(none)") << path;
  }
  EXPECT_EQ(world.FileText("/p/a.c"), "source");
}

TEST(Build, TheNodeThatWasCurrentIsCurrentAgain) {
  BuildFixture world;
  world.Open();
  world.model->SetCurrentNode(world.Node("b.c"));
  world.Build(kWorkerBuildAll);
  EXPECT_EQ(world.model->GetOwnCurrentNode(), world.Node("b.c"));
}

TEST(Build, AStopBetweenTwoToolsEndsTheWalk) {
  BuildFixture world;
  world.Open();
  world.host.actions[kMsgLogLine] = [&world] {
    if (world.host.lines.back().find("b.c") != std::string::npos) world.builder->RequestStop();
  };
  EXPECT_THAT(world.Build(kWorkerBuildAll), Contains("WorkerEnded 0 /tmp/log.xml"));
  EXPECT_THAT(world.TakeRuns(), ElementsAre("cc a.c", "cc b.c"));
  // The next start clears the stop request.
  world.host.actions.erase(kMsgLogLine);
  EXPECT_THAT(world.Build(kWorkerBuildAll), Contains("WorkerEnded 1 /tmp/log.xml"));
}

TEST(Build, WhatChangesTheProjectIsRefusedWhileAWorkerLives) {
  BuildFixture world;
  world.Open();
  world.host.actions[kMsgToolSucceeded] = [&world] {
    EXPECT_EQ(world.model->CloseProject(), 0);
    EXPECT_EQ(world.model->Options().SelectConfiguration("Other"), 0);
    world.builder->RequestStop();
    EXPECT_EQ(world.model->CloseProject(), 0) << "a stop request must not free the tree";
    EXPECT_EQ(world.builder->BuildSynchronously(), 0);
  };
  world.Build(kWorkerBuildAll);
  EXPECT_NE(world.Node("a.c"), nullptr);
  EXPECT_THAT(world.TakeRuns(), ElementsAre("cc a.c"));
}

TEST(Build, TheNextBuildMayStartInsideTheMessageThatEndsOne) {
  BuildFixture world;
  world.Open();
  int ends = 0;
  world.host.actions[kMsgWorkerEnded] = [&] {
    if (++ends < 3) world.builder->StartBuildThread(kWorkerRebuildAll);
  };
  world.builder->StartBuildThread(kWorkerBuildAll);
  EXPECT_TRUE(MessageLoop::ForCurrentThread()->PumpUntil([&] { return ends == 3; },
                                                         std::chrono::seconds(20)));
  EXPECT_EQ(world.TakeRuns().size(), 12u);
}

TEST(Build, ABuilderThatDiesWaitsForItsWorker) {
  BuildFixture world;
  world.Open();
  std::atomic<bool> isRunning = false;
  world.components.Tools().onRun = [&](const ToolRun&) {
    isRunning = true;
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    return 1;
  };
  world.builder->StartBuildThread(kWorkerBuildAll);
  MessageLoop::ForCurrentThread()->PumpUntil([&] { return isRunning.load(); },
                                             std::chrono::seconds(20));
  world.builder.reset();
  EXPECT_EQ(world.components.Tools().CallsOf("RunTool").size(), 1u);
}

TEST(Build, BuildingOnTheHostsThreadWritesNoEndAndChangesNoState) {
  BuildFixture world;
  world.Open();
  EXPECT_EQ(world.builder->BuildSynchronously(), 1);
  EXPECT_EQ(world.builder->GetBuildState(), StateIdle);
  EXPECT_THAT(world.host.LinesOf(kMsgWorkerEnded), IsEmpty());
  EXPECT_THAT(world.TakeRuns(), ElementsAre("cc a.c", "cc b.c", "cc c.c", "ld a.o b.o c.o"));
  world.builder->RequestStop();
  EXPECT_EQ(world.builder->BuildSynchronously(), 0)
      << "a stop asked for while idle holds until a worker starts";
}

}  // namespace
}  // namespace tarn::test
