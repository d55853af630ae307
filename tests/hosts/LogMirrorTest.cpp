#include "hosts/core/LogMirror.h"

#include <gtest/gtest.h>

#include "support/ManualClock.h"
#include "support/MemoryFileSystem.h"

namespace tarn::host {
namespace {

using Lines = std::vector<std::string>;
using std::chrono::milliseconds;

constexpr const char* kProjectLog = "/p/demo.tlog";

struct Window : WindowTarget {
  Window() : handle(RegisterWindow(*this)) {}
  ~Window() { UnregisterWindow(handle); }
  std::intptr_t OnWindowMessage(std::uint32_t, std::intptr_t, std::intptr_t) override { return 0; }
  const WindowHandle handle;
};

TEST(LogMirrorTest, TheKeptLogFollowsTheServersWhileItChanges) {
  constexpr const char* kServerLog = "/tmp/log.xml";
  test::ManualClock clock;
  Window window;
  testing::MemoryFileSystem disk;
  const auto kept = [&disk] { return disk.BytesOf(kProjectLog).value_or("none"); };
  disk.AddFolder("/p");
  LogMirror mirror(disk, window.handle);
  EXPECT_TRUE(mirror.Sync());
  EXPECT_EQ(kept(), "none") << "nothing was followed";

  disk.AddFile(kServerLog, "<a>\xC3\xA4</a>");
  mirror.Follow(kServerLog, kProjectLog);
  EXPECT_EQ(kept(), "<a>&#228;</a>");
  disk.TakeOperations();
  clock.Advance(milliseconds(10'000));
  EXPECT_EQ(disk.Operations("write"), Lines{}) << "nothing has changed";
  disk.AddFile(kServerLog, "<a>b</a>");
  mirror.Follow(kServerLog, "/elsewhere");
  clock.Advance(milliseconds(10'000));
  EXPECT_EQ(kept(), "<a>b</a>");

  disk.FailOn("write", kProjectLog, ErrorCode::Io);
  disk.AddFile(kServerLog, "<a>c</a>");
  clock.Advance(milliseconds(10'000));
  EXPECT_FALSE(mirror.Sync());
  disk.ClearFailures();
  EXPECT_TRUE(mirror.Sync());
  EXPECT_EQ(kept(), "<a>c</a>");

  disk.AddFile(kServerLog, "<a>d</a>");
  clock.Advance(milliseconds(10'000));
  EXPECT_EQ(kept(), "<a>c</a>") << "once kept, no more by itself";
  EXPECT_TRUE(mirror.Sync());
  EXPECT_EQ(kept(), "<a>d</a>");
  disk.Erase(kServerLog);
  EXPECT_TRUE(mirror.Sync());
  mirror.Stop();
  disk.AddFile(kServerLog, "<a>e</a>");
  EXPECT_TRUE(mirror.Sync());
  EXPECT_EQ(kept(), "<a>d</a>");
}

}  // namespace
}  // namespace tarn::host
