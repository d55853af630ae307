#include "platform/process/Process.h"

#include <gtest/gtest.h>
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <thread>
#include <vector>

#include "support/TestEnvironment.h"

namespace tarn::test {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;
using testing::EndsSoon;
using testing::Runs;

struct Outcome {
  std::string output;
  std::string errors;
  ProcessExit exit;
  milliseconds time{0};
};

Outcome RunToEnd(Process& process, const std::function<void()>& onOutput = {}) {
  Outcome run;
  const auto start = steady_clock::now();
  run.exit = process.WaitWithOutput([&](std::string_view text, bool fromErrorStream) {
    (fromErrorStream ? run.errors : run.output) += text;
    if (onOutput) onOutput();
  });
  run.time = std::chrono::duration_cast<milliseconds>(steady_clock::now() - start);
  return run;
}

std::unique_ptr<Process> Start(const ProcessRequest& request) {
  auto started = ProcessLauncher::Native().Start(request);
  EXPECT_TRUE(started) << started.GetError().text;
  return started ? std::move(*started) : nullptr;
}

std::unique_ptr<Process> StartShell(const std::string& script) {
  return Start({"sh", {"-c", script}, {}, {}});
}

// Returns the numbers of the processes whose parent is this one.
std::vector<pid_t> ChildrenOf(pid_t parent) {
  std::vector<pid_t> children;
  for (const auto& entry : std::filesystem::directory_iterator("/proc")) {
    std::ifstream file(entry.path() / "stat");
    std::string text;
    std::getline(file, text);
    // "NUMBER (NAME) STATE PARENT ..."
    const auto name = text.rfind(')');
    if (name == std::string::npos) continue;
    if (std::atoi(text.c_str() + name + 4) == parent) children.push_back(std::atoi(text.c_str()));
  }
  return children;
}

// The only child of this process is the server of the guards. Each guard ends after its tool.
bool AreGuardsGone() {
  const std::vector<pid_t> servers = ChildrenOf(getpid());
  if (servers.size() > 1) return false;
  for (int tries = 0; tries < 200 && !servers.empty(); ++tries) {
    if (ChildrenOf(servers.front()).empty()) return true;
    std::this_thread::sleep_for(milliseconds(10));
  }
  return servers.empty();
}

TEST(Process, ArgumentsArriveAsTheyAreAndNoShellReadsThem) {
  const auto process = Start({"printf", {"%s|", "a b", "", "$HOME", "\"*\"", "'"}, {}, {}});
  const Outcome run = RunToEnd(*process);
  EXPECT_EQ(run.output, "a b||$HOME|\"*\"|'|");
  EXPECT_EQ(run.errors, "");
  EXPECT_EQ(run.exit.code, 0);
}

TEST(Process, EachKindOfExitHasItsCode) {
  const struct {
    const char* script;
    int code;
    bool signalled;
  } rows[] = {
      {"exit 0", 0, false},           {"exit 3", 3, false},
      {"exit 255", 255, false},       {"kill -9 $$", 137, true},
      {"kill -TERM $$", 143, true},   {"exec kill -SEGV $$", 139, true},
      {"exec not-there", 127, false},
  };
  for (const auto& row : rows) {
    const auto process = StartShell(row.script);
    const Outcome run = RunToEnd(*process);
    EXPECT_EQ(run.exit.code, row.code) << row.script;
    EXPECT_EQ(run.exit.signalled, row.signalled) << row.script;
    EXPECT_EQ(process->WaitWithOutput({}).code, row.code) << row.script;
  }
  EXPECT_TRUE(AreGuardsGone());
}

TEST(Process, MegabytesOnBothStreamsAtOnceComeWhole) {
  const auto process = StartShell(
      "head -c 4000000 /dev/zero | tr '\\0' e >&2 & head -c 4000000 /dev/zero | tr '\\0' o; wait");
  const Outcome run = RunToEnd(*process);
  EXPECT_EQ(run.output.size(), 4000000u);
  EXPECT_EQ(run.errors.size(), 4000000u);
  EXPECT_EQ(std::count(run.errors.begin(), run.errors.end(), 'e'), 4000000);
  EXPECT_EQ(std::count(run.output.begin(), run.output.end(), 'o'), 4000000);
}

TEST(Process, AMissingProgramOrFolderIsReportedAndLeavesNothing) {
  const struct {
    ProcessRequest request;
    const char* place;
  } rows[] = {
      {{"no-such-program", {}, {}, {}}, "no-such-program"},
      {{"", {}, {}, {}}, ""},
      {{"/etc/passwd", {}, {}, {}}, "/etc/passwd"},
      {{"/bin", {}, {}, {}}, "/bin"},
      {{"sh", {}, {}, "/no/such/folder"}, "/no/such/folder"},
      {{"sh", {}, {{"PATH", "/no/such"}}, {}}, "sh"},
  };
  for (const auto& row : rows) {
    const auto started = ProcessLauncher::Native().Start(row.request);
    EXPECT_FALSE(started) << row.place;
    // NotFound means to callers that the program is missing.
    const bool isFolder = !row.request.folder.empty();
    EXPECT_EQ(started.GetError().code, isFolder ? ErrorCode::Io : ErrorCode::NotFound) << row.place;
    EXPECT_EQ(started.GetError().place, row.place);
    const std::string reason = std::string(row.place) + ": No such file or directory";
    EXPECT_TRUE(!isFolder || started.GetError().text == reason) << started.GetError().text;
  }
  EXPECT_TRUE(AreGuardsGone());
}

// Otherwise a compiler would run a program "as" that lies next to a source.
TEST(Process, ProgramsThatAProgramStartsAreNotSearchedForInItsFolder) {
  const std::string here = std::filesystem::current_path();
  const struct {
    const char* path;
    std::string seen;
  } rows[] = {
      {"/bin:/usr/bin", "/bin:/usr/bin"},
      {":/bin::/usr/bin:", "/bin:/usr/bin"},
      {".:/bin:a", here + "/.:/bin:" + here + "/a"},
      {":", "/nonexistent"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.path);
    const testing::ScopedVariable inherited("PATH", row.path);
    const auto process = Start({"/bin/sh", {"-c", "echo \"$PATH\""}, {}, "/"});
    EXPECT_EQ(RunToEnd(*process).output, row.seen + "\n");
  }
}

TEST(Process, TheEnvironmentIsMergedAndTheFolderEntered) {
  const testing::ScopedVariable kept("TARN_TEST_KEPT", "kept");
  const testing::ScopedVariable replaced("TARN_TEST_REPLACED", "old");
  const std::string folder = std::filesystem::canonical(std::filesystem::temp_directory_path());
  const auto process = Start({"sh",
                              {"-c",
                               "echo \"$TARN_TEST_KEPT $TARN_TEST_REPLACED $TARN_TEST_NEW\"; pwd; "
                               "env | grep -c TARN_TEST_REPLACED"},
                              {{"TARN_TEST_REPLACED", "new"}, {"TARN_TEST_NEW", "a b=c"}},
                              folder});
  EXPECT_EQ(RunToEnd(*process).output, "kept new a b=c\n" + folder + "\n1\n");
}

TEST(Process, ARelativeProgramIsMeantFromHereAlsoInAnotherFolder) {
  const testing::ScratchFolder scratch;
  scratch.Write("tool.sh", "#!/bin/sh\npwd\n");
  std::filesystem::permissions(scratch / "tool.sh", std::filesystem::perms::owner_all);
  const std::filesystem::path before = std::filesystem::current_path();
  std::filesystem::current_path(scratch.Path());
  EXPECT_EQ(RunToEnd(*Start({"./tool.sh", {}, {}, "/"})).output, "/\n");
  EXPECT_EQ(FindProgram("./tool.sh"), "./tool.sh");
  std::filesystem::current_path(before);
}

TEST(Process, TheInputIsEmptyAndNoSignalIsIgnoredOrBlocked) {
  sigset_t blocked;
  sigset_t before;
  sigemptyset(&blocked);
  sigaddset(&blocked, SIGTERM);
  pthread_sigmask(SIG_BLOCK, &blocked, &before);
  const auto previous = signal(SIGPIPE, SIG_IGN);
  // The mask digits of the ordinary signals; the C library uses the ones after them.
  const auto process =
      StartShell("cat; sed -n 's/^\\(Sig[BI].*\\):.*\\(.......\\)$/\\1 \\2/p' /proc/self/status");
  signal(SIGPIPE, previous);
  pthread_sigmask(SIG_SETMASK, &before, nullptr);
  EXPECT_EQ(RunToEnd(*process).output, "SigBlk 0000000\nSigIgn 0000000\n");
}

TEST(Process, AnInputThatIsKeptOpenHasNoEnd) {
  ProcessRequest request{"sh", {"-c", "timeout 0.2 cat; echo $?"}, {}};
  request.keepsInputOpen = true;
  EXPECT_EQ(RunToEnd(*Start(request)).output, "124\n");
}

TEST(Process, NoDescriptorOfThisProcessLeaks) {
  const std::string list = "exec ls -v /proc/self/fd";  // exec: without pipes of the shell
  const std::string alone = RunToEnd(*StartShell(list)).output;
  const auto other = StartShell("sleep 60");  // its pipes are open during the next start
  EXPECT_EQ(RunToEnd(*StartShell(list)).output, alone);
  EXPECT_EQ(alone.substr(0, 6), "0\n1\n2\n");
}

TEST(Process, WhatThisProcessClosesIsNotKeptOpenByItsGuards) {
  int ends[2];
  ASSERT_EQ(pipe(ends), 0);  // without the flag that closes them in programs
  const std::vector<pid_t> servers = ChildrenOf(getpid());
  for (const pid_t server : servers) {  // the next one starts now
    kill(server, SIGKILL);
    siginfo_t end{};
    waitid(P_PID, static_cast<id_t>(server), &end, WEXITED | WNOWAIT);
  }
  EXPECT_EQ(RunToEnd(*StartShell("echo $0")).output, "sh\n");
  EXPECT_NE(ChildrenOf(getpid()), servers);
  close(ends[1]);
  pollfd end{ends[0], POLLIN, 0};
  EXPECT_EQ(poll(&end, 1, 2000), 1);
  close(ends[0]);
}

TEST(Process, StopTakesTheWholeGroupWithin2Seconds) {
  const struct {
    const char* name;
    const char* script;
    int code;
    int grace;
  } rows[] = {
      {"obedient", "sleep 60 & echo $!; sleep 60", 143, 1000},
      {"deaf leader", "trap '' TERM; sleep 60 & echo $!; while :; do sleep 60; done", 137, 300},
      {"leader gone, deaf child with the pipe",
       "(trap '' TERM; sleep 60; sleep 60) & echo $!; wait", 143, 300},
      {"leader gone, deaf child without it",
       "(trap '' TERM; sleep 60; sleep 60) >/dev/null 2>&1 & echo $!; wait", 143, 300},
      {"halted", "sleep 60 & echo $!; kill -STOP $$", 143, 1000},
      {"a session of its own", "setsid sh -c 'trap \"\" TERM; echo $$; sleep 60; sleep 60' & wait",
       143, 300},
      {"a session of its own, its parent gone",
       "setsid sh -c '(trap \"\" TERM; exec sleep 60) & echo $!'; sleep 60", 143, 300},
      {"no grace", "trap '' TERM; sleep 60 & echo $!; while :; do sleep 60; done", 137, 0},
  };
  for (const auto& row : rows) {
    const auto process = StartShell(row.script);
    const Outcome run = RunToEnd(*process, [&] {
      std::this_thread::sleep_for(milliseconds(50));
      process->Stop(milliseconds(row.grace));
    });
    EXPECT_TRUE(run.exit.signalled) << row.name;
    EXPECT_EQ(run.exit.code, row.code) << row.name;
    EXPECT_LT(run.time, milliseconds(2000)) << row.name;
    const std::string child = run.output.substr(0, run.output.find('\n'));
    ASSERT_FALSE(child.empty()) << row.name;
    EXPECT_TRUE(EndsSoon(child)) << row.name;
    process->Stop(milliseconds(0));  // after the end: no-op
  }
  EXPECT_TRUE(AreGuardsGone());
}

TEST(Process, WhatAToolHasStartedEndsWithAKilledHost) {
  const char* const scripts[] = {
      "sleep 60 & echo $!; wait",
      "setsid sh -c 'sleep 60 & echo $!; wait' & wait",
      "setsid sh -c '(trap \"\" TERM HUP; exec sleep 60) & echo $!'; sleep 60",
  };
  for (const char* script : scripts) {
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    const pid_t host = fork();
    if (host == 0) {
      StartShell(script)->WaitWithOutput([&](std::string_view text, bool) {
        [[maybe_unused]] const auto written = write(ends[1], text.data(), text.size());
      });
      _exit(1);
    }
    char child[32] = "";
    ASSERT_GT(read(ends[0], child, sizeof child - 1), 1) << script;
    kill(host, SIGKILL);
    waitpid(host, nullptr, 0);
    EXPECT_TRUE(EndsSoon(std::string(child, std::strcspn(child, "\n")))) << script;
    close(ends[0]);
    close(ends[1]);
  }
}

TEST(Process, AStopKillsNothingThatAnotherToolHasStarted) {
  const auto service = StartShell("setsid sleep 20 >/dev/null 2>&1 & echo $!");
  const Outcome started = RunToEnd(*service);
  const std::string foreign = started.output.substr(0, started.output.find('\n'));
  const auto process = StartShell("echo up; sleep 60");
  RunToEnd(*process, [&] { process->Stop(milliseconds(0)); });
  EXPECT_TRUE(Runs(foreign));
  kill(std::atoi(foreign.c_str()), SIGKILL);
}

TEST(Process, AStopGivesTimeToCleanUp) {
  const auto process = StartShell(
      "trap 'sleep 0.3; echo cleaned; exit 5' TERM; echo up; "
      "while :; do sleep 0.05; done");
  std::atomic<bool> stopped{false};
  const Outcome run = RunToEnd(*process, [&] {
    if (!stopped.exchange(true)) process->Stop(milliseconds(5000));
  });
  EXPECT_EQ(run.output, "up\ncleaned\n");
  EXPECT_EQ(run.exit.code, 5);
}

TEST(Process, AnotherThreadMayStopAtAnyMoment) {
  for (int i = 0; i < 20; ++i) {
    const auto process = StartShell("sleep 60");
    std::thread stopper([&process, i] {
      std::this_thread::sleep_for(milliseconds(i % 4));
      process->Stop(milliseconds(1000));
      process->Stop(milliseconds(500));
    });
    const Outcome run = RunToEnd(*process);
    stopper.join();
    EXPECT_EQ(run.exit.code, 143);
    EXPECT_LT(run.time, milliseconds(1500));
  }
}

TEST(Process, AGrandchildThatKeepsThePipesOpenDoesNotHoldTheWait) {
  // The descendant has left the group and outlives the program; the output before that is not lost.
  const auto process = StartShell("setsid sleep 5 & echo $!; exit 4");
  const Outcome run = RunToEnd(*process);
  EXPECT_EQ(run.exit.code, 4);
  EXPECT_LT(run.time, milliseconds(2000));
  const std::string child = run.output.substr(0, run.output.find('\n'));
  ASSERT_FALSE(child.empty());
  EXPECT_TRUE(Runs(child));
  kill(std::atoi(child.c_str()), SIGKILL);
}

TEST(Process, OneThatClosesItsStreamsIsStillWaitedFor) {
  const auto process = StartShell("exec >&- 2>&-; sleep 0.3; exit 6");
  EXPECT_EQ(RunToEnd(*process).exit.code, 6);
}

TEST(Process, AnUnwantedProcessGoesWithItsObject) {
  StartShell("sleep 60").reset();
  EXPECT_TRUE(AreGuardsGone());
}

TEST(Process, ManyAtOnceDoNotHoldEachOthersPipes) {
  std::vector<std::thread> threads;
  std::atomic<int> right{0};
  for (int i = 0; i < 8; ++i) {
    threads.emplace_back([&right, i] {
      const auto process = StartShell("echo " + std::to_string(i) + "; exit " + std::to_string(i));
      const Outcome run = RunToEnd(*process);
      if (run.exit.code == i && run.output == std::to_string(i) + "\n") ++right;
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(right, 8);
}

// Reading takes longer than the grace period for streams that stay open.
TEST(Process, ASlowReaderLosesNothing) {
  const auto process = StartShell("head -c 65536 /dev/zero");
  const Outcome run = RunToEnd(*process, [] { std::this_thread::sleep_for(milliseconds(150)); });
  EXPECT_EQ(run.output.size(), 65536u);
}

TEST(FindProgram, SearchesPathForProgramsOnly) {
  EXPECT_EQ(FindProgram("sh").front(), '/');
  EXPECT_EQ(FindProgram("/bin/sh"), "/bin/sh");
  EXPECT_EQ(FindProgram("no-such-program"), "");
  EXPECT_EQ(FindProgram(""), "");
  EXPECT_EQ(FindProgram("/etc"), "");
}

}  // namespace
}  // namespace tarn::test
