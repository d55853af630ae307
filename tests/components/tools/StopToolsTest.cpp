#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <thread>

#include "components/tools/ToolManager.h"
#include "support/TestEnvironment.h"

namespace tarn::tools {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;
using ::testing::HasSubstr;
using ::testing::Not;

// A real tool manager with definitions in a temporary folder.
class StopTools : public ::testing::Test {
 protected:
  StopTools() {
    // A shell that ignores SIGTERM and has a child that ignores it too.
    folder.Write("config/tools/s.tools",
                 "<T><Tool Name=\"stubborn\"><Step Program=\"/bin/sh\"><Arg V=\"" +
                     folder / "stubborn.sh" +
                     "\"/></Step><Step Program=\"/bin/echo\"><Arg V=\"second\"/></Step></Tool>"
                     "<Tool Name=\"quick\"><Step Program=\"/bin/true\"/></Tool></T>");
    folder.Write("stubborn.sh", "trap '' TERM\nsleep 60 &\necho $! > " + folder / "child" +
                                    "\necho started\nsleep 60\n");
    folder.Write("child", "");
    manager->InitTools(folder.Path().c_str(), folder.Path().c_str(), 0);
  }
  ~StopTools() override { manager->Release(); }

  std::int32_t Run(const char* tool) {
    return manager->RunTool(tool, "", "", (folder / "m.xml").c_str());
  }
  std::string Messages() const { return tarn::testing::ReadBytes(folder / "m.xml"); }

  const tarn::testing::ScratchFolder folder;
  ToolManager* const manager = new ToolManager(ToolEnvironment::Native());
};

TEST_F(StopTools, AStubbornToolAndItsChildAreGoneWithinTwoSeconds) {
  std::int32_t result = -1;
  std::thread worker([&] { result = Run("stubborn"); });
  std::string child;
  for (int i = 0; i < 2000 && !child.ends_with('\n'); ++i) {
    std::this_thread::sleep_for(5ms);
    child = tarn::testing::ReadBytes(folder / "child");
  }
  const auto asked = Clock::now();
  manager->StopTools();
  worker.join();
  const auto taken = Clock::now() - asked;
  ASSERT_NE(child, "");
  EXPECT_LT(taken, 2s);
  EXPECT_TRUE(tarn::testing::EndsSoon(child.substr(0, child.find('\n'))));
  EXPECT_EQ(result, 0);
  EXPECT_THAT(Messages(), HasSubstr("Description=\"stopped\""));
  EXPECT_THAT(Messages(), Not(HasSubstr("second")));
}

TEST_F(StopTools, AStopHoldsUntilToolsAreResumed) {
  EXPECT_EQ(Run("quick"), 1);
  manager->StopTools();
  EXPECT_EQ(Run("quick"), 0);
  EXPECT_THAT(Messages(), HasSubstr("Description=\"stopped\""));
  manager->ResumeTools();
  EXPECT_EQ(Run("quick"), 1);
}

// For the thread sanitizer: everything that the main thread may call while tools run and end.
TEST_F(StopTools, CallsOfTheHostDoNotRaceWithRuns) {
  std::atomic<int> ended{0};
  std::vector<std::thread> workers;
  for (int i = 0; i < 3; ++i) {
    workers.emplace_back([&] {
      for (int n = 0; n < 15; ++n) manager->RunTool("quick", "", "", nullptr);
      ++ended;
    });
  }
  int rounds = 0;
  for (; ended < 3; ++rounds) {
    manager->StopTools();
    manager->TakeBuildInformation();
    EXPECT_EQ(manager->MissingProgram("quick"), "");
    manager->ResumeTools();
    manager->InitTools(folder.Path().c_str(), folder.Path().c_str(), 0);
    EXPECT_NE(manager->GetCommandLines("quick", "", "").find("/bin/true"), std::string::npos);
    manager->RefreshTools();
    manager->SetDefinitionFolders(rounds % 2 == 0 ? folder.Path().c_str() : "");
    manager->SetJobs(1 + rounds % 2);
    manager->SetStartLimits(-1, -1, -1);
    manager->WatchRuns(rounds % 2);
    manager->TakeRunEvents();
    EXPECT_GE(manager->GetJobs(), 1);
    EXPECT_NE(manager->ListTools(), "");
    EXPECT_NE(manager->GetActions(".c", "", ""), "");
    EXPECT_EQ(manager->GetDefinitionErrors(), "");
    std::this_thread::sleep_for(1ms);
  }
  for (std::thread& worker : workers) worker.join();
  EXPECT_GT(rounds, 0);
  EXPECT_EQ(manager->RunTool("quick", "", "", nullptr), 1);
}

}  // namespace
}  // namespace tarn::tools
