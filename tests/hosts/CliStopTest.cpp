#include <gtest/gtest.h>

#include <fstream>
#include <thread>

#include "hosts/CliProject.h"

namespace tarn::host {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

// A compiler that is quick, except for the first run for b.c, in which it starts a child and waits.
constexpr const char* kSlowCompiler =
    "#!/bin/sh\n"
    "[ -e \"$TMPDIR/child\" ] || case \"$*\" in *b.c*)\n"
    "  sleep 30 &\n"
    "  echo $! > \"$TMPDIR/child\"\n"
    "  wait ;;\n"
    "esac\n"
    "exec /usr/bin/gcc \"$@\"\n";

// Returns the running process that the slow compiler started; 0 if it has ended, even if its exit
// code was not collected yet.
int ChildOf(const CliProject& project) {
  int child = 0;
  std::ifstream(project.PathOf("../child")) >> child;
  std::string number, name, state;
  std::ifstream("/proc/" + std::to_string(child) + "/stat") >> number >> name >> state;
  return state.empty() || state == "Z" ? 0 : child;
}

TEST(CliStop, AnInterruptEndsTheCompilersAndKeepsWhatWasBuilt) {
  CliProject project;
  project.AddProgram("gcc", kSlowCompiler);
  std::chrono::steady_clock::time_point asked;
  bool isAsked = false;
  const auto stopped = project.Run({"build"}, [&](Process& process, const std::string& out) {
    if (isAsked || !Has(out, "src/b.c")) return;
    isAsked = true;
    while (ChildOf(project) == 0) std::this_thread::sleep_for(milliseconds(10));
    asked = std::chrono::steady_clock::now();
    // One request may arrive twice.
    process.Stop(milliseconds(10'000));
    process.Stop(milliseconds(10'000));
  });
  ASSERT_TRUE(isAsked) << stopped.out << stopped.err;
  EXPECT_LT(std::chrono::steady_clock::now() - asked, seconds(9));
  EXPECT_EQ(stopped.code, 130) << stopped.out << stopped.err;
  EXPECT_TRUE(Has(stopped.out, "Interrupted: ")) << stopped.out;
  EXPECT_FALSE(Has(stopped.out, "src/c.c")) << stopped.out;
  EXPECT_EQ(ChildOf(project), 0);

  const std::string build = project.Out({"build"});
  EXPECT_FALSE(Has(build, "src/a.c")) << build;
  EXPECT_TRUE(Has(build, "Built 3 files")) << build;
}

#ifdef TARN_FEW_THREADS
TEST(CliStop, WithoutAThreadABuildFailsAndDoesNotWait) {
  for (const char* most : {"0", "1"}) {
    CliProject project;
    project.environment.emplace_back("LD_PRELOAD", TARN_FEW_THREADS);
    project.environment.emplace_back("FEW_THREADS", most);
    const auto build = project.Run({"build"}, {});
    EXPECT_EQ(build.code, *most == '0' ? 3 : 1) << build.out << build.err;
    EXPECT_TRUE(Has(build.out + build.err, "Resource temporarily unavailable")) << most;
    EXPECT_LT(build.time, seconds(9)) << most;
  }
}
#endif

// The thread sanitizer writes a large file before main.
#ifndef __SANITIZE_THREAD__
TEST(CliStop, AFileThatBecomesTooLargeIsReported) {
  CliProject project;
  const auto build =
      project.RunProgram("/bin/sh", {"-c", "ulimit -f 0; exec \"$0\" build", TARN_PROGRAM});
  EXPECT_LT(build.code, 128) << build.out << build.err;
  EXPECT_NE(build.code, 0) << build.out;
  // The message of the one that failed first: this program, or the compiler.
  const std::string said = build.out + build.err;
  EXPECT_TRUE(Has(said, "File too large") || Has(said, "File size limit exceeded")) << said;
  EXPECT_TRUE(Has(build.err, "The state of this build couldn't be saved"))
      << build.out << build.err;
  const auto set = project.RunProgram(
      "/bin/sh",
      {"-c", "ulimit -f 0; exec \"$0\" options set Compiler.Warnings none", TARN_PROGRAM});
  EXPECT_EQ(set.code, 3) << set.out << set.err;
  EXPECT_TRUE(Has(set.err, "File too large")) << set.out << set.err;
}
#endif

}  // namespace
}  // namespace tarn::host
