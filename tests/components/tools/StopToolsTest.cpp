#include <gtest/gtest.h>
#include <signal.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <thread>

#include "components/tools/ToolManager.h"

namespace tarn::tools {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

// A real tool manager with definitions in a folder of its own.
class StopTools : public ::testing::Test {
 protected:
  void SetUp() override {
    std::string pattern = (std::filesystem::temp_directory_path() / "tarn-tools-XXXXXX").string();
    ASSERT_NE(::mkdtemp(pattern.data()), nullptr);
    folder = pattern;
    std::filesystem::create_directories(folder + "/config/tools");
    // A shell that ignores the polite signal and has a child that does so too.
    Write("/config/tools/s.tools",
          "<T><Tool Name=\"stubborn\"><Step Program=\"/bin/sh\"><Arg V=\"" + folder +
              "/stubborn.sh\"/></Step><Step Program=\"/bin/echo\"><Arg V=\"second\"/></Step></Tool>"
              "<Tool Name=\"quick\"><Step Program=\"/bin/true\"/></Tool></T>");
    Write("/stubborn.sh",
          "trap '' TERM\nsleep 60 &\necho $! > " + folder + "/child\necho started\nsleep 60\n");
    manager = new ToolManager(ToolWorld::Native());
    manager->InitTools(folder.c_str(), folder.c_str(), 0);
  }
  void TearDown() override {
    if (manager != nullptr) manager->Release();
    std::filesystem::remove_all(folder);
  }

  void Write(const std::string& name, const std::string& text) {
    std::ofstream(folder + name) << text;
  }
  // 0 until the tool has started its child.
  pid_t ChildId() const {
    pid_t id = 0;
    std::ifstream(folder + "/child") >> id;
    return id;
  }
  std::string Messages() const {
    std::ifstream file(folder + "/m.xml");
    return {std::istreambuf_iterator<char>(file), {}};
  }

  std::string folder;
  ToolManager* manager = nullptr;
};

bool EndsWithin(pid_t process, std::chrono::milliseconds limit) {
  const auto end = Clock::now() + limit;
  while (::kill(process, 0) == 0) {
    // A child that nobody has waited for yet is dead all the same.
    std::ifstream state("/proc/" + std::to_string(process) + "/stat");
    std::string id, name, letter;
    if (state >> id >> name >> letter && letter == "Z") return true;
    if (Clock::now() > end) return false;
    std::this_thread::sleep_for(10ms);
  }
  return true;
}

TEST_F(StopTools, AStubbornToolAndItsChildAreGoneWithinTwoSeconds) {
  std::int32_t result = -1;
  std::thread worker(
      [&] { result = manager->RunTool("stubborn", "", "", (folder + "/m.xml").c_str()); });
  const auto limit = Clock::now() + 10s;
  while (ChildId() == 0 && Clock::now() < limit) std::this_thread::sleep_for(5ms);
  const pid_t child = ChildId();
  const auto asked = Clock::now();
  manager->StopTools();
  worker.join();
  const auto taken = Clock::now() - asked;
  ASSERT_NE(child, 0);
  EXPECT_LT(taken, 2s);
  EXPECT_TRUE(EndsWithin(child, 500ms));
  EXPECT_EQ(result, 0);
  EXPECT_NE(Messages().find("Description=\"stopped\""), std::string::npos) << Messages();
  EXPECT_EQ(Messages().find("second"), std::string::npos);
}

TEST_F(StopTools, AStopHoldsUntilToolsAreResumed) {
  EXPECT_EQ(manager->RunTool("quick", "", "", nullptr), 1);
  manager->StopTools();
  EXPECT_EQ(manager->RunTool("quick", "", "", (folder + "/m.xml").c_str()), 0);
  EXPECT_NE(Messages().find("Description=\"stopped\""), std::string::npos);
  manager->ResumeTools();
  EXPECT_EQ(manager->RunTool("quick", "", "", nullptr), 1);
}

// For the thread sanitizer: everything that the host's thread may call while tools run and end.
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
    manager->InitTools(folder.c_str(), folder.c_str(), 0);
    EXPECT_NE(manager->GetCommandLines("quick", "", "").find("/bin/true"), std::string::npos);
    std::this_thread::sleep_for(1ms);
  }
  for (std::thread& worker : workers) worker.join();
  EXPECT_GT(rounds, 0);
  EXPECT_EQ(manager->RunTool("quick", "", "", nullptr), 1);
}

}  // namespace
}  // namespace tarn::tools
