#include <gtest/gtest.h>

#include <atomic>
#include <fstream>
#include <future>
#include <thread>

#include "hosts/CliProject.h"

namespace tarn::host {
namespace {

using std::chrono::milliseconds;

constexpr const char* kEnd = "Finished.";

// A compiler that must be released before it compiles c.c; it exits after ten seconds.
constexpr const char* kWaitingCompiler =
    "#!/bin/sh\n"
    "case \"$*\" in *c.c*)\n"
    "  for i in $(seq 100); do [ -e \"$TMPDIR/go\" ] && break; sleep 0.1; done\n"
    "  [ -e \"$TMPDIR/go\" ] || exit 1 ;;\n"
    "esac\n"
    "exec /usr/bin/gcc \"$@\"\n";

void WaitFor(const std::atomic<bool>& mark) {
  for (int i = 0; i < 2000 && !mark; ++i) std::this_thread::sleep_for(milliseconds(10));
  EXPECT_TRUE(mark);
}

TEST(CliLog, FollowShowsABuildElsewhereWhileItRunsAndEndsWithAnInterrupt) {
  CliProject project;
  project.AddProgram("gcc", kWaitingCompiler);
  auto following = std::async(std::launch::async, [&project] {
    return project.Run({"log", "--follow"}, [&project](Process& process, const std::string& out) {
      if (Has(out, "b.c")) std::ofstream(project.PathOf("../go")) << "now";
      if (Has(out, kEnd)) process.Stop(milliseconds(10'000));
    });
  });
  const auto build = project.Run({"build"});
  EXPECT_EQ(build.code, 0) << build.out << build.err;
  const auto followed = following.get();
  EXPECT_EQ(followed.code, 130) << followed.err;
  EXPECT_EQ(followed.out, project.Out({"log"})) << "piped without colours, each line once";
}

TEST(CliLog, UntilEndWaitsForTheEndOfTheNextBuild) {
  CliProject project;
  project.Out({"rebuild"});
  const std::string log = project.Out({"log"});
  std::atomic<bool> isFollowing = false;
  auto following = std::async(std::launch::async, [&] {
    return project.Run({"log", "--until-end"}, [&](Process&, const std::string& out) {
      if (Has(out, kEnd)) isFollowing = true;
    });
  });
  WaitFor(isFollowing);
  // Times have a resolution of one second, and the same build produces the same log.
  std::this_thread::sleep_for(milliseconds(1100));
  project.Out({"rebuild"});
  const auto followed = following.get();
  EXPECT_EQ(followed.code, 0) << followed.err;
  EXPECT_EQ(followed.out, log + log);
  EXPECT_EQ(project.Run({"log", "--follow", "--xml"}).code, 2);
}

}  // namespace
}  // namespace tarn::host
