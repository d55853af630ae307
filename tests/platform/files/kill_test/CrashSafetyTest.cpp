// Uses strace to kill a process at every system call of a whole-file write, and to make each call
// fail: after a crash or on a full disk the file must have the old or the new content, never a
// mixture.

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdlib>
#include <fstream>
#include <map>
#include <string>
#include <vector>

#include "platform/files/FileSystem.h"
#include "support/TestEnvironment.h"

namespace tarn {
namespace {

constexpr std::size_t kOldSize = 64 * 1024;
constexpr std::size_t kNewSize = 100'000;

// A system call of the write: its name, and its index among the process's calls of that name.
struct Call {
  std::string name;
  int number = 0;
};

class CrashSafetyTest : public ::testing::Test {
 protected:
  void SetUp() override {
    setenv("ASAN_OPTIONS", "detect_leaks=0", 1);  // the leak check cannot run under a tracer
    if (Shell("strace -o " + scratch / "probe" + " true 2> /dev/null") != 0) {
      GTEST_SKIP() << "strace is not there or may not trace here: crashes were not tried";
    }
    Reset();
    ASSERT_EQ(Write(""), 0);
    std::ifstream trace(scratch / "trace");
    std::map<std::string, int> counts;
    bool begun = false;
    bool isProbe = false;
    for (std::string line; std::getline(trace, line);) {
      const std::string name = line.substr(0, line.find('('));
      if (name.size() == line.size() || name.find(' ') != name.npos) continue;
      const int number = ++counts[name];
      // A sanitizer probes memory by writing it to a pipe.
      const bool isOwn = name != "exit_group" && !(isProbe && name == "write");
      isProbe = name.starts_with("pipe");
      if (begun && isOwn) calls.push_back({name, number});
      begun = begun || line.find("\"begin\"") != line.npos;
    }
    ASSERT_GE(calls.size(), 6U);
  }

  static int Shell(const std::string& command) {
    const int status = std::system(command.c_str());
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  }

  // Writes the new file in a child process with an injected fault.
  int Write(const std::string& injection) const {
    return Shell("strace -qq -o " + scratch / "trace" +
                 (injection.empty() ? "" : " -e inject=" + injection) + " " WRITE_WHOLE_FILE " " +
                 scratch / "disk/file" + " n " + std::to_string(kNewSize) + " 2> /dev/null");
  }

  void Reset() const {
    std::filesystem::remove_all(scratch / "disk");
    scratch.Write("disk/file", std::string(kOldSize, 'o'));
  }

  // Returns "old", "new" or a description of anything else.
  std::string Found() const {
    const std::string bytes = testing::ReadBytes(scratch / "disk/file");
    if (bytes == std::string(kOldSize, 'o')) return "old";
    if (bytes == std::string(kNewSize, 'n')) return "new";
    return std::to_string(bytes.size()) + " bytes";
  }

  std::size_t FilesLeft() const {
    return FileSystem::Native().ListFolder(scratch / "disk")->size();
  }

  testing::ScratchFolder scratch;
  std::vector<Call> calls;
};

TEST_F(CrashSafetyTest, KillAtAnyCallLeavesTheOldOrTheNewFile) {
  std::string sequence;
  std::map<std::string, int> outcomes;
  for (const Call& call : calls) {
    SCOPED_TRACE(call.name + " " + std::to_string(call.number));
    Reset();
    EXPECT_NE(Write(call.name + ":signal=SIGKILL:when=" + std::to_string(call.number)), 0);
    const std::string found = Found();
    EXPECT_TRUE(found == "old" || found == "new") << found;
    ++outcomes[found];
    sequence += call.name + ":" + found + " ";
    // Files left by the killed process must not obstruct the next write.
    EXPECT_EQ(Write(""), 0);
    EXPECT_EQ(Found(), "new");
  }
  // Make sure that both sides of the rename were covered.
  EXPECT_GT(outcomes["old"], 0) << sequence;
  EXPECT_GT(outcomes["new"], 0) << sequence;
  std::printf("killed at %zu calls: %s\n", calls.size(), sequence.c_str());
}

TEST_F(CrashSafetyTest, FailureOfAnyWriteFlushOrRenameIsReportedAndLeavesTheOldFile) {
  int tried = 0;
  for (const std::string error : {"ENOSPC", "EIO"}) {
    bool renamed = false;
    for (const Call& call : calls) {
      const bool renames = call.name.starts_with("rename");
      if (renamed || (call.name != "write" && call.name != "fsync" && !renames)) continue;
      renamed = renames;  // the new file is in place afterwards
      SCOPED_TRACE(error + " at " + call.name + " " + std::to_string(call.number));
      Reset();
      const int code =
          Write(call.name + ":error=" + error + ":when=" + std::to_string(call.number));
      EXPECT_EQ(code, static_cast<int>(error == "EIO" ? ErrorCode::Io : ErrorCode::NoSpace));
      EXPECT_EQ(Found(), "old");
      EXPECT_EQ(FilesLeft(), 1U) << "a temporary file was left behind";
      ++tried;
    }
    EXPECT_TRUE(renamed);
  }
  EXPECT_GE(tried, 6);
}

TEST_F(CrashSafetyTest, InterruptedCallsAreRepeated) {
  for (const std::string name : {"write", "fsync"}) {
    for (const Call& call : calls) {
      if (call.name != name) continue;
      Reset();
      EXPECT_EQ(Write(name + ":error=EINTR:when=" + std::to_string(call.number)), 0) << name;
      EXPECT_EQ(Found(), "new");
    }
  }
}

}  // namespace
}  // namespace tarn
