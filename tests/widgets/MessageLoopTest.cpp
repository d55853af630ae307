#include "widgets/MessageLoop.h"

#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace tarn::test {
namespace {

using std::chrono::milliseconds;

constexpr milliseconds kLong{20000};

// A window that records its messages and replies through a function.
class TestWindow final : public WindowTarget {
 public:
  TestWindow() : handle(RegisterWindow(*this)) {}
  ~TestWindow() { UnregisterWindow(handle); }
  std::intptr_t OnWindowMessage(std::uint32_t message, std::intptr_t wParam,
                                std::intptr_t lParam) override {
    seen += std::to_string(message) + "(" + std::to_string(wParam) + "," + std::to_string(lParam) +
            ") ";
    return answer ? answer(message, wParam) : 0;
  }

  std::function<std::intptr_t(std::uint32_t, std::intptr_t)> answer;
  std::string seen;
  WindowHandle handle;
};

// A thread with a window that pumps until it is stopped.
class ServingThread {
 public:
  explicit ServingThread(std::function<std::intptr_t(std::uint32_t, std::intptr_t)> answer) {
    std::promise<void> ready;
    thread_ = std::thread([this, answer, &ready] {
      TestWindow window;
      window.answer = answer;
      handle = window.handle;
      loop = MessageLoop::ForCurrentThread();
      ready.set_value();
      loop->PumpUntil([this] { return ending_.load(); }, kLong);
    });
    ready.get_future().wait();
  }
  ~ServingThread() { End(); }
  void End() {
    if (!thread_.joinable()) return;
    ending_ = true;
    loop->Wake();
    thread_.join();
  }

  WindowHandle handle = 0;
  std::shared_ptr<MessageLoop> loop;

