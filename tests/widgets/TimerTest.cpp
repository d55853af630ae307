#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <thread>

#include "widgets/MessageLoop.h"

namespace tarn::test {
namespace {

using std::chrono::milliseconds;

class TimerTest : public ::testing::Test, public WindowTarget {
 protected:
  TimerTest() : loop(MessageLoop::ForCurrentThread()), handle(RegisterWindow(*this)) {}
  ~TimerTest() override { UnregisterWindow(handle); }

  std::intptr_t OnWindowMessage(std::uint32_t message, std::intptr_t, std::intptr_t) override {
    order += "m" + std::to_string(message) + " ";
    if (message == 9) PostWindowMessage(handle, 1, 0, 0);
    return 0;
  }
  void Set(std::int32_t id, int period, std::function<void()> onTick) {
    SetWindowTimer(handle, id, milliseconds(period), std::move(onTick));
  }
  std::function<void()> Mark(std::string text) {
    return [this, text] { order += text + " "; };
  }
  void PumpFor(int time) {
    loop->PumpUntil([] { return false; }, milliseconds(time));
  }
  static void Stall(int time) { std::this_thread::sleep_for(milliseconds(time)); }

  std::shared_ptr<MessageLoop> loop;
  WindowHandle handle;
  std::string order;
};

TEST_F(TimerTest, TicksComeAfterAllMessages) {
  Set(1, 1, Mark("tick"));
  PostWindowMessage(handle, 9, 0, 0);  // its handler posts another message
  Stall(5);
  loop->Pump();
  EXPECT_EQ(order, "m9 ");
  loop->Pump();
  EXPECT_EQ(order, "m9 m1 tick ");
}

TEST_F(TimerTest, MissedTicksAreNotCaughtUp) {
  int ticks = 0;
  Set(1, 20, [&ticks] { ++ticks; });
  Stall(110);
  loop->Pump();
  loop->Pump();
  EXPECT_EQ(ticks, 1);
}

TEST_F(TimerTest, TheRhythmHolds) {
  int ticks = 0;
  const auto start = std::chrono::steady_clock::now();
  Set(1, 10, [&ticks] { ++ticks; });
  EXPECT_TRUE(loop->PumpUntil([&ticks] { return ticks == 10; }, milliseconds(10000)));
  EXPECT_GE(std::chrono::steady_clock::now() - start, milliseconds(95));
}

TEST_F(TimerTest, ATickThatPumpsIsNotCalledInsideItselfButOthersAre) {
  int depth = 0;
  int deepest = 0;
  Set(1, 1, [&] {
    deepest = std::max(deepest, ++depth);
    // A timer that is set again by its own handler must not become reentrant either.
    Set(1, 1, [&] { deepest = std::max(deepest, ++depth), --depth; });
    PumpFor(20);
    --depth;
  });
  Set(2, 2, Mark("other"));
  Stall(3);
  loop->Pump();
  EXPECT_EQ(deepest, 1);
  EXPECT_NE(order.find("other"), std::string::npos);
  PumpFor(5);
  EXPECT_EQ(deepest, 1);
}

TEST_F(TimerTest, KillingDropsADueTick) {
  Set(1, 1, Mark("first"));
  Set(2, 2, Mark("second"));
  Stall(5);
  Set(1, 1, [this] { KillWindowTimer(handle, 2), KillWindowTimer(handle, 1); });
  Stall(5);
  KillWindowTimer(handle, 3);  // does not exist
  Set(2, 1000, Mark("second"));
  loop->Pump();
  PumpFor(5);
  EXPECT_EQ(order, "");
}

TEST_F(TimerTest, SettingAgainReplacesAndRestartsThePeriod) {
  Set(1, 30, Mark("old"));
  Stall(20);
  Set(1, 30, Mark("new"));
  Stall(15);
  loop->Pump();
  EXPECT_EQ(order, "");
  Stall(20);
  loop->Pump();
  EXPECT_EQ(order, "new ");
}

TEST_F(TimerTest, AnUnregisteredWindowTicksNoMore) {
  Set(1, 1, Mark("tick"));
  UnregisterWindow(handle);
  Set(2, 1, Mark("late"));
  Stall(5);
  EXPECT_FALSE(loop->Pump());
  EXPECT_EQ(order, "");
}

TEST_F(TimerTest, AWindowMayGoInsideItsTick) {
  auto held = std::make_shared<int>(7);
  int seen = 0;
  Set(1, 1, [this, held, &seen] {
    UnregisterWindow(handle);
    seen = *held;
  });
  held.reset();
  PumpFor(10);
  EXPECT_EQ(seen, 7);
}

TEST_F(TimerTest, AnotherEventLoopLearnsWhenToPump) {
  EXPECT_FALSE(loop->UntilNextTimer());
  Set(1, 500, Mark("slow"));
  Set(2, 40,
      [this] { order += loop->UntilNextTimer() > milliseconds(100) ? "own tick out " : "?"; });
  EXPECT_GT(*loop->UntilNextTimer(), milliseconds(0));
  EXPECT_LE(*loop->UntilNextTimer(), milliseconds(40));
  Stall(45);
  EXPECT_EQ(*loop->UntilNextTimer(), milliseconds(0));
  loop->Pump();
  EXPECT_EQ(order, "own tick out ");
}

}  // namespace
}  // namespace tarn::test
