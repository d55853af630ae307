#include "hosts/desktop/QuitSignals.h"

#include <gtest/gtest.h>
#include <signal.h>

#include <optional>

#include "support/qt/WindowLoop.h"

namespace tarn::host {
namespace {

TEST(QuitSignalsTest, TheFirstRequestIsToldInTheLoopAndTheSecondEndsTheProcess) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  int requests = 0;
  std::optional<QuitSignals> signals([&] { ++requests; });
  raise(SIGTERM);
  EXPECT_EQ(requests, 0);
  EXPECT_TRUE(testing::RunUntil([&] { return requests == 1; }, 3000));
  EXPECT_EXIT(raise(SIGTERM), ::testing::KilledBySignal(SIGTERM), "");
  signals.reset();
  EXPECT_EXIT(raise(SIGHUP), ::testing::KilledBySignal(SIGHUP), "");
}

}  // namespace
}  // namespace tarn::host