 private:
  std::atomic<bool> ending_{false};
  std::thread thread_;
};

// Sends a message from a new thread while this one pumps, and returns the reply.
std::intptr_t AnswerToAnotherThread(WindowHandle window, std::intptr_t wParam) {
  std::atomic<std::intptr_t> answer{0};
  const auto loop = MessageLoop::ForCurrentThread();
  std::thread sender([&] {
    answer = SendWindowMessage(window, 1, wParam, 0);
    loop->Wake();
  });
  EXPECT_TRUE(loop->PumpUntil([&answer] { return answer != 0; }, kLong));
  sender.join();
  return answer;
}

TEST(Windows, ASendOnTheSameThreadIsADirectCallToAnyDepth) {
  TestWindow window;
  window.answer = [&window](std::uint32_t message, std::intptr_t depth) -> std::intptr_t {
    return depth == 0 ? -12 : SendWindowMessage(window.handle, message + 1, depth - 1, -7);
  };
  EXPECT_EQ(SendWindowMessage(window.handle, 1, 2, 9), -12);
  EXPECT_EQ(window.seen, "1(2,9) 2(1,-7) 3(0,-7) ");
}

TEST(Windows, AStaleHandleAnswersZeroAndIsNotGivenOutAgain) {
  WindowHandle stale = 0;
  {
    TestWindow window;
    window.answer = [](auto, auto) { return 5; };
    stale = window.handle;
    EXPECT_TRUE(IsWindow(stale));
  }
  const TestWindow next;
  EXPECT_NE(next.handle, stale);
  EXPECT_GT(next.handle, 0);
  EXPECT_FALSE(IsWindow(stale));
  EXPECT_EQ(SendWindowMessage(stale, 1, 2, 3), 0);
  EXPECT_EQ(SendWindowMessage(0, 1, 2, 3), 0);
  EXPECT_FALSE(PostWindowMessage(stale, 1, 2, 3));
}

TEST(Windows, ATargetMayGoInsideItsOwnMessage) {
  auto window = std::make_unique<TestWindow>();
  window->answer = [&window](auto, auto) {
    window.reset();
    return 3;
  };
  EXPECT_EQ(SendWindowMessage(window->handle, 1, 0, 0), 3);
}

TEST(Windows, PostsArriveInOrderInTheNextRoundAndGoWithTheWindow) {
  const auto loop = MessageLoop::ForCurrentThread();
  TestWindow window;
  auto other = std::make_unique<TestWindow>();
  window.answer = [&window](std::uint32_t message, std::intptr_t) {
    if (message == 1) PostWindowMessage(window.handle, 3, 0, 0);
    return 0;
  };
  PostWindowMessage(window.handle, 1, -1, 0);
  PostWindowMessage(other->handle, 1, 0, 0);
  PostWindowMessage(window.handle, 2, 0, 0);
  EXPECT_EQ(window.seen, "");
  other.reset();
  EXPECT_TRUE(loop->Pump());
  EXPECT_EQ(window.seen, "1(-1,0) 2(0,0) ");
  EXPECT_TRUE(loop->Pump());
  EXPECT_EQ(window.seen, "1(-1,0) 2(0,0) 3(0,0) ");
  EXPECT_FALSE(loop->Pump());
}

TEST(Windows, PostsOfAnotherThreadWakeASleepingPump) {
  TestWindow window;
  std::thread poster([&window] {
    std::this_thread::sleep_for(milliseconds(20));
    for (int i = 0; i < 3; ++i) PostWindowMessage(window.handle, 1, i, 0);
  });
  EXPECT_TRUE(MessageLoop::ForCurrentThread()->PumpUntil(
      [&window] { return window.seen == "1(0,0) 1(1,0) 1(2,0) "; }, kLong));
  poster.join();
}

TEST(MessageLoop, ASendFromAnotherThreadRunsOnTheWindowsThread) {
  TestWindow window;
  const auto owner = std::this_thread::get_id();
  window.answer = [owner](auto, std::intptr_t value) {
    return std::this_thread::get_id() == owner ? value * 2 : -1;
  };
  EXPECT_EQ(AnswerToAnotherThread(window.handle, 21), 42);
}

TEST(MessageLoop, ServingLeavesPostsAndTimersAlone) {
  const auto loop = MessageLoop::ForCurrentThread();
  TestWindow window;
  int ticks = 0;
  SetWindowTimer(window.handle, 1, milliseconds(1), [&ticks] { ++ticks; });
  PostWindowMessage(window.handle, 7, 0, 0);
  bool ran = false;
  std::thread sender([&] { EXPECT_TRUE(loop->RunAndWait([&ran] { ran = true; })); });
  EXPECT_TRUE(loop->ServeUntil([&ran] { return ran; }, kLong));
  sender.join();
  EXPECT_FALSE(loop->ServeUntil([] { return false; }, milliseconds(5)));
  EXPECT_EQ(window.seen, "");
  EXPECT_EQ(ticks, 0);
}

TEST(MessageLoop, ThreadsThatWaitForEachOtherServeEachOther) {
  TestWindow host;
  WindowHandle worker = 0;
  // The worker sends to the host, which sends back to the waiting worker, and so on recursively.
  host.answer = [&worker](std::uint32_t message, std::intptr_t depth) -> std::intptr_t {
    return depth == 0 ? 1 : 1 + SendWindowMessage(worker, message, depth - 1, 0);
  };
  ServingThread thread([&host](std::uint32_t message, std::intptr_t depth) -> std::intptr_t {
    return depth == 0 ? 1 : 1 + SendWindowMessage(host.handle, message, depth - 1, 0);
  });
  worker = thread.handle;
  EXPECT_EQ(SendWindowMessage(worker, 1, 20, 0), 21);  // the main thread begins
  EXPECT_EQ(SendWindowMessage(worker, 1, 21, 0), 22);
  EXPECT_EQ(AnswerToAnotherThread(host.handle, 20), 21);
}

TEST(MessageLoop, AThreadThatWaitsElsewhereStillServesOthers) {
  const auto host = MessageLoop::ForCurrentThread();
  std::promise<void> hostWaits;
  std::promise<void> servedByHost;
  ServingThread worker([&](auto, auto) {
    hostWaits.set_value();
    servedByHost.get_future().wait();
    return 1;
  });
  std::thread third([&] {
    hostWaits.get_future().wait();
    EXPECT_TRUE(host->RunAndWait([&servedByHost] { servedByHost.set_value(); }));
  });
  EXPECT_EQ(SendWindowMessage(worker.handle, 1, 0, 0), 1);
  third.join();
}

TEST(MessageLoop, AThreadsEndReleasesThoseWhoWaitForIt) {
  std::shared_ptr<MessageLoop> loop;
  WindowHandle handle = 0;
  TestWindow target;
  std::atomic<int> waiting{0};
  std::promise<void> ready;
  std::thread owner([&] {
    loop = MessageLoop::ForCurrentThread();
    handle = RegisterWindow(target);
    ready.set_value();
    while (waiting < 2) std::this_thread::yield();
    std::this_thread::sleep_for(milliseconds(20));  // never served
  });
  ready.get_future().wait();
  std::thread sender([&] {
    ++waiting;
    EXPECT_EQ(SendWindowMessage(handle, 1, 0, 0), 0);
  });
  ++waiting;
  bool ran = false;
  EXPECT_FALSE(loop->RunAndWait([&ran] { ran = true; }));
  sender.join();
  owner.join();
  EXPECT_FALSE(loop->RunAndWait([&ran] { ran = true; }));
  EXPECT_FALSE(ran);
  EXPECT_FALSE(IsWindow(handle));
  EXPECT_EQ(SendWindowMessage(handle, 1, 0, 0), 0);
  EXPECT_EQ(target.seen, "");
}

TEST(MessageLoop, AnExceptionOfTheWorkComesOutAtItsCaller) {
  const ServingThread thread([](auto, auto) { return 1; });
  EXPECT_THROW(thread.loop->RunAndWait([] { throw std::runtime_error("broken"); }),
               std::runtime_error);
  EXPECT_EQ(SendWindowMessage(thread.handle, 1, 0, 0), 1);  // and the loop keeps working
  EXPECT_FALSE(thread.loop->Pump()) << "only its own thread pumps";
  EXPECT_FALSE(thread.loop->ServeUntil([] { return false; }, kLong));
}

TEST(MessageLoop, TheWakeHandlerHearsOfEverythingQueuedAndOfNothingOnceRemoved) {
  const auto loop = MessageLoop::ForCurrentThread();
  TestWindow window;
  std::atomic<int> wakes{0};
  loop->SetWakeHandler([&wakes] { ++wakes; });
  PostWindowMessage(window.handle, 1, 0, 0);
  EXPECT_EQ(wakes, 1);
  SetWindowTimer(window.handle, 1, milliseconds(50), [] {});
  EXPECT_EQ(wakes, 2);
  std::thread sender([&] { SendWindowMessage(window.handle, 2, 0, 0); });
  while (wakes < 3) std::this_thread::yield();
  while (window.seen.empty() || window.seen.find("2(") == std::string::npos) loop->Pump();
  sender.join();
  loop->SetWakeHandler(nullptr);
  PostWindowMessage(window.handle, 1, 0, 0);
  EXPECT_EQ(wakes, 3);
}

TEST(MessageLoop, FourThreadsInARingSendAndPostWithoutARaceOrAStandstill) {
  constexpr std::size_t kThreads = 4;
  constexpr int kRounds = 300;
  std::vector<std::unique_ptr<ServingThread>> ring(kThreads);
  std::vector<WindowHandle> handles(kThreads);
  std::atomic<int> posted{0};
  for (std::size_t i = 0; i < kThreads; ++i) {
    ring[i] = std::make_unique<ServingThread>([&, i](std::uint32_t message,
                                                     std::intptr_t depth) -> std::intptr_t {
      if (message == 2) return ++posted;
      return depth == 0 ? 1 : 1 + SendWindowMessage(handles[(i + 1) % kThreads], 1, depth - 1, 0);
    });
    handles[i] = ring[i]->handle;
  }
  std::atomic<int> wrong{0};
  std::vector<std::thread> senders;
  for (std::size_t i = 0; i < kThreads; ++i) {
    senders.emplace_back([&, i] {
      for (int round = 0; round < kRounds; ++round) {
        PostWindowMessage(handles[(i + 2) % kThreads], 2, 0, 0);
        if (SendWindowMessage(handles[i], 1, 6, 0) != 7) ++wrong;
      }
    });
  }
  for (std::thread& sender : senders) sender.join();
  for (const auto& thread : ring) thread->loop->RunAndWait([] {});
  EXPECT_EQ(wrong, 0);
  for (const auto& thread : ring) thread->End();
  EXPECT_EQ(posted, static_cast<int>(kThreads) * kRounds);
}

}  // namespace
}  // namespace tarn::test
