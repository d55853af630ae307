#include "widgets/qt/LoopBridge.h"

#include <gtest/gtest.h>

#include <QEventLoop>
#include <QTimer>
#include <atomic>
#include <chrono>
#include <functional>
#include <thread>

#include "support/qt/WindowLoop.h"
#include "widgets/Wnd.h"
#include "widgets/qt/QtToolkit.h"

namespace tarn {
namespace {

using testing::RunUntil;

class Answering : public CWnd {
 public:
  ~Answering() override { DestroyWindow(); }
  std::function<std::intptr_t(std::uint32_t)> answer;
  int idles = 0;

 protected:
  std::intptr_t OnMessage(std::uint32_t message, std::intptr_t, std::intptr_t) override {
    return answer ? answer(message) : 0;
  }
  void OnIdle() override { ++idles; }
};

class LoopBridgeTest : public ::testing::Test {
 protected:
  LoopBridgeTest() { window.Create(kStylePopup, {}, nullptr, 0); }

  QtToolkit toolkit;
  Answering window;
};

TEST_F(LoopBridgeTest, AnswersOtherThreadsAlsoWhileAnEventRunsALoopOfItsOwn) {
  window.answer = [&](std::uint32_t message) -> std::intptr_t {
    if (message == 1) {
      // Like a dialog that is opened by a message.
      QEventLoop inner;
      std::atomic<bool> isAnswered = false;
      std::thread second(
          [&] { isAnswered = SendWindowMessage(window.GetHandle(), 2, 0, 0) == 20; });
      QTimer poll;
      QObject::connect(&poll, &QTimer::timeout, &inner, [&] {
        if (isAnswered) inner.quit();
      });
      poll.start(1);
      inner.exec();
      second.join();
    }
    return message * 10;
  };
  std::atomic<std::intptr_t> answer = 0;
  std::thread first([&] { answer = SendWindowMessage(window.GetHandle(), 1, 0, 0); });
  EXPECT_TRUE(RunUntil([&] { return answer == 10; }));
  first.join();
}

TEST_F(LoopBridgeTest, UserComesBetweenWhenMessagesNeverEnd) {
  std::atomic<bool> isOver = false;
  window.answer = [&](std::uint32_t message) -> std::intptr_t {
    if (!isOver) PostWindowMessage(window.GetHandle(), message, 0, 0);
    return 0;
  };
  PostWindowMessage(window.GetHandle(), 5, 0, 0);
  bool isUserServed = false;
  QTimer::singleShot(20, [&] { isUserServed = true; });
  EXPECT_TRUE(RunUntil([&] { return isUserServed; }));
  isOver = true;
}

TEST_F(LoopBridgeTest, TimersTickAndIdleWorkComesWhenNothingIsLeft) {
  int ticks = 0;
  SetWindowTimer(window.GetHandle(), 7, std::chrono::milliseconds(5), [&] { ++ticks; });
  EXPECT_TRUE(RunUntil([&] { return ticks >= 3 && window.idles >= 2; }));
}

}  // namespace
}  // namespace tarn
