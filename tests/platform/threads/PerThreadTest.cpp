#include "platform/threads/PerThread.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>

namespace tarn {
namespace {

std::string g_ends;

struct First {
  ~First() { g_ends += "first "; }
};
struct Second {
  // Uses an object that was created before and still exists.
  ~Second() {
    PerThread<First>::Get();
    g_ends += "second ";
  }
};
struct Local {
  ~Local() { g_ends += "local "; }
};

TEST(PerThread, ObjectsEndWithTheirThreadInReverseOrderAfterItsLocalOnes) {
  g_ends.clear();
  std::thread([] {
    const First* const made = &PerThread<First>::Get();
    PerThread<Second>::Get();
    thread_local const Local local;
    static_cast<void>(&local);
    EXPECT_EQ(&PerThread<First>::Get(), made);
    std::thread([made] { EXPECT_NE(&PerThread<First>::Get(), made); }).join();
    EXPECT_EQ(g_ends, "first ");
  }).join();
  EXPECT_EQ(g_ends, "first local second first ");
}

}  // namespace
}  // namespace tarn
