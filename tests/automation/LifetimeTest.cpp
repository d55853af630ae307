// Lifetime of a manager, for releases by different owners at different times.

#include <tarn/commands.h>
#include <tarn/methods.h>

#include <gtest/gtest.h>

#include <atomic>
#include <future>

#include "automation/ProjectInspector.h"
#include "automation/WatchedFixture.h"
#include "tarn/automation.h"
#include "xml/XmlNode.h"

namespace tarn::test {
namespace {

TEST(Lifetime, CleanWithdrawsTheObjectAndTheLastReleaseEndsIt) {
  Watched world;
  ASSERT_EQ(world.Init(), "1");
  ASSERT_EQ(world.Call("ProjectOpen", {"/p/demo.tprj"}), "1");
  const std::string log = world.Manager().GetModel()->Services().output->GetLogFile();
  world.disk.AddFile(log, "<Messages />");
  EXPECT_FALSE(world.IsGone());
  EXPECT_EQ(world.Call("Clean"), "1");
  EXPECT_FALSE(world.runningObjects.GetActiveObject(CProjectManager::kClassId));
  // After Clean, the object still works for clients that hold a reference.
  EXPECT_EQ(world.Call("Clean"), "1");
  EXPECT_EQ(world.Call("GetSelectedApplication"), "'/p/demo.tapp'");
  world.manager.Reset();
  EXPECT_TRUE(world.IsGone());
  EXPECT_EQ(world.disk.BytesOf(log), std::nullopt);
}

TEST(Lifetime, WhoeverFindsTheObjectFindsItAliveUntilClean) {
  Watched world;
  ASSERT_EQ(world.Init(), "1");
  world.manager.Reset();
  EXPECT_FALSE(world.IsGone());
  world.manager = world.runningObjects.GetActiveObject(CProjectManager::kClassId);
  ASSERT_TRUE(world.manager);
  EXPECT_EQ(world.Call("ProjectOpen", {"/p/demo.tprj"}), "1");
  world.LetGo();
  EXPECT_TRUE(world.IsGone());
}

TEST(Lifetime, ReleasedInsideAnyMessageTheCallEndsAndTheObjectWithIt) {
  const struct {
    std::uint32_t message;
    const char* method;  // sends the message
  } rows[] = {
      {kMsgProjectClosing, "ProjectOpen"},       {kMsgProjectOpened, "ProjectOpen"},
      {kMsgApplicationKnown, "ProjectOpen"},     {kMsgCurrentNodeChanged, "ProjectOpen"},
      {kMsgApplicationActivated, "ProjectOpen"}, {kMsgPaneCaption, "ProjectOpen"},
      {kMsgProjectCreated, "ProjectNew"},        {kMsgRunScript, "ExecuteScript"},
      {kMsgProjectClosing, "ProjectClose"},
  };
  for (const auto& row : rows) {
    Watched world;
    ASSERT_EQ(world.Init(), "1");
    const std::string method = row.method;
    if (method == "ProjectClose") {
      ASSERT_EQ(world.Call("ProjectOpen", {"/p/demo.tprj"}), "1");
    }
    world.disk.AddFile("/p/a.lua", "x");
    bool released = false;
    world.host.actions[row.message] = [&] {
      if (std::exchange(released, true)) return;
      world.LetGo();
    };
    DispatchId id = 0;
    Variant result;
    IDispatch* const raw = world.manager.Get();
    ASSERT_TRUE(raw->GetIDsOfNames(method, id));
    const std::vector<Variant> one = {method == "ProjectOpen"  ? "/p/demo.tprj"
                                      : method == "ProjectNew" ? "/p/new.tprj"
                                                               : "/p/a.lua"};
    const std::vector<Variant> none;
    EXPECT_TRUE(raw->Invoke(id, method == "ProjectClose" ? none : one, result)) << method;
    EXPECT_TRUE(released) << method << " " << row.message;
    EXPECT_TRUE(world.IsGone()) << method << " " << row.message;
  }
}

TEST(Lifetime, ReleasedInsideInitItLivesUntilItIsWithdrawn) {
  for (const std::uint32_t message : {kMsgCreateToolbar, kMsgAddMainMenu}) {
    Watched world;
    world.host.actions[message] = [&] { world.LetGo(); };
    CProjectManager& manager = world.Manager();
    Variant result;
    const std::vector<Variant> arguments = {"/app/", "/data/demo", world.host.Handle()};
    EXPECT_TRUE(manager.Invoke(TARN_PM_INIT, arguments, result));
    EXPECT_EQ(result.AsLong(), 1);
    world.manager = world.runningObjects.GetActiveObject(CProjectManager::kClassId);
    ASSERT_TRUE(world.manager);
    world.LetGo();
    EXPECT_TRUE(world.IsGone());
  }
}

TEST(Lifetime, AnInspectorKeepsTheManagerThatItLooksAt) {
  Watched world;
  ASSERT_EQ(world.Init(), "1");
  ASSERT_EQ(world.Call("ProjectOpen", {"/p/demo.tprj"}), "1");
  DispatchPtr object = DispatchPtr::Adopt(new ProjectInspector);
  auto& inspector = static_cast<ProjectInspector&>(*object.Get());
  ASSERT_EQ(inspector.Attach(world.manager.Get()), 1);
  world.LetGo();
  EXPECT_NE(inspector.GetTree().find("main.c"), std::string::npos);
  object.Reset();
  EXPECT_TRUE(world.IsGone());
}

TEST(Lifetime, ReleasedInsideAStepOfTheWorkerItEndsAfterTheWorker) {
  Building world;
  std::vector<std::string> answers;
  bool released = false;
  world.host.actions[kMsgToolSucceeded] = [&] {
    if (std::exchange(released, true)) return;
    IDispatch* const raw = world.manager.Get();
    world.LetGo();
    // The host continues to make calls: the object lives until the worker has finished.
    for (const auto& [id, arguments] :
         std::vector<std::pair<DispatchId, std::vector<Variant>>>{{1, {"/p/other.tprj"}},
                                                                  {3, {}},
                                                                  {7, {TARN_CMD_BUILD_ALL}},
                                                                  {26, {}},
                                                                  {33, {"", "<I></I>"}},
                                                                  {21, {}},
                                                                  {37, {"text"}}}) {
      Variant result;
      const DispatchResult outcome = raw->Invoke(id, arguments, result);
      answers.push_back(Show(outcome, result));
    }
    world.host.TakeLines();
  };
  world.Start();
  EXPECT_TRUE(world.PumpUntilGone());
  EXPECT_EQ(answers,
            (std::vector<std::string>{"0", "1", "2", "'/p/demo.tapp'", "1", "1", "nothing"}));
  // The host isn't notified any more, and no further tool is run.
  EXPECT_TRUE(world.host.LinesOf(kMsgToolSucceeded).empty());
  EXPECT_EQ(world.components.Tools().CallsOf("RunTool").size(), 1u);
}

// The tool manager sends its messages directly on the worker's thread, outside of any task.
TEST(Lifetime, ReleasedInsideAMessageOfARunningToolItEndsAfterTheWorker) {
  Building world;
  const std::shared_ptr<MessageLoop> loop = MessageLoop::ForCurrentThread();
  const WindowHandle host = world.host.Handle();
  world.components.Tools().onRun = [&](const ToolRun&) {
    SendWindowMessage(host, TARN_MSG_TOOL_STARTED, 0, 0);
    return 1;
  };
  bool released = false;
  world.host.actions[TARN_MSG_TOOL_STARTED] = [&] {
    EXPECT_FALSE(std::exchange(released, true));
    world.LetGo();
    EXPECT_FALSE(world.IsGone());
  };
  world.Start();
  EXPECT_TRUE(world.PumpUntilGone());
  EXPECT_EQ(world.components.Tools().CallsOf("RunTool").size(), 1u);
}

TEST(Lifetime, ReleasedBesideAWorkerItWaitsForItAndForItsTool) {
  Building world;
  const std::shared_ptr<MessageLoop> loop = MessageLoop::ForCurrentThread();
  std::atomic<bool> running = false;
  std::promise<void> mayEnd;
  world.components.Tools().onRun = [&](const ToolRun&) {
    if (running.exchange(true)) return 1;
    loop->Wake();
    mayEnd.get_future().wait();
    return 1;
  };
  world.Start();
  ASSERT_TRUE(loop->PumpUntil([&] { return running.load(); }, std::chrono::seconds(20)));
  world.Call("Clean");
  world.host.TakeLines();
  mayEnd.set_value();
  world.manager.Reset();
  EXPECT_TRUE(world.IsGone());
  EXPECT_TRUE(world.host.LinesOf(kMsgToolSucceeded).empty());
  EXPECT_EQ(world.components.Tools().CallsOf("RunTool").size(), 1u);
}

TEST(Lifetime, ReleasedInTheWorkersLastMessageItEndsAtOnce) {
  Building world;
  world.host.actions[kMsgWorkerEnded] = [&] { world.LetGo(); };
  world.Start();
  EXPECT_TRUE(world.PumpUntilGone());
  EXPECT_EQ(world.components.Tools().CallsOf("RunTool").size(), 3u);
}

TEST(Lifetime, AHostThatOnlyPollsDoesNotHoldTheWorkerUp) {
  Building world;
  world.Start();
  const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(20);
  while (world.components.Tools().CallsOf("RunTool").size() < 3 &&
         std::chrono::steady_clock::now() < limit) {
    world.Call("EnableCommand", {TARN_CMD_STOP});
  }
  EXPECT_EQ(world.components.Tools().CallsOf("RunTool").size(), 3u);
}

}  // namespace
}  // namespace tarn::test
