#include "hosts/core/LogMirror.h"

#include <gtest/gtest.h>

#include "support/ManualClock.h"
#include "support/MemoryFileSystem.h"
#include "xml/XmlEscape.h"

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

// The server's log with these children of the top element.
std::string LogOf(const Lines& children) {
  std::string text = "<?xml version=\"1.0\"?>\r\n<Log >";
  for (const std::string& each : children) text += "\r\n\t" + each;
  return text + "\r\n</Log>";
}

TEST(LogMirrorTest, OnlyWhatIsNewIsWrittenWhileTheLogGrows) {
  constexpr const char* kServerLog = "/tmp/log.xml";
  test::ManualClock clock;
  Window window;
  testing::MemoryFileSystem disk;
  disk.AddFolder("/p");
  LogMirror mirror(disk, window.handle);
  Lines children{"<m a=\"\xC3\xA4|\" />"};
  disk.AddFile(kServerLog, LogOf(children));
  mirror.Follow(kServerLog, kProjectLog);
  const auto expectCopy = [&](const char* operation, const std::string& what) {
    SCOPED_TRACE(what);
    const std::string whole = LogOf(children);
    disk.AddFile(kServerLog, whole);
    disk.TakeOperations();
    clock.Advance(milliseconds(1000));
    EXPECT_EQ(disk.BytesOf(kProjectLog), ToConformingXml(whole));
    for (const char* each : {"write", "tail"}) {
      const bool isExpected = std::string(each) == operation;
      const Lines expected{std::string(each) + " " + kProjectLog};
      EXPECT_EQ(disk.Operations(each), isExpected ? expected : Lines{});
    }
  };
  expectCopy("none", "nothing new");
  children.emplace_back("<m >a \\< b \xE2\x82\xAC</m>");
  expectCopy("tail", "a new message");
  children.emplace_back("<m >\r\n\t\t<n />\r\n\t</m>");
  children.emplace_back("<!-- </Log> -->");
  expectCopy("tail", "several new messages, and a closing tag in a comment");
  children.emplace_back("<m />");
  expectCopy("tail", "after these");
  children[0] = "<m a=\"other text\" />";
  children[1] = "<m >a log of a different build, after which nothing is in its old position</m>";
  expectCopy("write", "a different log");
  children.emplace_back("<m />");
  expectCopy("tail", "which grows as well");
  children.pop_back();
  expectCopy("write", "a log that has become shorter");
  disk.AddFile(kProjectLog, "of another program");
  children.emplace_back("<m x=\"1\" />");
  expectCopy("write", "a copy that was replaced by another program");
  children.emplace_back("<m />");
  disk.FailOn("tail", kProjectLog, ErrorCode::Io);
  disk.AddFile(kServerLog, LogOf(children));
  clock.Advance(milliseconds(1000));
  EXPECT_EQ(disk.BytesOf(kProjectLog), ToConformingXml(LogOf(children))) << "a failed write";
}

}  // namespace
}  // namespace tarn::host
